#include "host/counter/counter_ledger.h"

#include "ado/error.h"
#include "host/services/sql_access.h"

namespace basalt::host {

namespace {

constexpr std::int64_t kSale = 1;
constexpr int kAmountDecimals = 9;

Decimal decimalOf(Extended amount) {
    if (const auto decimal = Decimal::fromExtended(amount, kAmountDecimals)) return *decimal;
    throw UsageError("an amount of the invoice is beyond what the ledger holds");
}

// Until the transaction is over nobody else is told the same number: the end of the index is held.
std::int64_t nextNumber(Session& session, const char* statement) {
    return integerAt(rowsOf(session, statement), 0, 0);
}

std::string markOf(Session& session, const CounterInvoice& invoice, int store, const std::string& hint) {
    std::string goods;
    for (const CounterLine& line : invoice.lines())
        goods += (goods.empty() ? "" : ", ") + std::to_string(line.good);
    if (goods.empty()) return {};
    const RowSet now = rowsOf(session,
                              "SELECT COUNT(*), ISNULL(MAX(ID), 0), ISNULL(SUM(Tedad), 0) FROM dbo.Kardex" + hint +
                                  " WHERE Anbar = ? AND kala IN (" + goods + ")",
                              {std::int64_t{store}});
    return textAt(now, 0, 0) + "|" + textAt(now, 1, 0) + "|" + textAt(now, 2, 0);
}

}  // namespace

std::string stockMark(Session& session, const CounterInvoice& invoice, int store) {
    return markOf(session, invoice, store, "");
}

std::optional<int> postSale(Session& session, const CounterInvoice& invoice, int store, int person,
                            const std::string& date, const std::string& mark) {
    HostTransaction transaction(session);
    const std::int64_t entry =
        nextNumber(session, "SELECT ISNULL(MAX(Global_ID), 0) + 1 FROM dbo.Kardex WITH (UPDLOCK, HOLDLOCK)");
    const std::int64_t document =
        nextNumber(session,
                   "SELECT ISNULL(MAX(OperationCode), 0) + 1 FROM dbo.Kardex WITH (UPDLOCK, HOLDLOCK) "
                   "WHERE OperationType = 1");
    if (markOf(session, invoice, store, " WITH (UPDLOCK, HOLDLOCK)") != mark) return std::nullopt;
    const Value buyer = person > 0 ? Value(std::int64_t{person}) : Value(Null{});
    std::int64_t row = 0;
    for (const CounterLine& line : invoice.lines()) {
        const std::int64_t good = line.good;
        const std::int64_t place = store;
        const Decimal moved = decimalOf(-line.amount);
        const RowSet stock =
            rowsOf(session, "SELECT ISNULL(SUM(Tedad), 0) FROM dbo.Kardex WHERE kala = ? AND Anbar = ? AND [Date] <= ?",
                   {good, place, date});
        const Decimal left = decimalOf(toExtended(stock.column(0).valueAt(0)) - line.amount);
        execute(session,
                "INSERT INTO dbo.Kardex (kala, Anbar, [Date], Global_ID, Tedad, RemainInAnbar, Fi, OperationType, "
                "OperationCode, OperationRow, PerCode) VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?)",
                {good, place, date, entry, moved, left, decimalOf(line.price), kSale, document, ++row, buyer});
        execute(session,
                "UPDATE dbo.Kardex SET RemainInAnbar = RemainInAnbar + ? WHERE kala = ? AND Anbar = ? AND [Date] > ?",
                {moved, good, place, date});
    }
    transaction.commit();
    return static_cast<int>(document);
}

}  // namespace basalt::host
