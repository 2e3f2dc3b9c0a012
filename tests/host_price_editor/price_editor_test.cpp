// The editor of a good's prices as it looks and as it checks, on the demo company's database.
#include <QScrollArea>
#include <QScrollBar>
#include <QToolButton>

#include "costlevel/registration.h"
#include "host/price_editor/price_editor_frm.h"
#include "host/screens/cut_text.h"
#include "host/screens/number_room.h"
#include "host/screens/persian_digits.h"
#include "host/screens/theme.h"
#include "tests/host_screens/demo_screens.h"

namespace basalt::host {
namespace {

class Editor : public DemoScreens {
protected:
    Editor() : DemoScreens(true) {}
    static Registry registered() {
        Registry made;
        registerCostLevel(made);
        return made;
    }
    std::unique_ptr<PriceEditor> open(int good = 57) {
        applyTheme(*qApp);
        auto editor = CreateEditor<PriceEditor>(host, registry, good);
        editor->show();
        EXPECT_TRUE(QTest::qWaitForWindowExposed(editor.get()));
        return editor;
    }
    // As the save button does.
    static void save(PriceEditor& editor) { editor.BaseSave_Click(); }
    // By hand, so that the editor knows of a change.
    static void retype(PriceEditor& editor, const char* name, const QString& text) {
        auto* input = control<QLineEdit>(editor, name);
        input->setFocus();
        input->selectAll();
        type(input, text);
    }
    [[nodiscard]] std::string stored(const char* column) {
        return one(std::string("SELECT ") + column + " FROM GoodCostDiscount WHERE GoodCode = 57");
    }

