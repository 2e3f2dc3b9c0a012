// The counter over the demo company, with the real module: scans by keyboard, stock, tare and scales.
#include "host/counter/counter_page.h"

#include <QComboBox>
#include <QHeaderView>
#include <QProgressBar>
#include <QTextDocument>
#include <QTimer>

#include "host/counter/counter_sale.h"
#include "host/screens/theme.h"
#include "host/services/sql_access.h"
#include "tests/host_desktop/desktop_test.h"
#include "tests/support/wheel.h"

namespace basalt::host {
namespace {

using ::testing::ElementsAre;

class NotedPrograms final : public ProgramService {
public:
    StartResult start(const ProgramStart& program) override {
        started.push_back(program.parameters);
        if (bar != nullptr && started.size() > 1) shown.push_back(bar->text().toStdString());
        return started.size() > failsBehind ? failure : StartResult{.started = true};
    }
    [[nodiscard]] std::unique_ptr<ProgramLibrary> load(const std::string& /*name*/) override { return nullptr; }
    std::vector<std::string> started;
    // What the bar says at each start but the first.
    QProgressBar* bar = nullptr;
    std::vector<std::string> shown;
    // Starts behind that many come to this.
    std::size_t failsBehind = static_cast<std::size_t>(-1);
    StartResult failure;
};

class Counter : public DesktopTest {
protected:
    Counter() {
        host.signInAs(1);
        host.setPrograms(programs);
        page = std::make_unique<CounterPage>(context());
        showActive(*page);
        page->enter();
    }

    void scan(const QString& barcode) {
        type(*page, "Scan_EDT", barcode);
        QTest::keyClick(&control(*page, "Scan_EDT"), Qt::Key_Return);
    }
    [[nodiscard]] std::string mood() const {
        return control(*page, "Result_LBL").property("mood").toString().toStdString();
    }
    // "105|1.25" a line, from the cells that show code and amount.
    [[nodiscard]] std::vector<std::string> lines() const {
        const auto& grid = control<QTableWidget>(*page, "Lines_GRD");
        std::vector<std::string> texts;
        for (int row = 0; row < grid.rowCount(); ++row)
            texts.push_back((grid.item(row, 0)->text() + "|" + grid.item(row, 2)->text()).toStdString());
        return texts;
    }
    // The places of the lines that are highlighted.
    [[nodiscard]] std::vector<int> chosen() const {
        std::vector<int> rows;
        for (const QModelIndex& index : control<QTableWidget>(*page, "Lines_GRD").selectionModel()->selectedRows())
            rows.push_back(index.row());
        return rows;
    }
    void policy(int value) {
        auto& combo = control<QComboBox>(*page, "Policy_CMB");
        combo.setCurrentIndex(value);
    }
    void store(int code) {
        auto& combo = control<QComboBox>(*page, "Store_CMB");
        combo.setCurrentIndex(combo.findData(code));
    }

