// Sells a counter's invoice: the stock check, the ledger and the user log in one transaction.
//
//   const SaleOutcome outcome = sell(host, calls, invoice, {.store = 1, .person = 12});
//   if (!outcome.number) tell(outcome.missing);
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>

#include "host/counter/counter_invoice.h"
#include "host/counter/module_calls.h"
#include "host/services/reference_host.h"

namespace basalt::host {

struct SaleTerms {
    int store = 0;
    int person = 0;                            // 0: nobody
    std::optional<std::uint8_t> negativeType;  // for this invoice alone; else the company's setting
};

struct SaleOutcome {
    std::optional<int> number;  // of the document; nullopt when nothing was sold, for want of stock
    std::string missing;        // then the codes of the goods, with commas between
};

// Nobody is asked, and nothing is shown, while the ledger is held: what the check has to say is shown behind it, and a
// question that the user has agreed to is taken for answered when the check, made anew, asks it again. A failure passes
// on and leaves nothing written. onShortage is told the codes of the goods that lack before the user is told or asked.
[[nodiscard]] SaleOutcome sell(ReferenceHost& host, ModuleCalls& calls, const CounterInvoice& invoice,
                               const SaleTerms& terms,
                               const std::function<void(const std::string& codes)>& onShortage = {});

}  // namespace basalt::host
