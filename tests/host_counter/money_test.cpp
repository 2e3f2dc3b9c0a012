// Money at the counter, to the last half.
#include "host/counter/money.h"

#include <gtest/gtest.h>

#include <stdexcept>

#include "host/counter/counter_invoice.h"

namespace basalt::host {
namespace {

struct MoneyCase {
    Extended amount;
    Extended price;
    int decimals;
    const char* money;
};

TEST(Money, isRoundedHalfAwayFromZero) {
    const MoneyCase cases[] = {
        {0.139L, 100500, 0, "13970"},            // 13969.5
        {0.167L, 134500, 0, "22462"},            // 22461.5
        {-0.139L, 100500, 0, "-13970"},          //
        {0.139L, 100499, 0, "13969"},            // 13969.361
        {0.000000001L, 499999999, 0, "0"},       // 0.499999999
        {0.000000001L, 500000000, 0, "1"},       //
        {0.145L, 0.1L, 2, "0.01"},               // 0.0145
        {0.35L, 0.1L, 2, "0.04"},                // 0.035
        {1.005L, 1, 2, "1.01"},                  //
        {0.000000001L, 0.5L, 9, "0.000000001"},  // 0.0000000005
        {99999999999999.0L, 1, 9, "99999999999999.000000000"},
        {1.000000001L, 99999999999.5L, 0, "100000000099"},  // 100000000099.4999999995
        {0, 100500, 0, "0"},
    };
    for (const MoneyCase& each : cases)
        EXPECT_EQ(moneyOf(each.amount, each.price, each.decimals).toString(), each.money)
            << each.amount << " x " << each.price;
}

TEST(Money, isExactAtEveryTie) {
    int ties = 0;
    for (const std::int64_t price : {500, 1500, 12500, 100500, 134500, 987654500}) {
        for (std::int64_t grams = 1; grams < 4000; ++grams) {
            const std::int64_t thousandths = grams * price;
            if (thousandths % 1000 != 500) continue;
            ++ties;
            CounterInvoice invoice(0);
            invoice.add({.good = 1, .name = {}, .amount = grams / 1000.0L, .price = static_cast<Extended>(price)});
            const auto up = static_cast<Extended>((thousandths + 500) / 1000);
            ASSERT_EQ(invoice.lineTotal(0), up) << grams << " g at " << price;
            ASSERT_EQ(invoice.total(), up) << grams << " g at " << price;
        }
    }
    EXPECT_EQ(ties, 6 * 2000);
}

// A total is compared to the last bit with the number that a barcode says.
TEST(Money, ofManyLinesIsTheNumberThatIsWritten) {
    CounterInvoice invoice(2);
    for (int i = 0; i < 10; ++i)
        invoice.add({.good = 1, .name = {}, .amount = 1, .price = 0.1L});
    EXPECT_EQ(invoice.total(), 1.0L);
    invoice.add({.good = 1, .name = {}, .amount = 1, .price = 0.2L});
    EXPECT_EQ(invoice.total(), 1.2L);
    EXPECT_EQ(invoice.total(12345678901.9L), 12345678903.1L);
}

TEST(Money, beyondAllDigitsIsAnError) {
    EXPECT_THROW((void)moneyOf(1e30L, 1e30L, 0), std::overflow_error);
    EXPECT_THROW((void)moneyOf(1e38L, 1, 0), std::overflow_error);
    EXPECT_THROW((void)sumOf(Decimal(powerOfTen(37) * 9, 0), Decimal(powerOfTen(37) * 9, 0)), std::overflow_error);
}

}  // namespace
}  // namespace basalt::host