    NotedPrograms programs;
    std::unique_ptr<CounterPage> page;
};

TEST_F(Counter, itsButtonsKeepTheirKeysWithALargeFont) {
    setThemeFontSize(16);
    page->resize(700, 600);
    QApplication::processEvents();
    for (const char* name : {"Save_BTN", "Amount_BTN", "Tare_BTN", "RemoveLine_BTN", "Clear_BTN", "SendToScale_BTN"}) {
        const QWidget& button = control(*page, name);
        EXPECT_GE(button.width(), button.sizeHint().width()) << name;
        EXPECT_TRUE(page->rect().contains(QRect(button.mapTo(page.get(), QPoint()), button.size()))) << name;
    }
    // The choice belongs to its button.
    const auto top = [this](const char* name) { return control(*page, name).mapTo(page.get(), QPoint()).y(); };
    EXPECT_LT(std::abs(top("ScaleType_CMB") - top("SendToScale_BTN")), control(*page, "SendToScale_BTN").height());
    setThemeFontSize(10);
}

TEST_F(Counter, whatItSaysGrowsWithTheFontAtOnce) {
    const auto height = [this](const char* name) { return control(*page, name).fontMetrics().height(); };
    const int result = height("Result_LBL");
    const int total = height("Total_LBL");
    setThemeFontSize(16);
    QApplication::processEvents();
    EXPECT_GT(height("Result_LBL"), result);
    EXPECT_GT(height("Total_LBL"), total);
    setThemeFontSize(10);
    QApplication::processEvents();
    EXPECT_EQ(height("Result_LBL"), result);
}

// Half of a number reads as another number.
TEST_F(Counter, numbersAreSeenWholeAtEverySizeOfTheFont) {
    execute(*session,
            "UPDATE dbo.GoodCostDiscount SET CostLevel_Sell_1 = 98500000, Default_CostLevel_Sell_Number = 1 WHERE "
            "GoodCode = 105");
    auto& grid = control<QTableWidget>(*page, "Lines_GRD");
    for (const int size : {10, 16}) {
        setThemeFontSize(size);
        page->resize(1280, 720);
        scan("2800105099997");
        QApplication::processEvents();
        ASSERT_EQ(grid.item(0, 4)->text(), "۹۸٬۵۰۰٬۰۰۰");
        for (const int column : {0, 2, 3, 4, 5, 6}) {
            EXPECT_GE(grid.columnWidth(column), static_cast<QAbstractItemView&>(grid).sizeHintForColumn(column))
                << "column " << column << " at " << size;
        }
        EXPECT_GT(grid.columnWidth(1), grid.fontMetrics().horizontalAdvance(grid.item(0, 1)->text()));
        EXPECT_EQ(grid.horizontalHeader()->length(), grid.viewport()->width());
    }
    setThemeFontSize(10);
}

TEST_F(Counter, aBarcodeHasRoomWithALargeFont) {
    setThemeFontSize(16);
    page->resize(700, 600);
    QApplication::processEvents();
    const auto& input = control<QLineEdit>(*page, "Scan_EDT");
    EXPECT_GT(input.width(), input.fontMetrics().horizontalAdvance(QString(20, '0')));
    for (const char* name : {"Removing_BTN", "Sound_CHK", "Person_EDT", "Store_CMB"}) {
        const QWidget& each = control(*page, name);
        EXPECT_GE(each.width(), each.minimumSizeHint().width()) << name;
    }
    setThemeFontSize(10);
}

TEST_F(Counter, whatIsNoBarcodeIsRepeatedAsItWasTyped) {
    scan("موز");
    EXPECT_EQ(mood(), "refused");
    EXPECT_EQ(shown(*page, "Result_LBL"), "بارکد خوانا نیست: \u2068موز\u2069");
}

TEST_F(Counter, whoseCodeItIsStandsBeside) {
    const std::string name = linesOf(*session, "SELECT FullName FROM dbo.PerInf WHERE Code = 12").at(0);
    EXPECT_EQ(shown(*page, "PersonName_LBL"), "");
    type(*page, "Person_EDT", "12");
    QTest::keyClick(page->focusWidget(), Qt::Key_Return);
    EXPECT_EQ(shown(*page, "PersonName_LBL"), name);
    type(*page, "Person_EDT", "123");
    EXPECT_EQ(shown(*page, "PersonName_LBL"), "") << "not of a code that is half typed";
    type(*page, "Person_EDT", "12");
    scan("2800105012507");
    EXPECT_EQ(shown(*page, "PersonName_LBL"), name);
    messages.answers = {mrNo};
    click(*page, "Clear_BTN");
    EXPECT_EQ(shown(*page, "PersonName_LBL"), "");
}

TEST_F(Counter, aWeighedGoodBecomesALine) {
    scan("2800105012507");
    EXPECT_THAT(lines(), ElementsAre("۱۰۵|۱٫۲۵"));
    EXPECT_EQ(mood(), "added");
    EXPECT_EQ(shown(*page, "Result_LBL"), "۱٫۲۵ کیلوگرم «موز درجه یک» افزوده شد.");
    EXPECT_TRUE(control<QLineEdit>(*page, "Scan_EDT").text().isEmpty());
}

TEST_F(Counter, aWrongKeyboardLayoutStillScans) {
    scan("۲۸۰۰۱۰۵۰۱۲۵۰۷");
    scan("٢٨٠٠١٠٥٠٠٢٥٠٧");
    EXPECT_THAT(lines(), ElementsAre("۱۰۵|۱٫۲۵", "۱۰۵|۰٫۲۵"));
}

TEST_F(Counter, theMakersBarcodeIsOnePiece) {
    scan("6267311001001");
    EXPECT_THAT(lines(), ElementsAre("۱|۱"));
    EXPECT_EQ(mood(), "added");
}

TEST_F(Counter, anUnknownBarcodeIsRefused) {
    for (const char* barcode : {"1234567890123", "28'; --", "28001050x2507", "2899999012507"}) {
        scan(barcode);
        EXPECT_EQ(mood(), "refused") << barcode;
    }
    EXPECT_TRUE(lines().empty());
    EXPECT_TRUE(takeMessages().empty());
}

TEST_F(Counter, deleteModeTakesOff) {
    scan("2800105012507");
    scan("2800105002507");
    QTest::keyClick(&control(*page, "Scan_EDT"), Qt::Key_F6);
    scan("2800105012507");  // at once
    EXPECT_THAT(lines(), ElementsAre("۱۰۵|۰٫۲۵"));
    EXPECT_EQ(mood(), "removed");
    scan("2800105099997");
    EXPECT_EQ(mood(), "refused");
    EXPECT_THAT(lines(), ElementsAre("۱۰۵|۰٫۲۵"));
}

TEST_F(Counter, deleteModeCutsNoWeighedParcel) {
    execute(*session, "UPDATE dbo.GoodInf SET AbbName = N'!6262620010508!' WHERE Code = 105");
    scan("2800105012507");
    QTest::keyClick(&control(*page, "Scan_EDT"), Qt::Key_F6);
    scan("6262620010508");
    EXPECT_EQ(mood(), "refused");
    EXPECT_THAT(lines(), ElementsAre("۱۰۵|۱٫۲۵"));
    QTest::keyClick(&control(*page, "Scan_EDT"), Qt::Key_F6);
    scan("6262620010508");
    EXPECT_THAT(lines(), ElementsAre("۱۰۵|۱٫۲۵", "۱۰۵|۱"));
    QTest::keyClick(&control(*page, "Scan_EDT"), Qt::Key_F6);
    scan("2800105010007");  // a parcel of a kilogram, which is no piece
    EXPECT_EQ(mood(), "refused");
    scan("6262620010508");
    EXPECT_EQ(mood(), "removed");
    EXPECT_THAT(lines(), ElementsAre("۱۰۵|۱٫۲۵"));
}

// Statements take a good's field as it stands.
class LettersInAGoodsField : public Counter {
protected:
    LettersInAGoodsField() {
        execute(*session,
                "INSERT INTO dbo.BarCodeFormul (Title, DigitCount, ConstantStart, ConstantCount, ConstantCode, "
                "BarCodeType, ItemCodeType, ItemCodeStart, ItemCodeCount, AmountStart, AmountCount) VALUES "
                "(N'با حرف', 8, 1, 2, N'QX', 1, 1, 3, 3, 0, 0)");
    }
    void findByScaleCode(bool on) {
        TSettingRecord settings = host.settings().record();
        settings.FindGoodByScaleCode = on;
        lent.reset();
        lent = std::make_unique<LentSettings>(host, std::move(settings));
    }
    static std::string refusal(const char* barcode, const char* field, const char* layout) {
        return std::string("در بارکد ") + barcode + " به جای کد کالا نوشته است «" + field +
               "» که کد نیست. اگر بارکد درست است، جای «کالا» را در الگوی «" + layout + "» درست کنید.";
    }
    std::unique_ptr<LentSettings> lent;
};

TEST_F(LettersInAGoodsField, areRefusedWhereAGoodIsLookedUpByItsCode) {
    findByScaleCode(false);
    const std::tuple<const char*, std::string> cases[] = {
        {"271E0020101250012345", refusal("۲۷۱E۰۰۲۰۱۰۱۲۵۰۰۱۲۳۴۵", "۱E۰۰۲", "وزن و قیمت با شماره ترازو")},
        {"270x0690101250012345", refusal("۲۷۰x۰۶۹۰۱۰۱۲۵۰۰۱۲۳۴۵", "۰x۰۶۹", "وزن و قیمت با شماره ترازو")},
        {"27Unit20101250012345", refusal("۲۷Unit۲۰۱۰۱۲۵۰۰۱۲۳۴۵", "Unit۲", "وزن و قیمت با شماره ترازو")},
        {"27ABCDE0101250012345", refusal("۲۷ABCDE۰۱۰۱۲۵۰۰۱۲۳۴۵", "ABCDE", "وزن و قیمت با شماره ترازو")},
        {"2800ABC012505", refusal("۲۸۰۰ABC۰۱۲۵۰۵", "۰۰ABC", "وزن با کد کالا")},
        {"QX1E0000", refusal("QX۱E۰۰۰۰", "۱E۰", "با حرف")},
    };
    for (const auto& [barcode, text] : cases) {
        scan(barcode);
        EXPECT_EQ(mood(), "refused") << barcode;
        EXPECT_EQ(shown(*page, "Result_LBL"), text);
        EXPECT_TRUE(takeMessages().empty()) << barcode;
    }
    EXPECT_TRUE(lines().empty());
    scan("QX105000");  // letters in the prefix do no harm
    EXPECT_THAT(lines(), ElementsAre("۱۰۵|۱"));
}

TEST_F(LettersInAGoodsField, areAScaleCodeWhereGoodsAreFoundByThese) {
    execute(*session, "UPDATE dbo.GoodInf SET AbbName = N'!1E002!' WHERE Code = 105");
    findByScaleCode(true);
    scan("271E0020101250012345");
    EXPECT_THAT(lines(), ElementsAre("۱۰۵|۱٫۲۵"));
    scan("2800ABC012505");
    EXPECT_EQ(mood(), "refused");
    scan("QX1E0000");
    EXPECT_EQ(mood(), "refused");
    EXPECT_TRUE(takeMessages().empty());
    // Not asked again for another person's price by a statement that would read the field otherwise.
    findByScaleCode(false);
    type(*page, "Person_EDT", "12");
    QTest::keyClick(page->focusWidget(), Qt::Key_Return);
    EXPECT_TRUE(takeMessages().empty());
    EXPECT_THAT(lines(), ElementsAre("۱۰۵|۱٫۲۵"));
}

// Between two scale codes side by side stand two marks with nothing in between, which no field at all would find.
TEST_F(LettersInAGoodsField, aFieldOutsideOfTheBarcodeIsNoScaleCode) {
    execute(*session, "UPDATE dbo.GoodInf SET AbbName = N'!71!!72!' WHERE Code = 105");
    execute(*session,
            "INSERT INTO dbo.BarCodeFormul (Title, DigitCount, ConstantStart, ConstantCount, ConstantCode, "
            "BarCodeType, ItemCodeType, ItemCodeStart, ItemCodeCount, AmountStart, AmountCount) VALUES "
            "(N'بیرون', 13, 1, 2, N'31', 1, 2, 14, 5, 8, 5), (N'درون', 13, 1, 2, N'35', 1, 2, 6, 2, 8, 5)");
    findByScaleCode(true);
    scan("3100105012507");
    EXPECT_EQ(mood(), "refused");
    EXPECT_EQ(shown(*page, "Result_LBL"),
              "الگوی «بیرون» در این بارکد جایی برای «کالا» ندارد. جای آن را در صفحهٔ الگوهای بارکد درست کنید.");
    EXPECT_TRUE(takeMessages().empty());
    EXPECT_TRUE(lines().empty());
    scan("3500071012507");
    EXPECT_THAT(lines(), ElementsAre("۱۰۵|۱٬۲۵۰"));
}

TEST_F(Counter, aScaleCodeThatNoGoodBearsIsToldByItsBarcode) {
    scan("27999990101250012345");
    EXPECT_EQ(mood(), "refused");
    EXPECT_EQ(shown(*page, "Result_LBL"), "کالایی برای بارکد ۲۷۹۹۹۹۹۰۱۰۱۲۵۰۰۱۲۳۴۵ تعریف نشده است.");
    EXPECT_EQ(takeMessages().size(), 1U);  // the module's own note
}

TEST_F(Counter, aPrefixBelowNoCharactersIsToldByItsLayout) {
    execute(*session, "ALTER TABLE dbo.BarCodeFormul DROP CONSTRAINT CK_BarCodeFormul_ConstantCount");
    execute(*session, "UPDATE dbo.BarCodeFormul SET ConstantCount = -1 WHERE ConstantCode = N'29'");
    scan("2800105012507");
    EXPECT_EQ(mood(), "refused");
    EXPECT_EQ(
        shown(*page, "Result_LBL"),
        "تعداد رقم پیش‌شمارهٔ الگوی «مبلغ رسید ترازو» منفی است و تا درست نشود بارکدهای ۱۳ رقمی خوانده نمی‌شوند. آن "
        "را در صفحهٔ الگوهای بارکد درست کنید.");
    EXPECT_TRUE(takeMessages().empty());
}

TEST_F(Counter, pricesAloneAreSummedAndTakenOff) {
    scan("2900000125005");
    EXPECT_EQ(mood(), "added");
    EXPECT_EQ(shown(*page, "PriceSum_LBL"), "جمع بارکدهای مبلغی: ۱۲٬۵۰۰");
    EXPECT_EQ(shown(*page, "Total_LBL"), "جمع فاکتور: ۱۲٬۵۰۰");
    scan("2900000025005");
    scan("2900000025005");
    click(*page, "Removing_BTN");
    scan("2900000025005");
    EXPECT_EQ(mood(), "removed");
    EXPECT_EQ(shown(*page, "Result_LBL"), "مبلغ ۲٬۵۰۰ از جمع کم شد.");
    EXPECT_EQ(shown(*page, "Total_LBL"), "جمع فاکتور: ۱۵٬۰۰۰");
    EXPECT_TRUE(lines().empty());
}

TEST_F(Counter, aPriceThatWasNotAddedIsNotTakenOff) {
    scan("2900000125005");
    click(*page, "Removing_BTN");
    for (const char* never : {"2900000025005", "2900000250005"}) {
        scan(never);
        EXPECT_EQ(mood(), "refused");
        EXPECT_EQ(shown(*page, "Total_LBL"), "جمع فاکتور: ۱۲٬۵۰۰");
    }
    EXPECT_EQ(shown(*page, "Result_LBL"), "مبلغ ۲۵٬۰۰۰ در فاکتور نیست.");
    scan("2900000125005");
    EXPECT_EQ(mood(), "removed");
    scan("2900000125005");
    EXPECT_EQ(mood(), "refused");
    EXPECT_EQ(shown(*page, "Total_LBL"), "جمع فاکتور: ۰");
}

TEST_F(Counter, aNumberBeyondAllMoneyIsRefusedAndTheCounterLivesOn) {
    execute(
        *session,
        "INSERT INTO dbo.BarCodeFormul (Title, DigitCount, ConstantStart, ConstantCount, ConstantCode, BarCodeType, "
        "ItemCodeType, ItemCodeStart, ItemCodeCount, AmountStart, AmountCount, PriceStart, PriceCount) VALUES "
        "(N'مبلغ دراز', 50, 1, 2, N'99', 3, 0, 0, 0, 0, 0, 3, 48), (N'مبلغ', 18, 1, 2, N'99', 3, 0, 0, 0, 0, 0, 3, "
        "16), "
        "(N'وزن دراز', 33, 1, 2, N'97', 1, 1, 3, 5, 8, 26, 0, 0), (N'جمع دراز', 50, 1, 2, N'98', 2, 0, 0, 0, 0, 0, 3, "
        "48)");
    scan("2900000125005");
    const QString tooMuch =
        "مقدار یا مبلغ بارکد بزرگ‌تر از آن است که در فاکتور بیاید.";
    for (const QString& barcode : {"99" + QString(48, '9'), "99" + QString(16, '9'), "9700105" + QString(26, '9')}) {
        scan(barcode);
        EXPECT_EQ(mood(), "refused") << barcode.toStdString();
        EXPECT_EQ(shown(*page, "Result_LBL"), tooMuch.toStdString());
        EXPECT_EQ(shown(*page, "Total_LBL"), "جمع فاکتور: ۱۲٬۵۰۰");
    }
    click(*page, "Removing_BTN");
    scan("99" + QString(48, '9'));
    EXPECT_EQ(shown(*page, "Result_LBL"), tooMuch.toStdString());
    click(*page, "Removing_BTN");
    EXPECT_TRUE(takeMessages().empty());
    scan("98" + QString(48, '9'));
    EXPECT_EQ(mood(), "warned");
    EXPECT_EQ(takeMessages().size(), 1U);  // the module's own note
    scan("2800105012507");
    EXPECT_EQ(mood(), "added");
    EXPECT_THAT(lines(), ElementsAre("۱۰۵|۱٫۲۵"));
    messages.answers = {mrNo};
    click(*page, "Clear_BTN");
    EXPECT_EQ(shown(*page, "Total_LBL"), "جمع فاکتور: ۰");
}

TEST_F(Counter, aSumFromElsewhereThatIsNoMoneyDoesNotStopTheCounter) {
    ModuleCalls calls(context().registry);
    for (const int digits : {16, 37, 48}) {
        execute(*session,
                "INSERT INTO dbo.BarCodeFormul (Title, DigitCount, ConstantStart, ConstantCount, ConstantCode, "
                "BarCodeType, PriceStart, PriceCount) VALUES (N'مبلغ دراز', ?, 1, 2, N'99', 3, 3, 48)",
                {std::int64_t{digits + 2}});
        (void)calls("FillGoodInfFromBarcode", {{"UseType", 1},
                                               {"Barcode", "99" + std::string(static_cast<std::size_t>(digits), '9')},
                                               {"PerCode", "0"},
                                               {"ItemCode", ""},
                                               {"TotalPrice", 0}});
        page->enter();
        EXPECT_EQ(shown(*page, "Total_LBL"), "جمع فاکتور: ۰") << digits;
    }
    scan("2800105012507");
    EXPECT_EQ(mood(), "added");
    EXPECT_TRUE(takeMessages().empty());
}

TEST_F(Counter, pricesThatNoLineStandsForAreNotSavedAndNotLost) {
    store(1);
    policy(0);
    scan("2800105012507");
    scan("2900000125005");
    const auto before = linesOf(*session, "SELECT COUNT(*) FROM dbo.Kardex");
    click(*page, "Save_BTN");
    EXPECT_EQ(mood(), "refused");
    EXPECT_EQ(shown(*page, "Result_LBL"),
              "فاکتور ثبت نشد؛ برای مبلغ ۱۲٬۵۰۰ کالایی در فاکتور نیست. کالاهای آن را بیفزایید و بارکدهای مبلغی را در "
              "حالت حذف بردارید.");
    EXPECT_EQ(linesOf(*session, "SELECT COUNT(*) FROM dbo.Kardex"), before);
    EXPECT_EQ(lines().size(), 1U);
    EXPECT_EQ(shown(*page, "PriceSum_LBL"), "جمع بارکدهای مبلغی: ۱۲٬۵۰۰");
    click(*page, "Removing_BTN");
    scan("2900000125005");
    click(*page, "Save_BTN");
    EXPECT_EQ(mood(), "matched");
}

TEST_F(Counter, aTotalIsComparedWithTheInvoice) {
    scan("2900000125005");
    scan("2500000125005");
    EXPECT_EQ(mood(), "matched");
    EXPECT_TRUE(takeMessages().empty());
    scan("2500000125015");
    EXPECT_EQ(mood(), "warned");
    EXPECT_EQ(takeMessages().size(), 1U);  // the module's own note
    EXPECT_EQ(shown(*page, "Result_LBL"), "بارکد ۱۲٬۵۰۱ است و فاکتور ۱۲٬۵۰۰؛ فاکتور ۱ کمتر است.");
    scan("2900000125005");
    scan("2500000125015");
    EXPECT_EQ(shown(*page, "Result_LBL"), "بارکد ۱۲٬۵۰۱ است و فاکتور ۲۵٬۰۰۰؛ فاکتور ۱۲٬۴۹۹ بیشتر است.");
    EXPECT_EQ(takeMessages().size(), 1U);
}

TEST_F(Counter, whoHeardOfEqualTotalsStillDoes) {
    ModuleCalls calls(testedModule().registry());
    int heard = 0;
    (void)calls("After_Equal_Total_Price", {{"Value", Datum::event([&heard] { ++heard; })}});
    scan("2900000125005");
    scan("2500000125005");
    EXPECT_EQ(mood(), "matched");
    EXPECT_EQ(heard, 0);
    (void)calls(
        "FillGoodInfFromBarcode",
        {{"UseType", 0}, {"Barcode", "2500000125005"}, {"PerCode", "0"}, {"ItemCode", ""}, {"TotalPrice", 12500}});
    EXPECT_EQ(heard, 1);
    (void)calls("After_Equal_Total_Price", {{"Value", Datum()}});
}

TEST_F(Counter, typingOnTheInvoiceIsAScan) {
    scan("2800105012507");
    auto& grid = control<QTableWidget>(*page, "Lines_GRD");
    grid.setFocus();
    QTest::keyClicks(&grid, "2");
    EXPECT_EQ(page->focusWidget(), &control(*page, "Scan_EDT"));
    EXPECT_EQ(control<QLineEdit>(*page, "Scan_EDT").text(), "2");
}

TEST_F(Counter, aScannerNeedNotKnowWhereTheFocusIs) {
    for (const char* name : {"Removing_BTN", "Sound_CHK", "Store_CMB", "Policy_CMB", "Save_BTN", "SendToScale_BTN"}) {
        if (!lines().empty()) messages.answers = {mrNo};
        click(*page, "Clear_BTN");
        control(*page, name).setFocus();
        const int policyBefore = control<QComboBox>(*page, "Policy_CMB").currentIndex();
        // To whatever has the focus, as a keyboard does.
        for (const char digit : std::string("2800105012507"))
            QTest::keyClick(page->focusWidget(), digit);
        QTest::keyClick(page->focusWidget(), Qt::Key_Return);
        EXPECT_THAT(lines(), ElementsAre("۱۰۵|۱٫۲۵")) << name;
        EXPECT_FALSE(control<QPushButton>(*page, "Removing_BTN").isChecked()) << name;
        EXPECT_EQ(control<QComboBox>(*page, "Policy_CMB").currentIndex(), policyBefore) << name;
    }
}

TEST_F(Counter, thePersonsCodeIsTypedAndTheScanGoesOn) {
    type(*page, "Person_EDT", "۱2");
    EXPECT_EQ(control<QSpinBox>(*page, "Person_EDT").value(), 12);
    EXPECT_EQ(control<QSpinBox>(*page, "Person_EDT").text(), "۱۲");
    QTest::keyClick(page->focusWidget(), Qt::Key_Return);
    EXPECT_EQ(page->focusWidget(), &control(*page, "Scan_EDT"));
    EXPECT_TRUE(lines().empty());
}

TEST_F(Counter, aScanIntoThePersonIsAScan) {
    auto& person = control<QSpinBox>(*page, "Person_EDT");
    type(*page, "Person_EDT", "12");
    QTest::keyClick(page->focusWidget(), Qt::Key_Return);
    for (const char* barcode : {"2800105012507", "۲۸۰۰۱۰۵۰۱۲۵۰۷"}) {
        person.setFocus();
        person.selectAll();
        for (const QChar c : QString::fromUtf8(barcode)) {
            QKeyEvent key(QEvent::KeyPress, Qt::Key_unknown, Qt::NoModifier, c);
            QCoreApplication::sendEvent(page->focusWidget(), &key);
        }
        QTest::keyClick(page->focusWidget(), Qt::Key_Return);
        EXPECT_EQ(mood(), "added");
        EXPECT_EQ(person.value(), 12);
        EXPECT_EQ(person.text(), "۱۲");
        EXPECT_EQ(page->focusWidget(), &control(*page, "Scan_EDT"));
    }
    EXPECT_THAT(lines(), ElementsAre("۱۰۵|۱٫۲۵", "۱۰۵|۱٫۲۵"));
}

TEST_F(Counter, aCodeOfTooManyDigitsIsNobody) {
    auto& person = control<QSpinBox>(*page, "Person_EDT");
    type(*page, "Person_EDT", "12");
    QTest::keyClick(page->focusWidget(), Qt::Key_Return);
    for (const bool leaves : {false, true}) {
        person.setFocus();
        person.selectAll();
        // As slowly as people type.
        for (const char digit : std::string("2800105012"))
            QTest::keyClick(&person, digit, Qt::NoModifier, 80);
        EXPECT_EQ(person.text(), "۲۸۰۰۱۰۵۰۱۲");
        if (leaves) {
            control(*page, "Scan_EDT").setFocus();
        } else {
            QTest::keyClick(&person, Qt::Key_Return);
        }
        EXPECT_EQ(mood(), "refused");
        EXPECT_EQ(shown(*page, "Result_LBL"), "کد شخص بیش از ۹ رقم ندارد: ۲۸۰۰۱۰۵۰۱۲");
        EXPECT_EQ(person.value(), 12);
        EXPECT_EQ(person.text(), "۱۲");
        scan("2800105012507");
        EXPECT_EQ(mood(), "added");
    }
    EXPECT_EQ(lines().size(), 2U);
}

TEST_F(Counter, aWholeLayoutOfPersianKeysStillScans) {
    scan("٬*((!(٪(!٬٪(،");  // 2800105012507 with the shift key down
    EXPECT_THAT(lines(), ElementsAre("۱۰۵|۱٫۲۵"));
}

TEST_F(Counter, theNewestLineIsTheOneToWeigh) {
    scan("2800105012507");
    scan("2800098002507");
    EXPECT_EQ(control<QTableWidget>(*page, "Lines_GRD").currentRow(), 1);
    control<QTableWidget>(*page, "Lines_GRD").setCurrentCell(0, 0);
    scan("1234567890123");  // nothing came
    EXPECT_EQ(control<QTableWidget>(*page, "Lines_GRD").currentRow(), 0);
}

std::string remaining(Session& session) {
    return linesOf(session,
                   "SELECT TOP 1 CAST(Tedad AS nvarchar(30)), OperationType, OperationRow FROM dbo.Kardex "
                   "WHERE kala = 105 ORDER BY Global_ID DESC")
        .at(0);
}

TEST_F(Counter, aSaleIsLoggedWithItsNumber) {
    host.signInAs(2);  // a cashier, who may sell and little else
    page->enter();
    store(1);
    scan("2800105012507");
    click(*page, "Save_BTN");
    ASSERT_EQ(mood(), "matched") << shown(*page, "Result_LBL");
    const std::string number =
        linesOf(*session, "SELECT MAX(OperationCode) FROM dbo.Kardex WHERE OperationType = 1").at(0);
    const UserLogEntry event = host.userLog().latest(1).at(0);
    EXPECT_EQ(event.part, 905);
    EXPECT_EQ(event.permission, prInsert);
    EXPECT_EQ(event.text, number);
}

TEST_F(Counter, whoMayNotSellSavesNothing) {
    execute(*session, "DELETE FROM dbo.HostGroupPermissions WHERE SoftwarePart = 905");
    host.signInAs(2);
    page->enter();
    store(1);
    scan("2800105012507");
    const auto before = linesOf(*session, "SELECT COUNT(*) FROM dbo.Kardex");
    click(*page, "Save_BTN");
    EXPECT_EQ(mood(), "refused");
    EXPECT_EQ(takeMessages().size(), 1U);
    EXPECT_EQ(lines().size(), 1U);
    EXPECT_EQ(linesOf(*session, "SELECT COUNT(*) FROM dbo.Kardex"), before);
}

// Another counter works while this one's user reads a question: the ledger is not held then.
TEST_F(Counter, stockThatMovesWhileTheUserIsAskedIsCheckedAgain) {
    store(4);
    policy(1);
    // Of good 98 one is there, and goes before the answer: its receipt moves to a later day, which leaves number, sum
    // and newest row of the ledger as they were.
    execute(*session,
            "INSERT INTO dbo.Kardex (kala, Anbar, [Date], Global_ID, Tedad) VALUES (98, 4, N'1405/01/01', 999999, 1)");
    scan("2800105012507");
    scan("2800098002507");
    int asked = 0;
    messages.onShow = [&] {
        EXPECT_FALSE(session->inTransaction());
        if (++asked == 1) execute(*session, "UPDATE dbo.Kardex SET [Date] = N'1499/01/01' WHERE Global_ID = 999999");
    };
    messages.answers = {mrYes, mrNo};
    click(*page, "Save_BTN");
    EXPECT_THAT(takeMessages(), ElementsAre("ShowSmartMessage(confirmation 20091, 'موز درجه یک')",
                                            "ShowSmartMessage(confirmation 20091, 'سیب سبز ترش، موز درجه یک')"));
    EXPECT_EQ(mood(), "refused");
    EXPECT_EQ(lines().size(), 2U);
    EXPECT_EQ(linesOf(*session, "SELECT COUNT(*) FROM dbo.Kardex WHERE Anbar = 4 AND Tedad < 0").at(0), "0");
}

TEST_F(Counter, aQuestionThatWasAnsweredIsNotAskedAgain) {
    store(4);
    policy(1);
    scan("2800105012507");
    // The good falls even shorter; it is short by the user's leave already.
    messages.onShow = [&] {
        execute(*session,
                "INSERT INTO dbo.Kardex (kala, Anbar, [Date], Global_ID, Tedad) VALUES (105, 4, N'1405/01/01', 1, -1)");
    };
    messages.answers = {mrYes};
    click(*page, "Save_BTN");
    EXPECT_EQ(mood(), "matched");
    EXPECT_EQ(takeMessages().size(), 1U);
    EXPECT_EQ(linesOf(*session, "SELECT COUNT(*) FROM dbo.Kardex WHERE Anbar = 4 AND Tedad = -1.25").at(0), "1");
    // The next invoice is another matter.
    messages.onShow = {};
    scan("2800105012507");
    messages.answers = {mrNo};
    click(*page, "Save_BTN");
    EXPECT_EQ(mood(), "refused");
}

TEST_F(Counter, aRefusalIsReadWithTheLedgerFree) {
    store(4);
    policy(0);
    scan("2800105012507");
    messages.onShow = [&] { EXPECT_FALSE(session->inTransaction()); };
    click(*page, "Save_BTN");
    EXPECT_EQ(takeMessages().size(), 1U);
    EXPECT_EQ(&host.Messages(), &messages);
}

TEST_F(Counter, anInvoiceOfMoreThanAThousandGoodsIsChecked) {
    constexpr int kGoods = 1203;
    execute(*session,
            "WITH N AS (SELECT 0 AS I UNION ALL SELECT I + 1 FROM N WHERE I < 34) INSERT INTO dbo.GoodInf (Code, Name, "
            "AbbName) SELECT 10000 + A.I * 35 + B.I, N'کالا', N'!9' + CAST(10000 + A.I * 35 + B.I AS nvarchar(9)) + "
            "N'!' FROM N AS A CROSS JOIN N AS B");
    execute(*session,
            "INSERT INTO dbo.Kardex (kala, Anbar, [Date], Global_ID, Tedad) SELECT Code, 4, N'1405/01/01', 999999, 1 "
            "FROM dbo.GoodInf WHERE Code >= 10000 AND Code <> 11100");
    store(4);
    policy(0);
    CounterInvoice invoice(0);
    for (int good = 10000; good < 10000 + kGoods; ++good)
        invoice.add({.good = good, .name = "کالا", .amount = 1, .price = 100});
    ModuleCalls calls(context().registry);
    SaleOutcome outcome = sell(host, calls, invoice, {.store = 4, .person = 0, .negativeType = 0});
    EXPECT_EQ(outcome.number, std::nullopt);
    EXPECT_EQ(outcome.missing, "11100");
    invoice.remove(1100);
    outcome = sell(host, calls, invoice, {.store = 4, .person = 0, .negativeType = 0});
    ASSERT_TRUE(outcome.number);
    EXPECT_EQ(
        linesOf(*session, "SELECT COUNT(*), SUM(Tedad) FROM dbo.Kardex WHERE OperationType = 1 AND OperationCode = " +
                              std::to_string(*outcome.number))
            .at(0),
        "1202|-1202.000000000");
}

TEST_F(Counter, aFailedSaveDoesNotKeepTheResultOfTheScan) {
    store(1);
    policy(2);
    scan("2800105012507");
    ASSERT_EQ(mood(), "added");
    execute(*session, "DROP TABLE dbo.Kardex");
    click(*page, "Save_BTN");
    EXPECT_EQ(mood(), "refused");
    EXPECT_EQ(shown(*page, "Result_LBL"), "فاکتور ثبت نشد.");
    EXPECT_EQ(lines().size(), 1U);
    EXPECT_EQ(takeMessages().size(), 1U);
}

TEST_F(Counter, enoughStockIsSaved) {
    policy(0);
    store(1);
    scan("2800105012507");
    click(*page, "Save_BTN");
    EXPECT_EQ(mood(), "matched") << shown(*page, "Result_LBL");
    EXPECT_TRUE(lines().empty());
    EXPECT_EQ(remaining(*session), "-1.250000000|1|1");
}

TEST_F(Counter, stockFollowsThePolicy) {
    store(4);  // nothing was ever there
    policy(0);
    scan("2800105012507");
    click(*page, "Save_BTN");
    EXPECT_EQ(mood(), "refused");
    EXPECT_THAT(takeMessages(), ElementsAre("ShowSmartMessage(error 30055, 'موز درجه یک')"));
    EXPECT_EQ(lines().size(), 1U);

    policy(1);
    messages.answers = {mrNo};
    click(*page, "Save_BTN");
    EXPECT_EQ(mood(), "refused");
    EXPECT_EQ(lines().size(), 1U);
    messages.answers = {mrYes};
    click(*page, "Save_BTN");
    EXPECT_EQ(mood(), "matched");
    EXPECT_TRUE(lines().empty());
    EXPECT_THAT(takeMessages(), ElementsAre("ShowSmartMessage(confirmation 20091, 'موز درجه یک')",
                                            "ShowSmartMessage(confirmation 20091, 'موز درجه یک')"));

    policy(2);
    scan("2800105012507");
    click(*page, "Save_BTN");
    EXPECT_EQ(mood(), "matched");
    EXPECT_TRUE(takeMessages().empty());
}

TEST_F(Counter, thePolicyIsChosenForOneInvoice) {
    ASSERT_EQ(host.SettingRecord().NegativeType, 1);
    store(4);
    policy(2);
    EXPECT_EQ(host.SettingRecord().NegativeType, 1);
    scan("2800105012507");
    click(*page, "Save_BTN");
    EXPECT_EQ(mood(), "matched");
    EXPECT_TRUE(takeMessages().empty());
    EXPECT_EQ(host.SettingRecord().NegativeType, 1);
    EXPECT_EQ(control<QComboBox>(*page, "Policy_CMB").currentIndex(), 1);
}

TEST_F(Counter, theChosenPolicyIsNobodyElses) {
    store(4);
    scan("2800105012507");
    policy(0);
    int seen = -1;
    messages.onShow = [&] { seen = host.settings().record().NegativeType; };
    click(*page, "Save_BTN");
    EXPECT_EQ(mood(), "refused");
    EXPECT_EQ(seen, 1);  // the company's, while the user reads the refusal
    EXPECT_THAT(takeMessages(), ElementsAre("ShowSmartMessage(error 30055, 'موز درجه یک')"));
    // Another workstation changes the setting: it counts here as soon as it is read.
    execute(*session, "UPDATE dbo.HostSettings SET Value = '2' WHERE Name = 'NegativeType'");
    host.settings().reload();
    EXPECT_EQ(host.SettingRecord().NegativeType, 2);
}

TEST_F(Counter, aPolicyOfThisProcessStaysAfterTheInvoice) {
    host.setSetting("NegativeType", "0");
    page->enter();
    EXPECT_EQ(control<QComboBox>(*page, "Policy_CMB").currentIndex(), 0);
    store(4);
    policy(2);
    scan("2800105012507");
    click(*page, "Save_BTN");
    EXPECT_EQ(mood(), "matched");
    host.settings().reload();
    EXPECT_EQ(host.SettingRecord().NegativeType, 0);
}

TEST_F(Counter, aCheckThatFailsLeavesTheCompanysPolicy) {
    store(4);
    policy(0);
    scan("2800105012507");
    execute(*session, "DROP PROCEDURE dbo.CheckNegativeInventory_SP");
    click(*page, "Save_BTN");
    EXPECT_EQ(takeMessages().size(), 1U);
    EXPECT_EQ(host.SettingRecord().NegativeType, 1);
    EXPECT_EQ(lines().size(), 1U);
}

TEST_F(Counter, aRefusalNamesTheGoods) {
    store(4);
    policy(0);
    scan("2800105012507");
    click(*page, "Save_BTN");
    const std::string where = control<QComboBox>(*page, "Store_CMB").currentText().toStdString();
    EXPECT_EQ(shown(*page, "Result_LBL"),
              "فاکتور ثبت نشد؛ موجودی «" + where + "» کافی نیست: «موز درجه یک» (هست ۰، خواسته ۱٫۲۵ کیلوگرم).");
    scan("2800098002507");
    click(*page, "Save_BTN");
    EXPECT_EQ(shown(*page, "Result_LBL"),
              "فاکتور ثبت نشد؛ موجودی «" + where +
                  "» کافی نیست: «سیب سبز ترش» (هست ۰، خواسته ۰٫۲۵ کیلوگرم) و «موز درجه یک» (هست ۰، خواسته ۱٫۲۵ "
                  "کیلوگرم).");
    scan("6267311001001");
    const std::string third = control<QTableWidget>(*page, "Lines_GRD").item(2, 1)->text().toStdString();
    const std::string unit = control<QTableWidget>(*page, "Lines_GRD").item(2, 3)->text().toStdString();
    click(*page, "Save_BTN");
    EXPECT_EQ(shown(*page, "Result_LBL"),
              "فاکتور ثبت نشد؛ موجودی «" + where + "» کافی نیست: «" + third + "» (هست ۰، خواسته ۱ " + unit +
                  ")، «سیب سبز ترش» (هست ۰، خواسته ۰٫۲۵ کیلوگرم) و «موز درجه یک» (هست ۰، خواسته ۱٫۲۵ کیلوگرم).");
    EXPECT_EQ(takeMessages().size(), 3U);
}

TEST_F(Counter, whoMayNotChangeSettingsHasTheCompanysPolicy) {
    host.signInAs(2);
    host.setSetting("NegativeType", "0");
    page->enter();
    auto& combo = control<QComboBox>(*page, "Policy_CMB");
    EXPECT_FALSE(combo.isEnabled());
    EXPECT_EQ(combo.currentIndex(), 0);
    store(4);
    scan("2800105012507");
    combo.setCurrentIndex(2);
    click(*page, "Save_BTN");
    EXPECT_EQ(mood(), "refused");
    EXPECT_EQ(lines().size(), 1U);
}

TEST_F(Counter, anInvoiceIsNotThrownAwayWithoutAQuestion) {
    store(1);
    EXPECT_TRUE(page->mayLeave());
    scan("2800105012507");
    messages.answers = {mrCancel, mrCancel};
    EXPECT_FALSE(page->mayLeave());
    click(*page, "Clear_BTN");
    EXPECT_EQ(lines().size(), 1U);
    messages.answers = {mrYes};
    click(*page, "Clear_BTN");
    EXPECT_TRUE(lines().empty());
    EXPECT_EQ(mood(), "matched");
    scan("2800105012507");
    messages.answers = {mrNo};
    EXPECT_TRUE(page->mayLeave());
    EXPECT_TRUE(lines().empty());
    EXPECT_EQ(linesOf(*session, "SELECT COUNT(*) FROM dbo.Kardex WHERE kala = 105 AND Tedad = -1.25").at(0), "1");
    for (const MessageRequest& request : messages.shown)
        EXPECT_EQ(request.defaultButton, TMessageButton::Cancel);
    EXPECT_THAT(takeMessages(),
                ElementsAre("MsgUnsavedInvoice('ترک پیشخوان')", "MsgUnsavedInvoice('آغاز فاکتور تازه')",
                            "MsgUnsavedInvoice('آغاز فاکتور تازه')", "MsgUnsavedInvoice('ترک پیشخوان')"));
}

TEST_F(Counter, anInvoiceOfPricesAloneIsNotThrownAwayEither) {
    scan("2900000125005");
    messages.answers = {mrCancel, mrCancel, mrYes};
    EXPECT_FALSE(page->mayLeave());
    click(*page, "Clear_BTN");
    EXPECT_EQ(shown(*page, "Total_LBL"), "جمع فاکتور: ۱۲٬۵۰۰");
    click(*page, "Clear_BTN");  // to be saved, and there is nothing that the ledger could take
    EXPECT_EQ(mood(), "refused");
    EXPECT_EQ(shown(*page, "Result_LBL"), "فاکتور ثبت نشد؛ تنها بارکد مبلغی دارد و کالایی در آن نیست.");
    EXPECT_EQ(shown(*page, "Total_LBL"), "جمع فاکتور: ۱۲٬۵۰۰");
    messages.answers = {mrNo};
    click(*page, "Clear_BTN");
    EXPECT_EQ(shown(*page, "Total_LBL"), "جمع فاکتور: ۰");
    EXPECT_EQ(mood(), "");
    EXPECT_THAT(takeMessages(),
                ElementsAre("MsgUnsavedInvoice('ترک پیشخوان')", "MsgUnsavedInvoice('آغاز فاکتور تازه')",
                            "MsgUnsavedInvoice('آغاز فاکتور تازه')", "MsgUnsavedInvoice('آغاز فاکتور تازه')"));
    // Taken off again, there is nothing to ask about.
    scan("2900000125005");
    click(*page, "Removing_BTN");
    scan("2900000125005");
    EXPECT_TRUE(page->mayLeave());
    EXPECT_TRUE(takeMessages().empty());
}

TEST_F(Counter, anInvoiceThatCannotBeSavedStays) {
    store(4);
    policy(0);
    scan("2800105012507");
    messages.answers = {mrYes};
    EXPECT_FALSE(page->mayLeave());
    EXPECT_EQ(lines().size(), 1U);
}

TEST_F(Counter, aFailedScanDoesNotKeepTheResultOfTheOneBefore) {
    scan("2800105012507");
    ASSERT_EQ(mood(), "added");
    execute(*session, "DROP TABLE dbo.BarCodeFormul");
    scan("2800105012507");
    EXPECT_EQ(mood(), "refused");
    EXPECT_EQ(shown(*page, "Result_LBL"), "بارکد ۲۸۰۰۱۰۵۰۱۲۵۰۷ خوانده نشد.");
    EXPECT_EQ(lines().size(), 1U);
    EXPECT_EQ(takeMessages().size(), 1U);
}

TEST_F(Counter, numbersOfTheServerAreNoCodes) {
    for (const char* barcode : {"281E002012505", "280x061012505"}) {
        scan("2800105012507");
        scan(barcode);
        EXPECT_EQ(mood(), "refused") << barcode;
    }
    EXPECT_EQ(lines().size(), 2U);
    EXPECT_TRUE(takeMessages().empty());
}

TEST_F(Counter, aLayoutThatLooksInTheWrongPlaceIsToldInPlainWords) {
    execute(
        *session,
        "INSERT INTO dbo.BarCodeFormul (Title, DigitCount, ConstantStart, ConstantCount, ConstantCode, BarCodeType, "
        "ItemCodeType, ItemCodeStart, ItemCodeCount, AmountStart, AmountCount, PriceStart, PriceCount) VALUES "
        "(N'بیرون', 13, 1, 2, N'31', 1, 1, 14, 5, 8, 5, 0, 0), (N'دراز', 20, 1, 2, N'32', 1, 1, 3, 12, 0, 0, 0, 0), "
        "(N'بیرون ۲', 13, 1, 2, N'33', 1, 1, 14, 5, 8, 5, 3, 5), (N'دراز ۲', 20, 1, 2, N'34', 1, 1, 3, 12, 0, 0, "
        "15, 5)");
    const std::pair<const char*, const char*> cases[] = {
        {"3100105012507",
         "الگوی «بیرون» در این بارکد جایی برای «کالا» ندارد. جای آن را در صفحهٔ الگوهای بارکد درست کنید."},
        {"32999999999999000000",
         "کد کالای بارکد، ۹۹۹۹۹۹۹۹۹۹۹۹، بزرگ‌تر از هر کد کالایی است. جای «کالا» را در الگوی «دراز» درست کنید."},
        {"3300105012507",
         "الگوی «بیرون ۲» در این بارکد جایی برای «کالا» ندارد. جای آن را در صفحهٔ الگوهای بارکد درست کنید."},
        {"34999999999999000000",
         "کد کالای بارکد، ۹۹۹۹۹۹۹۹۹۹۹۹، بزرگ‌تر از هر کد کالایی است. جای «کالا» را در الگوی «دراز ۲» درست کنید."},
    };
    for (const auto& [barcode, text] : cases) {
        scan(barcode);
        EXPECT_EQ(mood(), "refused") << barcode;
        EXPECT_EQ(shown(*page, "Result_LBL"), text);
        EXPECT_TRUE(takeMessages().empty()) << barcode;
    }
    EXPECT_TRUE(lines().empty());
    scan("2800105012507");
    EXPECT_EQ(mood(), "added");
}

// The module tells the kind as a byte, and cuts nothing where the layout's own is none of the three.
TEST_F(Counter, aKindThatOnlyItsByteMakesKnownSellsNothing) {
    scan("2800105012507");
    scan("2900000125005");
    for (const int kind : {4, 257, 258, 259, -255}) {
        execute(*session, "DELETE FROM dbo.BarCodeFormul WHERE ConstantCode = N'88'");
        execute(*session,
                "INSERT INTO dbo.BarCodeFormul (Title, DigitCount, ConstantStart, ConstantCount, ConstantCode, "
                "BarCodeType, ItemCodeType, ItemCodeStart, ItemCodeCount, PriceStart, PriceCount) VALUES "
                "(N'ناشناخته', 8, 1, 2, N'88', ?, 1, 3, 3, 6, 3)",
                {std::int64_t{kind}});
        scan("88105123");
        EXPECT_EQ(mood(), "warned") << kind;
        EXPECT_EQ(shown(*page, "Result_LBL"), "این نوع بارکد در پیشخوان کاری ندارد.") << kind;
        EXPECT_THAT(lines(), ElementsAre("۱۰۵|۱٫۲۵")) << kind;
        EXPECT_EQ(shown(*page, "PriceSum_LBL"), "جمع بارکدهای مبلغی: ۱۲٬۵۰۰") << kind;
    }
    EXPECT_TRUE(takeMessages().empty());
}

// A line keeps its price when its label's layout has come to such a kind since.
TEST_F(Counter, aKindThatOnlyItsByteMakesKnownPricesNothing) {
    execute(*session,
            "UPDATE dbo.BarCodeFormul SET ItemCodeType = 1 WHERE ConstantCode = N'27' "
            "UPDATE dbo.GoodCostDiscount SET CostLevel_Sell_1 = 1000, CostLevel_Sell_3 = 700, "
            "Default_CostLevel_Sell_Number = 1 WHERE GoodCode = 105 "
            "DELETE FROM dbo.costlist WHERE [Type] = 1 AND TypeCode = 12 "
            "INSERT INTO dbo.costlist ([Type], [Status], TypeCode, CostLevelCode, [Default]) VALUES (1, 0, 12, 3, 1)");
    scan("27001050101250012345");
    scan("2800105012507");
    execute(*session, "UPDATE dbo.BarCodeFormul SET BarCodeType = 257 WHERE ConstantCode = N'27'");
    const auto price = [this](int row) {
        return control<QTableWidget>(*page, "Lines_GRD").item(row, 4)->text().toStdString();
    };
    ASSERT_EQ(price(0), "۱۲٬۳۴۵");
    ASSERT_EQ(price(1), "۱٬۰۰۰");
    messages.answers = {mrYes};
    type(*page, "Person_EDT", "12");
    QTest::keyClick(page->focusWidget(), Qt::Key_Return);
    EXPECT_EQ(price(0), "۱۲٬۳۴۵");
    EXPECT_EQ(price(1), "۷۰۰");
}

// The module looks at no layout but the first that fits.
TEST_F(Counter, aLayoutBehindTheFirstKeepsNoBarcodeFromBeingRead) {
    execute(*session,
            "INSERT INTO dbo.BarCodeFormul (Title, DigitCount, ConstantStart, ConstantCount, ConstantCode, "
            "BarCodeType, ItemCodeType, ItemCodeStart, ItemCodeCount, AmountStart, AmountCount) VALUES "
            "(N'دومی', 13, 1, 2, N'28', 1, 1, 3, 5, 40, 4), (N'سومی', 13, 1, 2, N'28', 1, 2, 14, 5, 8, 5)");
    for (const bool byScaleCode : {true, false}) {
        TSettingRecord settings = host.settings().record();
        settings.FindGoodByScaleCode = byScaleCode;
        const LentSettings lent(host, std::move(settings));
        scan("2800105012507");
        EXPECT_EQ(mood(), "added") << byScaleCode;
        EXPECT_EQ(shown(*page, "Result_LBL"), "۱٫۲۵ کیلوگرم «موز درجه یک» افزوده شد.") << byScaleCode;
    }
    // And what is wrong is told of the first.
    scan("2800105ABC507");
    EXPECT_EQ(mood(), "refused");
    EXPECT_EQ(shown(*page, "Result_LBL"),
              "در بارکد ۲۸۰۰۱۰۵ABC۵۰۷ به جای «مقدار» نوشته است «ABC۵۰» که عدد نیست. اگر بارکد درست است، جای «مقدار» را "
              "در الگوی «وزن با کد کالا» درست کنید.");
}

// The first row decides although its prefix is another one to the letter: nothing is read, whatever else fits.
TEST_F(Counter, aFirstLayoutThatDoesNotFitToTheLetterLeavesTheBarcodeToItsMaker) {
    execute(*session, "UPDATE dbo.GoodInf SET AbbName = N'!QX00105012507!' WHERE Code = 105");
    execute(*session,
            "INSERT INTO dbo.BarCodeFormul (Title, DigitCount, ConstantStart, ConstantCount, ConstantCode, "
            "BarCodeType, ItemCodeType, ItemCodeStart, ItemCodeCount, AmountStart, AmountCount) VALUES "
            "(N'کوچک', 13, 1, 2, N'qx', 1, 1, 3, 5, 8, 5), (N'بزرگ', 13, 1, 2, N'QX', 1, 1, 14, 5, 8, 5)");
    scan("QX00105012507");
    EXPECT_EQ(mood(), "added");
    EXPECT_THAT(lines(), ElementsAre("۱۰۵|۱"));
}

// What a total's barcode says is read by the layout that the module has compared it by.
TEST_F(Counter, aTotalIsToldByTheFirstLayoutThatFits) {
    execute(*session,
            "INSERT INTO dbo.BarCodeFormul (Title, DigitCount, ConstantStart, ConstantCount, ConstantCode, "
            "BarCodeType, PriceStart, PriceCount) VALUES (N'دیگر', 13, 1, 1, N'2', 2, 3, 3)");
    scan("2900000125005");
    scan("2500000125015");
    EXPECT_EQ(shown(*page, "Result_LBL"), "بارکد ۱۲٬۵۰۱ است و فاکتور ۱۲٬۵۰۰؛ فاکتور ۱ کمتر است.");
    EXPECT_EQ(takeMessages().size(), 1U);  // the module's own note
}

TEST_F(Counter, aLevelThatGivesAGoodAwayGivesItAway) {
    execute(*session, "UPDATE dbo.GoodInf SET ConsumerPrice = 5000 WHERE Code = 105");
    execute(*session,
            "UPDATE dbo.GoodCostDiscount SET CostLevel_Sell_1 = 0, Default_CostLevel_Sell_Number = 1 WHERE GoodCode = "
            "105");
    scan("2800105012507");
    EXPECT_EQ(mood(), "warned");
    EXPECT_EQ(shown(*page, "Result_LBL"), "۱٫۲۵ کیلوگرم «موز درجه یک» افزوده شد؛ قیمت آن صفر است.");
    EXPECT_EQ(shown(*page, "Total_LBL"), "جمع فاکتور: ۰");
}

TEST_F(Counter, aPriceBelowZeroIsNotSold) {
    execute(*session,
            "UPDATE dbo.GoodCostDiscount SET CostLevel_Sell_1 = -500, Default_CostLevel_Sell_Number = 1 WHERE GoodCode "
            "IN (1, 105)");
    scan("2800105012507");
    EXPECT_EQ(mood(), "refused");
    EXPECT_EQ(
        shown(*page, "Result_LBL"),
        "«موز درجه یک» افزوده نشد؛ قیمت آن کمتر از صفر است: \u2066-۵۰۰\u2069. قیمت را در فهرست قیمت‌ها درست کنید.");
    scan("6267311001001");
    EXPECT_EQ(mood(), "refused");
    EXPECT_TRUE(lines().empty());
}

TEST_F(Counter, numbersInNamesHaveTheDigitsOfTheScreen) {
    execute(*session, "UPDATE dbo.GoodInf SET Name = N'شیر 3 درصد A4' WHERE Code = 105");
    scan("2800105012507");
    EXPECT_EQ(shown(*page, "Result_LBL"), "۱٫۲۵ کیلوگرم «شیر ۳ درصد A4» افزوده شد.");
    const QTableWidgetItem& name = *control<QTableWidget>(*page, "Lines_GRD").item(0, 1);
    EXPECT_EQ(name.text().toStdString(), "شیر ۳ درصد A4");
}

TEST_F(Counter, aNameThatLooksLikeMarkupIsShownAsItIs) {
    execute(*session, "UPDATE dbo.GoodInf SET Name = N'<b>موز</b> & شیر' WHERE Code = 105");
    scan("2800105012507");
    QTextDocument tip;
    tip.setHtml(control<QTableWidget>(*page, "Lines_GRD").item(0, 1)->toolTip());
    EXPECT_EQ(tip.toPlainText().toStdString(), "<b>موز</b> & شیر");
}

// Prices of good 105: 1000 for anybody, 700 for person 12.
class CounterPrices : public Counter {
protected:
    CounterPrices() {
        execute(
            *session,
            "UPDATE dbo.GoodCostDiscount SET CostLevel_Sell_1 = 1000, CostLevel_Sell_3 = 700, "
            "Default_CostLevel_Sell_Number = 1 WHERE GoodCode = 105 "
            "DELETE FROM dbo.costlist WHERE [Type] = 1 AND TypeCode IN (12, 13) "
            "INSERT INTO dbo.costlist ([Type], [Status], TypeCode, CostLevelCode, [Default]) VALUES (1, 0, 12, 3, 1)");
    }
    void name(const char* person) {
        type(*page, "Person_EDT", person);
        QTest::keyClick(page->focusWidget(), Qt::Key_Return);
    }
    [[nodiscard]] std::vector<std::string> prices() const {
        const auto& grid = control<QTableWidget>(*page, "Lines_GRD");
        std::vector<std::string> texts;
        for (int row = 0; row < grid.rowCount(); ++row)
            texts.push_back(grid.item(row, 4)->text().toStdString());
        return texts;
    }
    void expectASaveWithoutQuestions() {
        store(1);
        click(*page, "Save_BTN");
        EXPECT_EQ(mood(), "matched");
        EXPECT_TRUE(takeMessages().empty());
    }
};

TEST_F(CounterPrices, linesFollowThePersonWhenTheUserWantsIt) {
    scan("2800105010007");
    EXPECT_THAT(prices(), ElementsAre("۱٬۰۰۰"));
    messages.answers = {mrYes};
    name("12");
    EXPECT_THAT(takeMessages(), ElementsAre("MsgTakePersonsPrices()"));
    EXPECT_THAT(prices(), ElementsAre("۷۰۰"));
    EXPECT_EQ(shown(*page, "Result_LBL"), "قیمت سطرها از نو گرفته شد.");
    EXPECT_EQ(shown(*page, "Total_LBL"), "جمع فاکتور: ۷۰۰");
    expectASaveWithoutQuestions();
}

TEST_F(CounterPrices, aPieceHasThePriceOfItsLevelAsALabelHas) {
    execute(*session, "UPDATE dbo.GoodInf SET AbbName = N'!6262620010508!', ConsumerPrice = 5000 WHERE Code = 105");
    scan("6262620010508");
    scan("2800105010007");
    EXPECT_THAT(prices(), ElementsAre("۱٬۰۰۰", "۱٬۰۰۰"));
    messages.answers = {mrYes};
    name("12");
    EXPECT_THAT(prices(), ElementsAre("۷۰۰", "۷۰۰"));
    scan("6262620010508");
    EXPECT_THAT(prices(), ElementsAre("۷۰۰", "۷۰۰"));
    EXPECT_EQ(lines().front(), "۱۰۵|۲");
    EXPECT_EQ(takeMessages().size(), 1U);
    click(*page, "Removing_BTN");
    scan("6262620010508");
    scan("6262620010508");
    EXPECT_THAT(prices(), ElementsAre("۷۰۰"));
}

TEST_F(CounterPrices, aPieceWithoutALevelsPriceHasTheConsumers) {
    execute(*session, "UPDATE dbo.GoodInf SET AbbName = N'!6262620010508!', ConsumerPrice = 5000 WHERE Code = 105");
    execute(*session, "UPDATE dbo.GoodCostDiscount SET CostLevel_Sell_1 = NULL WHERE GoodCode = 105");
    scan("6262620010508");
    execute(*session, "DELETE FROM dbo.GoodCostDiscount WHERE GoodCode = 105");
    scan("6262620010508");
    EXPECT_THAT(prices(), ElementsAre("۵٬۰۰۰"));
    EXPECT_THAT(lines(), ElementsAre("۱۰۵|۲"));
    EXPECT_EQ(mood(), "added");
}

TEST_F(CounterPrices, aPriceThatIsBelowZeroForThePersonIsNotSold) {
    store(1);
    scan("2800105010007");
    execute(*session, "UPDATE dbo.GoodCostDiscount SET CostLevel_Sell_3 = -1 WHERE GoodCode = 105");
    messages.answers = {mrYes};
    name("12");
    EXPECT_EQ(mood(), "warned");
    EXPECT_EQ(
        shown(*page, "Result_LBL"),
        "قیمت سطرها از نو گرفته شد. قیمت «موز درجه یک» کمتر از صفر است و تا درست نشود فاکتور ثبت نمی‌شود.");
    const auto before = linesOf(*session, "SELECT COUNT(*) FROM dbo.Kardex");
    click(*page, "Save_BTN");
    EXPECT_EQ(mood(), "refused");
    EXPECT_EQ(
        shown(*page, "Result_LBL"),
        "فاکتور ثبت نشد؛ قیمت «موز درجه یک» کمتر از صفر است. قیمت را در فهرست قیمت‌ها درست کنید یا سطر را "
        "بردارید.");
    EXPECT_EQ(linesOf(*session, "SELECT COUNT(*) FROM dbo.Kardex"), before);
    EXPECT_EQ(takeMessages().size(), 1U);
    EXPECT_EQ(lines().size(), 1U);
}

TEST_F(CounterPrices, aLabelThatCanNoLongerBeReadKeepsItsPrice) {
    scan("2800105010007");
    execute(*session, "UPDATE dbo.BarCodeFormul SET AmountStart = 20 WHERE ConstantCode = N'28'");
    name("12");
    EXPECT_TRUE(takeMessages().empty());
    EXPECT_THAT(prices(), ElementsAre("۱٬۰۰۰"));
}

TEST_F(CounterPrices, whoKeepsThePricesIsNotAskedAgain) {
    scan("2800105010007");
    messages.answers = {mrNo};
    name("12");
    EXPECT_EQ(takeMessages().size(), 1U);
    EXPECT_EQ(shown(*page, "Result_LBL"), "سطرهای پیشین با همان قیمت ماندند.");
    name("12");
    scan("2800105010007");
    EXPECT_THAT(prices(), ElementsAre("۱٬۰۰۰", "۷۰۰"));
    expectASaveWithoutQuestions();
}

TEST_F(CounterPrices, nobodyIsAskedWhereNothingDiffers) {
    execute(*session, "DELETE FROM dbo.GoodCostDiscount WHERE GoodCode = 1");
    name("12");
    scan("2800105010007");
    scan("6267311001001");  // without levels it has one price for all
    name("12");
    EXPECT_TRUE(takeMessages().empty());
    click(*page, "Removing_BTN");
    scan("2800105010007");
    name("13");
    EXPECT_TRUE(takeMessages().empty());
    EXPECT_EQ(lines().size(), 1U);
}

TEST_F(CounterPrices, aPersonNamedJustBeforeSavingCountsToo) {
    store(1);
    scan("2800105010007");
    messages.answers = {mrYes};
    control<QSpinBox>(*page, "Person_EDT").setValue(12);  // and saved by its key, without an Enter
    click(*page, "Save_BTN");
    EXPECT_EQ(mood(), "matched");
    EXPECT_THAT(takeMessages(), ElementsAre("MsgTakePersonsPrices()"));
    EXPECT_EQ(linesOf(*session, "SELECT Fi FROM dbo.Kardex WHERE kala = 105 AND Tedad = -1 AND PerCode = 12").at(0),
              "700.000000000");
}

TEST_F(Counter, nothingWeighedIsNoLine) {
    scan("2800097000005");
    EXPECT_EQ(mood(), "refused");
    EXPECT_EQ(shown(*page, "Result_LBL"), "وزن در بارکد صفر است؛ کالا را دوباره وزن کنید.");
    EXPECT_TRUE(lines().empty());
}

TEST_F(Counter, aPersonThatNobodyIsIsToldAtOnceAndNotSaved) {
    store(1);
    scan("2800105012507");
    type(*page, "Person_EDT", "999999");
    QTest::keyClick(page->focusWidget(), Qt::Key_Return);
    EXPECT_EQ(mood(), "refused");
    EXPECT_EQ(shown(*page, "Result_LBL"), "شخصی با کد ۹۹۹۹۹۹ تعریف نشده است.");
    scan("2800098002507");
    click(*page, "Save_BTN");
    EXPECT_EQ(shown(*page, "Result_LBL"), "شخصی با کد ۹۹۹۹۹۹ تعریف نشده است.");
    EXPECT_EQ(lines().size(), 2U);
    EXPECT_TRUE(takeMessages().empty());
}

TEST_F(Counter, anEmptyInvoiceIsNotSaved) {
    click(*page, "Save_BTN");
    EXPECT_EQ(mood(), "warned");
}

TEST_F(Counter, boxesAreTakenOffTheWeight) {
    scan("2800105012507");
    QTimer::singleShot(0, [] {
        QWidget& dialog = *QApplication::activeModalWidget();
        control<QComboBox>(dialog, "Weight_CMB").setEditText("0.25");
        control<QLineEdit>(dialog, "Count_EDT").setText("2");
        QTest::keyClick(&control(dialog, "Count_EDT"), Qt::Key_Return);
    });
    click(*page, "Tare_BTN");
    EXPECT_THAT(lines(), ElementsAre("۱۰۵|۰٫۷۵"));
    QTimer::singleShot(0, [] { QTest::keyClick(QApplication::activeModalWidget(), Qt::Key_Escape); });
    click(*page, "Tare_BTN");
    EXPECT_THAT(lines(), ElementsAre("۱۰۵|۰٫۷۵"));
    QTimer::singleShot(0, [] {
        QWidget& dialog = *QApplication::activeModalWidget();
        EXPECT_EQ(control<QComboBox>(dialog, "Weight_CMB").itemText(0), "۰٫۲۵");
        control<QComboBox>(dialog, "Weight_CMB").setEditText("5");
        control<QLineEdit>(dialog, "Count_EDT").setText("2");
        QTest::keyClick(&dialog, Qt::Key_F3);
    });
    click(*page, "Tare_BTN");
    EXPECT_EQ(mood(), "refused");
    EXPECT_THAT(lines(), ElementsAre("۱۰۵|۰٫۷۵"));
    // The label says what it said.
    click(*page, "Removing_BTN");
    scan("2800105012507");
    EXPECT_EQ(mood(), "removed");
    EXPECT_EQ(shown(*page, "Result_LBL"), "۰٫۷۵ کیلوگرم «موز درجه یک» از فاکتور حذف شد.");
    EXPECT_TRUE(lines().empty());
}

TEST_F(Counter, boxesAreNotTakenOffWhatIsCounted) {
    scan("2800105012507");
    scan("6267311001001");
    click(*page, "Tare_BTN");  // no dialog, which nobody would close
    EXPECT_EQ(mood(), "refused");
    const QString name = control<QTableWidget>(*page, "Lines_GRD").item(1, 1)->text();
    EXPECT_EQ(
        shown(*page, "Result_LBL"),
        "«" + name.toStdString() +
            "» به تعداد فروخته می‌شود، نه به وزن؛ وزن ظرف از آن کم نمی‌شود. سطر کالایی را برگزینید که "
            "ترازو وزن کرده است.");
    EXPECT_EQ(lines().back().substr(lines().back().find('|')), "|۱");
    click(*page, "Removing_BTN");
    scan("6267311001001");
    EXPECT_EQ(mood(), "removed");
    EXPECT_EQ(lines().size(), 1U);
}

TEST_F(Counter, equalPiecesAreOneLine) {
    scan("6267311001001");
    scan("2800105012507");
    scan("6267311001001");
    scan("6267311001001");
    scan("2800105012507");
    EXPECT_THAT(lines(), ElementsAre("۱|۳", "۱۰۵|۱٫۲۵", "۱۰۵|۱٫۲۵"));
    scan("6267311001001");
    EXPECT_THAT(chosen(), ElementsAre(0));
    const auto& grid = control<QTableWidget>(*page, "Lines_GRD");
    const std::string name = grid.item(0, 1)->text().toStdString();
    const std::string unit = grid.item(0, 3)->text().toStdString();
    EXPECT_EQ(shown(*page, "Result_LBL"), "۱ " + unit + " «" + name + "» افزوده شد؛ اکنون ۴ " + unit + ".");
    click(*page, "Removing_BTN");
    scan("6267311001001");
    EXPECT_THAT(lines(), ElementsAre("۱|۳", "۱۰۵|۱٫۲۵", "۱۰۵|۱٫۲۵"));
    EXPECT_EQ(shown(*page, "Result_LBL"), "۱ " + unit + " «" + name + "» از فاکتور حذف شد.");
    EXPECT_THAT(chosen(), ElementsAre(0));
}

// Types into the dialog of the amount, which stays until it is told one or given up.
void answerAmount(const char* typed, const std::function<void(QWidget&)>& then) {
    QTimer::singleShot(0, [typed, then] {
        QWidget& dialog = *QApplication::activeModalWidget();
        EXPECT_EQ(dialog.objectName(), "Amount_FRM");
        control<QLineEdit>(dialog, "Amount_EDT").setText(QString::fromUtf8(typed));
        QTest::keyClick(&control(dialog, "Amount_EDT"), Qt::Key_Return);
        then(dialog);
    });
}

TEST_F(Counter, theAmountOfPiecesIsTyped) {
    scan("6267311001001");
    scan("2800105012507");
    QTest::keyClick(&control(*page, "Scan_EDT"), Qt::Key_Up);
    const auto& grid = control<QTableWidget>(*page, "Lines_GRD");
    const std::string name = grid.item(0, 1)->text().toStdString();
    const std::string unit = grid.item(0, 3)->text().toStdString();
    const auto nothing = [](QWidget& /*dialog*/) {};
    for (const auto& [typed, shownAs] : std::initializer_list<std::pair<const char*, const char*>>{
             {"24", "۱|۲۴"}, {"۲٫۵", "۱|۲٫۵"}, {".5", "۱|۰٫۵"}, {"2.", "۱|۲"}, {"٫۷۵", "۱|۰٫۷۵"}, {"٧", "۱|۷"}}) {
        answerAmount(typed, nothing);
        click(*page, "Amount_BTN");
        EXPECT_EQ(lines().front(), shownAs) << typed;
        EXPECT_EQ(mood(), "added");
        EXPECT_THAT(chosen(), ElementsAre(0));
        EXPECT_EQ(page->focusWidget(), &control(*page, "Scan_EDT"));
    }
    EXPECT_EQ(shown(*page, "Result_LBL"), "سطر ۱: مقدار «" + name + "» شد ۷ " + unit + ".");
    scan("6267311001001");
    EXPECT_EQ(lines().front(), "۱|۸");
}

TEST_F(Counter, theAmountStandsBesideItsLabel) {
    scan("6267311001001");
    QTimer::singleShot(0, [] {
        QWidget& dialog = *QApplication::activeModalWidget();
        auto& input = control<QLineEdit>(dialog, "Amount_EDT");
        (void)input.grab();  // it takes its text to its side as it is drawn
        EXPECT_GT(input.inputMethodQuery(Qt::ImCursorRectangle).toRect().center().x(), input.width() / 2);
        QTest::keyClick(&dialog, Qt::Key_Escape);
    });
    click(*page, "Amount_BTN");
}

TEST_F(Counter, whatIsNoAmountIsNotTaken) {
    scan("6267311001001");
    for (const char* typed : {"", "0", "-3", "abc", "1.2.3", "2,5", "0.0000000001", ".", "-.5"}) {
        answerAmount(typed, [typed](QWidget& dialog) {
            EXPECT_TRUE(dialog.isVisible()) << typed;
            EXPECT_EQ(shown(dialog, "Error_LBL"), "مقدار باید عددی بزرگ‌تر از صفر باشد.")
                << typed;
            QTest::keyClick(&dialog, Qt::Key_Escape);
        });
        click(*page, "Amount_BTN");
        EXPECT_THAT(lines(), ElementsAre("۱|۱")) << typed;
    }
    answerAmount("99999999999999.5", [](QWidget& dialog) {
        EXPECT_EQ(shown(dialog, "Error_LBL"),
                  "این مقدار بزرگ‌تر از آن است که در فاکتور بیاید.");
        QTest::keyClick(&dialog, Qt::Key_Escape);
    });
    click(*page, "Amount_BTN");
    EXPECT_THAT(lines(), ElementsAre("۱|۱"));
    EXPECT_TRUE(takeMessages().empty());
}

TEST_F(Counter, aScanIntoTheAmountIsAScan) {
    scan("6267311001001");
    answerAmount("2800105012507", [](QWidget& dialog) { EXPECT_FALSE(dialog.isVisible()); });
    QTest::keyClick(&control(*page, "Scan_EDT"), Qt::Key_F2);
    EXPECT_THAT(lines(), ElementsAre("۱|۱", "۱۰۵|۱٫۲۵"));
    EXPECT_THAT(chosen(), ElementsAre(1));
}

TEST_F(Counter, aWeightIsNotTyped) {
    scan("2800105012507");
    QTest::keyClick(&control(*page, "Scan_EDT"), Qt::Key_F2);  // no dialog, which nobody would close
    EXPECT_EQ(mood(), "refused");
    EXPECT_EQ(
        shown(*page, "Result_LBL"),
        "سطر ۱: «موز درجه یک» را ترازو وزن کرده است و مقدار آن نوشته نمی‌شود؛ کالا را دوباره وزن کنید.");
}

// Before the user answers, and not only afterwards.
TEST_F(Counter, theNumbersStandThereWhileTheUserIsAsked) {
    store(4);
    policy(1);
    execute(
        *session,
        "INSERT INTO dbo.Kardex (kala, Anbar, [Date], Global_ID, Tedad) VALUES (105, 4, N'1405/01/01', 999999, 0.5)");
    scan("2800105012507");
    scan("2800105012507");
    const std::string where = control<QComboBox>(*page, "Store_CMB").currentText().toStdString();
    std::string seen;
    messages.onShow = [&] { seen = shown(*page, "Result_LBL"); };
    messages.answers = {mrNo};
    click(*page, "Save_BTN");
    EXPECT_EQ(seen, "موجودی «" + where + "» کافی نیست: «موز درجه یک» (هست ۰٫۵، خواسته ۲٫۵ کیلوگرم).");
    EXPECT_EQ(shown(*page, "Result_LBL"), "فاکتور ثبت نشد؛ " + seen);
    EXPECT_EQ(takeMessages().size(), 1U);
}

TEST_F(Counter, aScanSoundsWhenThatIsWanted) {
    int tones = 0;
    page->onTone = [&tones] { ++tones; };
    scan("2800105012507");
    scan("1234567890123");
    QTest::qWait(300);
    EXPECT_EQ(tones, 0);
    click(*page, "Sound_CHK");
    scan("2800105012507");
    EXPECT_EQ(mood(), "added");
    EXPECT_EQ(tones, 1);
    QTest::qWait(300);
    EXPECT_EQ(tones, 1) << "one for what went well";
    scan("1234567890123");
    EXPECT_EQ(mood(), "refused");
    EXPECT_EQ(tones, 2);
    QTRY_COMPARE(tones, 3);
    messages.answers = {mrNo};
    click(*page, "Clear_BTN");
    QTest::qWait(300);
    EXPECT_EQ(tones, 3) << "a new invoice is no scan";
}

// A sign that became a digit would make it the label of another parcel.
TEST_F(Counter, aSignInABarcodeIsNotTakenForADigit) {
    scan("2*00105012507");
    EXPECT_EQ(mood(), "refused");
    EXPECT_TRUE(lines().empty());
    scan("۲*۰۰۱۰۵۰۱۲۵۰۷");
    EXPECT_EQ(mood(), "refused");
    EXPECT_TRUE(lines().empty());
}

TEST_F(Counter, chosenGoodsGoToTheScales) {
    scan("2800105012507");
    scan("2800098002507");
    auto& grid = control<QTableWidget>(*page, "Lines_GRD");
    grid.selectAll();
    click(*page, "SendToScale_BTN");
    ASSERT_EQ(programs.started.size(), 1U);
    EXPECT_TRUE(programs.started[0].ends_with(" \"105,98\"")) << programs.started[0];
    programs.started.clear();
    control<QComboBox>(*page, "ScaleType_CMB").setCurrentIndex(1);
    programs.bar = &control<QProgressBar>(*page, "Progress_BAR");
    click(*page, "SendToScale_BTN");
    EXPECT_EQ(mood(), "added");
    EXPECT_EQ(shown(*page, "Result_LBL"), "۴ ارسال به برنامهٔ ترازو سپرده شد.");
    ASSERT_EQ(programs.started.size(), 4U);
    EXPECT_THAT(programs.shown, ElementsAre("۱ از ۴", "۲ از ۴", "۳ از ۴"));
    for (std::size_t i = 0; i < programs.started.size(); ++i)
        EXPECT_TRUE(programs.started[i].ends_with(i + 1 == programs.started.size() ? "  1" : "  0"));
    EXPECT_EQ(&host.programs(), &programs);
    EXPECT_FALSE(control(*page, "Progress_BAR").isVisible());
}

// At the scale nobody would find them.
TEST_F(Counter, goodsThatNoKeyMeansAreNamed) {
    const auto send = [this](std::initializer_list<const char*> barcodes) {
        for (const char* barcode : barcodes)
            scan(barcode);
        control<QTableWidget>(*page, "Lines_GRD").selectAll();
        programs.started.clear();
        click(*page, "SendToScale_BTN");
    };
    control<QComboBox>(*page, "ScaleType_CMB").setCurrentIndex(1);
    send({"2800105012507", "6267311001001"});
    EXPECT_EQ(programs.started.size(), 2U);
    EXPECT_EQ(mood(), "warned");
    EXPECT_EQ(shown(*page, "Result_LBL"),
              "۲ ارسال به برنامهٔ ترازو سپرده شد؛ برای «برنج هاشمی درجه یک ۱۰ کیلویی» کلیدی در ترازوها تعریف نشده "
              "است.");
    EXPECT_TRUE(takeMessages().empty());
    // A good of two lines is named once.
    execute(*session, "UPDATE dbo.[Group-PLU] SET Group1 = NULL WHERE Group1 = 98");
    execute(*session, "UPDATE dbo.[Group-PLU] SET Group2 = NULL WHERE Group2 = 98");
    send({"2800098002507", "2800098002507"});
    EXPECT_EQ(programs.started.size(), 2U);
    EXPECT_EQ(shown(*page, "Result_LBL"),
              "۲ ارسال به برنامهٔ ترازو سپرده شد؛ برای «برنج هاشمی درجه یک ۱۰ کیلویی» و «سیب سبز ترش» کلیدی در ترازوها "
              "تعریف نشده است.");
    // The agent reads the keys of all together itself.
    control<QComboBox>(*page, "ScaleType_CMB").setCurrentIndex(0);
    send({});
    EXPECT_EQ(mood(), "added");
    EXPECT_EQ(shown(*page, "Result_LBL"), "۱ ارسال به برنامهٔ ترازو سپرده شد.");
}

TEST_F(Counter, aFailedSendDoesNotKeepTheResultOfTheScan) {
    scan("2800105012507");
    ASSERT_EQ(mood(), "added");
    execute(*session, "DROP TABLE dbo.[Group-PLU]");
    control<QComboBox>(*page, "ScaleType_CMB").setCurrentIndex(1);
    click(*page, "SendToScale_BTN");
    EXPECT_EQ(mood(), "refused");
    EXPECT_EQ(shown(*page, "Result_LBL"), "ارسال به ترازو انجام نشد.");
    EXPECT_FALSE(control(*page, "Progress_BAR").isVisible());
    EXPECT_EQ(takeMessages().size(), 1U);
}

TEST_F(Counter, allChosenLinesAreRemovedBehindAQuestion) {
    for (const char* barcode : {"2800105012507", "2800098002507", "6267311001001"})
        scan(barcode);
    auto& grid = control<QTableWidget>(*page, "Lines_GRD");
    const auto chooseLine = [&grid](int row, Qt::KeyboardModifiers held) {
        QTest::mouseClick(grid.viewport(), Qt::LeftButton, held, grid.visualItemRect(grid.item(row, 1)).center());
    };
    chooseLine(0, Qt::NoModifier);
    chooseLine(2, Qt::ControlModifier);
    messages.answers = {mrNo, mrYes};
    QTest::keyClick(&grid, Qt::Key_Delete);
    EXPECT_EQ(lines().size(), 3U);
    QTest::keyClick(&grid, Qt::Key_F7);
    EXPECT_THAT(lines(), ElementsAre("۹۸|۰٫۲۵"));
    EXPECT_EQ(shown(*page, "Result_LBL"), "۲ سطر حذف شد.");
    EXPECT_THAT(takeMessages(), ElementsAre("MsgDeleteItem('۲ سطر')", "MsgDeleteItem('۲ سطر')"));
    chooseLine(0, Qt::NoModifier);
    messages.answers = {mrYes};
    QTest::keyClick(&grid, Qt::Key_F7);
    EXPECT_TRUE(lines().empty());
    EXPECT_EQ(shown(*page, "Result_LBL"), "سطر ۱: ۰٫۲۵ کیلوگرم «سیب سبز ترش» حذف شد.");
    EXPECT_THAT(takeMessages(), ElementsAre("MsgDeleteItem('سطر (۱: «سیب سبز ترش»)')"));
}

// What is acted on is what is seen to be chosen.
TEST_F(Counter, oneLineIsChosenWhileThereAreLines) {
    EXPECT_TRUE(chosen().empty());
    for (const char* barcode : {"2800105012507", "2800098002507", "2800105002507"})
        scan(barcode);
    EXPECT_THAT(chosen(), ElementsAre(2));
    auto& grid = control<QTableWidget>(*page, "Lines_GRD");
    QTest::keyClick(&control(*page, "Scan_EDT"), Qt::Key_F6);
    scan("2800105002507");  // the one that was chosen
    EXPECT_THAT(chosen(), ElementsAre(1));
    scan("2800105012507");
    EXPECT_THAT(chosen(), ElementsAre(0));
    // Nor can it be put away by hand.
    QTest::mouseClick(grid.viewport(), Qt::LeftButton, Qt::ControlModifier,
                      grid.visualItemRect(grid.item(0, 1)).center());
    EXPECT_THAT(chosen(), ElementsAre(0));
    QTest::keyClick(&control(*page, "Scan_EDT"), Qt::Key_F6);
    for (int i = 0; i < 40; ++i)
        scan("2800105012507");
    EXPECT_THAT(chosen(), ElementsAre(40));
    EXPECT_TRUE(grid.viewport()->rect().intersects(grid.visualItemRect(grid.item(40, 1))));
    messages.answers = {mrNo};
    click(*page, "Clear_BTN");
    EXPECT_TRUE(chosen().empty());
    scan("2800105012507");
    EXPECT_THAT(chosen(), ElementsAre(0));
}

TEST_F(Counter, theChosenLineIsWeighedAndRemovedAfterTheLastOneWasTakenOff) {
    for (const char* barcode : {"2800105012507", "2800098002507", "2800105002507"})
        scan(barcode);
    control<QTableWidget>(*page, "Lines_GRD").selectRow(0);
    QTest::keyClick(&control(*page, "Scan_EDT"), Qt::Key_F6);
    scan("2800105012507");
    ASSERT_THAT(lines(), ElementsAre("۹۸|۰٫۲۵", "۱۰۵|۰٫۲۵"));
    EXPECT_THAT(chosen(), ElementsAre(0));
    QTimer::singleShot(0, [] {
        QWidget& dialog = *QApplication::activeModalWidget();
        control<QComboBox>(dialog, "Weight_CMB").setEditText("0.05");
        control<QLineEdit>(dialog, "Count_EDT").setText("1");
        QTest::keyClick(&control(dialog, "Count_EDT"), Qt::Key_Return);
    });
    QTest::keyClick(&control(*page, "Scan_EDT"), Qt::Key_F8);
    EXPECT_THAT(lines(), ElementsAre("۹۸|۰٫۲", "۱۰۵|۰٫۲۵"));
    EXPECT_EQ(
        shown(*page, "Result_LBL"),
        "سطر ۱: وزن ظرف‌ها (۰٫۰۵ کیلوگرم) از «سیب سبز ترش» کم شد؛ وزن خالص ۰٫۲ کیلوگرم.");
    messages.answers = {mrNo, mrYes};
    click(*page, "RemoveLine_BTN");
    EXPECT_EQ(lines().size(), 2U);
    click(*page, "RemoveLine_BTN");
    EXPECT_THAT(lines(), ElementsAre("۱۰۵|۰٫۲۵"));
    EXPECT_EQ(shown(*page, "Result_LBL"), "سطر ۱: ۰٫۲ کیلوگرم «سیب سبز ترش» حذف شد.");
    EXPECT_THAT(takeMessages(),
                ElementsAre("MsgDeleteItem('سطر (۱: «سیب سبز ترش»)')", "MsgDeleteItem('سطر (۱: «سیب سبز ترش»)')"));
    EXPECT_THAT(chosen(), ElementsAre(0));
}

TEST_F(Counter, onlyTheLineOfTheLastScanGoesWithoutAQuestion) {
    scan("2800105012507");
    scan("2800098002507");
    QTest::keyClick(&control(*page, "Scan_EDT"), Qt::Key_F7);
    EXPECT_THAT(lines(), ElementsAre("۱۰۵|۱٫۲۵"));
    EXPECT_TRUE(takeMessages().empty());
    messages.answers = {mrNo};
    QTest::keyClick(&control(*page, "Scan_EDT"), Qt::Key_F7);
    EXPECT_EQ(lines().size(), 1U);
    EXPECT_THAT(takeMessages(), ElementsAre("MsgDeleteItem('سطر (۱: «موز درجه یک»)')"));
    // A scan that took something off leaves no line of its own.
    scan("2800098002507");
    QTest::keyClick(&control(*page, "Scan_EDT"), Qt::Key_F6);
    scan("2800105012507");
    messages.answers = {mrNo};
    QTest::keyClick(&control(*page, "Scan_EDT"), Qt::Key_F7);
    EXPECT_THAT(lines(), ElementsAre("۹۸|۰٫۲۵"));
}

TEST_F(Counter, aLineThatIsMoreThanTheLastScanGoesBehindAQuestion) {
    const auto removed = [this] {
        messages.answers = {mrNo};
        QTest::keyClick(&control(*page, "Scan_EDT"), Qt::Key_F7);
        return takeMessages().empty();
    };
    scan("6267311001001");
    scan("6267311001001");  // joins
    EXPECT_FALSE(removed());
    EXPECT_THAT(lines(), ElementsAre("۱|۲"));
    messages.answers = {mrYes};
    QTest::keyClick(&control(*page, "Scan_EDT"), Qt::Key_F7);
    ASSERT_TRUE(lines().empty());
    EXPECT_EQ(takeMessages().size(), 1U);
    scan("2800105012507");
    scan("0000000000000");  // unknown: the last scan has brought no line
    EXPECT_FALSE(removed());
}

TEST_F(Counter, anAmountThatWasTypedGoesBehindAQuestion) {
    scan("6267311001001");
    answerAmount("500", [](QWidget& /*dialog*/) {});
    click(*page, "Amount_BTN");
    messages.answers = {mrNo};
    click(*page, "RemoveLine_BTN");
    EXPECT_EQ(takeMessages().size(), 1U);
    EXPECT_THAT(lines(), ElementsAre("۱|۵۰۰"));
}

TEST_F(Counter, lessThanTheLedgerHasIsNothing) {
    scan("6267311001001");
    answerAmount("1.00000000049", [](QWidget& /*dialog*/) {});
    click(*page, "Amount_BTN");
    click(*page, "Removing_BTN");
    scan("6267311001001");
    EXPECT_TRUE(lines().empty());
}

TEST_F(Counter, enterOnTheButtonThatGivesUpGivesUp) {
    scan("6267311001001");
    QTimer::singleShot(0, [] {
        QWidget& dialog = *QApplication::activeModalWidget();
        control<QLineEdit>(dialog, "Amount_EDT").setText(QStringLiteral("500"));
        control(dialog, "Cancel_BTN").setFocus();
        QTest::keyClick(&control(dialog, "Cancel_BTN"), Qt::Key_Return);
    });
    click(*page, "Amount_BTN");
    EXPECT_THAT(lines(), ElementsAre("۱|۱"));
}

// A short barcode, and one behind an amount that stays: a scanner does not know where it types.
TEST_F(Counter, whatComesAtThePaceOfAScannerIsNoAmount) {
    scan("6267311001001");
    for (const char* before : {"", "0.5"}) {
        QTimer::singleShot(0, [before] {
            QWidget& dialog = *QApplication::activeModalWidget();
            auto& input = control<QLineEdit>(dialog, "Amount_EDT");
            input.setText(QString::fromUtf8(before));
            QTest::keyClicks(&input, "9105004");
            QTest::keyClick(&input, Qt::Key_Return);
            EXPECT_FALSE(dialog.isVisible()) << before;
        });
        click(*page, "Amount_BTN");
        EXPECT_THAT(lines(), ElementsAre(*before == '\0' ? "۱|۱" : "۱|۰٫۵")) << before;
        EXPECT_EQ(mood(), "refused") << before;
    }
}

// Types by hand into the dialog of the amount and then scans into it, a while later.
void scanBehind(const char* typed, int milliseconds, const char* barcode) {
    QTimer::singleShot(0, [=] {
        QWidget& dialog = *QApplication::activeModalWidget();
        EXPECT_EQ(dialog.objectName(), "Amount_FRM");
        auto& input = control<QLineEdit>(dialog, "Amount_EDT");
        QTest::keyClicks(&input, typed, Qt::NoModifier, 150);
        QTest::qWait(milliseconds);
        QTest::keyClicks(&input, barcode);
        QTest::keyClick(&input, Qt::Key_Return);
        EXPECT_FALSE(dialog.isVisible()) << typed;
    });
}

TEST_F(Counter, anAmountThatWasTypedBeforeTheNextScanIsTaken) {
    for (const int milliseconds : {1000, 450}) {
        scan("6267311001001");
        const auto& grid = control<QTableWidget>(*page, "Lines_GRD");
        const std::string name = grid.item(0, 1)->text().toStdString();
        const std::string unit = grid.item(0, 3)->text().toStdString();
        scanBehind("5", milliseconds, "2800105012507");
        click(*page, "Amount_BTN");
        EXPECT_THAT(lines(), ElementsAre("۱|۵", "۱۰۵|۱٫۲۵")) << milliseconds;
        EXPECT_EQ(mood(), "added");
        EXPECT_EQ(shown(*page, "Result_LBL"),
                  "سطر ۱: مقدار «" + name + "» شد ۵ " + unit + ". ۱٫۲۵ کیلوگرم «موز درجه یک» افزوده شد.");
        EXPECT_THAT(chosen(), ElementsAre(1));
        messages.answers = {mrNo};
        click(*page, "Clear_BTN");
    }
}

TEST_F(Counter, whatWasTypedOfSeveralDigitsBeforeTheScanIsTakenWhole) {
    scan("6267311001001");
    scanBehind("12.5", 500, "6267311001001");
    click(*page, "Amount_BTN");
    EXPECT_THAT(lines(), ElementsAre("۱|۱۳٫۵")) << "the scanned one comes on top";
    EXPECT_EQ(mood(), "added");
}

TEST_F(Counter, whatWasTypedBeforeTheScanAndIsNoAmountIsToldToBeDropped) {
    scan("6267311001001");
    scanBehind("0", 500, "2800105012507");
    click(*page, "Amount_BTN");
    EXPECT_THAT(lines(), ElementsAre("۱|۱", "۱۰۵|۱٫۲۵"));
    EXPECT_EQ(mood(), "warned");
    EXPECT_EQ(
        shown(*page, "Result_LBL"),
        "سطر ۱: «۰» به کار نرفت: مقدار باید عددی بزرگ‌تر از صفر باشد. ۱٫۲۵ کیلوگرم «موز درجه یک» افزوده شد.");
    QTest::keyClick(&control(*page, "Scan_EDT"), Qt::Key_Up);
    scanBehind("7", 500, "1234567890123");
    click(*page, "Amount_BTN");
    EXPECT_THAT(lines(), ElementsAre("۱|۷", "۱۰۵|۱٫۲۵"));
    EXPECT_EQ(mood(), "refused");
}

// Key presses with the system's own time stamps, to whatever has the focus.
class Hands {
public:
    explicit Hands(std::function<QWidget*()> to) : to_(std::move(to)) {}

