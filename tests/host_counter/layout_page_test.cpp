// The screen of the barcode layouts over the demo company.
#include "host/counter/layout_page.h"

#include <QCheckBox>
#include <QClipboard>
#include <QComboBox>
#include <QScrollArea>
#include <QScrollBar>

#include "ado/error.h"
#include "host/screens/persian_digits.h"
#include "host/screens/theme.h"
#include "host/services/deploy.h"
#include "host/services/sql_access.h"
#include "tests/host_desktop/desktop_test.h"
#include "tests/host_screens/painted_text.h"
#include "tests/support/wheel.h"

namespace basalt::host {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::Not;

class Layouts : public DesktopTest {
protected:
    Layouts() {
        host.signInAs(1);
        page = std::make_unique<LayoutPage>(context());
        showActive(*page);
        page->enter();
    }
    ~Layouts() override { page.reset(); }

    QListWidget& list() { return control<QListWidget>(*page, "Layouts_LST"); }
    void choose(const char* prefix) {
        for (int row = 0; row < list().count(); ++row) {
            if (latinDigits(list().item(row)->text()).contains(QString::fromLatin1(prefix))) list().setCurrentRow(row);
        }
        QCoreApplication::processEvents();
    }
    QSpinBox& number(const char* name) { return control<QSpinBox>(*page, name); }
    std::string note() { return control<QLabel>(*page, "SampleNote_LBL").text().toStdString(); }
    std::string state() { return control<QLabel>(*page, "LayoutState_LBL").text().toStdString(); }
    [[nodiscard]] std::vector<std::string> storedAmounts() {
        return linesOf(*session, "SELECT AmountStart, AmountCount FROM dbo.BarCodeFormul WHERE ConstantCode = N'28'");
    }
    std::string problems() { return control<QLabel>(*page, "Problems_LBL").text().toStdString(); }

