// Writes what a counter's invoice takes out of a store to the stock ledger.
#pragma once

#include <string>

#include "ado/session.h"
#include "host/counter/counter_invoice.h"

namespace basalt::host {

// As one sale of that day (yyyy/mm/dd), behind all documents entered so far, in a transaction of its own. Stocks of
// later days follow. person 0 is nobody. Gives the number of the document; after a failure nothing is written.
int postSale(Session& session, const CounterInvoice& invoice, int store, int person, const std::string& date);

}  // namespace basalt::host
