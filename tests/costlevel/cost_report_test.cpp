// The price report: its columns, its tabs, what it searches and what it prints. What the host, the database and the
// bases were asked is one list of lines.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QApplication>
#include <QLabel>

#include "ado/error.h"
#include "costlevel/cost_report_frm.h"
#include "package/basalt_interface_unt.h"
#include "package/registry.h"
#include "package/services.h"
#include "tests/costlevel/level_rows.h"
#include "tests/costlevel/price_statements.h"
#include "tests/support/fake_host.h"
#include "tests/support/fake_screens.h"
#include "tests/support/scripted_session.h"
#include "tests/support/tracing_session.h"

namespace basalt {
namespace {

using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::Not;

const char* const kLevelNames = " SELECT Name, Code FROM costlevel WHERE Code > 0  AND CostType = 1 order by code";
const char* const kTooMany = "ShowTooltipMessage('تعداد سطوح انتخابي نمي تواند بيشتر از 9 سطح باشد')";

struct LevelName {
    std::string name;
    int code;
};

RowSet levelNames(const std::vector<LevelName>& levels) {
    RowSet rows({{.name = "Name", .type = FieldType::Text, .size = 50}, {.name = "Code", .type = FieldType::Integer}});
    for (const LevelName& level : levels) {
        rows.column(0).appendText(level.name);
        rows.column(1).appendInt(level.code);
        rows.finishRow();
    }
    return rows;
}

std::vector<LevelName> firstLevels(int count) {
    std::vector<LevelName> levels;
    for (int code = 1; code <= count; ++code)
        levels.push_back({"سطح " + std::to_string(code), code});
    return levels;
}

// Goods 1 and 2, each with its sale and its purchase row.
RowSet reportRows() {
    RowSet rows({{.name = "Code", .type = FieldType::Integer},
                 {.name = "Name", .type = FieldType::Text, .size = 150},
                 {.name = "Status", .type = FieldType::Integer}});
    for (const int status : {2, 1}) {
        for (const int code : {1, 2}) {
            rows.column(0).appendInt(code);
            rows.column(1).appendText("کالا");
            rows.column(2).appendInt(status);
            rows.finishRow();
        }
    }
    return rows;
}

std::string shown(const TGridColumn& column) {
    return column.FieldName + " '" + column.Title.toStdString() + "' " + column.DisplayFormat +
           (column.Visible ? "" : " hidden") + (column.VisibleForCustomization ? "" : " out of reach") +
           (column.TitleButton ? "" : " without title button");
}

std::vector<std::string> titles(const FakeRange& range) {
    std::vector<std::string> all;
    for (const TSearchItem& item : range.items)
        all.push_back(item.FieldName + " '" + item.Title + "'" +
                      (item.DataType == TSearchDataType::Amount ? "" : " no amount"));
    return all;
}

class CostReport : public ::testing::Test {
protected:
    CostReport() { host.screens = &screens; }

    // The report as it stands when it is shown, with these price levels.
    std::unique_ptr<TCost_Report_FRM> open(const std::vector<LevelName>& levels) {
        script.expect(kPriceReport, reportRows());
        script.expect(kLevelNames, levelNames(levels));
        auto report = CreateScreen<TCost_Report_FRM>(fmBrowse, Value{}, "");
        report->ShowModal();
        host.calls.clear();
        return report;
    }

    template <class Control>
    static Control& control(const QWidget& screen, const char* name) {
        auto* found = dynamic_cast<Control*>(screen.findChild<QWidget*>(QString::fromUtf8(name)));
        if (found == nullptr) throw std::logic_error(std::string("there is no ") + name);
        return *found;
    }
    static FakeGrid& grid(const QWidget& report) { return control<FakeGrid>(report, "CostReport_List_GRD"); }
    static FakeRange& prices(const QWidget& report) { return control<FakeRange>(report, "TRange_Cost_Search_Frame1"); }
    static void goToTab(const QWidget& report, int tab) {
        control<FakeTabs>(report, "TTab_Search_Frame1").SetTabIndex(tab);
    }