    std::unique_ptr<LayoutPage> page;
};

TEST_F(Layouts, showsTheFieldsOfTheChosenOne) {
    EXPECT_EQ(list().count(), 5);
    choose("27");
    EXPECT_EQ(control<QLineEdit>(*page, "ConstantCode_EDT").text(), "۲۷");
    EXPECT_EQ(number("DigitCount_EDT").value(), 20);
    EXPECT_EQ(number("BalanceNoCount_EDT").value(), 2);
    EXPECT_TRUE(control<QCheckBox>(*page, "BalanceNoAsStore_CHK").isChecked());
    EXPECT_EQ(problems(), "");
}

TEST_F(Layouts, whatHasTheFocusIsInSightInANarrowPageToo) {
    setThemeFontSize(16);
    // As wide as the desktop leaves it on a small screen.
    LayoutPage narrow(context());
    narrow.resize(900, 600);
    showActive(narrow);
    narrow.enter();
    QCoreApplication::processEvents();
    const auto& scroll = control<QScrollArea>(narrow, "Columns_PNL");
    const QWidget& sample = control(narrow, "Sample_EDT");
    EXPECT_TRUE(sample.hasFocus());
    const auto inSight = [&](const char* name) {
        const QWidget& input = control(narrow, name);
        const QRect place(input.mapTo(scroll.viewport(), QPoint(0, 0)), input.size());
        return scroll.viewport()->rect().contains(place);
    };
    EXPECT_TRUE(inSight("Sample_EDT"));
    EXPECT_TRUE(inSight("Title_EDT"));
    EXPECT_EQ(scroll.horizontalScrollBar()->maximum(), 0);
    EXPECT_LT(sample.mapTo(&narrow, QPoint(0, 0)).y(), control(narrow, "Title_EDT").mapTo(&narrow, QPoint(0, 0)).y());
    narrow.resize(1700, 900);
    QCoreApplication::processEvents();
    EXPECT_LT(sample.mapTo(&narrow, QPoint(0, 0)).x(), control(narrow, "Title_EDT").mapTo(&narrow, QPoint(0, 0)).x());
    setThemeFontSize(10);
}

TEST_F(Layouts, previewsWhatIsTyped) {
    choose("28");
    type(*page, "Sample_EDT", "۲۸۰۰۱۰۵۰۱۲۵۰۷");
    const std::string preview = control<QLabel>(*page, "Preview_LBL").text().toStdString();
    EXPECT_THAT(preview, HasSubstr(">۰۰۱۰۵</td>"));
    EXPECT_THAT(preview, HasSubstr(">۰۱۲۵۰</td>"));
    EXPECT_EQ(problems(), "");
    EXPECT_EQ(note(), "");
    choose("29");
    EXPECT_EQ(problems(), "") << "the layout itself is a good one";
    EXPECT_THAT(
        note(),
        HasSubstr(
            "این بارکد با این الگو نمی‌خواند؛ پیش‌شماره‌اش دیگر است."));
    EXPECT_THAT(note(), HasSubstr("وزن با کد کالا"));
}

TEST_F(Layouts, theCaseOfAPrefixIsToldAsAScanMeetsIt) {
    execute(
        *session,
        "INSERT INTO dbo.BarCodeFormul (Title, DigitCount, ConstantStart, ConstantCount, ConstantCode, BarCodeType, "
        "ItemConstantCode) VALUES (N'بزرگ', 13, 1, 2, N'AB', 1, 105), (N'کوچک', 13, 1, 2, N'ab', 1, 98)");
    page->enter();
    choose("AB");
    type(*page, "Sample_EDT", "AB00105012507");
    EXPECT_THAT(
        note(),
        HasSubstr(
            "الگوی کوچک هم برای این بارکد پیدا می‌شود ولی پیش‌شماره‌اش حرف به حرف همان نیست؛ "
            "اگر پیش از دیگران پیدا شود، بارکد خوانده نمی‌شود."));
    type(*page, "Sample_EDT", "aB00105012507");
    EXPECT_THAT(
        note(),
        HasSubstr(
            "این بارکد با این الگو نمی‌خواند؛ پیش‌شماره‌اش در بزرگی و کوچکی حرف‌ها، خط رقم‌ها، فاصله یا نشانه‌ای ناپیدا فرق دارد."));
    EXPECT_THAT(note(), Not(HasSubstr("پیدا می‌شود")));  // no layout reads it anyway
}

// Both look alike on the page, which shows all digits in one script.
TEST_F(Layouts, aPrefixInAnotherScriptThatHidesALayoutIsTold) {
    execute(
        *session,
        "UPDATE dbo.BarCodeFormul SET Title = N'پنهان‌کننده', ConstantCode = N'۲۸' WHERE ConstantCode = N'28' "
        "INSERT INTO dbo.BarCodeFormul (Title, DigitCount, ConstantStart, ConstantCount, ConstantCode, BarCodeType, "
        "ItemConstantCode) VALUES (N'پنهان', 13, 1, 2, N'28', 1, 105)");
    const auto chooseTitled = [this](const char* title) {
        for (int row = 0; row < list().count(); ++row) {
            if (list().item(row)->text().startsWith(QString::fromUtf8(title) + QLatin1Char(' ')))
                list().setCurrentRow(row);
        }
        QCoreApplication::processEvents();
        return control<QLineEdit>(*page, "Title_EDT").text() == QString::fromUtf8(title);
    };
    page->enter();
    ASSERT_TRUE(chooseTitled("پنهان"));
    EXPECT_EQ(
        problems(),
        "سرور پیش‌شمارهٔ «پنهان‌کننده» را از پیش‌شمارهٔ این الگو بازنمی‌شناسد؛ از این دو هر کدام زودتر پیدا شود، "
        "بارکدهای دیگری خوانده نمی‌شوند.");
    type(*page, "Sample_EDT", "2800105012507");
    EXPECT_EQ(
        note(),
        "الگوی پنهان‌کننده هم برای این بارکد پیدا می‌شود ولی پیش‌شماره‌اش حرف به حرف همان نیست؛ اگر پیش از دیگران "
        "پیدا شود، بارکد خوانده نمی‌شود.");
    ASSERT_TRUE(chooseTitled("پنهان‌کننده"));
    EXPECT_EQ(control<QLineEdit>(*page, "ConstantCode_EDT").text(), "۲۸");
    EXPECT_THAT(
        problems(),
        HasSubstr(
            "پیش‌شماره نویسه‌ای جز رقم و حرف لاتین دارد و هیچ بارکدی با آن خوانده نمی‌شود؛ آن را پاک "
            "کنید و از نو بنویسید."));
    EXPECT_THAT(
        note(),
        HasSubstr(
            "این بارکد با این الگو نمی‌خواند؛ پیش‌شماره‌اش در بزرگی و کوچکی حرف‌ها، خط رقم‌ها، فاصله یا "
            "نشانه‌ای ناپیدا فرق دارد."));
    // It is not stored anew as it is, and what is written over it is, though it looks the same.
    number("DigitCount_EDT").setValue(14);
    click(*page, "Save_BTN");
    ASSERT_EQ(messages.shown.size(), 1U);
    EXPECT_EQ(messages.shown[0].operation, "MsgLayoutUseless");
    (void)takeMessages();
    auto& prefix = control<QLineEdit>(*page, "ConstantCode_EDT");
    prefix.selectAll();
    QApplication::clipboard()->setText("28");
    prefix.paste();
    EXPECT_EQ(prefix.text(), "۲۸");
    EXPECT_EQ(problems(), "");
    click(*page, "Save_BTN");
    EXPECT_THAT(linesOf(*session, "SELECT UNICODE(ConstantCode) FROM dbo.BarCodeFormul WHERE DigitCount = 14"),
                ElementsAre("50"));
}

// What the page says of two prefixes is what a statement finds.
TEST_F(Layouts, prefixesAreFoundAsTheDatabaseFindsThem) {
    const char* const prefixes[] = {"28",  "۲۸",       "٢٨",       "２８", "²⁸", "①②",      "2\u200E8", "2\u200C8",
                                    "28 ", " 28",      "28\u00A0", "2۸",   "29", "AB",      "ab",       "ａＢ",
                                    "ÁB",  "A\u0301B", "ﬁ",        "ß",    "ss", "fi",      "ی",        "ي",
                                    "كک",  "آ",        "",         "2-8",  "½",  "2\u06408"};
    const char* const barcodes[] = {"28", "12", "AB", "ab", "aB", "fi", "ss", "SS", "29"};
    for (const char* prefix : prefixes) {
        for (const char* barcode : barcodes) {
            BarcodeLayout layout;
            layout.digitCount = 2;
            layout.constantStart = 1;
            layout.constantCount = 2;
            layout.constantCode = prefix;
            BarcodeLayout plain = layout;
            plain.constantCode = barcode;
            const std::string found = linesOf(*session, std::string("SELECT CASE WHEN N'") + prefix + "' = N'" +
                                                            barcode + "' THEN 1 ELSE 0 END")
                                          .at(0);
            EXPECT_EQ(isFoundFor(layout, QString::fromUtf8(barcode)), found == "1") << prefix << " and " << barcode;
            EXPECT_EQ(mayBothFit(layout, plain), found == "1") << prefix << " and " << barcode;
            EXPECT_EQ(mayBothFit(plain, layout), found == "1") << prefix << " and " << barcode;
        }
    }
}

TEST_F(Layouts, aNewLayoutIsNotWrongBeforeItIsBegun) {
    type(*page, "Sample_EDT", "2800105012507");
    click(*page, "New_BTN");
    EXPECT_EQ(problems(), "");
    EXPECT_EQ(page->focusWidget(), &control(*page, "Title_EDT"));
    type(*page, "Title_EDT", "تازه");
    EXPECT_THAT(problems(), HasSubstr("پیش‌شماره ۰ نویسه است، نه ۲."));
    EXPECT_THAT(problems(), Not(HasSubstr("جمع فاکتور")));  // without its prefix it fits nothing
    type(*page, "ConstantCode_EDT", "25");
    EXPECT_THAT(problems(), HasSubstr("جمع فاکتور"));
    type(*page, "Sample_EDT", "2500000012507");
    EXPECT_THAT(note(), HasSubstr("جمع فاکتور"));
    messages.answers = {mrNo};
    EXPECT_TRUE(page->mayLeave());
}

TEST_F(Layouts, aNumberIsReplacedByWhatIsTyped) {
    choose("28");
    auto& amount = number("AmountStart_EDT");
    QTest::mouseClick(&amount, Qt::LeftButton);
    QApplication::processEvents();
    QTest::keyClicks(&amount, "9");
    EXPECT_EQ(amount.value(), 9);
}

TEST_F(Layouts, anEmptiedNumberIsNone) {
    choose("28");
    auto& amount = number("AmountStart_EDT");
    amount.setFocus();
    amount.selectAll();
    QTest::keyClick(&amount, Qt::Key_Backspace);
    EXPECT_EQ(amount.value(), 0);
    EXPECT_THAT(
        problems(),
        HasSubstr(
            "«مقدار» از بارکد ۱۳ رقمی بیرون می‌زند و از آن تنها ۴ رقم خوانده می‌شود."));
    QTest::keyClick(&amount, Qt::Key_Tab);
    EXPECT_EQ(amount.text(), "۰");
    messages.answers = {mrNo};
    click(*page, "Save_BTN");
    EXPECT_THAT(storedAmounts(), ElementsAre("8|5"));
}

TEST_F(Layouts, whatCanNeverBeReadIsRefused) {
    choose("28");
    number("AmountStart_EDT").setValue(14);
    click(*page, "Save_BTN");
    EXPECT_THAT(
        takeMessages(),
        ElementsAre("MsgLayoutUseless('«مقدار» از بارکد ۱۳ رقمی بیرون می‌زند.')"));
    EXPECT_THAT(storedAmounts(), ElementsAre("8|5"));
    EXPECT_EQ(number("AmountStart_EDT").value(), 14) << "what was typed stays, to be mended";
    EXPECT_EQ(page->focusWidget(), &control(*page, "AmountCount_EDT"));
    EXPECT_EQ(state(), "");
}

TEST_F(Layouts, aFieldOfWhichAPartIsReadIsAskedFor) {
    choose("28");
    number("AmountStart_EDT").setValue(12);
    messages.answers = {mrNo, mrYes};
    click(*page, "Save_BTN");
    EXPECT_THAT(storedAmounts(), ElementsAre("8|5"));
    EXPECT_EQ(page->focusWidget(), &control(*page, "AmountCount_EDT"));
    click(*page, "Save_BTN");
    EXPECT_THAT(storedAmounts(), ElementsAre("12|5"));
    const std::string asked =
        "MsgSaveAnyway('«مقدار» از بارکد ۱۳ رقمی بیرون می‌زند و از آن تنها ۲ رقم خوانده می‌شود.')";
    EXPECT_THAT(takeMessages(), ElementsAre(asked, asked));
    EXPECT_EQ(state(), "الگو ذخیره شد.");
}

TEST_F(Layouts, whatIsDoubtfulIsAskedFor) {
    choose("28");
    number("AmountStart_EDT").setValue(7);
    messages.answers = {mrNo, mrYes};
    click(*page, "Save_BTN");
    EXPECT_EQ(messages.shown.back().defaultButton, TMessageButton::No);
    EXPECT_THAT(storedAmounts(), ElementsAre("8|5"));
    click(*page, "Save_BTN");
    EXPECT_THAT(storedAmounts(), ElementsAre("7|5"));
    EXPECT_THAT(takeMessages(),
                ElementsAre("MsgSaveAnyway('«کالا» و «مقدار» روی هم افتاده‌اند.')",
                            "MsgSaveAnyway('«کالا» و «مقدار» روی هم افتاده‌اند.')"));
    EXPECT_EQ(state(), "الگو ذخیره شد.");
    number("AmountStart_EDT").setValue(8);
    EXPECT_EQ(state(), "");
}

TEST_F(Layouts, warnsWhileItIsEdited) {
    choose("28");
    number("AmountStart_EDT").setValue(7);
    EXPECT_THAT(problems(), HasSubstr("روی هم افتاده‌اند"));
    number("AmountStart_EDT").setValue(12);
    EXPECT_THAT(problems(), HasSubstr("بیرون می‌زند"));
    type(*page, "ConstantCode_EDT", "29");
    EXPECT_THAT(problems(), HasSubstr("مبلغ رسید ترازو"));
    messages.answers = {mrNo};
    EXPECT_TRUE(page->mayLeave());
    EXPECT_EQ(number("AmountStart_EDT").value(), 8);
}

TEST_F(Layouts, aPrefixBelowNoCharactersIsNotSaved) {
    const std::string spoil = "UPDATE dbo.BarCodeFormul SET ConstantCount = -1 WHERE ConstantCode = N'27'";
    EXPECT_THROW(execute(*session, spoil), DatabaseError);
    // As in a table that was there before its check. Deploying leaves it alone.
    execute(*session, "ALTER TABLE dbo.BarCodeFormul DROP CONSTRAINT CK_BarCodeFormul_ConstantCount");
    execute(*session, spoil);
    deployDatabase(*session);
    page->enter();
    choose("27");
    EXPECT_THAT(
        problems(),
        HasSubstr(
            "تعداد رقم پیش‌شمارهٔ الگوی «وزن و قیمت با شماره ترازو» منفی است"));
    type(*page, "Title_EDT", "ترازو");
    click(*page, "Save_BTN");
    EXPECT_THAT(
        takeMessages(),
        ElementsAre(
            "MsgLayoutUseless('تعداد رقم پیش‌شمارهٔ الگوی «ترازو» منفی است و تا درست نشود بارکدهای ۲۰ رقمی خوانده نمی‌شوند. آن را در صفحهٔ الگوهای بارکد درست کنید.')"));
    EXPECT_EQ(page->focusWidget(), &control(*page, "ConstantCount_EDT"));
    EXPECT_THAT(linesOf(*session, "SELECT ConstantCount FROM dbo.BarCodeFormul WHERE ConstantCode = N'27'"),
                ElementsAre("-1"));
    number("ConstantCount_EDT").setValue(2);
    EXPECT_EQ(problems(), "");
    click(*page, "Save_BTN");
    EXPECT_THAT(linesOf(*session, "SELECT ConstantCount FROM dbo.BarCodeFormul WHERE ConstantCode = N'27'"),
                ElementsAre("2"));
}

TEST_F(Layouts, aRefusedPrefixIsWrittenAnewWhereItStands) {
    for (const char* prefix : {"۲۸-", "281"}) {
        choose("28");
        type(*page, "ConstantCode_EDT", QString::fromUtf8(prefix));
        control(*page, "Title_EDT").setFocus();
        click(*page, "Save_BTN");
        EXPECT_EQ(takeMessages().size(), 1U) << prefix;
        EXPECT_EQ(page->focusWidget(), &control(*page, "ConstantCode_EDT")) << prefix;
        messages.answers = {mrNo};
        EXPECT_TRUE(page->mayLeave());
        EXPECT_EQ(takeMessages().size(), 1U);
    }
}

// Passing over it to see what is further down.
TEST_F(Layouts, theWheelChangesNoFieldThatItPassesOver) {
    choose("28");
    page->resize(1000, 400);
    QApplication::processEvents();
    control(*page, "Sample_EDT").setFocus();
    auto& scroll = control<QScrollArea>(*page, "Columns_PNL");
    const QWidget* before = page->focusWidget();
    int turned = 0;
    for (QWidget* input : scroll.findChildren<QWidget*>()) {
        if (!qobject_cast<QSpinBox*>(input) && !qobject_cast<QComboBox*>(input)) continue;
        scroll.ensureWidgetVisible(input);
        for (const int steps : {1, -1, -1})
            turnWheel(*input, steps);
        ++turned;
    }
    EXPECT_EQ(turned, 13);
    EXPECT_EQ(page->focusWidget(), before);
    EXPECT_FALSE(control(*page, "Save_BTN").isEnabled());
    EXPECT_TRUE(page->mayLeave());
    EXPECT_TRUE(takeMessages().empty());
    QScrollBar& bar = *scroll.verticalScrollBar();
    ASSERT_GT(bar.maximum(), 0);
    scroll.ensureWidgetVisible(&number("DigitCount_EDT"));
    const int place = bar.value();
    turnWheel(number("DigitCount_EDT"), place == bar.maximum() ? 1 : -1);
    EXPECT_NE(bar.value(), place);
}

TEST_F(Layouts, aLongSampleDoesNotWidenTheWindow) {
    choose("28");
    constexpr QSize kWindow(1180, 720);
    page->resize(kWindow);
    type(*page, "Sample_EDT", QString(250, '9'));
    EXPECT_EQ(control<QLineEdit>(*page, "Sample_EDT").text().size(), 100);
    QApplication::processEvents();
    EXPECT_EQ(page->width(), kWindow.width());
    auto& preview = control<QLabel>(*page, "Preview_LBL");
    EXPECT_GE(preview.height(), preview.heightForWidth(preview.width()));
    number("DigitCount_EDT").setValue(100);
    number("ItemCodeCount_EDT").setValue(98);
    QApplication::processEvents();
    EXPECT_EQ(page->width(), kWindow.width());
}

TEST_F(Layouts, aSampleThatAScanWouldRefuseSaysSo) {
    choose("28");
    type(*page, "Sample_EDT", "28001050x2507");
    EXPECT_EQ(
        note(),
        "اسکن این بارکد پذیرفته نمی‌شود: در بارکد ۲۸۰۰۱۰۵۰x۲۵۰۷ به جای «مقدار» نوشته است «۰x۲۵۰» که عدد نیست. اگر "
        "بارکد درست است، جای «مقدار» را در الگوی «وزن با کد کالا» درست کنید.");
    type(*page, "Sample_EDT", "2800ABC012505");
    EXPECT_THAT(note(), HasSubstr("به جای کد کالا نوشته است «۰۰ABC» که کد نیست"));
    type(*page, "Sample_EDT", "2800105012507");
    EXPECT_EQ(note(), "");
}

TEST_F(Layouts, overlappingCharactersHaveAColourOfTheirOwn) {
    BarcodeLayout layout;
    layout.digitCount = 4;
    layout.constantCode = "28";
    layout.itemCodeStart = 2;
    layout.itemCodeCount = 2;
    const QString preview = previewOf(layout, "2801");
    const auto colourOf = [&preview](const char* digit) {
        const QString sign = QStringLiteral("\">%1</span>").arg(QString::fromUtf8(digit));
        const qsizetype end = preview.indexOf(sign);
        return end < 0 ? std::string("none") : preview.mid(end - 7, 7).toStdString();
    };
    EXPECT_EQ(colourOf("۱"), "none");
    EXPECT_NE(colourOf("۸"), "none");
    EXPECT_NE(colourOf("۸"), colourOf("۲"));
    EXPECT_NE(colourOf("۸"), colourOf("۰"));
    EXPECT_NE(colourOf("۲"), colourOf("۰"));
}

TEST_F(Layouts, numbersAreShownAndTypedInPersianDigits) {
    choose("28");
    EXPECT_EQ(number("DigitCount_EDT").text(), "۱۳");
    type(*page, "AmountStart_EDT", "۹");
    EXPECT_EQ(number("AmountStart_EDT").value(), 9);
    type(*page, "AmountStart_EDT", "12");
    EXPECT_EQ(number("AmountStart_EDT").value(), 12);
    EXPECT_EQ(number("AmountStart_EDT").text(), "۱۲");
    type(*page, "AmountStart_EDT", "۹");
    type(*page, "Sample_EDT", "28001");
    EXPECT_EQ(control<QLineEdit>(*page, "Sample_EDT").text(), "۲۸۰۰۱");
    type(*page, "ConstantCode_EDT", "۲۱");
    type(*page, "Title_EDT", "وزن ۵");
    click(*page, "Save_BTN");
    EXPECT_EQ(linesOf(*session, "SELECT Title, AmountStart FROM dbo.BarCodeFormul WHERE ConstantCode = N'21'").at(0),
              "وزن ۵|9");
}

TEST_F(Layouts, aLongTitleEndsInDotsAndNeverItsPrefix) {
    choose("27");
    // Pieces of either direction, as they are painted.
    const auto paintedRow = [this](int width) {
        QStyleOptionViewItem option;
        option.initFrom(&list());
        option.widget = &list();
        option.rect = QRect(0, 0, width, 40);
        PaintedText painted;
        {
            QPainter painter(&painted);
            list().itemDelegate()->paint(&painter, option, list().currentIndex());
        }
        return painted.text().toStdString();
    };
    EXPECT_THAT(paintedRow(900), AllOf(HasSubstr("وزن و قیمت با شماره ترازو"), HasSubstr("۲۷"), HasSubstr("۲۰")));
    EXPECT_THAT(paintedRow(200), AllOf(HasSubstr("وزن و قیمت با"), Not(HasSubstr("ترازو")), HasSubstr("…"),
                                       HasSubstr("۲۷"), HasSubstr("۲۰"), HasSubstr("رقمی")));
    EXPECT_FALSE(list().horizontalScrollBar()->isVisible());
    const int width = list().width();
    setThemeFontSize(16);
    QApplication::processEvents();
    EXPECT_GT(list().width(), width * 5 / 4);
    setThemeFontSize(10);
}

TEST_F(Layouts, aTickIsSeenWhereItCannotBeChanged) {
    host.signInAs(2);
    page->enter();
    choose("28");
    auto& box = control<QCheckBox>(*page, "AmountDivide_CHK");
    ASSERT_TRUE(box.isChecked());
    ASSERT_FALSE(box.isEnabled());
    const QImage image = box.grab().toImage();
    int filled = 0;
    int ticked = 0;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = image.width() - 22; x < image.width(); ++x) {
            filled += image.pixelColor(x, y) == themeColors().disabled ? 1 : 0;
            ticked += image.pixelColor(x, y) == QColor(Qt::white) ? 1 : 0;
        }
    }
    EXPECT_GT(filled, 60);
    EXPECT_GT(ticked, 5);
}

