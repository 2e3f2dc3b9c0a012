#include "host/counter/counter_scanner.h"

#include <QScopeGuard>
#include <algorithm>
#include <optional>

#include "ado/error.h"
#include "goods/barcode_types.h"
#include "host/counter/layout_store.h"
#include "host/counter/scan_text.h"
#include "host/screens/display_format.h"
#include "host/screens/persian_digits.h"
#include "package/numbers.h"

namespace basalt::host {

namespace {

constexpr int kExists = 1;
constexpr int kSaleToAPerson = 2;  // of the offers of prices

// The ledger has fourteen digits before the point.
constexpr Extended kMost = 99'999'999'999'999.0L;
bool isTooMuch(Extended number) {
    return !(number >= -kMost && number <= kMost);
}

ScanReport tooMuch() {
    return {
        ScanMood::Refused,
        QStringLiteral(
            "مقدار یا مبلغ بارکد بزرگ‌تر از آن است که در فاکتور بیاید.")};
}

// What a server takes for a number may be none here: "1E002", or more than a code holds.
std::optional<int> codeOf(const std::string& text) {
    const bool digits =
        !text.empty() && std::all_of(text.begin(), text.end(), [](char c) { return c >= '0' && c <= '9'; });
    bool fits = false;
    const int code = QString::fromStdString(text).toInt(&fits);
    return digits && fits ? std::optional(code) : std::nullopt;
}

constexpr int kInvalidLength = 537;  // of a SUBSTRING

// What a server says of a statement into which a field was put that is empty, no number or too large a one.
bool mayBeOfBarcode(const DatabaseError& error) {
    const ErrorCategory category = error.category();
    return category == ErrorCategory::Conversion || category == ErrorCategory::Syntax ||
           category == ErrorCategory::NotFound || error.nativeCode() == kInvalidLength;
}

bool isDigits(const QString& code) {
    return std::all_of(code.begin(), code.end(),
                       [](QChar c) { return c >= QLatin1Char('0') && c <= QLatin1Char('9'); });
}

QString inGuillemets(const std::string& name) {
    return QStringLiteral("«%1»").arg(screenText(QString::fromStdString(name)));
}

// The kind of barcode that the module has read. It tells the byte of what the layout has; where that is more than a
// byte nothing was cut, and what the module holds is of the scan before.
std::int64_t kindOf(const std::optional<BarcodeLayout>& layout, const ModuleReply& reply) {
    const std::int64_t told = reply["FormulType"].asInteger();
    return layout && layout->barCodeType != told ? std::int64_t{bftNone} : told;
}

// Hears of equal totals for one scan; who heard of them before does so again afterwards.
class Listening {
public:
    Listening(ModuleCalls& calls, Datum handler) : calls_(calls), before_(calls("After_Equal_Total_Price", {}).result) {
        set(std::move(handler));
    }
    ~Listening() { set(before_); }
    Listening(const Listening&) = delete;
    Listening& operator=(const Listening&) = delete;

private:
    void set(Datum handler) { (void)calls_("After_Equal_Total_Price", {{"Value", std::move(handler)}}); }

