#include "host/counter/counter_sale.h"

#include <algorithm>
#include <vector>

#include "host/counter/counter_ledger.h"
#include "host/services/host_parts.h"
#include "host/services/sql_access.h"
#include "package/messages.h"

namespace basalt::host {

namespace {

using Agreed = std::vector<std::vector<std::string>>;

// Keeps what the module has to say. Answers Yes to a question that the user has agreed to, else No.
class KeptMessage final : public MessageService {
public:
    KeptMessage(ReferenceHost& host, const Agreed& agreed) : host_(host), before_(host.Messages()), agreed_(agreed) {
        host_.setMessages(*this);
    }
    ~KeptMessage() override { host_.setMessages(before_); }
    KeptMessage(const KeptMessage&) = delete;
    KeptMessage& operator=(const KeptMessage&) = delete;

    int show(const MessageRequest& request) override {
        kept_ = request;
        if (!request.isQuestion()) return mrNone;
        return std::find(agreed_.begin(), agreed_.end(), request.arguments) != agreed_.end() ? mrYes : mrNo;
    }
    [[nodiscard]] const std::optional<MessageRequest>& request() const { return kept_; }

private:
    ReferenceHost& host_;
    MessageService& before_;
    const Agreed& agreed_;
    std::optional<MessageRequest> kept_;
};

bool stockAllows(ReferenceHost& host, ModuleCalls& calls, const CounterInvoice& invoice, const SaleTerms& terms,
                 const std::string& date) {
    // The module goes by the settings; the choice is for this invoice and nobody else's.
    TSettingRecord settings = host.settings().record();
    if (terms.negativeType) settings.NegativeType = *terms.negativeType;
    const LentSettings lent(host, std::move(settings));
    return calls("Check_TockMinus", {{"SelectQuery", invoice.stockQuery(terms.store)},
                                     {"Date", date},
                                     {"GlobalID", 0},
                                     {"StoreTransition", false}})
        .result.asBool();
}

// The number of the sale; nullopt when the check does not allow it, and then nothing is written.
std::optional<int> attempt(ReferenceHost& host, ModuleCalls& calls, const CounterInvoice& invoice,
                           const SaleTerms& terms) {
    const std::string today = host.NowDate("/");
    HostTransaction transaction(host.session());
    const SalePlace place = holdLedger(host.session(), invoice, terms.store);
    if (!stockAllows(host, calls, invoice, terms, today)) return std::nullopt;
    postSale(host.session(), invoice, terms.store, terms.person, today, place);
    host.SetUserEvent(hpSales, prInsert, std::to_string(place.document), true, true);
    transaction.commit();
    return static_cast<int>(place.document);
}

}  // namespace

SaleOutcome sell(ReferenceHost& host, ModuleCalls& calls, const CounterInvoice& invoice, const SaleTerms& terms,
                 const std::function<void(const std::string& codes)>& onShortage) {
    Agreed agreed;
    for (;;) {
        std::optional<MessageRequest> said;
        {
            const KeptMessage kept(host, agreed);
            const auto number = attempt(host, calls, invoice, terms);
            if (number) return {.number = number, .missing = {}};
            said = kept.request();
        }
        const std::string missing = calls("strMinusGoodCodes", {}).result.asText();
        if (onShortage) onShortage(missing);
        const int answer = said ? host.Messages().show(*said) : mrNone;
        if (answer != mrYes) return {.number = std::nullopt, .missing = missing};
        agreed.push_back(said->arguments);
    }
}

}  // namespace basalt::host