TEST_F(Layouts, theNameOfItsGoodStandsBesideTheCode) {
    choose("28");
    EXPECT_EQ(shown(*page, "ItemName_LBL"), "(hidden)");
    number("ItemConstantCode_EDT").setValue(105);
    EXPECT_EQ(shown(*page, "ItemName_LBL"), "موز درجه یک");
    number("ItemConstantCode_EDT").setValue(99999);
    EXPECT_EQ(shown(*page, "ItemName_LBL"), "کالایی با این کد تعریف نشده است.");
    number("ItemConstantCode_EDT").setValue(0);
    EXPECT_EQ(shown(*page, "ItemName_LBL"), "(hidden)");
}

TEST_F(Layouts, aTextThatIsTooLongIsToldAndNotCut) {
    choose("28");
    const QString title(60, QChar(u'ب'));
    type(*page, "Title_EDT", title);
    click(*page, "Save_BTN");
    EXPECT_EQ(page->focusWidget(), &control(*page, "Title_EDT"));
    EXPECT_EQ(control<QLineEdit>(*page, "Title_EDT").text(), title);
    type(*page, "Title_EDT", QString(50, QChar(u'ب')));
    type(*page, "ConstantCode_EDT", QString(21, QChar(u'2')));
    click(*page, "Save_BTN");
    EXPECT_EQ(page->focusWidget(), &control(*page, "ConstantCode_EDT"));
    ASSERT_EQ(messages.shown.size(), 2U);
    for (const MessageRequest& each : messages.shown)
        EXPECT_EQ(each.operation, "MsgTooLong");
    EXPECT_THAT(messages.shown[0].arguments[0], HasSubstr("«عنوان»"));
    EXPECT_THAT(messages.shown[1].arguments[0], HasSubstr("«پیش‌شماره»"));
    EXPECT_EQ(takeMessages().size(), 2U);
    type(*page, "ConstantCode_EDT", "28");
    click(*page, "Save_BTN");
    EXPECT_EQ(linesOf(*session, "SELECT LEN(Title) FROM dbo.BarCodeFormul WHERE ConstantCode = N'28'").at(0), "50");
}

