#include "host/desktop/console_page.h"

#include <QListWidget>
#include <QScrollBar>
#include <QStyledItemDelegate>
#include <QTabWidget>
#include <QTableView>

#include "host/screens/theme.h"
#include "tests/host_desktop/desktop_test.h"

namespace basalt::host {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::StartsWith;

class Console : public DesktopTest {
protected:
    Console() {
        host.signInAs(1);
        page = std::make_unique<ConsolePage>(context());
        showActive(*page);
        page->enter();
    }
    void choose(const char* name) {
        type(*page, "FunctionSearch_EDT", QString::fromLatin1(name));
        QTest::keyClick(&control(*page, "FunctionSearch_EDT"), Qt::Key_Return);
        ASSERT_EQ(shown(*page, "FunctionName_LBL"), name);
    }
    // The rows of a table, cells with "|" between.
    [[nodiscard]] std::vector<std::string> rows(const char* table) const {
        const QAbstractItemModel& model = *control<QTableView>(*page, table).model();
        std::vector<std::string> lines;
        for (int row = 0; row < model.rowCount(); ++row) {
            QStringList cells;
            for (int column = 0; column < model.columnCount(); ++column)
                cells << model.index(row, column).data().toString();
            lines.push_back(cells.join('|').toStdString());
        }
        return lines;
    }

    [[nodiscard]] std::string errorShown() const {
        const auto& error = control<QPlainTextEdit>(*page, "CallError_EDT");
        return error.isVisible() ? error.toPlainText().toStdString() : "(hidden)";
    }

