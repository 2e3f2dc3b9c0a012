// Writes what a counter's invoice takes out of a store to the stock ledger.
//
//   HostTransaction transaction(session);
//   const SalePlace place = holdLedger(session, invoice, store);
//   if (... the stock allows it ...) postSale(session, invoice, store, person, date, place), transaction.commit();
#pragma once

#include <cstdint>
#include <string>

#include "ado/session.h"
#include "host/counter/counter_invoice.h"

namespace basalt::host {

// Where a sale stands in the ledger: behind all documents entered so far, of whatever date, and with the next number of
// a sale. So it is the last of its day too, in a ledger that begins to number again with each date.
struct SalePlace {
    std::int64_t entry = 0;
    std::int64_t document = 0;
};

// Until the open transaction is over nobody else gets this place, and nobody moves the invoice's goods in the store:
// what a check of the stock finds meanwhile is what the sale meets.
[[nodiscard]] SalePlace holdLedger(Session& session, const CounterInvoice& invoice, int store);

// What the ledger has of a good in a store at the end of a day (yyyy/mm/dd).
[[nodiscard]] Extended stockOn(Session& session, int good, int store, const std::string& date);

// As one sale of that day (yyyy/mm/dd), in the transaction in which the ledger is held. Stocks of later days follow.
// person 0 is nobody. After a failure the transaction is to be rolled back.
void postSale(Session& session, const CounterInvoice& invoice, int store, int person, const std::string& date,
              const SalePlace& sale);

}  // namespace basalt::host