TEST_F(Layouts, savesAndDeletes) {
    choose("28");
    EXPECT_FALSE(control(*page, "Save_BTN").isEnabled());
    number("AmountCount_EDT").setValue(4);
    click(*page, "Save_BTN");
    EXPECT_EQ(
        linesOf(*session, "SELECT AmountCount, AmountDivide FROM dbo.BarCodeFormul WHERE ConstantCode = N'28'").at(0),
        "4|1000");
    messages.answers = {mrNo, mrYes};
    click(*page, "Delete_BTN");
    EXPECT_EQ(list().count(), 5);
    click(*page, "Delete_BTN");
    EXPECT_EQ(list().count(), 4);
    EXPECT_TRUE(linesOf(*session, "SELECT ID FROM dbo.BarCodeFormul WHERE ConstantCode = N'28'").empty());
}

TEST_F(Layouts, makesANewOne) {
    click(*page, "New_BTN");
    EXPECT_FALSE(control(*page, "Delete_BTN").isEnabled());
    type(*page, "Title_EDT", "تازه");
    type(*page, "ConstantCode_EDT", "21");
    number("ItemCodeStart_EDT").setValue(3);
    number("ItemCodeCount_EDT").setValue(5);
    click(*page, "Save_BTN");
    EXPECT_EQ(state(), "الگو ذخیره شد.");
    EXPECT_EQ(list().count(), 6);
    EXPECT_EQ(
        linesOf(*session, "SELECT Title, DigitCount, ItemCodeCount FROM dbo.BarCodeFormul WHERE ConstantCode = N'21'")
            .at(0),
        "تازه|13|5");
    EXPECT_FALSE(control(*page, "Save_BTN").isEnabled());
}