    std::unique_ptr<ConsolePage> page;
};

TEST_F(Console, runsAFunctionAndTellsAllThatItDid) {
    choose("CostLevel_GetNewCode");
    EXPECT_TRUE(control(*page, "Part_EDT").hasFocus());
    type(*page, "Part_EDT", "۱۱۴");
    type(*page, "CostType_EDT", "1");
    QTest::keyClick(&control(*page, "CostType_EDT"), Qt::Key_F9);
    EXPECT_EQ(shown(*page, "CallState_LBL"), "اجرا شد.");
    EXPECT_THAT(rows("Result_GRD"), ElementsAre("نتیجه|11"));
    EXPECT_THAT(
        rows("Statements_GRD"),
        ElementsAre("Temp_Q7777UR|open|select isnull(Max(Code),0)+1 from (select isnull(Max(Code),0) as Code from "
                    "CostLevel WHERE CostType = 1UNION ALL Select MAX(CAST(Code AS BIGINT)) as Code FROM "
                    "CodeLock_TBL WHERE Status = 114) T1"));
    EXPECT_THAT(rows("Messages_GRD"), IsEmpty());
}

TEST_F(Console, showsOutputsFieldByField) {
    choose("CostLevel_GetByID");
    type(*page, "Code_EDT", "1");
    type(*page, "CostType_EDT", "1");
    click(*page, "Run_BTN");
    EXPECT_EQ(shown(*page, "CallState_LBL"), "اجرا شد.");
    const std::vector<std::string> result = rows("Result_GRD");
    ASSERT_EQ(result.size(), 5U);
    EXPECT_EQ(result.at(1), "Mapper.Code|1");
    EXPECT_THAT(result.at(2), StartsWith("Mapper.Name|"));
    EXPECT_EQ(result.at(4), "Mapper.CostType|1");
}

TEST_F(Console, showsTheRowsThatAQueryHolds) {
    choose("CostLevel_GetAll");
    type(*page, "Filter_EDT", "code > 0 AND CostType IN(1)");
    click(*page, "Run_BTN");
    const auto& table = control<QTableView>(*page, "Rows_GRD");
    EXPECT_EQ(table.model()->rowCount(), 10);
    EXPECT_EQ(table.model()->headerData(9, Qt::Vertical).toString(), "۱۰");
    // A number takes less room than a name.
    EXPECT_LT(table.columnWidth(0), table.columnWidth(1));
    EXPECT_EQ(control<QComboBox>(*page, "Query_CMB").itemText(0),
              "\u2066CostLevel_List_QUR\u2069 — \u2067۱۰ ردیف\u2069");
    EXPECT_EQ(control<QTabWidget>(*page, "Result_TAB").tabText(2), "ردیف‌ها (۱)");
}

TEST_F(Console, saysThatNothingIsFoundAndLeavesNoOtherFunctionOpen) {
    choose("CostLevel_GetNewCode");
    type(*page, "FunctionSearch_EDT", "xyz");
    EXPECT_EQ(shown(*page, "NoFunction_LBL"), "تابعی با این نام یا شرح پیدا نشد.");
    EXPECT_EQ(shown(*page, "FunctionName_LBL"), "");
    EXPECT_FALSE(control(*page, "Run_BTN").isEnabled());
    EXPECT_FALSE(control(*page, "Arguments_PNL").isVisible());
    page->enter();
    EXPECT_EQ(shown(*page, "FunctionName_LBL"), "") << "what is hidden is not chosen";
    choose("CostLevel_GetAll");
    EXPECT_EQ(shown(*page, "NoFunction_LBL"), "(hidden)");
    EXPECT_TRUE(control(*page, "Run_BTN").isEnabled());
    EXPECT_TRUE(control(*page, "Filter_EDT").hasFocus());
}

TEST_F(Console, itsInputsAreWholeAndScrolledInALowWindow) {
    setThemeFontSize(16);
    page->resize(880, 470);
    choose("CostLevel_ExistName");
    QApplication::processEvents();
    const auto& form = control<QScrollArea>(*page, "Arguments_PNL");
    const QWidget& first = control(*page, "Code_EDT");
    const QWidget& second = control(*page, "CostType_EDT");
    EXPECT_GE(first.height(), first.sizeHint().height());
    EXPECT_GT(second.y(), first.y() + first.height()) << "they do not touch";
    EXPECT_GT(form.verticalScrollBar()->maximum(), 0);
    EXPECT_GE(form.height(), first.height() + 20) << "one input and the beginning of the next";
    page->resize(880, 1000);
    QApplication::processEvents();
    EXPECT_EQ(form.verticalScrollBar()->maximum(), 0);
    setThemeFontSize(10);
}

TEST_F(Console, asksTheUserWhatAFunctionAsks) {
    choose("CostLevel_Delete");
    type(*page, "Code_EDT", "10");
    type(*page, "CostType_EDT", "1");
    messages.answers = {mrNo};
    click(*page, "Run_BTN");
    EXPECT_THAT(takeMessages(), ElementsAre("MsgDeleteRow()"));
    EXPECT_THAT(rows("Result_GRD"), ElementsAre("نتیجه|false"));
    EXPECT_THAT(rows("Messages_GRD"), ElementsAre(StartsWith("MsgDeleteRow|no|")));
    EXPECT_THAT(rows("Events_GRD"), IsEmpty());
}

TEST_F(Console, tellsWhatIsWrongWithTheArguments) {
    choose("CostLevel_GetNewCode");
    type(*page, "Part_EDT", "114");
    click(*page, "Run_BTN");
    EXPECT_EQ(shown(*page, "CallState_LBL"), "ورودی «\u2066CostType\u2069» داده نشده است.");
    EXPECT_THAT(rows("Statements_GRD"), IsEmpty());
    type(*page, "CostType_EDT", "یک");
    click(*page, "Run_BTN");
    EXPECT_EQ(shown(*page, "CallState_LBL"), "آنچه برای ورودی «\u2066CostType\u2069» نوشته شده از نوع آن نیست.");
    EXPECT_THAT(errorShown(), StartsWith("argument CostType"));
}

TEST_F(Console, showsAFailureWithWhatLedToIt) {
    choose("CostLevel_GetAll");
    type(*page, "Filter_EDT", "NoSuchColumn = 1");
    click(*page, "Run_BTN");
    EXPECT_EQ(shown(*page, "CallState_LBL"), "پایگاه داده دستور را اجرا نکرد.");
    EXPECT_EQ(errorShown(), "Invalid column name 'NoSuchColumn'.\nLine 2, column 8:\n WHERE NoSuchColumn = 1");
    const auto& error = control<QPlainTextEdit>(*page, "CallError_EDT");
    ASSERT_EQ(error.extraSelections().size(), 1);
    EXPECT_EQ(error.extraSelections().at(0).cursor.selectedText(), "NoSuchColumn");
    EXPECT_THAT(
        rows("Statements_GRD"),
        ElementsAre("CostLevel_List_QUR|open|select Code,Name,Comment from CostLevel\n WHERE NoSuchColumn = 1"));
}

TEST_F(Console, marksTheWrongWordBehindPersianOnes) {
    choose("CostLevel_GetAll");
    type(*page, "Filter_EDT", "Name = 'قیمت عمده' AND NoSuchColumn = 1");
    click(*page, "Run_BTN");
    const auto& error = control<QPlainTextEdit>(*page, "CallError_EDT");
    ASSERT_EQ(error.extraSelections().size(), 1);
    EXPECT_EQ(error.extraSelections().at(0).cursor.selectedText(), "NoSuchColumn");
    EXPECT_EQ(error.document()->defaultTextOption().textDirection(), Qt::LeftToRight);
    type(*page, "Filter_EDT", "");
    click(*page, "Run_BTN");
    EXPECT_EQ(errorShown(), "(hidden)");
}

TEST_F(Console, theErrorIsInFrontAndCoversNothingInALowWindow) {
    setThemeFontSize(16);
    page->resize(900, 600);
    choose("CostLevel_GetAll");
    type(*page, "Filter_EDT", "NoSuchColumn = 1");
    auto& tabs = control<QTabWidget>(*page, "Result_TAB");
    tabs.setCurrentIndex(1);
    click(*page, "Run_BTN");
    QApplication::processEvents();
    EXPECT_EQ(tabs.currentIndex(), 0);
    const QWidget& error = control(*page, "CallError_EDT");
    EXPECT_GE(error.height(), 2 * error.fontMetrics().lineSpacing());
    EXPECT_LE(error.mapTo(&tabs, QPoint(0, error.height())).y(), tabs.height());
    EXPECT_FALSE(control(*page, "Result_GRD").isVisible());
    setThemeFontSize(10);
}

TEST_F(Console, showsStatementsLetterForLetter) {
    choose("CostLevel_ExistName");
    type(*page, "Code_EDT", "7");
    type(*page, "CostType_EDT", "1");
    type(*page, "Name_EDT", "a<b>x</b><br>y");
    click(*page, "Run_BTN");
    for (const char* name : {"CallState_LBL", "QueryText_LBL"})
        EXPECT_EQ(control<QLabel>(*page, name).textFormat(), Qt::PlainText) << name;
    EXPECT_EQ(control<QLabel>(*page, "QueryText_LBL").text().toStdString(),
              "select Name from CostLevel where Name = 'a<b>x</b><br>y' and Code <> 7  AND CostType = 1");
}

TEST_F(Console, persianCellsReadFromTheRight) {
    choose("CostLevel_Delete");
    type(*page, "Code_EDT", "10");
    type(*page, "CostType_EDT", "1");
    messages.answers = {mrNo};
    click(*page, "Run_BTN");
    auto& table = control<QTableView>(*page, "Messages_GRD");
    const auto direction = [&](int column) {
        class Looked : public QStyledItemDelegate {
        public:
            using QStyledItemDelegate::initStyleOption;
        };
        QStyleOptionViewItem option;
        option.direction = table.layoutDirection();
        (static_cast<QStyledItemDelegate*>(table.itemDelegate())->*&Looked::initStyleOption)(
            &option, table.model()->index(0, column));
        return option.direction;
    };
    EXPECT_EQ(direction(0), Qt::LeftToRight);
    EXPECT_EQ(direction(2), Qt::RightToLeft);
}

TEST_F(Console, tabLeadsFromTheListThroughTheInputsToTheResults) {
    const auto order = [this](int steps) {
        control(*page, "Function_LST").setFocus();
        std::vector<std::string> names;
        for (int i = 0; i < steps; ++i) {
            QTest::keyClick(page->focusWidget(), Qt::Key_Tab);
            names.push_back(page->focusWidget()->objectName().toStdString());
        }
        return names;
    };
    choose("CostLevel_GetNewCode");
    EXPECT_THAT(order(4), ElementsAre("Part_EDT", "CostType_EDT", "Run_BTN", "qt_tabwidget_tabbar"));
    // Others than before, and as many as there are.
    choose("CostLevel_ExistName");
    EXPECT_THAT(order(5), ElementsAre("Code_EDT", "CostType_EDT", "Name_EDT", "Run_BTN", "qt_tabwidget_tabbar"));
}

TEST_F(Console, narrowsTheListByWords) {
    type(*page, "FunctionSearch_EDT", "costlevel newcode");
    const auto& list = control<QListWidget>(*page, "Function_LST");
    int left = 0;
    for (int row = 0; row < list.count(); ++row)
        left += list.item(row)->isHidden() ? 0 : 1;
    EXPECT_EQ(left, 1);
    EXPECT_EQ(list.currentItem()->text(), "CostLevel_GetNewCode");
    type(*page, "FunctionSearch_EDT", "no such function");
    QTest::keyClick(&control(*page, "FunctionSearch_EDT"), Qt::Key_Return);
    EXPECT_TRUE(control(*page, "FunctionSearch_EDT").hasFocus());
}

}  // namespace
}  // namespace basalt::host