    ModuleCalls& calls_;
    Datum before_;
};

}  // namespace

bool fitsInvoice(Extended amount, Extended price) {
    return !isTooMuch(amount) && !isTooMuch(price) && !isTooMuch(amount * price);
}

QString amountText(Extended amount) {
    static const DisplayFormat format("#,##0.#########;-#,##0.#########;0");
    const auto decimal = Decimal::fromExtended(amount, 9);
    return isolatedNumber(decimal ? format.text(*decimal) : FloatToStr_VRO(amount));
}

QString amountText(Extended amount, const std::string& unit) {
    const QString name = screenText(QString::fromStdString(unit)).trimmed();
    return name.isEmpty() ? amountText(amount) : amountText(amount) + QLatin1Char(' ') + name;
}

ScanReport CounterScanner::scan(const QString& typed, const ScanOptions& options) {
    const QString code = repairedScan(typed);
    // As it was typed: what was made of it looks like nothing that anybody knows.
    if (!isPlainCode(code))
        return {ScanMood::Refused,
                QStringLiteral("بارکد خوانا نیست: \u2068%1\u2069").arg(persianDigits(typed.trimmed()))};

    bool equal = false;
    const Extended sumBefore = priceSum();
    ModuleReply reply;
    std::optional<BarcodeLayout> layout;
    try {
        layout = layoutOf(code);
        if (auto fault = unsafeField(layout, code)) return {ScanMood::Refused, *std::move(fault)};
        const Listening listening(calls_, Datum::event([&equal] { equal = true; }));
        reply = extract(options.removing ? butDelete : butNew, code.toStdString(), options.person);
    } catch (const DatabaseError& error) {
        if (!mayBeOfBarcode(error)) throw;
        if (auto fault = faultIn(layout, code)) return {ScanMood::Refused, *std::move(fault)};
        if (auto fault = brokenPrefix()) return {ScanMood::Refused, *std::move(fault)};
        if (error.category() != ErrorCategory::Conversion) throw;
        return {ScanMood::Refused, QStringLiteral("بارکد %1 در جای عدد، نویسهٔ دیگری دارد.").arg(persianDigits(code))};
    }
    if (!reply.result.asBool()) return takeOwnBarcode(code, options);
    switch (kindOf(layout, reply)) {
        case bftAmount:
            return takeGood(layout, code, options);
        case bftConstPrice:
            return takePrice(sumBefore, options.removing);
        case bftTotalPrice:
            return equal ? ScanReport{ScanMood::Matched, QStringLiteral("جمع بارکد با جمع فاکتور برابر است.")}
                         : otherTotal(layout, code);
        default:
            return {ScanMood::Warned, QStringLiteral("این نوع بارکد در پیشخوان کاری ندارد.")};
    }
}

bool CounterScanner::knows(const QString& typed) {
    const QString code = repairedScan(typed);
    if (!isPlainCode(code)) return false;
    try {
        return layoutOf(code) || goodOfBarcode(code) != 0;
    } catch (const DatabaseError&) {
        return false;  // what is wrong is told when it is scanned
    }
}

int CounterScanner::goodOfBarcode(const QString& code) {
    return static_cast<int>(
        calls_("GetBarcode_Code", {{"Code", code.toStdString()}, {"ByAbbName", true}, {"ShowMessage", false}})
            .result.asInteger());
}

ModuleReply CounterScanner::extract(int useType, const std::string& code, int person) {
    return calls_("FillGoodInfFromBarcode", {{"UseType", useType},
                                             {"Barcode", code},
                                             {"PerCode", std::to_string(person)},
                                             {"ItemCode", ""},
                                             {"TotalPrice", Datum(total())}});
}

std::optional<BarcodeLayout> CounterScanner::layoutOf(const QString& code) {
    auto first = LayoutStore(host_.session()).firstFor(code);
    return first && fits(*first, code) ? std::move(first) : std::nullopt;
}

std::optional<QString> CounterScanner::faultIn(const std::optional<BarcodeLayout>& layout, const QString& code) {
    return layout ? faultOf(*layout, code, host_.SettingRecord().FindGoodByScaleCode) : std::nullopt;
}

// Digits do no harm in a statement. But where a scale code is looked up, no characters at all are found between two
// codes that stand side by side, !7!!8!, and any good that has two would be sold.
std::optional<QString> CounterScanner::unsafeField(const std::optional<BarcodeLayout>& layout, const QString& code) {
    return isDigits(code) && !host_.SettingRecord().FindGoodByScaleCode ? std::nullopt : faultIn(layout, code);
}

std::optional<QString> CounterScanner::brokenPrefix() {
    for (const BarcodeLayout& layout : LayoutStore(host_.session()).all()) {
        if (layout.constantCount < 0) return prefixFault(layout);
    }
    return std::nullopt;
}

ScanReport CounterScanner::takeGood(const std::optional<BarcodeLayout>& layout, const QString& code,
                                    const ScanOptions& options) {
    const auto refused = [&](const QString& text) {
        return ScanReport{ScanMood::Refused, faultIn(layout, code).value_or(text)};
    };
    const ModuleReply data = calls_("Get_Barcode_Data", {});
    const QString goodText = persianDigits(QString::fromStdString(data["GoodCode"].asText()));
    const auto good = codeOf(data["GoodCode"].asText());
    if (!good) return refused(QStringLiteral("بارکد خوانا نیست: «%1» کد کالا نیست.").arg(goodText));
    if (calls_("GetGoodInFromBarCode", {}).result.asInteger() != kExists)
        return {ScanMood::Refused, *good == 0
                                       ? QStringLiteral("کالایی برای بارکد %1 تعریف نشده است.").arg(persianDigits(code))
                                       : QStringLiteral("کالای %1 تعریف نشده است.").arg(goodText)};
    CounterLine line;
    line.good = *good;
    line.barcode = code.toStdString();
    line.person = options.person;
    try {
        line.amount = StrToFloat_VRO(data["Weight"].asText());
        line.price = StrToFloat_VRO(data["Fi"].asText());
    } catch (const DatabaseError& error) {
        if (error.category() != ErrorCategory::Conversion) throw;
        return refused(QStringLiteral("مقدار یا قیمت بارکد عدد نیست."));
    }
    if (line.amount <= 0) return {ScanMood::Refused, QStringLiteral("وزن در بارکد صفر است؛ کالا را دوباره وزن کنید.")};
    if (data["BalanceNum"].asText() != "-1") line.scale = data["BalanceNum"].asText();
    // One that does not say how much it is of stands on a piece; the module says one of it, as a label may itself.
    line.weighed = !layout || layout->amountCount > 0;
    return takeLine(std::move(line), options.removing);
}

ScanReport CounterScanner::otherTotal(const std::optional<BarcodeLayout>& layout, const QString& code) {
    const Extended own = total();
    const auto said = layout ? priceIn(*layout, code) : std::nullopt;
    if (!said) return {ScanMood::Warned, QStringLiteral("جمع فاکتور %1 است.").arg(amountText(own))};
    return {ScanMood::Warned,
            QStringLiteral("بارکد %1 است و فاکتور %2؛ فاکتور %3 %4 است.")
                .arg(amountText(*said), amountText(own), amountText(own < *said ? *said - own : own - *said),
                     own < *said ? QStringLiteral("کمتر") : QStringLiteral("بیشتر"))};
}

ScanReport CounterScanner::takePrice(Extended sumBefore, bool removing) {
    const auto undone = [&](ScanReport report) {
        (void)calls_("BarCodePriceSum", {{"Value", Datum(sumBefore)}});
        return report;
    };
    Extended sum = 0;
    try {
        sum = calls_("Get_Barcode_Data", {})["PriceSum"].asAmount();
    } catch (const UsageError&) {
        return undone(tooMuch());  // not even an amount
    }
    const Extended price = removing ? sumBefore - sum : sum - sumBefore;
    if (isTooMuch(sum) || isTooMuch(price)) return undone(tooMuch());
    if (removing) {
        const auto same = std::find(prices_.rbegin(), prices_.rend(), price);
        if (same == prices_.rend())
            return undone({ScanMood::Refused, QStringLiteral("مبلغ %1 در فاکتور نیست.").arg(amountText(price))});
        prices_.erase(std::next(same).base());
        return {ScanMood::Removed, QStringLiteral("مبلغ %1 از جمع کم شد.").arg(amountText(price))};
    }
    prices_.push_back(price);
    return {ScanMood::Added, QStringLiteral("مبلغ %1 به جمع افزوده شد.").arg(amountText(price))};
}

// Not of a scale: perhaps what the maker printed on the good.
ScanReport CounterScanner::takeOwnBarcode(const QString& code, const ScanOptions& options) {
    const int good = goodOfBarcode(code);
    if (good == 0) return {ScanMood::Refused, QStringLiteral("بارکد %1 شناخته نشد.").arg(persianDigits(code))};
    CounterLine line;
    line.good = good;
    line.amount = 1;
    line.person = options.person;
    return takeLine(std::move(line), options.removing);
}

bool CounterScanner::describe(CounterLine& line) {
    const ModuleReply reply = calls_("FillGoodInfo", {{"GoodCode", std::to_string(line.good)}});
    if (!reply.result.asBool()) return false;
    const Datum& info = reply["Info"];
    line.name = info["Name"].asText();
    line.unit = info["UnitName"].asText();
    // The label of a scale has its price, from the label or the good's price level, be it nothing.
    if (line.barcode.empty()) line.price = pieceFor(line.person, line.good, info["ConsumerPrice"].asAmount());
    return true;
}

Extended CounterScanner::pieceFor(int person, int good, Extended consumerPrice) {
    (void)calls_(
        "OfferCost_GetAll",
        {{"Kind", kSaleToAPerson}, {"GoodCode", good}, {"PerCode", person}, {"CurrCode", 0}, {"Direction", 1}});
    TADOQuery& offers = calls_.query("OfferCost_QUR");
    const auto close = qScopeGuard([&offers] { offers.Close(); });
    for (offers.First(); !offers.Eof(); offers.Next()) {
        if (!offers.FieldByName("deftitle").AsString().empty()) return offers.FieldByName("Cost").AsFloat();
    }
    return consumerPrice;
}

ScanReport CounterScanner::notThere(const CounterLine& line) const {
    const auto left = line.weighed ? std::nullopt : invoice_.piecesLike(line);
    if (!left)
        return {
            ScanMood::Refused,
            QStringLiteral("%1 %2 در فاکتور نیست.").arg(amountText(line.amount, line.unit), inGuillemets(line.name))};
    return {
        ScanMood::Refused,
        QStringLiteral(
            "از %1 تنها %2 مانده است و کمتر از یکی با اسکن کم نمی‌شود؛ سطر %3 را برگزینید و با \u2066F7\u2069 بردارید.")
            .arg(inGuillemets(line.name), amountText(invoice_.lines()[*left].amount, line.unit),
                 persianDigits(QString::number(*left + 1)))};
}

ScanReport CounterScanner::takeLine(CounterLine line, bool removing) {
    if (!describe(line))
        return {ScanMood::Refused,
                QStringLiteral("کالای %1 تعریف نشده است.").arg(persianDigits(QString::number(line.good)))};
    if (!fitsInvoice(line.amount, line.price)) return tooMuch();
    const auto textOf = [](const CounterLine& each) {
        return QStringLiteral("%1 %2").arg(amountText(each.amount, each.unit), inGuillemets(each.name));
    };
    const QString what = textOf(line);
    if (!removing && line.price < 0)
        return {
            ScanMood::Refused,
            QStringLiteral(
                "%1 افزوده نشد؛ قیمت آن کمتر از صفر است: %2. قیمت را در فهرست قیمت‌ها درست کنید.")
                .arg(inGuillemets(line.name), amountText(line.price))};
    if (removing) {
        const auto taken =
            line.weighed ? invoice_.takeParcel(line.good, line.amount, line.price) : invoice_.takePiece(line);
        if (!taken) return notThere(line);
        return {ScanMood::Removed, QStringLiteral("%1 از فاکتور حذف شد.").arg(textOf(*taken))};
    }
    const bool hasPrice = line.price != 0;
    const Extended together = invoice_.amountWith(line);
    if (!fitsInvoice(together, line.price)) return tooMuch();
    const QString now =
        together == line.amount ? QString() : QStringLiteral("؛ اکنون %1").arg(amountText(together, line.unit));
    invoice_.add(std::move(line));
    if (!hasPrice) return {ScanMood::Warned, QStringLiteral("%1 افزوده شد%2؛ قیمت آن صفر است.").arg(what, now)};
    return {ScanMood::Added, QStringLiteral("%1 افزوده شد%2.").arg(what, now)};
}

std::vector<Extended> CounterScanner::pricesFor(int person) {
    std::vector<Extended> prices;
    for (const CounterLine& line : invoice_.lines()) {
        prices.push_back(line.price);
        if (line.person == person) continue;
        const auto price = priceFor(person, line);
        if (price && !isTooMuch(*price) && !isTooMuch(*price * line.amount)) prices.back() = *price;
    }
    return prices;
}

std::optional<Extended> CounterScanner::priceFor(int person, const CounterLine& line) {
    if (line.barcode.empty()) {
        const ModuleReply reply = calls_("FillGoodInfo", {{"GoodCode", std::to_string(line.good)}});
        if (!reply.result.asBool()) return std::nullopt;
        return pieceFor(person, line.good, reply["Info"]["ConsumerPrice"].asAmount());
    }
    // Layouts and settings may have changed since the scan, and read the barcode otherwise now or not at all.
    try {
        const QString code = QString::fromStdString(line.barcode);
        const auto layout = layoutOf(code);
        if (unsafeField(layout, code)) return std::nullopt;
        const ModuleReply reply = extract(butNone, line.barcode, person);
        if (!reply.result.asBool() || kindOf(layout, reply) != bftAmount) return std::nullopt;
        const ModuleReply data = calls_("Get_Barcode_Data", {});
        if (codeOf(data["GoodCode"].asText()) != line.good) return std::nullopt;
        return StrToFloat_VRO(data["Fi"].asText());
    } catch (const DatabaseError& error) {
        if (error.category() == ErrorCategory::Conversion || error.category() == ErrorCategory::Syntax)
            return std::nullopt;
        throw;
    }
}

Extended CounterScanner::priceSum() {
    try {
        const Extended sum = calls_("Get_Barcode_Data", {})["PriceSum"].asAmount();
        if (!isTooMuch(sum)) return sum;
    } catch (const UsageError&) {
        // not even an amount
    }
    // From elsewhere: no scan of this counter leaves such a sum.
    resetPriceSum();
    return 0;
}

Extended CounterScanner::total() {
    return invoice_.total(priceSum());
}

void CounterScanner::resetPriceSum() {
    (void)calls_("BarCodePriceSum", {{"Value", 0}});
    prices_.clear();
}

}  // namespace basalt::host