TEST_F(Layouts, unsavedChangesAreAskedFor) {
    choose("28");
    number("AmountCount_EDT").setValue(4);
    messages.answers = {mrCancel};
    EXPECT_FALSE(page->mayLeave());
    EXPECT_EQ(messages.shown.back().form, page->window()) << "the question stands over the page that it is about";
    messages.answers = {mrYes};
    EXPECT_TRUE(page->mayLeave());
    EXPECT_EQ(linesOf(*session, "SELECT AmountCount FROM dbo.BarCodeFormul WHERE ConstantCode = N'28'").at(0), "4");
    EXPECT_TRUE(page->mayLeave());
}

TEST_F(Layouts, aUserWithoutTheRightChangesNothing) {
    host.signInAs(2);
    choose("28");
    const auto before = linesOf(*session, "SELECT * FROM dbo.BarCodeFormul ORDER BY ID");
    number("AmountCount_EDT").setValue(4);
    click(*page, "Save_BTN");
    click(*page, "Delete_BTN");
    messages.answers = {mrYes};  // to the question; then he is told again that he may not
    EXPECT_FALSE(page->mayLeave());
    messages.answers = {mrNo};
    click(*page, "New_BTN");
    type(*page, "Title_EDT", "تازه");
    click(*page, "Save_BTN");
    EXPECT_EQ(linesOf(*session, "SELECT * FROM dbo.BarCodeFormul ORDER BY ID"), before);
    std::vector<std::string> operations;
    for (const MessageRequest& request : messages.shown)
        operations.push_back(request.operation);
    EXPECT_THAT(operations, ElementsAre("HavePermission", "HavePermission", "MsgUnsavedChanges", "HavePermission",
                                        "MsgUnsavedChanges", "HavePermission"));
}

