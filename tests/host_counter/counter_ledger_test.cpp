// What a sale at the counter writes to the stock ledger, and what it does not when others sell at the same moment.
#include "host/counter/counter_ledger.h"

#include "host/counter/layout_store.h"
#include "tests/host_desktop/desktop_test.h"
#include "tests/support/scripted_session.h"

namespace basalt::host {
namespace {

using ::testing::ElementsAre;

CounterInvoice bananas(Extended amount) {
    CounterInvoice invoice(0);
    invoice.add({.good = 105, .name = "موز", .amount = amount, .price = 1000});
    return invoice;
}

// With parameters, as the host's own statements go.
void expectNumbers(ScriptedSession& session, std::string sql, std::vector<Value> parameters,
                   const std::vector<std::int64_t>& numbers) {
    std::vector<ColumnInfo> columns(numbers.size());
    for (std::size_t i = 0; i < numbers.size(); ++i)
        columns[i] = {.name = "N" + std::to_string(i), .type = FieldType::BigInt};
    RowSet rows(columns);
    for (std::size_t i = 0; i < numbers.size(); ++i)
        rows.column(i).appendInt(numbers[i]);
    rows.finishRow();
    BatchResult batch;
    batch.results.push_back({.rows = std::move(rows)});
    session.expectBatch(std::move(sql), std::move(parameters), std::move(batch));
}

TEST(CounterLedger, numbersAndGoodsAreHeldUntilTheSaleIsWritten) {
    ScriptedSession session;
    expectNumbers(session, "SELECT ISNULL(MAX(Global_ID), 0) + 1 FROM dbo.Kardex WITH (UPDLOCK, HOLDLOCK)", {}, {8});
    expectNumbers(session,
                  "SELECT ISNULL(MAX(OperationCode), 0) + 1 FROM dbo.Kardex WITH (UPDLOCK, HOLDLOCK) "
                  "WHERE OperationType = 1",
                  {}, {5});
    expectNumbers(session,
                  "SELECT COUNT(*) FROM dbo.Kardex WITH (UPDLOCK, HOLDLOCK) WHERE Anbar = ? AND kala IN (57, 105)",
                  {std::int64_t{2}}, {3});
    CounterInvoice invoice = bananas(1);
    invoice.add({.good = 57, .name = "برنج", .amount = 2, .price = 100});
    invoice.add({.good = 105, .name = "موز", .amount = 3, .price = 1000});
    const SalePlace place = holdLedger(session, invoice, 2);
    EXPECT_EQ(place.entry, 8);
    EXPECT_EQ(place.document, 5);
}

class Ledger : public DesktopTest {
protected:
    std::int64_t sell(Extended amount) {
        const CounterInvoice invoice = bananas(amount);
        HostTransaction transaction(*session);
        const SalePlace place = holdLedger(*session, invoice, 1);
        postSale(*session, invoice, 1, 0, "1405/08/30", place);
        transaction.commit();
        return place.document;
    }
};

TEST_F(Ledger, everySaleHasANumberOfItsOwn) {
    const std::int64_t first = sell(1.25L);
    const std::int64_t second = sell(0.5L);
    EXPECT_EQ(second, first + 1);
    EXPECT_THAT(
        linesOf(*session,
                "SELECT COUNT(DISTINCT Global_ID), COUNT(*), SUM(Tedad) FROM dbo.Kardex WHERE OperationType = 1 "
                "AND OperationCode IN (" +
                    std::to_string(first) + ", " + std::to_string(second) + ")"),
        ElementsAre("2|2|-1.750000000"));
}

TEST_F(Ledger, aLayoutsNumberIsThatOfItsOwnRow) {
    session->run(
        "SET IDENTITY_INSERT dbo.BarCodeFormul ON INSERT INTO dbo.BarCodeFormul (ID, DigitCount, ConstantStart, "
        "ConstantCount, ConstantCode, BarCodeType) VALUES (500, 8, 1, 2, N'77', 1) SET IDENTITY_INSERT "
        "dbo.BarCodeFormul OFF DBCC CHECKIDENT(N'dbo.BarCodeFormul', RESEED, 100) WITH NO_INFOMSGS");
    const int made = LayoutStore(*session).add({.title = "تازه", .constantCode = "21"});
    EXPECT_EQ(made, 101);
    EXPECT_THAT(linesOf(*session, "SELECT Title FROM dbo.BarCodeFormul WHERE ID = 101"), ElementsAre("تازه"));
}

}  // namespace
}  // namespace basalt::host