    Registry registry = registered();
};

TEST_F(Editor, pricesAreWholeBesideALevelOfTheLongestName) {
    execute(*session,
            "UPDATE CostLevel SET Name = REPLICATE(N'م', 50) WHERE Code = 3 AND CostType = 1; "
            "UPDATE CostLevel SET Name = REPLICATE(N'W', 50) WHERE Code = 2 AND CostType = 3; "
            "UPDATE GoodCostDiscount SET CostLevel_Sell_3 = -99999999999999.999999999, "
            "Discount_Buy_2 = 99999999999999.999999999 WHERE GoodCode = 57");
    const auto editor = open();
    for (const char* name : {"CostLevel_Sell_3_EDT", "Discount_Buy_2_EDT", "CostLevel_Buy_1_EDT"}) {
        auto* input = control<QLineEdit>(*editor, name);
        const qreal room = roomFor({input->text()}, QFontMetricsF(input->font()));
        EXPECT_GE(input->width(), room + 12) << name;
        EXPECT_GE(input->width(), input->minimumSizeHint().width()) << name;
    }
    auto* title = control<QLabel>(*editor, "CostLevel_3_LBL");
    EXPECT_EQ(title->text(), QString(50, QChar(u'م')));
    EXPECT_LT(title->width(), 260);
    EXPECT_EQ(cutTextAt(*title, {1, 1}).toStdString(), "") << "it has two lines";
    auto* wide = control<QLabel>(*editor, "Discount_2_LBL");
    EXPECT_LT(wide->width(), 260);
    EXPECT_EQ(cutTextAt(*wide, {1, 1}), QString(50, QChar(u'W')));
    // In a window that has not the room for all of it the form scrolls, and prices keep theirs.
    auto* price = control<QLineEdit>(*editor, "CostLevel_Sell_3_EDT");
    const int width = price->width();
    editor->resize(500, 300);
    QCoreApplication::processEvents();
    EXPECT_LE(editor->width(), 700);
    EXPECT_GE(price->width(), std::min(width, price->minimumWidth()));
    EXPECT_TRUE(control<QScrollArea>(*editor, "Inputs_SCB")->isVisible());
}

TEST_F(Editor, itsGroupsStandBelowEachOtherInANarrowWindow) {
    const auto editor = open();
    auto* inputs = control<QScrollArea>(*editor, "Inputs_SCB");
    auto* prices = control<QWidget>(*editor, "Prices_GRB");
    auto* discounts = control<QWidget>(*editor, "Discounts_GRB");
    EXPECT_EQ(prices->y(), discounts->y());
    editor->resize(540, 500);
    QCoreApplication::processEvents();
    EXPECT_GE(discounts->y(), prices->y() + prices->height());
    EXPECT_EQ(inputs->horizontalScrollBar()->maximum(), 0);
    for (const char* name : {"Save_BTN", "Exit_BTN"}) {
        auto* button = control<QWidget>(*editor, name);
        EXPECT_TRUE(editor->rect().contains(QRect(button->mapTo(editor.get(), QPoint()), button->size()))) << name;
    }
}

TEST_F(Editor, aPriceMakesItselfRoomAsItIsTyped) {
    const auto editor = open();
    editor->resize(540, 500);
    auto* price = control<QLineEdit>(*editor, "CostLevel_Sell_1_EDT");
    price->selectAll();
    type(price, QStringLiteral("-99999999999999.999999999"));
    QCoreApplication::processEvents();
    EXPECT_GE(price->width(), roomFor({price->text()}, QFontMetricsF(price->font())) + 12);
}

TEST_F(Editor, atTheLargestFontItIsSeenWithoutGoingToTheSide) {
    applyTheme(*qApp);
    setThemeFontSize(16);
    const auto editor = open();
    auto* inputs = control<QScrollArea>(*editor, "Inputs_SCB");
    EXPECT_EQ(inputs->horizontalScrollBar()->maximum(), 0);
    EXPECT_EQ(inputs->verticalScrollBar()->maximum(), 0);
    editor->resize(1264, 672);
    QCoreApplication::processEvents();
    EXPECT_EQ(inputs->horizontalScrollBar()->maximum(), 0);
    setThemeFontSize(10);
}

// Names that differ at their ends only: forty-six to fifty characters.
TEST_F(Editor, longNamesThatAreMuchAlikeAreReadToTheirEnds) {
    const std::string alike = "ویژهٔ مشتریان عمدهٔ استان‌های شمالی درجه ";
    for (const auto& [word, kind] : {std::pair("قیمت ", "1"), std::pair("تخفیف ", "3")})
        execute(*session, "UPDATE CostLevel SET Name = N'" + (word + alike) +
                              "' + CAST(Code AS NVARCHAR(2)) WHERE CostType = " + kind);
    const auto editor = open();
    for (const auto& [stem, levels] : {std::pair("CostLevel_", 10), std::pair("Discount_", 4)})
        for (int level = 1; level <= levels; ++level) {
            const std::string name = stem + std::to_string(level) + "_LBL";
            auto* title = control<QLabel>(*editor, name.c_str());
            EXPECT_TRUE(title->text().endsWith(screenText(QString::number(level)))) << title->text().toStdString();
            EXPECT_EQ(cutTextAt(*title, {1, 1}).toStdString(), "") << name;
        }
    // All of it is there without scrolling.
    auto* scroll = control<QScrollArea>(*editor, "Inputs_SCB");
    EXPECT_EQ(scroll->horizontalScrollBar()->maximum(), 0);
    EXPECT_EQ(scroll->verticalScrollBar()->maximum(), 0);
    // A closed choice shows the rest when the mouse rests on it, an open one has room for its names.
    auto* levels = control<QComboBox>(*editor, "Default_CostLevel_Sell_Number_CMB");
    EXPECT_EQ(cutTextAt(*levels, {1, 1}), levels->currentText());
    levels->showPopup();
    QAbstractItemView* list = levels->view();
    EXPECT_GE(list->viewport()->width(), list->fontMetrics().horizontalAdvance(levels->itemText(10)));
    levels->hidePopup();
}

TEST_F(Editor, aLevelCalledByANumberIsShownAsNumbersAre) {
    execute(*session, "UPDATE CostLevel SET Name = N'1402' WHERE Code = 3 AND CostType = 1");
    const auto editor = open();
    EXPECT_EQ(control<QLabel>(*editor, "CostLevel_3_LBL")->text().toStdString(), "۱۴۰۲");
    EXPECT_EQ(control<QComboBox>(*editor, "Default_CostLevel_Sell_Number_CMB")->itemText(3).toStdString(), "۱۴۰۲");
    EXPECT_EQ(control<QLineEdit>(*editor, "CostLevel_Sell_3_EDT")->accessibleName().toStdString(),
              "قیمت فروش ۳ (۱۴۰۲)");
}

TEST_F(Editor, aLevelOfTwoLinesIsReadInOne) {
    execute(*session,
            "UPDATE CostLevel SET Name = N'سطح' + NCHAR(13) + NCHAR(10) + N'ششم' WHERE Code = 3 AND CostType = 1");
    const auto editor = open();
    EXPECT_EQ(control<QLabel>(*editor, "CostLevel_3_LBL")->text().toStdString(), "سطح ششم");
}

TEST_F(Editor, choicesOfDefaultDiscountsCanBeRead) {
    const auto editor = open();
    for (const char* name : {"Default_Discount_Sell_Number_CMB", "Default_Discount_Buy_Number_CMB"}) {
        auto* levels = control<QComboBox>(*editor, name);
        for (int i = 0; i < levels->count(); ++i) {
            levels->setCurrentIndex(i);
            EXPECT_EQ(cutTextAt(*levels, {1, 1}).toStdString(), "") << name << " " << i;
        }
    }
}

TEST_F(Editor, aDefaultThatIsNoLevelIsShownAndCanBeTakenAway) {
    execute(*session,
            "UPDATE GoodCostDiscount SET Default_CostLevel_Sell_Number = 12, Default_Discount_Buy_Number = -1 "
            "WHERE GoodCode = 57");
    const auto editor = open();
    auto* levels = control<QComboBox>(*editor, "Default_CostLevel_Sell_Number_CMB");
    EXPECT_EQ(levels->currentText().toStdString(), "۱۲");
    EXPECT_EQ(control<QComboBox>(*editor, "Default_Discount_Buy_Number_CMB")->currentText().toStdString(), "-۱");
    // Left alone, it stays.
    auto* price = control<QLineEdit>(*editor, "CostLevel_Sell_1_EDT");
    price->setText(QStringLiteral("5"));
    save(*editor);
    EXPECT_EQ(stored("Default_CostLevel_Sell_Number"), "12");
    EXPECT_EQ(levels->currentText().toStdString(), "۱۲");
    levels->setCurrentIndex(0);
    save(*editor);
    EXPECT_EQ(stored("Default_CostLevel_Sell_Number"), "0");
    EXPECT_EQ(stored("Default_Discount_Buy_Number"), "-1");
    EXPECT_EQ(levels->currentIndex(), 0);
    EXPECT_EQ(levels->count(), 11);
}

TEST_F(Editor, checksItsInputsAsTheyStandOnTheScreen) {
    const auto editor = open();
    for (const char* name : {"CostLevel_Sell_10_EDT", "CostLevel_Sell_2_EDT", "CostLevel_Buy_10_EDT",
                             "CostLevel_Buy_2_EDT", "Discount_Buy_1_EDT"})
        control<QLineEdit>(*editor, name)->setText(QStringLiteral("x"));
    for (const char* name : {"CostLevel_Sell_2_EDT", "CostLevel_Buy_2_EDT", "CostLevel_Sell_10_EDT",
                             "CostLevel_Buy_10_EDT", "Discount_Buy_1_EDT"}) {
        auto* input = control<QLineEdit>(*editor, name);
        messages.expect("MsgNotANumber");
        EXPECT_FALSE(editor->IsValid());
        EXPECT_EQ(messages.shown.back().control, input) << name;
        input->setText(QStringLiteral("7"));
    }
    EXPECT_TRUE(editor->IsValid());
}

TEST_F(Editor, aChangeIsLoggedAndAnUnchangedSaveIsNot) {
    const auto logged = [&] {
        std::string lines;
        const RowSet rows = rowsOf(*session, "SELECT SoftwarePart, Permission, [Text] FROM HostUserLog ORDER BY ID");
        for (std::size_t row = 0; row < rows.rowCount(); ++row)
            lines += textAt(rows, 0, row) + '/' + textAt(rows, 1, row) + '/' + textAt(rows, 2, row) + ' ';
        return lines;
    };
    execute(*session, "DELETE FROM HostUserLog");
    const auto editor = open();
    auto* price = control<QLineEdit>(*editor, "CostLevel_Sell_1_EDT");
    save(*editor);
    price->setText(QStringLiteral("298500"));
    save(*editor);
    EXPECT_EQ(logged(), "");
    price->setText(QStringLiteral("298501"));
    save(*editor);
    EXPECT_EQ(stored("CostLevel_Sell_1"), "298501.000000000");
    EXPECT_EQ(logged(), "102/2/57 ");
    save(*editor);
    EXPECT_EQ(logged(), "102/2/57 ");
    auto* level = control<QComboBox>(*editor, "Default_CostLevel_Sell_Number_CMB");
    level->setCurrentIndex(4);
    save(*editor);
    EXPECT_EQ(logged(), "102/2/57 102/2/57 ");
}

// As on a full disk: all statements have passed, and then the transaction does not.
TEST_F(Editor, aSaveThatFailsAtItsCommitIsMadeAgain) {
    execute(*session,
            "UPDATE GoodCostDiscount SET CostLevel_Sell_3 = 100, Default_CostLevel_Sell_Number = 1 "
            "WHERE GoodCode = 57; DELETE FROM HostUserLog");
    const auto editor = CreateEditor<PriceEditor>(host, registry, 57);
    EXPECT_EQ(run(*editor,
                  [&] {
                      retype(*editor, "CostLevel_Sell_3_EDT", QStringLiteral("777"));
                      control<QComboBox>(*editor, "Default_CostLevel_Sell_Number_CMB")->setCurrentIndex(2);
                      failCommitOnce();
                      messages.expect("DatabaseError");
                      QTest::keyClick(editor.get(), Qt::Key_F3);
                      EXPECT_TRUE(editor->isVisible());
                      EXPECT_FALSE(editor->base().IsSaved());
                      EXPECT_EQ(stored("CostLevel_Sell_3"), "100.000000000");
                      QTest::keyClick(editor.get(), Qt::Key_F3);
                      EXPECT_FALSE(editor->isVisible());
                  }),
              mrOk);
    EXPECT_EQ(stored("CostLevel_Sell_3"), "777.000000000");
    EXPECT_EQ(stored("Default_CostLevel_Sell_Number"), "2");
    EXPECT_EQ(one("SELECT COUNT(*) FROM HostUserLog WHERE SoftwarePart = 102"), "1");
}

TEST_F(Editor, aSaveThatFailsAtItsCommitIsMadeAgainOnLeaving) {
    const auto editor = CreateEditor<PriceEditor>(host, registry, 57);
    (void)run(*editor, [&] {
        retype(*editor, "Discount_Buy_1_EDT", QStringLiteral("7"));
        failCommitOnce();
        messages.expect("DatabaseError");
        QTest::keyClick(editor.get(), Qt::Key_F3);
        // And not closed either while it fails.
        failCommitOnce();
        messages.expect("MsgUnsavedChanges", mrYes);
        messages.expect("DatabaseError");
        QTest::keyClick(editor.get(), Qt::Key_Escape);
        EXPECT_TRUE(editor->isVisible());
        messages.expect("MsgUnsavedChanges", mrYes);
        QTest::keyClick(editor.get(), Qt::Key_Escape);
        EXPECT_FALSE(editor->isVisible());
    });
    EXPECT_EQ(stored("Discount_Buy_1"), "7.000000000");
}

// What another user has written meanwhile can be taken over, without losing the rest of one's own.
TEST_F(Editor, asksWhereAnotherUserWasQuicker) {
    execute(*session,
            "UPDATE GoodCostDiscount SET CostLevel_Sell_3 = 100, CostLevel_Sell_4 = 200, "
            "Default_CostLevel_Buy_Number = 1 WHERE GoodCode = 57");
    const auto editor = open();
    retype(*editor, "CostLevel_Sell_3_EDT", QStringLiteral("101"));
    retype(*editor, "CostLevel_Buy_2_EDT", QStringLiteral("55"));
    execute(*session,
            "UPDATE GoodCostDiscount SET CostLevel_Sell_3 = 150, CostLevel_Sell_4 = 250, "
            "Default_CostLevel_Buy_Number = 3 WHERE GoodCode = 57");
    messages.expect("MsgPriceChanged", mrNo);
    save(*editor);
    EXPECT_EQ(line(messages.shown.back()), "MsgPriceChanged(«قیمت فروش ۳ (همکار)»)");
    EXPECT_EQ(control<QLineEdit>(*editor, "CostLevel_Sell_3_EDT")->text().toStdString(), "۱۰۱");
    EXPECT_FALSE(editor->base().IsSaved());
    messages.expect("MsgPriceChanged", mrYes);
    save(*editor);
    EXPECT_EQ(stored("CostLevel_Buy_2") == "55.000000000", false);
    EXPECT_EQ(control<QLineEdit>(*editor, "CostLevel_Sell_3_EDT")->text().toStdString(), "۱۵۰");
    EXPECT_EQ(control<QLineEdit>(*editor, "CostLevel_Sell_4_EDT")->text().toStdString(), "۲۵۰");
    EXPECT_EQ(control<QComboBox>(*editor, "Default_CostLevel_Buy_Number_CMB")->currentIndex(), 3);
    EXPECT_FALSE(editor->base().IsSaved());
    EXPECT_EQ(QApplication::focusWidget(), control<QLineEdit>(*editor, "CostLevel_Sell_3_EDT"));
    // Now it is said with knowledge.
    retype(*editor, "CostLevel_Sell_3_EDT", QStringLiteral("101"));
    save(*editor);
    EXPECT_EQ(stored("CostLevel_Sell_3"), "101.000000000");
    EXPECT_EQ(stored("CostLevel_Sell_4"), "250.000000000");
    EXPECT_EQ(stored("CostLevel_Buy_2"), "55.000000000");
    EXPECT_TRUE(editor->base().IsSaved());
}

TEST_F(Editor, whatAnotherUserHasEnteredAsWellIsNoQuestion) {
    const auto editor = open();
    retype(*editor, "CostLevel_Sell_3_EDT", QStringLiteral("101"));
    retype(*editor, "CostLevel_Sell_4_EDT", QStringLiteral("102"));
    execute(*session, "UPDATE GoodCostDiscount SET CostLevel_Sell_3 = 101 WHERE GoodCode = 57");
    save(*editor);
    EXPECT_EQ(stored("CostLevel_Sell_4"), "102.000000000");
    EXPECT_TRUE(editor->base().IsSaved());
}

TEST_F(Editor, namesTheFirstOfManyThatOthersHaveChanged) {
    const auto editor = open();
    for (const char* name : {"CostLevel_Sell_1_EDT", "CostLevel_Sell_2_EDT", "CostLevel_Sell_3_EDT",
                             "CostLevel_Sell_4_EDT", "CostLevel_Sell_5_EDT"})
        retype(*editor, name, QStringLiteral("9"));
    execute(*session,
            "UPDATE GoodCostDiscount SET CostLevel_Sell_1 = 8, CostLevel_Sell_2 = 8, CostLevel_Sell_3 = 8, "
            "CostLevel_Sell_4 = 8, CostLevel_Sell_5 = 8 WHERE GoodCode = 57");
    messages.expect("MsgPriceChanged", mrYes);
    save(*editor);
    EXPECT_TRUE(messages.shown.back().arguments.at(0).ends_with("»، «قیمت فروش ۳ (همکار)» و ۲ مورد دیگر"))
        << messages.shown.back().arguments.at(0);
    EXPECT_TRUE(editor->base().IsSaved()) << "nothing of one's own is left";
}

// Where the ink of a label begins and ends.
std::pair<int, int> inkOf(QWidget& label) {
    const QImage picture = label.grab().toImage();
    const QRgb paper = picture.pixel(0, 0);
    int first = picture.width();
    int last = -1;
    for (int x = 0; x < picture.width(); ++x)
        for (int y = 0; y < picture.height(); ++y)
            if (picture.pixel(x, y) != paper) {
                first = std::min(first, x);
                last = x;
            }
    return {first, last};
}

TEST_F(Editor, theGoodStandsOnTheRightWhateverItsLetters) {
    for (const char* name : {"دارچین", "Cinnamon 75 g", "750", ""}) {
        execute(*session, "UPDATE GoodInf SET Name = ? WHERE Code = 57", {std::string(name)});
        const auto editor = open();
        auto* good = control<QLabel>(*editor, "Good_LBL");
        const auto [first, last] = inkOf(*good);
        EXPECT_GT(first, good->width() / 2) << name;
        EXPECT_GT(last, good->width() - 30) << name;
    }
}

TEST_F(Editor, saysThatTheGoodIsGone) {
    execute(*session, "INSERT INTO GoodInf (Code, Name) VALUES (99001, N'کالای گذرا')");
    const auto editor = open(99001);
    retype(*editor, "CostLevel_Sell_3_EDT", QStringLiteral("101"));
    execute(*session, "DELETE FROM GoodInf WHERE Code = 99001");
    messages.expect("MsgGoodGone");
    save(*editor);
    EXPECT_EQ(line(messages.shown.back()), "MsgGoodGone(کالای گذرا)");
    EXPECT_FALSE(editor->base().IsSaved());
}

// No good is added here, so there is none that could come new after a save.
TEST_F(Editor, offersNoSaveThatLeadsToANewGood) {
    const auto editor = open();
    std::vector<std::string> offered;
    for (const QAction* action : control<QToolButton>(*editor, "Save_BTN_Variants")->menu()->actions())
        offered.push_back(action->objectName().toStdString());
    EXPECT_EQ(offered, (std::vector<std::string>{"BaseSave_ACT", "BaseSaveANDPrint_ACT"}));
}

TEST_F(Editor, levelsThatDoNotExistAreToldApartByTheirNumbers) {
    execute(*session, "DELETE FROM costlist");
    execute(*session, "DELETE FROM CostLevel WHERE CostType = 1 AND Code IN (4, 5, 10)");
    const auto editor = open();
    auto* levels = control<QComboBox>(*editor, "Default_CostLevel_Sell_Number_CMB");
    EXPECT_EQ(levels->itemText(1).toStdString(), nameOf(1));
    // The numbers stand between marks of isolation: beside a word they would go to its other side.
    EXPECT_EQ(levels->itemText(4).toStdString(), "سطح قيمت ساير \u2068۴\u2069");
    EXPECT_EQ(levels->itemText(5).toStdString(), "سطح قيمت ساير \u2068۵\u2069");
    EXPECT_EQ(levels->itemText(10).toStdString(), "سطح قيمت ساير \u2068۱۰\u2069");
    EXPECT_EQ(control<QLabel>(*editor, "CostLevel_10_LBL")->text(), levels->itemText(10));
    EXPECT_EQ(control<QLabel>(*editor, "CostLevel_1_LBL")->text(), levels->itemText(1));
}

}  // namespace
}  // namespace basalt::host