    void wait(quint64 milliseconds) { now_ += milliseconds; }
    // each: milliseconds before each character. The one at the place stumble comes that much later.
    void type(const QString& text, quint64 each, qsizetype stumble = -1, quint64 late = 0) {
        for (qsizetype i = 0; i < text.size(); ++i) {
            now_ += each + (i == stumble ? late : 0);
            press(text[i] == QLatin1Char('.') ? Qt::Key_Period : Qt::Key_0 + text[i].digitValue(), text.mid(i, 1));
        }
    }
    void enter(quint64 after) {
        now_ += after;
        press(Qt::Key_Return, QStringLiteral("\r"));
    }

private:
    void press(int key, const QString& text) {
        for (const QEvent::Type kind : {QEvent::ShortcutOverride, QEvent::KeyPress}) {
            QKeyEvent event(kind, key, Qt::NoModifier, text);
            event.setTimestamp(now_);
            QWidget* widget = to_();
            if (widget == nullptr) return;
            QCoreApplication::sendEvent(widget, &event);
            if (kind == QEvent::ShortcutOverride && event.isAccepted() && key == Qt::Key_Return) return;
        }
    }

    std::function<QWidget*()> to_;
    quint64 now_ = 100'000;
};

// Opens the dialog of the amount and lets the hands type into it.
void intoAmount(const CounterPage& page, const std::function<void(Hands&)>& typing) {
    QTimer::singleShot(0, [typing] {
        QWidget& dialog = *QApplication::activeModalWidget();
        Hands hands([&dialog] { return dialog.isVisible() ? dialog.focusWidget() : nullptr; });
        typing(hands);
        EXPECT_FALSE(dialog.isVisible());
        if (dialog.isVisible()) static_cast<QDialog&>(dialog).reject();
    });
    click(page, "Amount_BTN");
}

constexpr int kStumbles[] = {130, 150, 200, 350};
constexpr const char* kBananas = "2800105012507";

TEST_F(Counter, aStumbleOfTheScannerIsNoEndOfTheAmount) {
    scan("6267311001001");
    for (const int late : kStumbles) {
        for (const int place : {1, 7}) {
            for (const quint64 each : {3, 30}) {
                control<QTableWidget>(*page, "Lines_GRD").selectRow(0);
                intoAmount(*page, [=](Hands& hands) {
                    hands.type(kBananas, each, place, static_cast<quint64>(late));
                    hands.enter(each);
                });
                EXPECT_THAT(lines(), ElementsAre("۱|۱", "۱۰۵|۱٫۲۵")) << late << " at " << place;
                EXPECT_EQ(mood(), "added");
                click(*page, "RemoveLine_BTN");
            }
        }
    }
}

TEST_F(Counter, aStumbleOfTheScannerIsNoPerson) {
    auto& person = control<QSpinBox>(*page, "Person_EDT");
    type(*page, "Person_EDT", "12");
    QTest::keyClick(&person, Qt::Key_Return);
    for (const int late : kStumbles) {
        for (const int place : {1, 7}) {
            person.setFocus();
            person.selectAll();
            Hands hands([&] { return page->focusWidget(); });
            hands.type(kBananas, 5, place, static_cast<quint64>(late));
            hands.enter(5);
            EXPECT_EQ(person.value(), 12) << late << " at " << place;
            EXPECT_THAT(lines(), ElementsAre("۱۰۵|۱٫۲۵")) << late << " at " << place;
            click(*page, "RemoveLine_BTN");
        }
    }
}

TEST_F(Counter, aStumbleOfTheScannerChoosesNothingInAList) {
    auto& combo = control<QComboBox>(*page, "Policy_CMB");
    const int before = combo.currentIndex();
    for (const int late : kStumbles) {
        for (const int place : {1, 7}) {
            combo.setFocus();
            combo.showPopup();
            Hands hands([&combo] { return combo.view(); });
            hands.type(kBananas, 5, place, static_cast<quint64>(late));
            hands.enter(5);
            EXPECT_FALSE(combo.view()->isVisible());
            EXPECT_EQ(combo.currentIndex(), before);
            EXPECT_THAT(lines(), ElementsAre("۱۰۵|۱٫۲۵")) << late << " at " << place;
            click(*page, "RemoveLine_BTN");
        }
    }
    // So slow that it may be typed; but nobody types that into a list.
    combo.showPopup();
    Hands hands([&combo] { return combo.view(); });
    hands.type("3", 5);
    hands.wait(600);
    hands.type(kBananas, 66);
    hands.enter(66);
    EXPECT_EQ(combo.currentIndex(), before);
    EXPECT_THAT(lines(), ElementsAre("۱۰۵|۱٫۲۵"));
}

TEST_F(Counter, anAmountIsPartedFromTheScanByItsPauseAlone) {
    const auto typedThen = [this](const char* typed, quint64 pause, quint64 each) {
        intoAmount(*page, [=](Hands& hands) {
            hands.type(typed, 150);
            hands.wait(pause);
            hands.type(kBananas, each);
            hands.enter(each);
        });
        const std::vector<std::string> are = lines();
        messages.answers = {mrNo};
        click(*page, "Clear_BTN");
        scan("6267311001001");
        return are;
    };
    scan("6267311001001");
    EXPECT_THAT(typedThen("5", 1000, 5), ElementsAre("۱|۵", "۱۰۵|۱٫۲۵"));
    EXPECT_THAT(typedThen("12", 400, 30), ElementsAre("۱|۱۲", "۱۰۵|۱٫۲۵"));
    // A slow scanner, which might be somebody who types.
    EXPECT_THAT(typedThen("3", 600, 66), ElementsAre("۱|۳", "۱۰۵|۱٫۲۵"));
    EXPECT_THAT(typedThen("1.5", 600, 66), ElementsAre("۱|۱٫۵", "۱۰۵|۱٫۲۵"));
    EXPECT_THAT(typedThen("", 0, 66), ElementsAre("۱|۱", "۱۰۵|۱٫۲۵"));
    for (const quint64 each : {5, 66}) {
        EXPECT_THAT(typedThen("5", 200, each), ElementsAre("۱|۱"));
        EXPECT_THAT(typedThen("1.5", 200, each), ElementsAre("۱|۱"));
    }
}

TEST_F(Counter, whatMayBeAnAmountOrPartOfTheScanIsToldToBeLost) {
    scan("6267311001001");
    const auto& grid = control<QTableWidget>(*page, "Lines_GRD");
    const std::string name = grid.item(0, 1)->text().toStdString();
    const std::string unit = grid.item(0, 3)->text().toStdString();
    intoAmount(*page, [](Hands& hands) {
        hands.type("5", 5);
        hands.wait(200);
        hands.type(kBananas, 5);
        hands.enter(5);
    });
    EXPECT_THAT(lines(), ElementsAre("۱|۱"));
    EXPECT_EQ(mood(), "refused");
    EXPECT_EQ(shown(*page, "Result_LBL"),
              "بارکد ۵۲۸۰۰۱۰۵۰۱۲۵۰۷ شناخته نشد. سطر ۱: مقدار «" + name + "» همان ۱ " + unit + " ماند.");
}

// What is known with its pause is one barcode.
TEST_F(Counter, aScannerThatStopsWithinAKnownBarcodeSplitsNothing) {
    scan("6267311001001");
    intoAmount(*page, [](Hands& hands) {
        hands.type(kBananas, 5, 2, 700);
        hands.enter(5);
    });
    EXPECT_THAT(lines(), ElementsAre("۱|۱", "۱۰۵|۱٫۲۵"));
    control<QTableWidget>(*page, "Lines_GRD").setCurrentCell(0, 0);
    intoAmount(*page, [](Hands& hands) {
        hands.type("6267311001001", 5, 4, 700);
        hands.enter(5);
    });
    EXPECT_THAT(lines(), ElementsAre("۱|۲", "۱۰۵|۱٫۲۵")) << shown(*page, "Result_LBL");
}

TEST_F(Counter, aPersonIsPartedFromTheScanByThePauseAlone) {
    auto& person = control<QSpinBox>(*page, "Person_EDT");
    const auto typedThen = [&](const char* typed, quint64 pause, quint64 each) {
        person.setFocus();
        person.selectAll();
        Hands hands([this] { return page->focusWidget(); });
        hands.type(typed, 150);
        hands.wait(pause);
        hands.type(kBananas, each);
        hands.enter(each);
    };
    typedThen("12", 600, 66);
    EXPECT_EQ(person.value(), 12);
    EXPECT_THAT(lines(), ElementsAre("۱۰۵|۱٫۲۵"));
    typedThen("3", 200, 5);
    EXPECT_EQ(person.value(), 12);
    EXPECT_EQ(mood(), "refused");
    EXPECT_EQ(shown(*page, "Result_LBL"), "بارکد ۳۲۸۰۰۱۰۵۰۱۲۵۰۷ شناخته نشد. کد شخص ۱۲ ماند.");
    typedThen("3", 200, 66);
    EXPECT_EQ(person.value(), 12);
    EXPECT_EQ(mood(), "refused");
    typedThen("", 0, 66);
    EXPECT_EQ(person.value(), 12);
    EXPECT_THAT(lines(), ElementsAre("۱۰۵|۱٫۲۵", "۱۰۵|۱٫۲۵"));
}

TEST_F(Counter, aScanOntoTheButtonsOfTheAmountIsAScan) {
    for (const char* name : {"Submit_BTN", "Cancel_BTN"}) {
        scan("6267311001001");
        QTimer::singleShot(0, [name] {
            QWidget& dialog = *QApplication::activeModalWidget();
            control(dialog, name).setFocus();
            // To whatever has the focus, as a keyboard does.
            for (const char digit : std::string("2800105012507"))
                QTest::keyClick(dialog.focusWidget(), digit);
            QTest::keyClick(dialog.focusWidget(), Qt::Key_Return);
        });
        click(*page, "Amount_BTN");
        EXPECT_THAT(lines(), ElementsAre("۱|۱", "۱۰۵|۱٫۲۵")) << name;
        messages.answers = {mrNo};
        click(*page, "Clear_BTN");
    }
}

TEST_F(Counter, aScanIntoAnOpenListIsAScanAndChoosesNothing) {
    for (const char* name : {"Store_CMB", "Policy_CMB", "ScaleType_CMB"}) {
        auto& combo = control<QComboBox>(*page, name);
        combo.setFocus();
        const int before = combo.currentIndex();
        combo.showPopup();
        ASSERT_TRUE(combo.view()->isVisible()) << name;
        // On another entry than the chosen one.
        QTest::keyClick(combo.view(), before == 0 ? Qt::Key_Down : Qt::Key_Up);
        QTest::keyClicks(combo.view(), "2800105012507");
        QTest::keyClick(combo.view(), Qt::Key_Return);
        EXPECT_FALSE(combo.view()->isVisible()) << name;
        EXPECT_EQ(combo.currentIndex(), before) << name;
        EXPECT_THAT(lines(), ElementsAre("۱۰۵|۱٫۲۵")) << name;
        EXPECT_EQ(page->focusWidget(), &control(*page, "Scan_EDT")) << name;
        messages.answers = {mrNo};
        click(*page, "Clear_BTN");
        // By hand it is chosen as ever.
        combo.showPopup();
        QTest::keyClick(combo.view(), before == 0 ? Qt::Key_Down : Qt::Key_Up);
        QTest::keyClick(combo.view(), Qt::Key_Return);
        EXPECT_NE(combo.currentIndex(), before) << name;
    }
}

TEST_F(Counter, theWheelChangesNeitherStoreNorPolicyNorBuyer) {
    const auto state = [this] {
        return std::tuple(control<QComboBox>(*page, "Store_CMB").currentIndex(),
                          control<QComboBox>(*page, "Policy_CMB").currentIndex(),
                          control<QSpinBox>(*page, "Person_EDT").value(),
                          control<QComboBox>(*page, "ScaleType_CMB").currentIndex());
    };
    type(*page, "Person_EDT", "12");
    QTest::keyClick(page->focusWidget(), Qt::Key_Return);
    store(4);
    policy(1);
    const auto before = state();
    for (const char* name : {"Store_CMB", "Policy_CMB", "Person_EDT", "ScaleType_CMB"}) {
        for (const bool focused : {false, true}) {
            control(*page, focused ? name : "Scan_EDT").setFocus();
            for (const int steps : {1, -1, -1})
                turnWheel(control(*page, name), steps);
            EXPECT_EQ(state(), before) << name << focused;
            EXPECT_EQ(page->focusWidget(), &control(*page, focused ? name : "Scan_EDT")) << name;
        }
    }
}

// Labels of pieces, without an amount: at the price of the level, and at one of their own.
class LabelsOfPieces : public Counter {
protected:
    LabelsOfPieces() {
        execute(*session,
                "INSERT INTO dbo.BarCodeFormul (Title, DigitCount, ConstantStart, ConstantCount, ConstantCode, "
                "BarCodeType, ItemCodeType, ItemCodeStart, ItemCodeCount, AmountStart, AmountCount, PriceStart, "
                "PriceCount) VALUES (N'عددی', 8, 1, 2, N'41', 1, 1, 3, 5, 0, 0, 0, 0), "
                "(N'عددی با مبلغ', 13, 1, 2, N'42', 1, 1, 3, 5, 0, 0, 8, 5), "
                "(N'یکی', 8, 1, 2, N'43', 1, 1, 3, 5, 8, 1, 0, 0)");
        execute(*session,
                "UPDATE dbo.GoodCostDiscount SET CostLevel_Sell_1 = 1000, Default_CostLevel_Sell_Number = 1 WHERE "
                "GoodCode = 105");
    }
};

TEST_F(LabelsOfPieces, areCountedAndJoined) {
    scan("41001050");
    scan("41001050");
    EXPECT_THAT(lines(), ElementsAre("۱۰۵|۲"));
    EXPECT_EQ(shown(*page, "Result_LBL"), "۱ کیلوگرم «موز درجه یک» افزوده شد؛ اکنون ۲ کیلوگرم.");
    EXPECT_EQ(shown(*page, "Total_LBL"), "جمع فاکتور: ۲٬۰۰۰");
    answerAmount("7", [](QWidget& /*dialog*/) {});
    QTest::keyClick(&control(*page, "Scan_EDT"), Qt::Key_F2);
    EXPECT_THAT(lines(), ElementsAre("۱۰۵|۷"));
    click(*page, "Tare_BTN");  // no dialog, which nobody would close
    EXPECT_EQ(mood(), "refused");
    click(*page, "Removing_BTN");
    scan("41001050");
    EXPECT_THAT(lines(), ElementsAre("۱۰۵|۶"));
    EXPECT_EQ(shown(*page, "Result_LBL"), "۱ کیلوگرم «موز درجه یک» از فاکتور حذف شد.");
}

TEST_F(LabelsOfPieces, withAPriceAreJoinedAtThatPrice) {
    scan("4200105005001");
    scan("4200105007001");
    scan("4200105005001");
    EXPECT_THAT(lines(), ElementsAre("۱۰۵|۲", "۱۰۵|۱"));
    EXPECT_EQ(shown(*page, "Total_LBL"), "جمع فاکتور: ۱٬۷۰۰");
    click(*page, "Removing_BTN");
    scan("4200105007001");
    EXPECT_THAT(lines(), ElementsAre("۱۰۵|۲"));
}

// Money: what is taken off has the price of what was scanned.
TEST_F(LabelsOfPieces, goWithTheirOwnLabelAlone) {
    execute(*session, "UPDATE dbo.GoodInf SET AbbName = '!6260000001059!' WHERE Code = 105");
    const auto refusedOne = "۱ کیلوگرم «موز درجه یک» در فاکتور نیست.";
    const auto takeOff = [this](const QString& barcode) {
        click(*page, "Removing_BTN");
        scan(barcode);
        click(*page, "Removing_BTN");
    };
    scan("6260000001059");
    takeOff("4200105005001");
    EXPECT_EQ(shown(*page, "Result_LBL"), refusedOne);
    EXPECT_EQ(lines().size(), 1U);
    takeOff("6260000001059");
    EXPECT_EQ(lines().size(), 0U);
    scan("4200105005001");
    takeOff("6260000001059");
    EXPECT_EQ(shown(*page, "Result_LBL"), refusedOne);
    scan("4200105006001");
    takeOff("4200105006001");
    EXPECT_EQ(mood(), "removed");
    takeOff("4200105006001");
    EXPECT_EQ(mood(), "refused");
    EXPECT_EQ(shown(*page, "Result_LBL"), refusedOne);
    EXPECT_EQ(shown(*page, "Total_LBL"), "جمع فاکتور: ۵۰۰");
    // One price and two labels.
    scan("4200105010001");
    scan("41001050");
    ASSERT_EQ(lines().size(), 3U);
    takeOff("4200105010001");
    EXPECT_EQ(lines().size(), 2U);
    takeOff("4200105010001");
    EXPECT_EQ(mood(), "refused");
    takeOff("41001050");
    EXPECT_EQ(mood(), "removed");
    EXPECT_EQ(shown(*page, "Total_LBL"), "جمع فاکتور: ۵۰۰");
}

// Whether a label is weighed is said by the layout that the module has read it by.
TEST_F(LabelsOfPieces, areToldByTheFirstLayoutThatFits) {
    execute(*session,
            "INSERT INTO dbo.BarCodeFormul (Title, DigitCount, ConstantStart, ConstantCount, ConstantCode, "
            "BarCodeType, ItemCodeType, ItemCodeStart, ItemCodeCount, AmountStart, AmountCount, PriceStart, "
            "PriceCount) VALUES (N'دیگر', 13, 1, 1, N'2', 1, 1, 3, 5, 0, 0, 0, 0), "
            "(N'دیگر', 8, 1, 1, N'4', 1, 1, 3, 5, 8, 1, 0, 0)");
    scan("2800105010007");
    scan("2800105010007");
    EXPECT_THAT(lines(), ElementsAre("۱۰۵|۱", "۱۰۵|۱"));
    scan("41001050");
    scan("41001050");
    EXPECT_THAT(lines(), ElementsAre("۱۰۵|۱", "۱۰۵|۱", "۱۰۵|۲"));
}

TEST_F(LabelsOfPieces, areNotThoseThatSayOne) {
    scan("43001051");
    scan("43001051");
    EXPECT_THAT(lines(), ElementsAre("۱۰۵|۱", "۱۰۵|۱"));
    QTest::keyClick(&control(*page, "Scan_EDT"), Qt::Key_F2);  // no dialog, which nobody would close
    EXPECT_EQ(mood(), "refused");
}

TEST_F(LabelsOfPieces, takeThePricesOfAnotherPersonWhereTheyHaveNoneOfTheirOwn) {
    execute(*session,
            "UPDATE dbo.GoodCostDiscount SET CostLevel_Sell_3 = 700 WHERE GoodCode = 105 "
            "DELETE FROM dbo.costlist WHERE [Type] = 1 AND TypeCode = 12 "
            "INSERT INTO dbo.costlist ([Type], [Status], TypeCode, CostLevelCode, [Default]) VALUES (1, 0, 12, 3, 1)");
    scan("41001050");
    scan("4200105010001");  // at a thousand, too
    ASSERT_THAT(lines(), ElementsAre("۱۰۵|۱", "۱۰۵|۱"));
    messages.answers = {mrYes};
    type(*page, "Person_EDT", "12");
    QTest::keyClick(page->focusWidget(), Qt::Key_Return);
    EXPECT_EQ(shown(*page, "Total_LBL"), "جمع فاکتور: ۱٬۷۰۰");
}

TEST_F(Counter, whatIsLeftOfAPieceIsToldToWhomTakesItOff) {
    scan("2800098002507");
    scan("6267311001001");
    answerAmount("1.5", [](QWidget& /*dialog*/) {});
    QTest::keyClick(&control(*page, "Scan_EDT"), Qt::Key_F2);
    const auto& grid = control<QTableWidget>(*page, "Lines_GRD");
    const std::string name = grid.item(1, 1)->text().toStdString();
    const std::string unit = grid.item(1, 3)->text().toStdString();
    click(*page, "Removing_BTN");
    scan("6267311001001");
    EXPECT_EQ(mood(), "removed");
    EXPECT_THAT(lines(), ElementsAre("۹۸|۰٫۲۵", "۱|۰٫۵"));
    scan("6267311001001");
    EXPECT_EQ(mood(), "refused");
    EXPECT_EQ(
        shown(*page, "Result_LBL"),
        "از «" + name + "» تنها ۰٫۵ " + unit +
            " مانده است و کمتر از یکی با اسکن کم نمی‌شود؛ سطر ۲ را برگزینید و با \u2066F7\u2069 بردارید.");
    EXPECT_EQ(lines().size(), 2U);
    control<QTableWidget>(*page, "Lines_GRD").selectRow(1);
    messages.answers = {mrYes};
    click(*page, "RemoveLine_BTN");
    scan("6267311001001");
    EXPECT_EQ(shown(*page, "Result_LBL"), "۱ " + unit + " «" + name + "» در فاکتور نیست.");
}

TEST_F(Counter, aGoodWithoutAUnitLeavesNoBlankBehind) {
    execute(*session, "UPDATE dbo.GoodInf SET Name = N'نان', Unit = NULL WHERE Code = 1");
    scan("6267311001001");
    EXPECT_EQ(shown(*page, "Result_LBL"), "۱ «نان» افزوده شد.");
    scan("6267311001001");
    EXPECT_EQ(shown(*page, "Result_LBL"), "۱ «نان» افزوده شد؛ اکنون ۲.");
    answerAmount("3", [](QWidget& /*dialog*/) {});
    click(*page, "Amount_BTN");
    EXPECT_EQ(shown(*page, "Result_LBL"), "سطر ۱: مقدار «نان» شد ۳.");
    click(*page, "Removing_BTN");
    scan("6267311001001");
    EXPECT_EQ(shown(*page, "Result_LBL"), "۱ «نان» از فاکتور حذف شد.");
    messages.answers = {mrYes};
    click(*page, "RemoveLine_BTN");
    EXPECT_EQ(shown(*page, "Result_LBL"), "سطر ۱: ۲ «نان» حذف شد.");
}

TEST_F(Counter, theDecimalsOfMoneyAreThoseOfNowWhenAnInvoiceBegins) {
    execute(*session,
            "UPDATE dbo.GoodCostDiscount SET CostLevel_Sell_1 = 1001, Default_CostLevel_Sell_Number = 1 WHERE GoodCode "
            "= 105");
    scan("2800105012507");
    EXPECT_EQ(shown(*page, "Total_LBL"), "جمع فاکتور: ۱٬۲۵۱");
    host.setSetting("CurrencyDecimals", "2");
    scan("2800105012507");
    EXPECT_EQ(shown(*page, "Total_LBL"), "جمع فاکتور: ۲٬۵۰۲") << "as it began";
    messages.answers = {mrNo};
    click(*page, "Clear_BTN");
    scan("2800105012507");
    EXPECT_EQ(shown(*page, "Total_LBL"), "جمع فاکتور: ۱٬۲۵۱٫۲۵");
    store(1);
    click(*page, "Save_BTN");
    EXPECT_EQ(mood(), "matched");
    host.setSetting("CurrencyDecimals", "1");
    scan("2800105012507");
    EXPECT_EQ(shown(*page, "Total_LBL"), "جمع فاکتور: ۱٬۲۵۱٫۳");
}

TEST_F(Counter, withoutAStoreItSaysSo) {
    const std::string none =
        "انباری تعریف نشده است و تا نباشد فاکتوری ثبت نمی‌شود؛ نخست یک انبار تعریف کنید.";
    execute(*session, "DELETE FROM dbo.GoodDetailKardex DELETE FROM dbo.Kardex DELETE FROM dbo.Stores");
    page->enter();
    EXPECT_EQ(mood(), "warned");
    EXPECT_EQ(shown(*page, "Result_LBL"), none);
    policy(2);
    scan("2800105012507");
    EXPECT_EQ(mood(), "added");
    click(*page, "Save_BTN");
    EXPECT_EQ(mood(), "refused");
    EXPECT_EQ(shown(*page, "Result_LBL"), none);
    EXPECT_EQ(lines().size(), 1U);
    EXPECT_TRUE(takeMessages().empty());
    // Somebody makes one meanwhile.
    execute(*session, "INSERT INTO dbo.Stores (Code, Name) VALUES (7, N'انبار تازه')");
    click(*page, "Save_BTN");
    EXPECT_EQ(mood(), "matched") << shown(*page, "Result_LBL");
    EXPECT_EQ(linesOf(*session, "SELECT Anbar FROM dbo.Kardex").at(0), "7");
}

TEST_F(Counter, arrowsInTheBarcodeMoveBetweenLines) {
    QTest::keyClick(&control(*page, "Scan_EDT"), Qt::Key_Up);  // among none
    for (const char* barcode : {"2800105012507", "2800098002507", "2800105002507"})
        scan(barcode);
    auto& input = control(*page, "Scan_EDT");
    QTest::keyClick(&input, Qt::Key_Up);
    EXPECT_THAT(chosen(), ElementsAre(1));
    for (int i = 0; i < 3; ++i)
        QTest::keyClick(&input, Qt::Key_Up);
    EXPECT_THAT(chosen(), ElementsAre(0));
    for (int i = 0; i < 5; ++i)
        QTest::keyClick(&input, Qt::Key_Down);
    EXPECT_THAT(chosen(), ElementsAre(2));
    EXPECT_EQ(page->focusWidget(), &input);
}

TEST_F(Counter, ofSeveralChosenLinesNoneIsWeighed) {
    QTest::keyClick(&control(*page, "Scan_EDT"), Qt::Key_F8);
    EXPECT_EQ(shown(*page, "Result_LBL"), "فاکتور سطری ندارد.");
    scan("2800105012507");
    scan("2800098002507");
    control<QTableWidget>(*page, "Lines_GRD").selectAll();
    QTest::keyClick(&control(*page, "Scan_EDT"), Qt::Key_F8);  // no dialog, which nobody would close
    EXPECT_EQ(mood(), "warned");
    EXPECT_EQ(shown(*page, "Result_LBL"), "۲ سطر برگزیده شده است؛ تنها یکی را برگزینید.");
}

TEST_F(Counter, aLongBarcodeDoesNotStretchTheWindow) {
    const int width = page->minimumSizeHint().width();
    scan(QString(300, '7'));
    EXPECT_EQ(mood(), "refused");
    EXPECT_EQ(page->minimumSizeHint().width(), width);
    const auto& result = control<QLabel>(*page, "Result_LBL");
    EXPECT_LT(result.text().size(), 100);
    EXPECT_TRUE(result.toolTip().contains(QString(300, QChar(0x06F7))));
    scan("2800105012507");
    EXPECT_EQ(result.toolTip(), "");
}

TEST_F(Counter, nothingIsSentWithoutTheProgram) {
    programs.failsBehind = 0;
    programs.failure = {.started = false, .searched = {"/opt/basalt/bin", "/usr/bin"}};
    scan("2800105012507");
    for (const int kind : {0, 1}) {
        programs.started.clear();
        control<QComboBox>(*page, "ScaleType_CMB").setCurrentIndex(kind);
        click(*page, "SendToScale_BTN");
        EXPECT_EQ(programs.started.size(), kind == 0 ? 1U : 2U);
        EXPECT_EQ(mood(), "refused") << kind;
        EXPECT_EQ(shown(*page, "Result_LBL"), "چیزی به ترازو فرستاده نشد؛ برنامهٔ «ScaleAgentApp.exe» پیدا نشد.");
        EXPECT_THAT(takeMessages(),
                    ElementsAre("MsgProgramMissing(error 0, 'ScaleAgentApp.exe', '\u2066/opt/basalt/bin\u2069\n"
                                "\u2066/usr/bin\u2069')"));
        EXPECT_FALSE(control(*page, "Progress_BAR").isVisible());
    }
}

TEST_F(Counter, aProgramThatDoesNotRunIsToldWithTheReason) {
    programs.failsBehind = 0;
    programs.failure = {.started = false, .reason = "/opt/ScaleAgentApp.exe: Permission denied"};
    scan("2800105012507");
    click(*page, "SendToScale_BTN");
    EXPECT_EQ(mood(), "refused");
    EXPECT_EQ(shown(*page, "Result_LBL"), "چیزی به ترازو فرستاده نشد؛ برنامهٔ «ScaleAgentApp.exe» اجرا نشد.");
    EXPECT_THAT(takeMessages(),
                ElementsAre("MsgProgramFailed(error 0, 'ScaleAgentApp.exe', "
                            "'اجازهٔ اجرای آن را ندارید.\n\u2066/opt/ScaleAgentApp.exe: Permission denied\u2069')"));
}

TEST_F(Counter, whatWasSentBeforeTheProgramWentIsCounted) {
    programs.failsBehind = 3;
    programs.failure = {.started = false, .searched = {"/opt"}};
    scan("2800105012507");
    scan("2800098002507");
    control<QTableWidget>(*page, "Lines_GRD").selectAll();
    control<QComboBox>(*page, "ScaleType_CMB").setCurrentIndex(1);
    click(*page, "SendToScale_BTN");
    ASSERT_EQ(programs.started.size(), 4U);
    EXPECT_EQ(mood(), "refused");
    EXPECT_EQ(shown(*page, "Result_LBL"),
              "از ۴ ارسال تنها ۳ تا به برنامهٔ ترازو سپرده شد؛ برنامهٔ «ScaleAgentApp.exe» پیدا نشد.");
    EXPECT_EQ(takeMessages().size(), 1U);
}

TEST_F(Counter, aLongSearchPathIsToldInShort) {
    programs.failsBehind = 0;
    for (int i = 1; i <= 9; ++i)
        programs.failure.searched.push_back("/p" + std::to_string(i));
    scan("2800105012507");
    click(*page, "SendToScale_BTN");
    EXPECT_THAT(takeMessages(),
                ElementsAre("MsgProgramMissing(error 0, 'ScaleAgentApp.exe', '\u2066/p1\u2069\n\u2066/p2\u2069\n"
                            "\u2066/p3\u2069\n\u2066/p4\u2069\n\u2066/p5\u2069\n\u2066/p6\u2069\n"
                            "و ۳ پوشهٔ دیگر از مسیر جست‌وجوی سیستم')"));
}

TEST_F(Counter, aNewInvoiceForgetsAll) {
    scan("2800105012507");
    scan("2900000125005");
    type(*page, "Person_EDT", "12");
    click(*page, "Removing_BTN");
    messages.answers = {mrNo};
    click(*page, "Clear_BTN");
    EXPECT_TRUE(lines().empty());
    EXPECT_EQ(shown(*page, "Total_LBL"), "جمع فاکتور: ۰");
    EXPECT_EQ(shown(*page, "Result_LBL"), "آمادهٔ اسکن");
    EXPECT_EQ(mood(), "");
    // The next customer is somebody else, and takes goods rather than giving them back.
    EXPECT_EQ(control<QSpinBox>(*page, "Person_EDT").value(), 0);
    EXPECT_FALSE(control<QPushButton>(*page, "Removing_BTN").isChecked());
}

TEST_F(Counter, aSavedInvoiceWasThatPersons) {
    store(1);
    type(*page, "Person_EDT", "12");
    scan("2800105012507");
    click(*page, "Save_BTN");
    EXPECT_EQ(mood(), "matched") << shown(*page, "Result_LBL");
    EXPECT_EQ(linesOf(*session, "SELECT PerCode FROM dbo.Kardex WHERE kala = 105 AND Tedad = -1.25").at(0), "12");
    EXPECT_EQ(control<QSpinBox>(*page, "Person_EDT").value(), 0);
}

}  // namespace
}  // namespace basalt::host