TEST_F(Layouts, whoMayNotChangeThemIsToldBeforeHeFillsThemIn) {
    EXPECT_FALSE(control(*page, "ReadOnly_LBL").isVisible());
    host.signInAs(2);
    page->enter();
    // clang-format off
    EXPECT_EQ(shown(*page, "ReadOnly_LBL"), "اجازهٔ تغییر این الگو را ندارید؛ می‌توانید آن را ببینید و با یک بارکد بیازمایید.");
    // clang-format on
    choose("28");
    for (const char* name : {"Title_EDT", "AmountCount_EDT", "Save_BTN", "New_BTN", "Delete_BTN"})
        EXPECT_FALSE(control(*page, name).isEnabled()) << name;
    type(*page, "Sample_EDT", "۲۸۰۰۱۰۵۰۱۲۵۰۷");
    EXPECT_THAT(control<QLabel>(*page, "Preview_LBL").text().toStdString(), HasSubstr(">۰۰۱۰۵</td>"));
    EXPECT_THAT(takeMessages(), ElementsAre());
}

TEST_F(Layouts, nothingIsSqueezedByALargeFont) {
    setThemeFontSize(16);
    page->resize(700, 500);
    QApplication::processEvents();
    for (const char* name : {"Title_EDT", "DigitCount_EDT", "AmountStart_EDT", "AmountCount_EDT", "Sample_EDT"}) {
        const QWidget& input = control(*page, name);
        EXPECT_GE(input.width(), input.minimumSizeHint().width()) << name;
        EXPECT_GE(input.height(), input.minimumSizeHint().height()) << name;
    }
    EXPECT_EQ(page->size(), QSize(700, 500));
    setThemeFontSize(10);
}

