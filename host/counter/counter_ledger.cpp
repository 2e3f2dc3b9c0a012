#include "host/counter/counter_ledger.h"

#include <set>

#include "ado/error.h"
#include "host/services/sql_access.h"

namespace basalt::host {

namespace {

constexpr std::int64_t kSale = 1;
constexpr int kAmountDecimals = 9;
// A server looks up a short list of goods one by one, and holds no more than these.
constexpr int kGoodsAtOnce = 200;

Decimal decimalOf(Extended amount) {
    if (const auto decimal = Decimal::fromExtended(amount, kAmountDecimals)) return *decimal;
    throw UsageError("an amount of the invoice is beyond what the ledger holds");
}

// Until the transaction is over nobody else is told the same number: the end of the index is held.
std::int64_t nextNumber(Session& session, const char* statement) {
    return integerAt(rowsOf(session, statement), 0, 0);
}

}  // namespace

SalePlace holdLedger(Session& session, const CounterInvoice& invoice, int store) {
    // The numbers first: counters that sell the same goods in another order wait here and not for each other.
    const std::int64_t entry =
        nextNumber(session, "SELECT ISNULL(MAX(Global_ID), 0) + 1 FROM dbo.Kardex WITH (UPDLOCK, HOLDLOCK)");
    const std::int64_t document =
        nextNumber(session,
                   "SELECT ISNULL(MAX(OperationCode), 0) + 1 FROM dbo.Kardex WITH (UPDLOCK, HOLDLOCK) "
                   "WHERE OperationType = 1");
    std::set<int> goods;
    for (const CounterLine& line : invoice.lines())
        goods.insert(line.good);
    for (auto next = goods.begin(); next != goods.end();) {
        std::string listed;
        for (int count = 0; count < kGoodsAtOnce && next != goods.end(); ++count, ++next)
            listed += (listed.empty() ? "" : ", ") + std::to_string(*next);
        execute(session,
                "SELECT COUNT(*) FROM dbo.Kardex WITH (UPDLOCK, HOLDLOCK) WHERE Anbar = ? AND kala IN (" + listed + ")",
                {std::int64_t{store}});
    }
    return {.entry = entry, .document = document};
}

Extended stockOn(Session& session, int good, int store, const std::string& date) {
    const RowSet stock =
        rowsOf(session, "SELECT ISNULL(SUM(Tedad), 0) FROM dbo.Kardex WHERE kala = ? AND Anbar = ? AND [Date] <= ?",
               {std::int64_t{good}, std::int64_t{store}, date});
    return toExtended(stock.column(0).valueAt(0));
}

void postSale(Session& session, const CounterInvoice& invoice, int store, int person, const std::string& date,
              const SalePlace& sale) {
    const Value buyer = person > 0 ? Value(std::int64_t{person}) : Value(Null{});
    std::int64_t row = 0;
    for (const CounterLine& line : invoice.lines()) {
        const std::int64_t good = line.good;
        const std::int64_t place = store;
        const Decimal moved = decimalOf(-line.amount);
        const Decimal left = decimalOf(stockOn(session, line.good, store, date) - line.amount);
        execute(
            session,
            "INSERT INTO dbo.Kardex (kala, Anbar, [Date], Global_ID, Tedad, RemainInAnbar, Fi, OperationType, "
            "OperationCode, OperationRow, PerCode) VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?)",
            {good, place, date, sale.entry, moved, left, decimalOf(line.price), kSale, sale.document, ++row, buyer});
        execute(session,
                "UPDATE dbo.Kardex SET RemainInAnbar = RemainInAnbar + ? WHERE kala = ? AND Anbar = ? AND [Date] > ?",
                {moved, good, place, date});
    }
}

}  // namespace basalt::host