    ScriptedSession script;
    TracingSession session{script, host.calls};
    FakeHost host{session};
    AttachedHost attached{host};
    FakeScreens screens{host.calls};
};

TEST_F(CostReport, opensInItsOrderAndAsksForItsRowsOnce) {
    script.expect(kPriceReport, reportRows());
    script.expect(kLevelNames, levelNames(firstLevels(1)));
    host.scaler = std::string("گزارش قیمت کالاها");
    const auto report = CreateScreen<TCost_Report_FRM>(fmBrowse, Value{}, "");
    report->ShowModal();
    EXPECT_THAT(host.calls,
                ElementsAre("base FormCreate", "ScalerQuery('SoftwarePart', 'Title', 'Code', '519')",
                            "SetTitle گزارش قیمت کالاها", "search SetDataSource", kPriceReport, "search SetDataSource",
                            std::string("SetSQLScript ") + kPriceReport, "search init", kLevelNames, "base FormShow",
                            "SetShortCut", "SetPopMenu", "search FocusFirst", "list shown"));
    // The tab in front is that of the purchase prices, and so are the rows.
    EXPECT_EQ(grid(*report).source->DataSet()->RecordCount(), 2);
    EXPECT_EQ(grid(*report).CurrentRow(), 1);
}

TEST_F(CostReport, bearsTheMenusCaptionWhereTheHostHasNoTitle) {
    host.scaler = Value{};
    const auto report = CreateScreen<TCost_Report_FRM>(fmBrowse, Value{}, "");
    EXPECT_THAT(host.calls, ::testing::Contains("SetTitle گزارش قیمت کالاها"));
}

TEST_F(CostReport, hasItsControls) {
    const auto report = open(firstLevels(2));
    EXPECT_EQ(report->objectName(), "TCost_Report_FRM");
    EXPECT_EQ(control<QLabel>(*report, "CostReport_LBL").text(), " لیست قیمت ها ");
    EXPECT_EQ(control<FakeButton>(*report, "PrintList_BTN").Caption(), "پیش نمایش ليست F9");
    EXPECT_EQ(control<FakeButton>(*report, "EXit_BTN").Caption(), "خروج Esc");
    EXPECT_TRUE(grid(*report).multiSelect);
    EXPECT_EQ(grid(*report).titleLines, 2);
    const auto& tabs = control<FakeTabs>(*report, "TTab_Search_Frame1");
    EXPECT_EQ(tabs.fieldName, "Status");
    EXPECT_THAT(tabs.tabs, ElementsAre(std::pair<std::string, std::string>("&خرید  ", "1"),
                                       std::pair<std::string, std::string>("&فروش  ", "2")));
    const auto& search = control<FakeSearch>(*report, "TGeneral_Search_Frame1");
    ASSERT_EQ(search.items.size(), 3U);
    EXPECT_EQ(search.items[0].FieldName + ' ' + search.items[0].Title, "Code کد");
    EXPECT_EQ(search.items[0].DataType, TSearchDataType::Digits);
    EXPECT_EQ(search.items[1].FieldName + ' ' + search.items[1].Title, "Name عنوان");
    EXPECT_EQ(search.items[1].DataType, TSearchDataType::Text);
    EXPECT_EQ(search.items[2].FieldName + ' ' + search.items[2].Title, "AbbName بارکد کالا");
    EXPECT_EQ(search.items[2].DataType, TSearchDataType::Text);
    const auto& codes = control<FakeRange>(*report, "TRange_Digit_Search_Frame1");
    EXPECT_THAT(titles(codes), ElementsAre("Code 'کد' no amount"));
    // Each frame starts afresh once.
    EXPECT_EQ(codes.inits, 1);
    EXPECT_EQ(prices(*report).inits, 1);
    EXPECT_EQ(tabs.inits, 1);
}

// Columns

TEST_F(CostReport, hasAColumnForEachLevelInTheOrderOfCodes) {
    const auto report = open({{"تک‌فروشی", 1}, {"نمایندگی", 4}, {"صادرات", 10}});
    std::vector<std::string> columns;
    for (const TGridColumn& column : grid(*report).columns)
        columns.push_back(shown(column));
    EXPECT_THAT(columns, ElementsAre("Code 'کد کالا' ", "AbbName 'بارکد کالا' ", "Name 'نام کالا' ",
                                     "F1 'تک‌فروشی' #,#0;-#,#0;0", "F4 'نمایندگی' #,#0;-#,#0;0",
                                     "F10 'صادرات' #,#0;-#,#0;0", "F2 'F2'  hidden out of reach",
                                     "F3 'F3'  hidden out of reach", "F5 'F5'  hidden out of reach",
                                     "F6 'F6'  hidden out of reach", "F7 'F7'  hidden out of reach",
                                     "F8 'F8'  hidden out of reach", "F9 'F9'  hidden out of reach"));
    EXPECT_THAT(titles(prices(*report)), ElementsAre("F1 'تک‌فروشی'", "F4 'نمایندگی'", "F10 'صادرات'",
                                                     "ConsumerPrice 'فی مصرف کننده'"));
}

TEST_F(CostReport, standsWithoutAnyLevel) {
    const auto report = open({});
    for (int i = 3; i < grid(*report).ColumnCount(); ++i)
        EXPECT_FALSE(grid(*report).Column(i).Visible) << i;
    EXPECT_THAT(titles(prices(*report)), ElementsAre("ConsumerPrice 'فی مصرف کننده'"));
    EXPECT_THAT(report->GetMasterReport_Description(), ElementsAre("0"));
    goToTab(*report, 1);
    EXPECT_THAT(report->GetMasterReport_Description(), ElementsAre("قیمت مصرف کننده", "1"));
}

TEST_F(CostReport, printsWithoutAnyLevel) {
    const auto report = open({});
    screens.onPrintSetting = [](const TPrintSettingRequest&, TPrintSetting& setting) {
        setting = {.Title = "کالاها"};
        return true;
    };
    control<FakeButton>(*report, "PrintList_BTN").Click();
    EXPECT_EQ(screens.printReport, "CostReport");
    EXPECT_EQ(screens.printColumns.size(), 10U);
    ASSERT_EQ(grid(*report).printed.size(), 1U);
    std::vector<std::string> columns;
    for (const TPrintColumn& column : grid(*report).printed[0].Columns)
        columns.push_back(column.FieldName);
    EXPECT_THAT(columns, ElementsAre("Code", "AbbName", "Name"));
}

TEST_F(CostReport, levelsBeyondTheTenthHaveNoColumn) {
    const auto report = open(firstLevels(12));
    ASSERT_EQ(grid(*report).ColumnCount(), 13);
    EXPECT_EQ(shown(grid(*report).Column(12)), "F10 'سطح 10' #,#0;-#,#0;0");
    ASSERT_EQ(prices(*report).items.size(), 11U);
    EXPECT_EQ(prices(*report).items[9].FieldName, "F10");
    EXPECT_EQ(prices(*report).items[10].FieldName, "ConsumerPrice");
}

// The place among the levels gives a level its column, not its code.
TEST_F(CostReport, levelOfACodeAboveTenHasItsColumn) {
    const auto report = open({{"تک‌فروشی", 1}, {"دوازدهم", 12}});
    EXPECT_EQ(shown(grid(*report).Column(4)), "F12 'دوازدهم' #,#0;-#,#0;0");
    EXPECT_EQ(shown(grid(*report).Column(5)), "F2 'F2'  hidden out of reach");
    EXPECT_EQ(shown(grid(*report).Column(12)), "F9 'F9'  hidden out of reach");
    EXPECT_THAT(titles(prices(*report)),
                ElementsAre("F1 'تک‌فروشی'", "F12 'دوازدهم'", "ConsumerPrice 'فی مصرف کننده'"));
    EXPECT_THAT(report->GetMasterReport_Description(), ElementsAre("تک‌فروشی", "دوازدهم", "2"));
}

TEST_F(CostReport, longNamesStayWhole) {
    std::string name;
    for (int i = 0; i < 50; ++i)
        name += "ق";
    const auto report = open({{name, 1}});
    EXPECT_EQ(grid(*report).Column(3).Title.toStdString(), name);
}

struct Precision {
    int decimals;
    const char* digits;
    const char* format;
};

TEST_F(CostReport, showsAsManyDecimalsAsTheCompanySets) {
    for (const Precision& row : {Precision{0, "", "#,#0;-#,#0;0"}, Precision{2, ".##", "#,#0.##;-#,#0.##;0"},
                                 Precision{3, ".###", "#,#0.###;-#,#0.###;0"},
                                 Precision{9, ".#########", "#,#0.#########;-#,#0.#########;0"}}) {
        host.settings.CurrencyDecimals = row.decimals;
        const auto report = open(firstLevels(1));
        EXPECT_EQ(report->GetCurrencyPrecisionCount(), row.digits);
        EXPECT_EQ(grid(*report).Column(3).DisplayFormat, row.format);
        goToTab(*report, 1);
        EXPECT_EQ(grid(*report).columns.back().DisplayFormat, row.format);
    }
}

// Tabs

TEST_F(CostReport, consumerPriceComesAndGoesWithTheSalePrices) {
    const auto report = open(firstLevels(1));
    EXPECT_EQ(grid(*report).ColumnCount(), 13);

    for (int time = 0; time < 2; ++time) {
        host.calls.clear();
        goToTab(*report, 1);
        EXPECT_THAT(host.calls, ElementsAre("Search_TBCChange", "ExecuteFilter_DataSet", "EnableButtons"));
        ASSERT_EQ(grid(*report).ColumnCount(), 14);
        EXPECT_EQ(shown(grid(*report).columns.back()), "ConsumerPrice 'قیمت مصرف کننده' #,#0;-#,#0;0");
        EXPECT_THAT(titles(prices(*report)),
                    ElementsAre("F1 'سطح 1'", "ConsumerPrice 'فی مصرف کننده'", "ConsumerPrice 'قیمت مصرف کننده'"));

        host.calls.clear();
        goToTab(*report, 0);
        EXPECT_THAT(host.calls, ElementsAre("Search_TBCChange", "ExecuteFilter_DataSet", "EnableButtons"));
        EXPECT_EQ(grid(*report).ColumnCount(), 13);
        EXPECT_THAT(titles(prices(*report)), ElementsAre("F1 'سطح 1'", "ConsumerPrice 'فی مصرف کننده'"));
    }
}

TEST_F(CostReport, startsOnThePurchasePricesWithoutTheConsumersColumn) {
    const auto report = open(firstLevels(1));
    EXPECT_EQ(control<FakeTabs>(*report, "TTab_Search_Frame1").TabIndex(), 0);
    EXPECT_EQ(grid(*report).ColumnCount(), 13);
    EXPECT_THAT(titles(prices(*report)), ElementsAre("F1 'سطح 1'", "ConsumerPrice 'فی مصرف کننده'"));
    const TDataSet& rows = *grid(*report).source->DataSet();
    EXPECT_TRUE(rows.Filtered());
    EXPECT_EQ(rows.Filter(), "Status = 1");
    EXPECT_EQ(rows.RecordCount(), 2);
}

TEST_F(CostReport, leavingARangeOfTheConsumersSearchesOnce) {
    const auto report = open(firstLevels(1));
    goToTab(*report, 1);
    prices(*report).filter = "[ConsumerPrice] >= 5";
    prices(*report).narrowing = 2;
    host.calls.clear();
    std::string searched = "nothing";
    screens.onSearch = [&] { searched = prices(*report).filter; };
    goToTab(*report, 0);
    EXPECT_THAT(host.calls, ElementsAre("Search_TBCChange", "ExecuteFilter_DataSet", "EnableButtons"));
    EXPECT_EQ(searched, "");
}

TEST_F(CostReport, failedSearchOfATabLeavesGridAndRangesAsTheyWere) {
    const auto report = open(firstLevels(1));
    const auto fail = [] { throw DatabaseError(ErrorCategory::Connection, "08S01", 0, "the connection is lost"); };
    screens.onSearch = fail;
    EXPECT_THROW(goToTab(*report, 1), DatabaseError);
    EXPECT_EQ(grid(*report).ColumnCount(), 13);
    EXPECT_THAT(titles(prices(*report)), ElementsAre("F1 'سطح 1'", "ConsumerPrice 'فی مصرف کننده'"));
    EXPECT_TRUE(grid(*report).source->DataSet()->Filtered());

    screens.onSearch = {};
    goToTab(*report, 1);
    screens.onSearch = fail;
    EXPECT_THROW(goToTab(*report, 0), DatabaseError);
    EXPECT_EQ(grid(*report).ColumnCount(), 14);
    EXPECT_EQ(prices(*report).items.size(), 3U);
}

TEST_F(CostReport, sameTabTwiceAddsNothing) {
    const auto report = open(firstLevels(1));
    goToTab(*report, 1);
    goToTab(*report, 1);
    EXPECT_EQ(grid(*report).ColumnCount(), 14);
    EXPECT_EQ(prices(*report).items.size(), 3U);
    goToTab(*report, 0);
    goToTab(*report, 0);
    EXPECT_EQ(grid(*report).ColumnCount(), 13);
    EXPECT_EQ(prices(*report).items[0].FieldName, "F1");
}

// Searching

TEST_F(CostReport, everyFrameSearches) {
    const auto report = open(firstLevels(1));
    for (const char* name : {"TGeneral_Search_Frame1", "TRange_Digit_Search_Frame1", "TRange_Cost_Search_Frame1"}) {
        host.calls.clear();
        control<TSearchFrame>(*report, name).OnChange();
        EXPECT_THAT(host.calls, ElementsAre("ExecuteFilter_DataSet", "EnableButtons")) << name;
        // The statement of the search holds the tab's condition.
        EXPECT_FALSE(grid(*report).source->DataSet()->Filtered()) << name;
    }
}

TEST_F(CostReport, refreshRunsTheStatementAgain) {
    const auto report = open(firstLevels(1));
    script.expect(kPriceReport, reportRows());
    report->RefreshList();
    EXPECT_THAT(host.calls, ElementsAre("ResetDataset(CostReport_QUR)", kPriceReport, "EnableButtons"));
    EXPECT_EQ(grid(*report).source->DataSet()->RecordCount(), 2);
}

TEST_F(CostReport, failedOpeningPasses) {
    script.expectError(kPriceReport, DatabaseError(ErrorCategory::Busy, "40001", 1222, "busy"));
    const auto report = CreateScreen<TCost_Report_FRM>(fmBrowse, Value{}, "");
    EXPECT_THROW(report->ShowModal(), DatabaseError);
    EXPECT_THAT(host.calls, Not(Contains("list shown")));
}

// Printing

TEST_F(CostReport, describesTheColumnsThatShow) {
    const auto report = open({{"تک‌فروشی", 1}, {"نمایندگی", 4}});
    EXPECT_THAT(report->GetMasterReport_Description(), ElementsAre("تک‌فروشی", "نمایندگی", "2"));
    grid(*report).columns[3].Visible = false;
    goToTab(*report, 1);
    EXPECT_THAT(report->GetMasterReport_Description(), ElementsAre("نمایندگی", "قیمت مصرف کننده", "2"));
}

TEST_F(CostReport, warnsAboveTenColumns) {
    const auto report = open(firstLevels(10));
    EXPECT_EQ(report->GetMasterReport_Description().back(), "10");
    goToTab(*report, 1);
    host.expectMessage(kTooMany);
    EXPECT_EQ(report->GetMasterReport_Description().back(), "11");
    EXPECT_EQ(host.lastMessage.controlHandle, static_cast<std::uintptr_t>(grid(*report).winId()));
    // One fewer, and it fits.
    grid(*report).columns[5].Visible = false;
    EXPECT_EQ(report->GetMasterReport_Description().back(), "10");
}

TEST_F(CostReport, registersItsColumnsForPrinting) {
    const auto report = open({{"تک‌فروشی", 1}, {"نمایندگی", 4}});
    goToTab(*report, 1);
    grid(*report).columns[4].Visible = false;
    const auto registered =
        ElementsAre("F1 'تک‌فروشی'", "F4 'نمایندگی' hidden", "F2 'F2' hidden out of reach",
                    "F3 'F3' hidden out of reach", "F5 'F5' hidden out of reach", "F6 'F6' hidden out of reach",
                    "F7 'F7' hidden out of reach", "F8 'F8' hidden out of reach", "F9 'F9' hidden out of reach",
                    "F10 'F10' hidden out of reach", "F11 on ConsumerPrice 'قیمت مصرف کننده' at 13");
    EXPECT_THAT(report->GetMasterReport_Description(), ElementsAre("تک‌فروشی", "قیمت مصرف کننده", "2"));
    EXPECT_EQ(screens.printReport, "CostReport");
    EXPECT_THAT(screens.printColumns, registered);

    screens.printColumns.clear();
    screens.onPrintSetting = [&](const TPrintSettingRequest& request, TPrintSetting&) {
        EXPECT_EQ(request.ReportName, "CostReport");
        EXPECT_EQ(request.Form, report.get());
        EXPECT_THAT(screens.printColumns, registered);
        return false;
    };
    control<FakeButton>(*report, "PrintList_BTN").Click();
    EXPECT_THAT(screens.printColumns, registered);
    // Cancelled: nothing is printed.
    EXPECT_TRUE(grid(*report).printed.empty());

    // What is not there any more is not registered any more.
    goToTab(*report, 0);
    EXPECT_THAT(report->GetMasterReport_Description(), ElementsAre("تک‌فروشی", "1"));
    EXPECT_EQ(screens.printColumns.size(), 10U);
}

// The price of level 11 and the consumer price are kept under one name.
TEST_F(CostReport, aLevelOfTheCodeElevenSharesThePrintSettingOfTheConsumerPrice) {
    const auto report = open({{"تک‌فروشی", 1}, {"یازدهم", 11}});
    goToTab(*report, 1);
    EXPECT_EQ(report->GetMasterReport_Description().back(), "3");
    ASSERT_EQ(screens.printColumns.size(), 11U);
    EXPECT_EQ(screens.printColumns[1], "F11 'یازدهم'");
    EXPECT_EQ(screens.printColumns[10], "F11 on ConsumerPrice 'قیمت مصرف کننده' at 13");
}

TEST_F(CostReport, registersItsColumnsInTheOrderOfTheScreen) {
    const auto report = open({{"تک‌فروشی", 1}, {"نمایندگی", 4}});
    goToTab(*report, 1);
    // The name first, then the consumer price and the second level; what is hidden stands anywhere.
    grid(*report).order = {2, 0, 13, 4, 1, 12, 3, 5, 6, 7, 8, 9, 10, 11};
    EXPECT_THAT(report->GetMasterReport_Description(),
                ElementsAre("نمایندگی", "تک‌فروشی", "قیمت مصرف کننده", "3"));
    ASSERT_EQ(screens.printColumns.size(), 11U);
    EXPECT_EQ(screens.printColumns[0], "F4 'نمایندگی'");
    EXPECT_EQ(screens.printColumns[2], "F1 'تک‌فروشی'");
    EXPECT_EQ(screens.printColumns[10], "F11 on ConsumerPrice 'قیمت مصرف کننده' at 2");
    EXPECT_THAT(screens.printPlaces, ElementsAre(3, 5, 6, 7, 8, 9, 10, 11, 12, 13, 2));
    screens.onPrintSetting = [](const TPrintSettingRequest&, TPrintSetting& setting) {
        setting = {.Title = "قیمت", .Columns = {{.FieldName = "F4", .Title = "نمایندگی"}}};
        return true;
    };
    control<FakeButton>(*report, "PrintList_BTN").Click();
    ASSERT_EQ(grid(*report).printed.size(), 1U);
    std::vector<std::string> columns;
    for (const TPrintColumn& column : grid(*report).printed[0].Columns)
        columns.push_back(column.FieldName);
    EXPECT_THAT(columns, ElementsAre("Name", "Code", "AbbName", "F4"));
}

TEST_F(CostReport, asksNothingForARowCountThatCannotBePrinted) {
    const auto report = open(firstLevels(10));
    goToTab(*report, 1);
    host.calls.clear();
    grid(*report).onCheckPrintable = [] { throw UsageError("too long"); };
    // Neither the warning nor the settings.
    EXPECT_THROW(control<FakeButton>(*report, "PrintList_BTN").Click(), UsageError);
    EXPECT_TRUE(host.calls.empty());
    EXPECT_TRUE(grid(*report).printed.empty());
}

TEST_F(CostReport, warnsOfTheColumnsThatTheGridShowsBeforeItAsksWhatToPrint) {
    const auto report = open(firstLevels(10));
    control<FakeButton>(*report, "PrintList_BTN").Click();
    EXPECT_THAT(host.calls, ElementsAre("PrintSetting CostReport"));
    goToTab(*report, 1);
    host.calls.clear();
    host.expectMessage(kTooMany);
    // A choice of fewer columns does not matter.
    screens.onPrintSetting = [&](const TPrintSettingRequest&, TPrintSetting& setting) {
        EXPECT_EQ(host.lastMessage.operation, "ShowTooltipMessage");
        setting = {.Title = "قیمت", .Columns = {{.FieldName = "F1", .Title = "سطح 1"}}};
        return true;
    };
    control<FakeButton>(*report, "PrintList_BTN").Click();
    EXPECT_EQ(grid(*report).printed.size(), 1U);
}

TEST_F(CostReport, printsWhatTheUserChoseBehindTheGoodsNames) {
    const auto report = open(firstLevels(3));
    screens.onPrintSetting = [](const TPrintSettingRequest&, TPrintSetting& setting) {
        setting = {.Title = "قیمت همکار",
                   .Columns = {{.FieldName = "F3", .Title = "سطح 3"},
                               {.FieldName = "F1", .Title = "سطح 1", .Visible = false}}};
        setting.Orientation = TPrintOrientation::Landscape;
        return true;
    };
    grid(*report).columns[1].Visible = false;  // the barcodes
    control<FakeButton>(*report, "PrintList_BTN").Click();
    ASSERT_EQ(grid(*report).printed.size(), 1U);
    const TPrintSetting& printed = grid(*report).printed[0];
    EXPECT_EQ(printed.Title, "قیمت همکار");
    EXPECT_EQ(printed.Orientation, TPrintOrientation::Landscape);
    std::vector<std::string> columns;
    for (const TPrintColumn& column : printed.Columns)
        columns.push_back(column.FieldName + (column.Visible ? "" : " hidden"));
    EXPECT_THAT(columns, ElementsAre("Code", "AbbName hidden", "Name", "F3", "F1 hidden"));
    // Behind the printing the description is that of the screen again.
    EXPECT_EQ(report->GetMasterReport_Description().back(), "3");
}

// The entry point

TEST_F(CostReport, entryPointShowsIt) {
    script.expect(kPriceReport, reportRows());
    script.expect(kLevelNames, levelNames(firstLevels(1)));
    std::string name;
    screens.onList = [&](TBaseDock_FRM& list) {
        name = list.objectName().toStdString();
        EXPECT_EQ(list.Mode(), fmBrowse);
        EXPECT_EQ(list.CustomText(), "");
    };
    Open_CostReport();
    EXPECT_EQ(name, "TCost_Report_FRM");
    EXPECT_EQ(host.calls.front(), "HavePermission(user 1, 519, 6, true, true, '')");
    EXPECT_THAT(host.calls, Contains("SetSoftwarePart 162"));
}

TEST_F(CostReport, entryPointFreesTheScreenWhenItFails) {
    const auto there = [] {
        int count = 0;
        for (const QWidget* window : QApplication::topLevelWidgets())
            count += window->objectName() == QStringLiteral("TCost_Report_FRM") ? 1 : 0;
        return count;
    };
    const DatabaseError lost(ErrorCategory::Connection, "08S01", 0, "the connection is lost");
    // While it opens, while its grid is made, and while it is shown.
    script.expectError(kPriceReport, lost);
    EXPECT_THROW(Open_CostReport(), DatabaseError);
    EXPECT_EQ(there(), 0);
    script.expect(kPriceReport, reportRows());
    script.expectError(kLevelNames, lost);
    EXPECT_THROW(Open_CostReport(), DatabaseError);
    EXPECT_EQ(there(), 0);
    script.expect(kPriceReport, reportRows());
    script.expect(kLevelNames, levelNames(firstLevels(1)));
    screens.onList = [&](TBaseDock_FRM&) {
        EXPECT_EQ(there(), 1);
        throw lost;
    };
    EXPECT_THROW(Open_CostReport(), DatabaseError);
    EXPECT_EQ(there(), 0);
    // And the next one opens.
    screens.onList = {};
    script.expect(kPriceReport, reportRows());
    script.expect(kLevelNames, levelNames(firstLevels(1)));
    Open_CostReport();
    EXPECT_THAT(host.calls, Contains("list shown"));
}

TEST_F(CostReport, entryPointStopsWhenRefused) {
    host.permitted = false;
    Open_CostReport();
    EXPECT_THAT(host.calls, ElementsAre("HavePermission(user 1, 519, 6, true, true, '')"));
}

TEST_F(CostReport, entryPointIsRegistered) {
    Registry registry;
    registerEntryPoints(registry);
    const EntryPoint* entry = registry.findEntryPoint("Open_CostReport");
    ASSERT_NE(entry, nullptr);
    EXPECT_EQ(entry->subsystem, "costlevel");
    EXPECT_EQ(entry->part, spPriceReport);
    EXPECT_EQ(entry->permission, prOpen);
    EXPECT_TRUE(entry->parameters.empty());
}

}  // namespace
}  // namespace basalt