TEST_F(Layouts, aTitleIsKeptToTheLetterWhileOtherFieldsChange) {
    session->run("UPDATE dbo.BarCodeFormul SET Title = N'\uFEFFوزن' WHERE ConstantCode = N'28'");
    page->enter();
    choose("28");
    number("AmountCount_EDT").setValue(4);
    click(*page, "Save_BTN");
    EXPECT_EQ(linesOf(*session, "SELECT Title FROM dbo.BarCodeFormul WHERE ConstantCode = N'28'").at(0), "\uFEFFوزن");
}

TEST_F(Layouts, theQuestionSpeaksOfWhatItComesBefore) {
    choose("28");
    number("AmountCount_EDT").setValue(4);
    messages.answers = {mrCancel};
    click(*page, "New_BTN");
    EXPECT_THAT(takeMessages(), ElementsAre("MsgUnsavedChanges('شروع الگوی تازه')"));
    messages.answers = {mrCancel};
    choose("29");
    EXPECT_THAT(takeMessages(), ElementsAre("MsgUnsavedChanges('رفتن به الگوی دیگر')"));
    messages.answers = {mrCancel};
    EXPECT_FALSE(page->mayLeave());
    EXPECT_THAT(takeMessages(), ElementsAre("MsgUnsavedChanges()"));
}

TEST_F(Layouts, everyChangeIsLogged) {
    choose("28");
    const std::string id = linesOf(*session, "SELECT ID FROM dbo.BarCodeFormul WHERE ConstantCode = N'28'").at(0);
    number("AmountCount_EDT").setValue(4);
    click(*page, "Save_BTN");
    messages.answers = {mrYes};
    click(*page, "Delete_BTN");
    click(*page, "New_BTN");
    type(*page, "Title_EDT", "تازه");
    type(*page, "ConstantCode_EDT", "21");
    number("ItemConstantCode_EDT").setValue(105);
    click(*page, "Save_BTN");
    const std::string made = linesOf(*session, "SELECT ID FROM dbo.BarCodeFormul WHERE ConstantCode = N'21'").at(0);
    std::vector<std::string> events;
    for (const UserLogEntry& event : host.userLog().latest(3))
        events.push_back(std::to_string(event.part) + "|" + std::to_string(event.permission) + "|" + event.text);
    EXPECT_THAT(events, ElementsAre("102|" + std::to_string(prInsert) + "|الگوی بارکد " + made + " «تازه»",
                                    "102|" + std::to_string(prDelete) + "|الگوی بارکد " + id + " «وزن با کد کالا»",
                                    "102|" + std::to_string(prEdit) + "|الگوی بارکد " + id + " «وزن با کد کالا»"));
}

