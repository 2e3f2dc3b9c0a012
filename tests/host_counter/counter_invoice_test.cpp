// The lines of the counter's invoice.
#include "host/counter/counter_invoice.h"

#include <gtest/gtest.h>

namespace basalt::host {
namespace {

CounterLine line(int good, Extended amount, Extended price) {
    return {.good = good, .name = "کالا", .amount = amount, .price = price};
}

CounterLine parcel(int good, Extended amount, Extended price) {
    CounterLine made = line(good, amount, price);
    made.barcode = "2800057012505";
    made.weighed = true;
    return made;
}

CounterLine labelled(int good, Extended price, const char* barcode) {
    CounterLine made = line(good, 1, price);
    made.barcode = barcode;
    return made;
}

TEST(CounterInvoice, linesAreRoundedAndSummed) {
    CounterInvoice whole(0);
    whole.add(line(57, 1.25L, 12501));  // 15626.25
    whole.add(line(58, 0.5L, 3));       // 1.5
    EXPECT_EQ(whole.lineTotal(0), 15626.0L);
    EXPECT_EQ(whole.lineTotal(1), 2.0L);
    EXPECT_EQ(whole.total(), 15628.0L);
    CounterInvoice cents(2);
    cents.add(line(57, 1.25L, 12501));
    EXPECT_EQ(cents.total(), 15626.25L);
    EXPECT_EQ(CounterInvoice(0).total(), 0.0L);
}

TEST(CounterInvoice, takesOffTheParcelOfThePriceOrTheLastOfTheAmount) {
    CounterInvoice invoice(0);
    invoice.add(parcel(57, 1, 100));
    invoice.add(parcel(57, 2, 200));
    invoice.add(parcel(57, 1, 300));
    invoice.add(parcel(57, 1, 400));
    const auto taken = invoice.takeParcel(57, 1, 100);
    ASSERT_TRUE(taken);
    EXPECT_EQ(taken->price, 100.0L);
    const auto other = invoice.takeParcel(57, 1, 150);
    ASSERT_TRUE(other);
    EXPECT_EQ(other->price, 400.0L);
    ASSERT_EQ(invoice.lines().size(), 2U);
    EXPECT_EQ(invoice.lines()[0].price, 200.0L);
    EXPECT_EQ(invoice.lines()[1].price, 300.0L);
}

// In binary, three times 0.45 is a little less than 1.35.
TEST(CounterInvoice, whatTheLedgerDoesNotHaveIsNothing) {
    EXPECT_EQ(asStored(1.35L - 3 * 0.45L), 0.0L);
    EXPECT_EQ(asStored(0.000'000'001L), 0.000'000'001L);
    CounterInvoice invoice(0);
    invoice.add(line(57, 1, 100));
    invoice.setAmount(0, 1.000'000'000'49L);
    EXPECT_TRUE(invoice.takePiece(line(57, 1, 100)));
    EXPECT_TRUE(invoice.lines().empty());
}

TEST(CounterInvoice, piecesThatComeToCostTheSameAreOneLine) {
    CounterInvoice invoice(0);
    invoice.add(line(57, 2, 100));
    invoice.add(parcel(57, 1.25L, 100));
    invoice.add(line(57, 3, 70));
    invoice.setPrices({90, 90, 90}, 12);
    ASSERT_EQ(invoice.lines().size(), 2U);
    EXPECT_EQ(invoice.lines()[0].amount, 5.0L);
    EXPECT_EQ(invoice.lines()[0].scanned, 5.0L);
    EXPECT_EQ(invoice.lines()[0].person, 12);
    EXPECT_EQ(invoice.lines()[1].amount, 1.25L);
    EXPECT_EQ(invoice.lines()[1].scanned, 1.25L);
}

TEST(CounterInvoice, labelsOfPiecesAreOneLineWhereTheyAreTheSame) {
    CounterInvoice invoice(0);
    invoice.add(labelled(57, 100, "2100057"));
    invoice.add(line(57, 1, 100));
    invoice.add(labelled(57, 100, "2100057"));
    invoice.add(labelled(57, 100, "2200057"));
    invoice.add(labelled(57, 90, "2100057"));
    ASSERT_EQ(invoice.lines().size(), 4U);
    EXPECT_EQ(invoice.lines()[0].amount, 2.0L);
    EXPECT_EQ(invoice.lines()[1].amount, 1.0L);
    EXPECT_EQ(invoice.amountWith(labelled(57, 100, "2100057")), 3.0L);
    EXPECT_FALSE(invoice.takeParcel(57, 1, 100));
    EXPECT_EQ(invoice.piecesLike(labelled(57, 1, "2100057")), 3U);
    EXPECT_EQ(invoice.piecesLike(line(57, 1, 1)), 1U);
    EXPECT_EQ(invoice.piecesLike(labelled(57, 100, "2300057")), std::nullopt);
    EXPECT_EQ(invoice.piecesLike(line(58, 1, 100)), std::nullopt);
}

TEST(CounterInvoice, whatCameWithALabelGoesWithItAlone) {
    CounterInvoice invoice(0);
    invoice.add(labelled(57, 100, "2100057"));
    invoice.add(labelled(57, 100, "2100057"));
    invoice.add(line(57, 2, 100));
    invoice.add(labelled(57, 90, "2200057"));
    EXPECT_FALSE(invoice.takePiece(labelled(57, 100, "2300057")));
    ASSERT_TRUE(invoice.takePiece(line(57, 1, 90)));
    EXPECT_EQ(invoice.lines()[1].amount, 1.0L);
    ASSERT_TRUE(invoice.takePiece(line(57, 1, 90)));
    EXPECT_FALSE(invoice.takePiece(line(57, 1, 90)));
    // At another price, if it has come to cost that meanwhile.
    ASSERT_TRUE(invoice.takePiece(labelled(57, 120, "2100057")));
    EXPECT_EQ(invoice.lines()[0].amount, 1.0L);
    ASSERT_TRUE(invoice.takePiece(labelled(57, 100, "2100057")));
    EXPECT_FALSE(invoice.takePiece(labelled(57, 100, "2100057")));
    ASSERT_EQ(invoice.lines().size(), 1U);
    EXPECT_EQ(invoice.lines()[0].price, 90.0L);
}

TEST(CounterInvoice, theNextOneMayCountMoneyOtherwise) {
    CounterInvoice invoice(0);
    invoice.add(line(57, 1.25L, 12501));
    EXPECT_EQ(invoice.total(), 15626.0L);
    invoice.begin(2);
    EXPECT_TRUE(invoice.lines().empty());
    invoice.add(line(57, 1.25L, 12501));
    EXPECT_EQ(invoice.total(), 15626.25L);
}

TEST(CounterInvoice, cutsNoOtherParcel) {
    CounterInvoice invoice(0);
    invoice.add(parcel(57, 0.55L, 100));
    invoice.add(parcel(57, 3, 100));
    EXPECT_FALSE(invoice.takeParcel(57, 1.25L, 100));
    EXPECT_EQ(invoice.lines()[1].amount, 3.0L);
}

TEST(CounterInvoice, piecesAreNotCutFromParcelsNorParcelsTakenForPieces) {
    CounterInvoice invoice(0);
    invoice.add(parcel(57, 1.25L, 100));
    invoice.add(parcel(57, 1, 100));
    EXPECT_FALSE(invoice.takePiece(line(57, 1, 100)));
    invoice.add(line(57, 1, 200));
    EXPECT_EQ(invoice.takePiece(line(57, 1, 100)).value().price, 200.0L);
    invoice.add(line(57, 1.25L, 200));
    EXPECT_EQ(invoice.takeParcel(57, 1.25L, 200).value().price, 100.0L);
    EXPECT_FALSE(invoice.takeParcel(57, 1.25L, 200));
    ASSERT_EQ(invoice.lines().size(), 2U);
    EXPECT_EQ(invoice.lines()[0].amount, 1.0L);
    EXPECT_EQ(invoice.lines()[1].amount, 1.25L);
}

TEST(CounterInvoice, aParcelWithoutItsBoxesIsFoundByWhatItsLabelSays) {
    CounterInvoice invoice(0);
    invoice.add(parcel(57, 1.25L, 100));
    invoice.setAmount(0, 1.05L);
    EXPECT_FALSE(invoice.takeParcel(57, 1.05L, 100));
    EXPECT_EQ(invoice.takeParcel(57, 1.25L, 100).value().amount, 1.05L);
    EXPECT_TRUE(invoice.lines().empty());
}

TEST(CounterInvoice, takesPiecesOfALargerLine) {
    CounterInvoice invoice(0);
    invoice.add(line(57, 3, 100));
    invoice.add(line(57, 1, 200));
    ASSERT_EQ(invoice.takePiece(line(57, 1, 200)).value().price, 200.0L);
    const auto taken = invoice.takePiece(line(57, 1, 200));
    ASSERT_TRUE(taken);
    EXPECT_EQ(taken->amount, 1.0L);
    ASSERT_EQ(invoice.lines().size(), 1U);
    EXPECT_EQ(invoice.lines()[0].amount, 2.0L);
}

TEST(CounterInvoice, countsEqualPiecesInOneLine) {
    CounterInvoice invoice(0);
    invoice.add(line(57, 1, 100));
    invoice.add(line(58, 1, 100));
    invoice.add(parcel(57, 1, 100));
    CounterLine more = line(57, 1, 100);
    more.person = 12;
    EXPECT_EQ(invoice.amountWith(more), 2.0L);
    invoice.add(more);
    EXPECT_EQ(invoice.amountWith(line(57, 1, 90)), 1.0L);
    invoice.add(line(57, 1, 90));
    EXPECT_EQ(invoice.amountWith(parcel(57, 1, 100)), 1.0L);
    ASSERT_EQ(invoice.lines().size(), 4U);
    EXPECT_EQ(invoice.lines()[0].amount, 2.0L);
    EXPECT_EQ(invoice.lines()[0].person, 12);
    EXPECT_EQ(invoice.lines()[2].amount, 1.0L);
    EXPECT_EQ(invoice.lines()[3].price, 90.0L);
    invoice.setAmount(3, 0.5L);
    ASSERT_TRUE(invoice.takePiece(line(57, 1, 90)));  // half of a piece is none
    EXPECT_EQ(invoice.lines()[0].amount, 1.0L);
    EXPECT_EQ(invoice.lines()[3].amount, 0.5L);
}

TEST(CounterInvoice, hasNothingToTakeOff) {
    CounterInvoice invoice(0);
    invoice.add(line(57, 1, 100));
    EXPECT_FALSE(invoice.takeParcel(58, 1, 100));
    EXPECT_FALSE(invoice.takeParcel(57, 2, 100));
    EXPECT_FALSE(invoice.takePiece(line(58, 1, 100)));
    EXPECT_EQ(invoice.lines().size(), 1U);
}

TEST(CounterInvoice, asksForItsStockByGood) {
    CounterInvoice invoice(0);
    EXPECT_EQ(invoice.stockQuery(2), "");
    invoice.add(line(57, 1.25L, 100));
    invoice.add(line(9, 3, 100));
    invoice.add(line(57, 0.75L, 100));
    EXPECT_EQ(invoice.stockQuery(2),
              "SELECT Code, Anbar, Mogodi FROM (VALUES (57, 2, CAST(-2 AS decimal(23, 9))), "
              "(9, 2, CAST(-3 AS decimal(23, 9)))) AS L (Code, Anbar, Mogodi)");
}

TEST(CounterInvoice, asksForManyGoodsInSeveralTables) {
    CounterInvoice invoice(0);
    for (int good = 1; good <= 501; ++good)
        invoice.add(line(good, 1, 100));
    const std::string query = invoice.stockQuery(2);
    EXPECT_TRUE(query.ends_with(
        "(500, 2, CAST(-1 AS decimal(23, 9)))) AS L (Code, Anbar, Mogodi) UNION ALL SELECT Code, Anbar, Mogodi FROM "
        "(VALUES (501, 2, CAST(-1 AS decimal(23, 9)))) AS L (Code, Anbar, Mogodi)"))
        << query.substr(query.size() - 300);
}

}  // namespace
}  // namespace basalt::host
