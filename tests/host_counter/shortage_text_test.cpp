// The sentence about goods that there are too few of.
#include "host/counter/shortage_text.h"

#include <gtest/gtest.h>

namespace basalt::host {
namespace {

TEST(ShortageText, saysOneAndManyAsPersianDoes) {
    CounterInvoice invoice(0);
    for (const auto& [good, name] : std::initializer_list<std::pair<int, const char*>>{
             {1, "برنج"}, {98, "سیب"}, {105, "موز"}, {7, "چای %1"}, {8, "نان"}})
        invoice.add({.good = good, .name = name, .amount = 1, .price = 1});
    struct Case {
        const char* codes;
        const char* text;
    };
    const Case cases[] = {
        {"105", "موجودی کالای «موز» کافی نیست."},
        {"98,105", "موجودی کالاهای «سیب» و «موز» کافی نیست."},
        {"1,98,105", "موجودی کالاهای «برنج»، «سیب» و «موز» کافی نیست."},
        {"1,7,98,105", "موجودی کالاهای «برنج»، «چای %1»، «سیب» و ۱ کالای دیگر کافی نیست."},
        {"1,7,8,98,105", "موجودی کالاهای «برنج»، «چای %1»، «نان» و ۲ کالای دیگر کافی نیست."},
        {"1234", "موجودی کالای ۱۲۳۴ کافی نیست."},
        {"", "موجودی کافی نیست."},
    };
    for (const Case& each : cases)
        EXPECT_EQ(shortageText(invoice, each.codes).toStdString(), each.text) << each.codes;
}

}  // namespace
}  // namespace basalt::host
