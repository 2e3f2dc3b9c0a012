// The sentence about goods that there are too few of.
#include "host/counter/shortage_text.h"

#include <gtest/gtest.h>

namespace basalt::host {
namespace {

TEST(ShortageText, saysWhatThereIsAndWhatIsWanted) {
    CounterInvoice invoice(0);
    for (const auto& [good, name] : std::initializer_list<std::pair<int, const char*>>{
             {1, "برنج"}, {98, "سیب"}, {105, "موز"}, {7, "چای %L1"}, {8, "نان"}, {9, "شیر 3 درصد"}})
        invoice.add({.good = good, .name = name, .unit = "عدد", .amount = 2, .price = 1});
    invoice.add({.good = 105, .name = "موز", .unit = "عدد", .amount = 0.5L, .price = 2});
    struct Case {
        const char* codes;
        const char* text;
    };
    const Case cases[] = {
        {"105", "موجودی «مرکزی» کافی نیست: «موز» (هست ۱، خواسته ۲٫۵ عدد)."},
        {"98,105", "موجودی «مرکزی» کافی نیست: «سیب» (هست ۱، خواسته ۲ عدد) و «موز» (هست ۱، خواسته ۲٫۵ عدد)."},
        {"1,7,98,105",
         "موجودی «مرکزی» کافی نیست: «برنج» (هست ۱، خواسته ۲ عدد)، «چای %L1» (هست ۱، خواسته ۲ عدد)، «سیب» (هست ۱، خواسته ۲ "
         "عدد) و ۱ کالای دیگر."},
        {"8", "موجودی «مرکزی» کافی نیست: «نان» (هست ۲، خواسته ۲ عدد؛ سندهای روزهای بعد به آن نیاز دارند)."},
        {"9", "موجودی «مرکزی» کافی نیست: «شیر ۳ درصد» (هست ۱، خواسته ۲ عدد)."},
        {"1234", "موجودی «مرکزی» کافی نیست: کالای ۱۲۳۴."},
        {"", "موجودی «مرکزی» کافی نیست."},
    };
    for (const Case& each : cases)
        EXPECT_EQ(shortageText(invoice, each.codes, "مرکزی", [](int good) { return good == 8 ? 2 : 1; }).toStdString(),
                  each.text)
            << each.codes;
}

}  // namespace
}  // namespace basalt::host
