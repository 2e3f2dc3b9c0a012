// What layouts of barcodes cut, and what is wrong with them.
#include "host/counter/barcode_layout.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "host/counter/layout_page.h"

namespace basalt::host {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

BarcodeLayout weightLayout() {
    return {.id = 1,
            .title = "وزن",
            .digitCount = 13,
            .constantStart = 1,
            .constantCount = 2,
            .constantCode = "28",
            .itemCodeType = 1,
            .itemCodeStart = 3,
            .itemCodeCount = 5,
            .amountStart = 8,
            .amountCount = 5,
            .amountDivide = 1000};
}

std::vector<std::string> problems(const BarcodeLayout& layout, const std::vector<BarcodeLayout>& others = {}) {
    std::vector<std::string> texts;
    for (const LayoutProblem& problem : problemsOf(layout, others))
        texts.push_back(problem.text.toStdString());
    return texts;
}

TEST(BarcodeLayout, cutsItsFieldsByPlace) {
    EXPECT_THAT(spansOf(weightLayout()),
                ElementsAre(FieldSpan{LayoutField::Constant, 1, 3}, FieldSpan{LayoutField::Item, 3, 8},
                            FieldSpan{LayoutField::Amount, 8, 13}));
}

TEST(BarcodeLayout, cutsWhatItsKindHas) {
    BarcodeLayout layout = weightLayout();
    layout.balanceNoStart = 13;
    layout.balanceNoCount = 1;
    EXPECT_EQ(spansOf(layout).size(), 3U);  // the scale's number is not a store
    layout.balanceNoAsStore = true;
    EXPECT_EQ(spansOf(layout).back(), (FieldSpan{LayoutField::Balance, 13, 14}));
    layout.itemConstantCode = 105;
    EXPECT_EQ(spansOf(layout)[1].field, LayoutField::Amount);
    layout.barCodeType = 3;
    layout.priceStart = 3;
    layout.priceCount = 10;
    EXPECT_THAT(spansOf(layout),
                ElementsAre(FieldSpan{LayoutField::Constant, 1, 3}, FieldSpan{LayoutField::Price, 3, 13}));
    layout.barCodeType = 9;
    EXPECT_EQ(spansOf(layout).size(), 1U);
}

TEST(BarcodeLayout, fitsByLengthAndPrefix) {
    EXPECT_TRUE(fits(weightLayout(), "2800057012505"));
    EXPECT_TRUE(fits(weightLayout(), " 2800057012505 "));
    EXPECT_FALSE(fits(weightLayout(), "2900057012505"));
    EXPECT_FALSE(fits(weightLayout(), "280005701250"));
    EXPECT_FALSE(fits(weightLayout(), ""));
}

TEST(BarcodeLayout, theServerFindsWhatDiffersInCase) {
    BarcodeLayout layout = weightLayout();
    layout.constantCode = "AB";
    EXPECT_TRUE(isFoundFor(layout, "AB00057012505"));
    EXPECT_TRUE(fits(layout, "AB00057012505"));
    EXPECT_TRUE(isFoundFor(layout, " ab00057012505"));
    EXPECT_FALSE(fits(layout, "ab00057012505"));
    EXPECT_FALSE(isFoundFor(layout, "ac00057012505"));
    EXPECT_FALSE(isFoundFor(layout, "AB0005701250"));
    layout.constantCode = "AB ";
    EXPECT_TRUE(isFoundFor(layout, "AB00057012505"));
    EXPECT_FALSE(fits(layout, "AB00057012505"));
}

std::string fault(const BarcodeLayout& layout, const char* barcode, bool byScaleCode = true) {
    return faultOf(layout, QString::fromUtf8(barcode), byScaleCode).value_or(QStringLiteral("none")).toStdString();
}

TEST(BarcodeFault, aBarcodeThatHoldsWhatItsLayoutWantsHasNone) {
    EXPECT_EQ(fault(weightLayout(), "2800057012505"), "none");
    BarcodeLayout layout = weightLayout();
    layout.amountCount = 0;
    EXPECT_EQ(fault(layout, "2800057xxxxx5"), "none");  // an amount that is not looked at
    layout.itemConstantCode = 105;
    EXPECT_EQ(fault(layout, "28xxxxx012505"), "none");
    layout.barCodeType = 9;
    layout.priceCount = 5;
    EXPECT_EQ(fault(layout, "28xxxxxxxxxxx"), "none");
}

TEST(BarcodeFault, aGoodsFieldOutsideOfTheBarcodeIsTold) {
    const std::string text =
        "الگوی «وزن» در این بارکد جایی برای «کالا» ندارد. جای آن را در صفحهٔ الگوهای بارکد درست کنید.";
    BarcodeLayout layout = weightLayout();
    layout.itemCodeStart = 14;
    EXPECT_EQ(fault(layout, "2800057012505"), text);
    layout.itemCodeType = 2;
    EXPECT_EQ(fault(layout, "2800057012505", false), text);
    layout.itemCodeStart = 3;
    layout.itemCodeCount = 0;
    EXPECT_EQ(fault(layout, "2800057012505"), text);
    layout = weightLayout();
    layout.itemCodeStart = 2147483647;
    layout.itemCodeCount = 2147483647;
    EXPECT_EQ(fault(layout, "2800057012505"), text);
}

TEST(BarcodeFault, aCodeThatNoGoodCanHaveIsTold) {
    BarcodeLayout layout = weightLayout();
    layout.digitCount = 20;
    layout.itemCodeCount = 12;
    layout.amountCount = 0;
    EXPECT_EQ(fault(layout, "28002147483647012505"), "none");
    EXPECT_EQ(
        fault(layout, "28002147483648012505"),
        "کد کالای بارکد، ۰۰۲۱۴۷۴۸۳۶۴۸، بزرگ‌تر از هر کد کالایی است. جای «کالا» را در الگوی «وزن» درست کنید.");
    layout.itemCodeType = 2;
    EXPECT_EQ(fault(layout, "28002147483648012505"), "none");  // a scale code
    layout = weightLayout();
    EXPECT_EQ(
        fault(layout, "280x057012505"),
        "در بارکد ۲۸۰x۰۵۷۰۱۲۵۰۵ به جای کد کالا نوشته است «۰x۰۵۷» که کد نیست. اگر بارکد درست است، جای «کالا» را در "
        "الگوی «وزن» درست کنید.");
}

TEST(BarcodeFault, amountsAndPricesThatAreNoNumbersAreTold) {
    BarcodeLayout layout = weightLayout();
    EXPECT_EQ(fault(layout, "28000570x2505"),
              "در بارکد ۲۸۰۰۰۵۷۰x۲۵۰۵ به جای «مقدار» نوشته است «۰x۲۵۰» که عدد نیست. اگر بارکد درست است، جای «مقدار» را "
              "در الگوی «وزن» درست کنید.");
    layout.amountStart = 14;
    EXPECT_EQ(fault(layout, "2800057012505"),
              "الگوی «وزن» در این بارکد جایی برای «مقدار» ندارد. جای آن را در صفحهٔ الگوهای بارکد درست کنید.");
    for (const int kind : {2, 3}) {
        layout.barCodeType = kind;
        layout.priceStart = 20;
        layout.priceCount = kind == 2 ? 0 : 4;
        EXPECT_EQ(fault(layout, "2800057012505"),
                  "الگوی «وزن» در این بارکد جایی برای «مبلغ» ندارد. جای آن را در صفحهٔ الگوهای بارکد درست کنید.");
    }
}

TEST(BarcodeLayout, twoMayFitTheSameBarcode) {
    const BarcodeLayout one = weightLayout();
    BarcodeLayout other = weightLayout();
    EXPECT_TRUE(mayBothFit(one, other));
    other.constantCode = "29";
    EXPECT_FALSE(mayBothFit(one, other));
    other.constantCode = "5";
    other.constantStart = 13;
    other.constantCount = 1;
    EXPECT_TRUE(mayBothFit(one, other));
    other.digitCount = 12;
    EXPECT_FALSE(mayBothFit(one, other));
    other = weightLayout();
    other.constantCode = "2";
    other.constantCount = 1;
    EXPECT_TRUE(mayBothFit(one, other));  // the shorter prefix
}

TEST(BarcodeLayout, aPrefixThatIsNotAsLongAsItsPlaceFitsNothing) {
    const BarcodeLayout one = weightLayout();
    BarcodeLayout other = weightLayout();
    for (const char* prefix : {"", "2", "280"}) {
        other.constantCode = prefix;
        EXPECT_FALSE(mayBothFit(one, other)) << prefix;
        EXPECT_FALSE(mayBothFit(other, one)) << prefix;
        EXPECT_FALSE(fits(other, "2800057012505")) << prefix;
    }
    // What lies before the first character is not cut.
    other.constantStart = 0;
    other.constantCount = 3;
    other.constantCode = "29";
    EXPECT_FALSE(mayBothFit(one, other));
    other.constantCode = "28";
    EXPECT_TRUE(mayBothFit(one, other));
    EXPECT_TRUE(fits(other, "2800057012505"));
    other.constantCount = 0;
    other.constantCode = "";
    EXPECT_TRUE(mayBothFit(one, other));  // without a prefix everything of that length
}

TEST(BarcodeLayout, prefixesAreComparedAsTheServerDoes) {
    BarcodeLayout one = weightLayout();
    BarcodeLayout other = weightLayout();
    one.constantCode = "AB";
    other.constantCode = "ab";
    EXPECT_TRUE(mayBothFit(one, other));
    other.constantCode = "AB ";
    EXPECT_TRUE(mayBothFit(one, other));
    other.constantCode = " AB";
    EXPECT_FALSE(mayBothFit(one, other));
    other.constantCode = "ac";
    EXPECT_FALSE(mayBothFit(one, other));
}

TEST(BarcodeLayout, digitsOfOtherScriptsAndSignsWithoutWidthAreTheSameToTheServer) {
    BarcodeLayout one = weightLayout();
    for (const char* prefix : {"۲۸", "٢٨", "２８", "²⁸", "2\u200E8", "\u200C28", "۲8"}) {
        BarcodeLayout other = weightLayout();
        other.constantCode = prefix;
        EXPECT_TRUE(isFoundFor(other, "2800057012505")) << prefix;
        EXPECT_FALSE(isFoundFor(other, "2900057012505")) << prefix;
        EXPECT_FALSE(fits(other, "2800057012505")) << prefix;
        EXPECT_TRUE(mayBothFit(one, other)) << prefix;
        EXPECT_TRUE(mayBothFit(other, one)) << prefix;
        // A shorter prefix may be hidden too.
        other.constantCode = "۲";
        other.constantCount = 1;
        EXPECT_TRUE(mayBothFit(one, other)) << prefix;
    }
    one.constantCode = "۲۹";
    EXPECT_FALSE(mayBothFit(one, weightLayout()));
    one.constantCode = "2\u03028";  // an accent
    EXPECT_FALSE(mayBothFit(one, weightLayout()));
}

TEST(BarcodeLayout, whatHidesAnotherIsToldFromWhatReadsTheSame) {
    BarcodeLayout other = weightLayout();
    other.id = 2;
    other.title = "دیگری";
    for (const char* prefix : {"۲۸", "2\u200E8"}) {
        other.constantCode = prefix;
        EXPECT_THAT(
            problems(weightLayout(), {other}),
            ElementsAre(
                "سرور پیش‌شمارهٔ «دیگری» را از پیش‌شمارهٔ این الگو بازنمی‌شناسد؛ از این دو هر کدام زودتر پیدا شود، "
                "بارکدهای دیگری خوانده نمی‌شوند."));
    }
    BarcodeLayout lettered = weightLayout();
    lettered.constantCode = "ab";
    other.constantCode = "AB";
    EXPECT_THAT(
        problems(lettered, {other}),
        ElementsAre(
            "سرور پیش‌شمارهٔ «دیگری» را از پیش‌شمارهٔ این الگو بازنمی‌شناسد؛ از این دو هر کدام زودتر پیدا شود، "
            "بارکدهای دیگری خوانده نمی‌شوند."));
}

TEST(BarcodeLayout, aPrefixThatNoScanCanHaveIsSaid) {
    const std::string text =
        "پیش‌شماره نویسه‌ای جز رقم و حرف لاتین دارد و هیچ بارکدی با آن خوانده نمی‌شود؛ آن را پاک کنید و از نو بنویسید.";
    BarcodeLayout layout = weightLayout();
    for (const char* prefix : {"۲۸", "２８", "2-", "2 ", "آب", "é8"}) {
        layout.constantCode = prefix;
        EXPECT_THAT(problems(layout), ElementsAre(text)) << prefix;
        EXPECT_TRUE(problemsOf(layout, {})[0].isHopeless) << prefix;
        EXPECT_EQ(problemsOf(layout, {})[0].field, LayoutField::Constant) << prefix;
    }
    layout.constantCode = "aB";
    EXPECT_THAT(problems(layout), IsEmpty());
    layout.constantCode = "";
    layout.constantCount = 0;
    EXPECT_THAT(problems(layout), IsEmpty());
}

TEST(BarcodeLayout, aLayoutWithoutATitleHasANameInSentences) {
    BarcodeLayout other = weightLayout();
    other.id = 2;
    for (const char* title : {"", "  "}) {
        other.title = title;
        EXPECT_EQ(nameOf(other), "بی‌نام");
        EXPECT_THAT(
            problems(weightLayout(), {other}),
            ElementsAre(
                "بارکدی که با این الگو بخواند با «بی‌نام» هم می‌خواند."));
    }
}

TEST(BarcodeLayout, aGoodLayoutHasNoProblems) {
    EXPECT_THAT(problems(weightLayout(), {weightLayout()}), IsEmpty());
}

TEST(BarcodeLayout, problemsAreSaid) {
    BarcodeLayout layout = weightLayout();
    layout.amountStart = 7;
    layout.amountCount = 8;
    EXPECT_THAT(
        problems(layout),
        ElementsAre(
            "«مقدار» از بارکد ۱۳ رقمی بیرون می‌زند و از آن تنها ۷ رقم خوانده می‌شود.",
            "«کالا» و «مقدار» روی هم افتاده‌اند."));
    layout = weightLayout();
    layout.itemCodeCount = 0;
    layout.constantCode = "281";
    EXPECT_THAT(problems(layout), ElementsAre("پیش‌شماره ۳ نویسه است، نه ۲.",
                                              "نه جای کالا معلوم است و نه کالای ثابت."));
    layout = weightLayout();
    layout.barCodeType = 2;
    EXPECT_THAT(problems(layout), ElementsAre("جای مبلغ معلوم نیست."));
    BarcodeLayout other = weightLayout();
    other.id = 2;
    other.title = "دیگری";
    EXPECT_THAT(
        problems(weightLayout(), {weightLayout(), other}),
        ElementsAre("بارکدی که با این الگو بخواند با «دیگری» هم می‌خواند."));
}

// What is compared with the prefix is what lies in the barcode.
TEST(BarcodeLayout, aPrefixThatBeginsBeforeTheBarcodeMayFitNevertheless) {
    BarcodeLayout layout = weightLayout();
    layout.constantStart = 0;
    layout.constantCount = 3;
    ASSERT_TRUE(fits(layout, "2800057012505"));
    const auto found = problemsOf(layout, {});
    ASSERT_EQ(found.size(), 1U);
    EXPECT_EQ(
        found[0].text.toStdString(),
        "«پیش‌شماره» از بارکد ۱۳ رقمی بیرون می‌زند و از آن تنها ۲ رقم خوانده می‌شود.");
    EXPECT_FALSE(found[0].isHopeless);
    EXPECT_EQ(found[0].field, LayoutField::Constant);
    layout.constantCode = "280";
    EXPECT_THAT(
        problems(layout),
        ElementsAre(
            "«پیش‌شماره» از بارکد ۱۳ رقمی بیرون می‌زند و از آن تنها ۲ رقم خوانده می‌شود.",
            "پیش‌شماره ۳ نویسه است، نه ۲."));
}

TEST(BarcodeLayout, aPrefixBelowNoCharactersIsSaid) {
    BarcodeLayout layout = weightLayout();
    layout.title = "ترازو";
    layout.constantCount = -1;
    EXPECT_THAT(
        problems(layout),
        ElementsAre(
            "تعداد رقم پیش‌شمارهٔ الگوی «ترازو» منفی است و تا درست نشود بارکدهای ۱۳ رقمی خوانده نمی‌شوند. آن را در "
            "صفحهٔ الگوهای بارکد درست کنید."));
}

TEST(BarcodeLayout, aKindThatNobodyKnowsIsSaid) {
    BarcodeLayout layout = weightLayout();
    for (const auto& [kind, shown] : {std::pair(0, "۰"), std::pair(4, "۴"), std::pair(-1, "-۱")}) {
        layout.barCodeType = kind;
        EXPECT_THAT(
            problems(layout),
            ElementsAre(
                "نوع بارکد " + std::string(shown) +
                " شناخته نیست و اسکن با این الگو کاری نمی‌کند. نوع آن را برگزینید."));
    }
}

TEST(BarcodeLayout, onlyWhatNoBarcodeFitsIsHopeless) {
    const auto hopeless = [](const BarcodeLayout& layout, const std::vector<BarcodeLayout>& others = {}) {
        std::vector<bool> answers;
        for (const LayoutProblem& problem : problemsOf(layout, others))
            answers.push_back(problem.isHopeless);
        return answers;
    };
    BarcodeLayout layout = weightLayout();
    layout.amountStart = 7;
    EXPECT_THAT(hopeless(layout), ElementsAre(false));
    layout = weightLayout();
    layout.id = 2;
    EXPECT_THAT(hopeless(layout, {weightLayout()}), ElementsAre(false));
    layout.constantCode = "281";
    EXPECT_THAT(hopeless(layout), ElementsAre(true));
    layout = weightLayout();
    layout.amountStart = 13;
    EXPECT_THAT(hopeless(layout), ElementsAre(false));
    layout.amountStart = 14;
    EXPECT_THAT(hopeless(layout), ElementsAre(true));
    layout.amountStart = -4;  // ends before the first character
    EXPECT_THAT(hopeless(layout), ElementsAre(true));
    layout.amountStart = -3;  // into the prefix
    EXPECT_THAT(hopeless(layout), ElementsAre(false, false));
    layout = weightLayout();
    layout.itemCodeStart = 14;
    EXPECT_THAT(hopeless(layout), ElementsAre(true));
    layout = weightLayout();
    layout.priceStart = 14;
    layout.priceCount = 4;
    EXPECT_THAT(hopeless(layout), ElementsAre(true));
    layout.priceStart = 13;
    EXPECT_THAT(hopeless(layout), ElementsAre(false));
    layout = weightLayout();
    layout.balanceNoAsStore = true;
    layout.balanceNoStart = 14;
    layout.balanceNoCount = 2;
    EXPECT_THAT(hopeless(layout), ElementsAre(false));
    layout = weightLayout();
    layout.barCodeType = 3;
    EXPECT_THAT(hopeless(layout), ElementsAre(true));
}

TEST(BarcodeLayout, negativeCountsAreSaidOfTheFieldsThatAreCut) {
    BarcodeLayout layout = weightLayout();
    layout.constantCount = -1;
    layout.amountCount = -5;
    layout.balanceNoCount = -1;
    EXPECT_THAT(problems(layout), ElementsAre(prefixFault(layout).toStdString(), "تعداد رقم «مقدار» منفی است."));
    layout = weightLayout();
    layout.itemCodeCount = -5;
    EXPECT_THAT(problems(layout), ElementsAre("تعداد رقم «کالا» منفی است."));
    layout = BarcodeLayout();
    layout.digitCount = 0;
    layout.constantCount = 0;
    layout.itemConstantCode = 105;
    EXPECT_THAT(problems(layout), ElementsAre("تعداد رقم بارکد معلوم نیست."));
}

TEST(BarcodeLayout, largestNumbersDoNoHarm) {
    BarcodeLayout layout = weightLayout();
    layout.amountStart = 2147483647;
    layout.amountCount = 2147483647;
    layout.constantStart = -2147483647;
    layout.constantCount = 2147483647;
    EXPECT_FALSE(problems(layout, {layout}).empty());
    EXPECT_FALSE(fits(layout, "2800057012505"));
}

TEST(BarcodePreview, coloursEachCharacterByItsField) {
    const QString preview = previewOf(weightLayout(), "2800057012505");
    EXPECT_EQ(preview.count("#DDE2EA"), 2 + 1);  // and once in the legend
    EXPECT_EQ(preview.count("#CFE8D8"), 5 + 1);
    EXPECT_EQ(preview.count("#FBE3B3"), 5 + 1);
    EXPECT_TRUE(preview.contains(">۰۰۰۵۷</td>"));
    EXPECT_TRUE(preview.contains(">۰۱۲۵۰</td>"));
}

TEST(BarcodePreview, textIsNotMarkup) {
    EXPECT_TRUE(previewOf(weightLayout(), "<b>").contains("&lt;"));
    EXPECT_FALSE(previewOf(weightLayout(), "<b>").contains("<b>"));
}

}  // namespace
}  // namespace basalt::host
