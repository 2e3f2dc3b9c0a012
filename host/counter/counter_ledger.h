// Writes what a counter's invoice takes out of a store to the stock ledger.
#pragma once

#include <optional>
#include <string>

#include "ado/session.h"
#include "host/counter/counter_invoice.h"

namespace basalt::host {

// What the ledger has of the invoice's goods in the store; another text as soon as one of them moves. To be taken
// before the stock is checked.
[[nodiscard]] std::string stockMark(Session& session, const CounterInvoice& invoice, int store);

// As one sale of that day (yyyy/mm/dd), behind all documents entered so far, in a transaction of its own or as a part
// of the one that is open. Stocks of later days follow. person 0 is nobody. Gives the number of the document, which no
// other counter gets; nullopt when the goods have moved since the mark was taken, and the stock is to be checked again.
// Then, and after a failure, nothing is written.
[[nodiscard]] std::optional<int> postSale(Session& session, const CounterInvoice& invoice, int store, int person,
                                          const std::string& date, const std::string& mark);

}  // namespace basalt::host