TEST_F(Layouts, aTitleIsRequired) {
    choose("28");
    type(*page, "Title_EDT", "  ");
    click(*page, "Save_BTN");
    EXPECT_THAT(takeMessages(), ElementsAre("MsgRequiredField('عنوان')"));
    EXPECT_EQ(page->focusWidget(), &control(*page, "Title_EDT"));
    messages.answers = {mrYes};
    EXPECT_FALSE(page->mayLeave());
    EXPECT_EQ(linesOf(*session, "SELECT Title FROM dbo.BarCodeFormul WHERE ConstantCode = N'28'").at(0),
              "وزن با کد کالا");
}

TEST_F(Layouts, storedNumbersAreShownAsTheyAreAndOnlyChangesAreWritten) {
    execute(*session,
            "UPDATE dbo.BarCodeFormul SET BalanceNoStart = -3, BalanceNoCount = 250, ItemCodeType = 7, Title = NULL "
            "WHERE ConstantCode = N'28'");
    page->enter();
    choose("28");
    EXPECT_EQ(number("BalanceNoStart_EDT").value(), -3);
    EXPECT_EQ(number("BalanceNoCount_EDT").value(), 250);
    EXPECT_FALSE(control(*page, "Save_BTN").isEnabled());
    type(*page, "Title_EDT", "وزن");
    // Meanwhile, by another program.
    execute(*session, "UPDATE dbo.BarCodeFormul SET AmountDivide = 100 WHERE ConstantCode = N'28'");
    click(*page, "Save_BTN");
    EXPECT_EQ(linesOf(*session,
                      "SELECT Title, BalanceNoStart, BalanceNoCount, ItemCodeType, AmountDivide FROM dbo.BarCodeFormul "
                      "WHERE ConstantCode = N'28'")
                  .at(0),
              "وزن|-3|250|7|100");
    choose("29");
    EXPECT_EQ(number("BalanceNoStart_EDT").minimum(), 0);
}

TEST_F(Layouts, oneThatIsGoneIsTold) {
    choose("28");
    number("AmountCount_EDT").setValue(4);
    execute(*session, "DELETE FROM dbo.BarCodeFormul WHERE ConstantCode = N'28'");
    const std::size_t logged = host.userLog().latest(100).size();
    click(*page, "Save_BTN");
    EXPECT_THAT(takeMessages(), ElementsAre("MsgRecordGone()"));
    EXPECT_EQ(list().count(), 4);
    EXPECT_TRUE(page->mayLeave());
    EXPECT_EQ(host.userLog().latest(100).size(), logged);
}

TEST_F(Layouts, anothersChangeIsToldAndNotOverwritten) {
    choose("28");
    number("AmountCount_EDT").setValue(4);
    type(*page, "Title_EDT", "وزن");
    // The case alone is a change as well.
    for (const char* title : {"دیگری", "Abc", "ABC"}) {
        execute(*session, "UPDATE dbo.BarCodeFormul SET Title = ? WHERE ConstantCode = N'28'", {std::string(title)});
        const std::size_t logged = host.userLog().latest(100).size();
        click(*page, "Save_BTN");
        EXPECT_THAT(takeMessages(), ElementsAre("MsgRecordChanged()"));
        EXPECT_EQ(
            linesOf(*session, "SELECT Title, AmountCount FROM dbo.BarCodeFormul WHERE ConstantCode = N'28'").at(0),
            std::string(title) + "|5");
        EXPECT_EQ(host.userLog().latest(100).size(), logged);
        // What is there now is shown, and may be changed.
        EXPECT_EQ(control<QLineEdit>(*page, "Title_EDT").text().toStdString(), title);
        type(*page, "Title_EDT", "وزن");
    }
    click(*page, "Save_BTN");
    EXPECT_EQ(linesOf(*session, "SELECT Title FROM dbo.BarCodeFormul WHERE ConstantCode = N'28'").at(0), "وزن");
}

TEST_F(Layouts, aDeleteThatDeletesNothingIsToldAndNotLogged) {
    choose("28");
    const std::size_t logged = host.userLog().latest(100).size();
    execute(*session, "UPDATE dbo.BarCodeFormul SET PriceStart = 9 WHERE ConstantCode = N'28'");
    messages.answers = {mrYes, mrYes};
    click(*page, "Delete_BTN");
    EXPECT_THAT(takeMessages(), ElementsAre("MsgDeleteItem('الگو')", "MsgRecordChanged()"));
    EXPECT_EQ(number("PriceStart_EDT").value(), 9);
    EXPECT_EQ(list().count(), 5);
    execute(*session, "DELETE FROM dbo.BarCodeFormul WHERE ConstantCode = N'28'");
    click(*page, "Delete_BTN");
    EXPECT_THAT(takeMessages(), ElementsAre("MsgDeleteItem('الگو')", "MsgRecordGone()"));
    EXPECT_EQ(list().count(), 4);
    EXPECT_EQ(host.userLog().latest(100).size(), logged);
}

}  // namespace
}  // namespace basalt::host
