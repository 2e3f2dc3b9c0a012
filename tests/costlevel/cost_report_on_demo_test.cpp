// The price report with everything in place: store, screen, the reference host and a database with the demo company.
#include <gmock/gmock.h>

#include <QComboBox>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QRadioButton>
#include <QTableView>
#include <algorithm>
#include <limits>
#include <utility>

#include "costlevel/cost_report_frm.h"
#include "host/screens/smart_grid.h"
#include "host/services/sql_access.h"
#include "tests/host_screens/demo_screens.h"
#include "tests/host_screens/painted_text.h"
#include "tests/host_screens/when_busy.h"

namespace basalt::host {
namespace {

using ::testing::ElementsAre;

bool reportIsThere() {
    for (const QWidget* window : QApplication::topLevelWidgets())
        if (window->objectName() == QStringLiteral("TCost_Report_FRM")) return true;
    return false;
}

class ReportOnDemo : public DemoScreens {
protected:
    // Shows the report, acts in its own loop and closes it.
    void show(const std::function<void(QWidget&, SmartGrid&)>& act) {
        const auto report = CreateScreen<TCost_Report_FRM>(fmBrowse, Value{}, "");
        report->FormOption().SetSoftwarePart(csPriceReport);
        QTimer::singleShot(0, report.get(), [&] {
            // One that stays behind fails the test and is closed; its loop would never end.
            report->activateWindow();
            EXPECT_TRUE(QTest::qWaitForWindowActive(report.get()));
            act(*report, *control<SmartGrid>(*report, "CostReport_List_GRD"));
            report->reject();
        });
        report->ShowModal();
    }
    // What is painted of the pages: all of them, or only the first.
    static QString painted(PrintDocument& document, const QPageLayout& layout = pageLayout(),
                           int most = std::numeric_limits<int>::max()) {
        PaintedText device;
        const int pages = std::min(document.layOut(layout), most);
        QPainter painter(&device);
        for (int page = 0; page < pages; ++page)
            document.paintPage(painter, page);
        painter.end();
        return device.text();
    }
    // Of the prices, as they stand on the screen.
    static std::vector<std::string> shownTitles(const SmartGrid& grid) {
        std::vector<std::string> titles;
        for (const int i : grid.ColumnOrder())
            if (i >= 3 && grid.Column(i).Visible) titles.push_back(grid.Column(i).Title.toStdString());
        return titles;
    }
    // Enough goods for a request that takes its time.
    void addGoods() {
        for (int block = 1; block <= 100; ++block)
            execute(*session, "INSERT INTO GoodInf (Code, Name, AbbName) SELECT Code + " +
                                  std::to_string(block * 10'000) + ", Name, AbbName FROM GoodInf WHERE Code < 10000");
    }
};

TEST_F(ReportOnDemo, theLongestPricesAreWholeOnScreenAndPaper) {
    QString longest;
    qsizetype printed = 0;
    output.onPreview = [&](PrintDocument& document) {
        const QString pages = painted(document);
        printed = pages.count(longest);
        EXPECT_FALSE(pages.contains(QLatin1Char('#')));
    };
    show([&](QWidget&, SmartGrid& grid) {
        const QFontMetrics metrics(grid.View()->font());
        qsizetype there = 0;
        for (int column = 0; column < grid.ColumnCount(); ++column) {
            if (!grid.Column(column).Visible || !grid.model().isNumberColumn(column)) continue;
            const int width = static_cast<QTableView*>(grid.View())->columnWidth(column);
            for (int row = 0; row < grid.model().rowCount(); ++row) {
                const QString shown = grid.model().shown(row, column);
                if (shown.size() > longest.size()) {
                    longest = shown;
                    there = 0;
                }
                if (shown == longest) ++there;
                EXPECT_LE(metrics.horizontalAdvance(shown) + 22, width) << row << ", " << column;
            }
        }
        EXPECT_GT(longest.size(), 8);
        grid.print();
        EXPECT_EQ(printed, there);
    });
}

TEST_F(ReportOnDemo, f9PrintsWhatIsTickedAndSaysSoAboveIt) {
    QString pages;
    output.onPreview = [&](PrintDocument& document) { pages = painted(document); };
    show([&](QWidget& report, SmartGrid& grid) {
        control<QTabBar>(report, "TTab_Search_Frame1_TBC")->setCurrentIndex(1);
        EXPECT_EQ(shownTitles(grid).size(), 11U);
        // The warning is of what the list shows.
        messages.expect("ShowTooltipMessage");
        QTimer::singleShot(0, &report, [] {
            QWidget* dialog = QApplication::activeModalWidget();
            ASSERT_EQ(dialog->objectName().toStdString(), "PrintSetting_FRM");
            auto* list = control<QListWidget>(*dialog, "Columns_LST");
            ASSERT_EQ(list->count(), 11);
            for (int i = 0; i < list->count(); ++i)
                list->item(i)->setCheckState(i == 2 || i == 10 ? Qt::Checked : Qt::Unchecked);
            control<QRadioButton>(*dialog, "Landscape_RDB")->click();
            control<QPushButton>(*dialog, "Ok_BTN")->click();
        });
        QTest::keyClick(&report, Qt::Key_F9);
        ASSERT_EQ(output.previews.size(), 1U);
        EXPECT_EQ(output.layouts[0].orientation(), QPageLayout::Landscape);
        // The company, the tab and two titles in lines of their own, and no bare number behind them.
        EXPECT_TRUE(
            pages.startsWith(QStringLiteral("بازرگانی مهرآفرینگزارش قیمت کالاهافروشهمکارقیمت مصرف کنندهکد کالا")))
            << pages.left(200).toStdString();
        EXPECT_FALSE(pages.contains(QStringLiteral("نمایندگی")));
        EXPECT_TRUE(pages.contains(QStringLiteral("نام کالا")));
        EXPECT_EQ(shownTitles(grid).size(), 11U);
    });
}

// As a long report is whose reading was given up late.
TEST_F(ReportOnDemo, f9ReadsAReportThatHasLostItsRows) {
    int rows = 0;
    output.onPreview = [&](PrintDocument& document) {
        EXPECT_TRUE(painted(document, pageLayout(), 1).contains(QStringLiteral("نام کالا")));
    };
    show([&](QWidget& report, SmartGrid& grid) {
        rows = grid.model().rowCount();
        for (QWidget* focused : std::initializer_list<QWidget*>{&report, grid.View()}) {
            focused->setFocus();
            grid.model().dataSet()->Close();
            EXPECT_EQ(grid.model().rowCount(), 0);
            QTimer::singleShot(0, &report, [] {
                auto* ok = QApplication::activeModalWidget()->findChild<QPushButton*>("Ok_BTN");
                ASSERT_NE(ok, nullptr) << "nobody asks what to print";
                ok->click();
            });
            QTest::keyClick(focused, Qt::Key_F9);
            QCoreApplication::processEvents();
            EXPECT_EQ(grid.model().rowCount(), rows);
        }
    });
    EXPECT_GT(rows, 0);
    EXPECT_EQ(output.previews.size(), 2U);
}

// Of the screen, above it and above its pages: what the table of the application's parts has; pages also name the tab.
// The count of the columns is left out of the line above the pages, a level whose name is a number is not.
TEST_F(ReportOnDemo, aLevelMayBeCalledByANumber) {
    execute(*session, "UPDATE CostLevel SET Name = N'1402' WHERE CostType = 1 AND Code = 2");
    QStringList lines;
    output.onPreview = [&](PrintDocument& document) { lines.append(painted(document, pageLayout(), 1)); };
    show([&](QWidget& report, SmartGrid& grid) {
        grid.print();
        EXPECT_EQ(control<QComboBox>(report, "TRange_Cost_Search_Frame1_CMB")->itemText(1).toStdString(), "۱۴۰۲");
        QTimer::singleShot(0, &report, [] {
            QWidget* dialog = QApplication::activeModalWidget();
            EXPECT_EQ(control<QListWidget>(*dialog, "Columns_LST")->item(1)->text().toStdString(), "۱۴۰۲");
            control<QPushButton>(*dialog, "Cancel_BTN")->click();
        });
        QTest::keyClick(&report, Qt::Key_F9);
    });
    ASSERT_EQ(lines.size(), 1);
    // Once in the line above the pages and once in the headings; a number of ten columns nowhere.
    EXPECT_EQ(lines[0].count(QStringLiteral("۱۴۰۲")), 2) << lines[0].left(300).toStdString();
    EXPECT_FALSE(lines[0].contains(QStringLiteral("|   ۱۰"))) << lines[0].left(300).toStdString();
}

TEST_F(ReportOnDemo, itsTitleIsThatOfItsPart) {
    const auto titles = [&] {
        std::vector<std::string> all;
        show([&](QWidget& report, SmartGrid& grid) {
            all.push_back(report.windowTitle().toStdString());
            all.push_back(control<QLabel>(report, "Title_LBL")->text().toStdString());
            grid.print();
            all.push_back(output.previews.back().toStdString());
        });
        return all;
    };
    EXPECT_THAT(titles(), ElementsAre("گزارش قیمت کالاها", "گزارش قیمت کالاها", "گزارش قیمت کالاها – خرید"));
    execute(*session, "UPDATE SoftwarePart SET Title = N'قیمت‌ها & تخفیف‌ها <b>' WHERE Code = 519");
    EXPECT_THAT(titles(),
                ElementsAre("قیمت‌ها & تخفیف‌ها <b>", "قیمت‌ها & تخفیف‌ها <b>",
                            "قیمت‌ها & تخفیف‌ها <b> – خرید"));
    // A part that is missing is called as the menu calls the report.
    execute(*session, "DELETE FROM SoftwarePart WHERE Code = 519");
    EXPECT_THAT(titles(), ElementsAre("گزارش قیمت کالاها", "گزارش قیمت کالاها", "گزارش قیمت کالاها – خرید"));
}

TEST_F(ReportOnDemo, oneColumnOfTwoThatShareAPrintSettingIsOffered) {
    execute(*session, "UPDATE CostLevel SET Code = 11 WHERE CostType = 1 AND Code = 10");
    show([&](QWidget& report, SmartGrid&) {
        const auto offered = [&] {
            std::vector<std::string> titles;
            QTimer::singleShot(0, &report, [&titles] {
                QWidget* dialog = QApplication::activeModalWidget();
                auto* list = control<QListWidget>(*dialog, "Columns_LST");
                for (int i = 0; i < list->count(); ++i)
                    titles.push_back(list->item(i)->text().toStdString());
                control<QPushButton>(*dialog, "Cancel_BTN")->click();
            });
            QTest::keyClick(&report, Qt::Key_F9);
            return titles;
        };
        EXPECT_EQ(offered().back(), "جشنواره");
        control<QTabBar>(report, "TTab_Search_Frame1_TBC")->setCurrentIndex(1);
        messages.expect("ShowTooltipMessage");
        const std::vector<std::string> forSale = offered();
        EXPECT_EQ(forSale.size(), 10U);
        EXPECT_EQ(forSale.back(), "قیمت مصرف کننده");
    });
}

TEST_F(ReportOnDemo, aKeptLayoutMeetsOtherLevels) {
    execute(*session, "DELETE FROM costlist");
    execute(*session, "DELETE FROM CostLevel WHERE CostType = 1 AND Code > 4");
    show([&](QWidget&, SmartGrid& grid) {
        EXPECT_THAT(shownTitles(grid), ElementsAre("تک‌فروشی", "عمده‌فروشی", "همکار", "نمایندگی"));
        // The second level goes out of sight, the fourth becomes wide.
        grid.model().arrangement(4).Visible = false;
        grid.model().arrangement(6).Width = 321;
    });
    // Meanwhile the third level has gone, the second has another name, and there is a ninth.
    execute(*session, "DELETE FROM CostLevel WHERE CostType = 1 AND Code = 3");
    execute(*session, "UPDATE CostLevel SET Name = N'نام تازه' WHERE CostType = 1 AND Code = 2");
    execute(*session, "INSERT INTO CostLevel (Code, Name, CostType) VALUES (9, N'نهم', 1)");
    show([&](QWidget& report, SmartGrid& grid) {
        EXPECT_THAT(shownTitles(grid), ElementsAre("تک‌فروشی", "نمایندگی", "نهم"));
        EXPECT_EQ(grid.Column(4).Title.toStdString(), "نام تازه");
        EXPECT_EQ(grid.Column(5).FieldName, "F4");
        EXPECT_EQ(grid.Column(5).Width, 321);
        // The consumer price's column belongs to its tab and is not kept.
        control<QTabBar>(report, "TTab_Search_Frame1_TBC")->setCurrentIndex(1);
        EXPECT_EQ(shownTitles(grid).back(), "قیمت مصرف کننده");
    });
    // A level that comes back shows at its place by code, whatever was kept of the column that had its field.
    execute(*session, "INSERT INTO CostLevel (Code, Name, CostType) VALUES (3, N'همکار', 1)");
    show([&](QWidget&, SmartGrid& grid) {
        EXPECT_THAT(shownTitles(grid), ElementsAre("تک‌فروشی", "همکار", "نمایندگی", "نهم"));
    });
}

TEST_F(ReportOnDemo, aNewLevelStandsBehindTheOneBeforeItInTheUsersOrder) {
    execute(*session, "DELETE FROM costlist");
    execute(*session, "DELETE FROM CostLevel WHERE CostType = 1 AND Code IN (3, 5, 6, 7, 8, 9)");
    show([&](QWidget&, SmartGrid& grid) {
        EXPECT_THAT(shownTitles(grid),
                    ElementsAre("تک‌فروشی", "عمده‌فروشی", "نمایندگی", "جشنواره"));
        // The second level goes to the front of all.
        QHeaderView& header = *static_cast<QTableView*>(grid.View())->horizontalHeader();
        header.moveSection(header.visualIndex(4), 0);
        EXPECT_THAT(shownTitles(grid),
                    ElementsAre("عمده‌فروشی", "تک‌فروشی", "نمایندگی", "جشنواره"));
    });
    execute(*session, "INSERT INTO CostLevel (Code, Name, CostType) VALUES (3, N'سوم', 1), (9, N'نهم', 1)");
    show([&](QWidget&, SmartGrid& grid) {
        EXPECT_THAT(shownTitles(grid),
                    ElementsAre("عمده‌فروشی", "سوم", "تک‌فروشی", "نمایندگی", "نهم", "جشنواره"));
        EXPECT_THAT(grid.ColumnOrder(), ElementsAre(4, 5, 0, 1, 2, 3, 6, 7, 8, 9, 10, 11, 12));
    });
}

TEST_F(ReportOnDemo, pagesFollowTheOrderOnTheScreen) {
    execute(*session, "DELETE FROM costlist");
    execute(*session, "DELETE FROM CostLevel WHERE CostType = 1 AND Code > 3");
    QStringList pages;
    output.onPreview = [&](PrintDocument& document) { pages.append(painted(document, pageLayout(), 1)); };
    show([&](QWidget& report, SmartGrid& grid) {
        control<QTabBar>(report, "TTab_Search_Frame1_TBC")->setCurrentIndex(1);
        QHeaderView& header = *static_cast<QTableView*>(grid.View())->horizontalHeader();
        header.moveSection(header.visualIndex(2), 0);                       // the name
        header.moveSection(header.visualIndex(5), 3);                       // the third level
        header.moveSection(header.visualIndex(grid.ColumnCount() - 1), 4);  // the consumer price
        EXPECT_THAT(shownTitles(grid),
                    ElementsAre("همکار", "قیمت مصرف کننده", "تک‌فروشی", "عمده‌فروشی"));
        EXPECT_THAT(static_cast<TCost_Report_FRM&>(report).GetMasterReport_Description(),
                    ElementsAre("همکار", "تک‌فروشی", "عمده‌فروشی", "قیمت مصرف کننده", "4"));
        std::vector<std::string> offered;
        QTimer::singleShot(0, &report, [&offered] {
            QWidget* dialog = QApplication::activeModalWidget();
            auto* list = control<QListWidget>(*dialog, "Columns_LST");
            for (int i = 0; i < list->count(); ++i)
                offered.push_back(list->item(i)->text().toStdString());
            control<QPushButton>(*dialog, "Ok_BTN")->click();
        });
        QTest::keyClick(&report, Qt::Key_F9);
        EXPECT_THAT(offered, ElementsAre("همکار", "قیمت مصرف کننده", "تک‌فروشی", "عمده‌فروشی"));
        grid.print();
    });
    ASSERT_EQ(pages.size(), 2);
    for (QString page : pages) {
        // A heading may stand on two lines.
        page.remove(QLatin1Char(' '));
        const QString names = QStringLiteral("نامکالاکدکالابارکدکالا");
        const QString prices =
            QStringLiteral("همکارقیمتمصرفکنندهتک‌فروشیعمده‌فروشی");
        EXPECT_TRUE(page.contains(names + prices)) << page.left(300).toStdString();
    }
    // The line above the pages: with the consumer price where the pages have it, or behind the levels.
    EXPECT_LT(pages[0].indexOf(QStringLiteral("همکار")), pages[0].indexOf(QStringLiteral("تک‌فروشی")));
    EXPECT_LT(pages[1].indexOf(QStringLiteral("همکار")), pages[1].indexOf(QStringLiteral("تک‌فروشی")));
}

// Barcodes of every shape, prices at the limits, below nought and to the last of nine decimals.
TEST_F(ReportOnDemo, whatIsOutOfTheOrdinaryIsPrintedAsItIs) {
    execute(*session, "DELETE FROM costlist");
    execute(*session, "DELETE FROM CostLevel WHERE CostType = 1 AND Code > 2");
    execute(*session, "DELETE FROM GoodCostDiscount");
    execute(*session,
            "INSERT INTO GoodInf (Code, Name, AbbName, ConsumerPrice) VALUES (9001, N'بدون بارکد', NULL, NULL), "
            "(9002, N'فقط نشانه', N'!', 0), (9003, N'ده بارکد', N'!11!12!13!14!15!16!17!18!19!20', 12500.5), "
            "(9004, N'بیشترین و کمترین', N'!9004!', 99999999999999.999999999)");
    execute(*session,
            "INSERT INTO GoodCostDiscount (GoodCode, CostLevel_Sell_1, CostLevel_Sell_2, CostLevel_Buy_1, "
            "CostLevel_Buy_2) VALUES (9004, 99999999999999.999999999, -99999999999999.999999999, -0.000000001, NULL), "
            "(9003, 0.1, -1250.75, 0, 42)");
    host.setSetting("CurrencyDecimals", "9");
    QString page;
    output.onPreview = [&](PrintDocument& document) {
        page = painted(document, pageLayout(QPageSize::A4, QPageLayout::Landscape));
        page.remove(QChar(0x2066)).remove(QChar(0x2069));
    };
    // What is painted between two texts; a text of marks and numbers from its left to its right.
    const auto rowOf = [&](const char* name, const char* next) {
        const QString from = QString::fromUtf8(name);
        const auto start = page.indexOf(from) + from.size();
        const auto end = page.indexOf(QString::fromUtf8(next), start);
        return page.mid(start, end - start).toStdString();
    };
    show([&](QWidget& report, SmartGrid& grid) {
        control<QLineEdit>(report, "TRange_Digit_Search_Frame1_From_EDT")->setText(QStringLiteral("9001"));
        control<QLineEdit>(report, "TRange_Digit_Search_Frame1_To_EDT")->setText(QStringLiteral("9004"));
        control<QTabBar>(report, "TTab_Search_Frame1_TBC")->setCurrentIndex(1);
        QTRY_COMPARE(grid.model().rowCount(), 4);
        grid.print();
        EXPECT_EQ(rowOf("بدون بارکد", "۹۰۰۲"), "۰۰۰");
        EXPECT_EQ(rowOf("۹۰۰۲", "فقط نشانه"), "(");
        EXPECT_EQ(rowOf("۹۰۰۳", "ده بارکد"), "۱۹)(۱۸)(۱۷)(۱۶)(۱۵)(۱۴)(۱۳)(۱۲)(۱۱(");
        EXPECT_EQ(rowOf("ده بارکد", "۹۰۰۴"), "۰٫۱-۱٬۲۵۰٫۷۵۱۲٬۵۰۰٫۵");
        EXPECT_TRUE(
            rowOf("بیشترین و کمترین", "صفحه")
                .starts_with("۹۹٬۹۹۹٬۹۹۹٬۹۹۹٬۹۹۹٫۹۹۹۹۹۹۹۹۹-۹۹٬۹۹۹٬۹۹۹٬۹۹۹٬۹۹۹٫۹۹۹۹۹۹۹۹۹۹۹٬۹۹۹٬۹۹۹٬۹۹۹٬۹۹۹٫۹۹۹۹۹۹۹۹۹"));
        control<QTabBar>(report, "TTab_Search_Frame1_TBC")->setCurrentIndex(0);
        QTRY_COMPARE(grid.model().rowCount(), 4);
        grid.print();
        EXPECT_EQ(rowOf("ده بارکد", "۹۰۰۴"), "۰۴۲");
        EXPECT_TRUE(rowOf("بیشترین و کمترین", "صفحه").starts_with("-۰٫۰۰۰۰۰۰۰۰۱۰"));
    });
}

TEST_F(ReportOnDemo, aClickOnATitleSortsByPriceAndByName) {
    execute(*session, "DELETE FROM GoodCostDiscount WHERE GoodCode IN (SELECT TOP 3 Code FROM GoodInf ORDER BY Code)");
    execute(*session,
            "INSERT INTO GoodInf (Code, Name, AbbName) VALUES (9001, N'پنیر', NULL), (9002, N'گلاب', NULL), "
            "(9003, N'آب', NULL), (9004, N'تن', NULL), (9005, N'چای', NULL), (9006, N'کره', NULL)");
    execute(*session,
            "INSERT INTO GoodCostDiscount (GoodCode, CostLevel_Buy_2) VALUES (9001, 99999999999999.999999999), "
            "(9002, -5), (9003, 1000), (9004, 200), (9005, 99999999999999.999999998), (9006, -40)");
    show([&](QWidget& report, SmartGrid& grid) {
        control<QLineEdit>(report, "TRange_Digit_Search_Frame1_From_EDT")->setText(QStringLiteral("9001"));
        QTRY_COMPARE(grid.model().rowCount(), 6);
        QHeaderView& header = *static_cast<QTableView*>(grid.View())->horizontalHeader();
        const auto sortedBy = [&](int column) {
            QTest::mouseClick(
                header.viewport(), Qt::LeftButton, {},
                {header.sectionViewportPosition(column) + header.sectionSize(column) / 2, header.height() / 2});
            std::string names;
            for (int row = 0; row < grid.model().rowCount(); ++row)
                names += grid.model().shown(row, 2).toStdString() + ' ';
            return names;
        };
        EXPECT_EQ(grid.Column(4).FieldName, "F2");
        EXPECT_EQ(sortedBy(4), "کره گلاب تن آب چای پنیر ");
        EXPECT_EQ(sortedBy(4), "پنیر چای آب تن گلاب کره ");
        EXPECT_EQ(sortedBy(2), "آب پنیر تن چای کره گلاب ");
        EXPECT_EQ(sortedBy(2), "گلاب کره چای تن پنیر آب ");
    });
}

TEST_F(ReportOnDemo, aLongReportCanBeGivenUp) {
    addGoods();
    screens.busyNotice().setPatience(0);
    {
        WhenBusy busy([](QWidget& notice) { notice.findChild<QPushButton*>("BusyCancel_BTN")->click(); });
        try {
            CreateScreen<TCost_Report_FRM>(fmBrowse, Value{}, "")->ShowModal();
            FAIL() << "the report was not given up";
        } catch (const DatabaseError& error) {
            EXPECT_TRUE(isCancelled(error));
        }
        EXPECT_GT(busy.times, 0);
    }
    EXPECT_FALSE(reportIsThere());
    // The next one opens as if nothing had been.
    neverBusy(screens);
    show([](QWidget&, SmartGrid& grid) { EXPECT_EQ(grid.View()->model()->rowCount(), 101 * 300); });
}

TEST_F(ReportOnDemo, aSearchGivenUpLeavesTheRowsOfBefore) {
    addGoods();
    show([&](QWidget& report, SmartGrid& grid) {
        screens.busyNotice().setPatience(0);
        // The rows of before are asked for again, and that request is let run.
        bool given = false;
        WhenBusy busy([&](QWidget& notice) {
            if (!std::exchange(given, true)) notice.findChild<QPushButton*>("BusyCancel_BTN")->click();
        });
        auto* tabs = control<QTabBar>(report, "TTab_Search_Frame1_TBC");
        tabs->setCurrentIndex(1);
        EXPECT_TRUE(given);
        neverBusy(screens);
        EXPECT_EQ(tabs->currentIndex(), 0);
        EXPECT_EQ(grid.ColumnCount(), 13);
        EXPECT_EQ(grid.View()->model()->rowCount(), 101 * 300);
    });
}

TEST_F(ReportOnDemo, aTabChangeGivenUpLeavesTheRangeAsItWas) {
    addGoods();
    show([&](QWidget& report, SmartGrid& grid) {
        auto* tabs = control<QTabBar>(report, "TTab_Search_Frame1_TBC");
        auto* items = control<QComboBox>(report, "TRange_Cost_Search_Frame1_CMB");
        auto* from = control<QLineEdit>(report, "TRange_Cost_Search_Frame1_From_EDT");
        auto* to = control<QLineEdit>(report, "TRange_Cost_Search_Frame1_To_EDT");
        tabs->setCurrentIndex(1);
        items->setCurrentIndex(items->count() - 1);
        to->setText(QStringLiteral("900000"));
        from->setText(QStringLiteral("-1"));
        const int rows = grid.model().rowCount();
        EXPECT_GT(rows, 30'000);
        screens.busyNotice().setPatience(0);
        bool given = false;
        WhenBusy busy([&](QWidget& notice) {
            if (!std::exchange(given, true)) notice.findChild<QPushButton*>("BusyCancel_BTN")->click();
        });
        tabs->setCurrentIndex(0);
        EXPECT_TRUE(given);
        neverBusy(screens);
        EXPECT_EQ(tabs->currentIndex(), 1);
        EXPECT_EQ(grid.model().rowCount(), rows);
        EXPECT_EQ(items->currentText().toStdString(), "قیمت مصرف کننده");
        EXPECT_EQ(from->text().toStdString(), "-۱");
        EXPECT_EQ(to->text().toStdString(), "۹۰۰۰۰۰");
    });
}

TEST_F(ReportOnDemo, theConsumerPriceComesBackAsTheUserLeftIt) {
    const auto consumer = [](const SmartGrid& grid) {
        const int last = grid.ColumnCount() - 1;
        EXPECT_EQ(grid.Column(last).FieldName, "ConsumerPrice");
        return last;
    };
    show([&](QWidget& report, SmartGrid& grid) {
        auto* tabs = control<QTabBar>(report, "TTab_Search_Frame1_TBC");
        QHeaderView& header = *static_cast<QTableView*>(grid.View())->horizontalHeader();
        tabs->setCurrentIndex(1);
        header.moveSection(header.visualIndex(consumer(grid)), 3);
        header.resizeSection(consumer(grid), 177);
        tabs->setCurrentIndex(0);
        EXPECT_EQ(grid.ColumnCount(), 13);
        tabs->setCurrentIndex(1);
        EXPECT_EQ(header.visualIndex(consumer(grid)), 3);
        EXPECT_EQ(header.sectionSize(consumer(grid)), 177);
        grid.model().arrangement(consumer(grid)).Visible = false;
        tabs->setCurrentIndex(0);
        tabs->setCurrentIndex(1);
        EXPECT_FALSE(grid.Column(consumer(grid)).Visible);
        EXPECT_TRUE(header.isSectionHidden(consumer(grid)));
        tabs->setCurrentIndex(0);
    });
    // Closed without it, the list still knows.
    show([&](QWidget& report, SmartGrid& grid) {
        control<QTabBar>(report, "TTab_Search_Frame1_TBC")->setCurrentIndex(1);
        EXPECT_FALSE(grid.Column(consumer(grid)).Visible);
        EXPECT_EQ(static_cast<QTableView*>(grid.View())->horizontalHeader()->visualIndex(consumer(grid)), 3);
    });
}

TEST_F(ReportOnDemo, theSortByTheConsumerPriceComesBackWithIt) {
    const auto codes = [](const SmartGrid& grid) {
        std::vector<std::string> first;
        for (int row = 0; row < 3; ++row)
            first.push_back(grid.model().shown(row, 0).toStdString());
        return first;
    };
    // What the title shows: the sorted field, with a minus sign before it when it is sorted from the highest.
    const auto shownSort = [](SmartGrid& grid) {
        const QHeaderView& header = *static_cast<QTableView*>(grid.View())->horizontalHeader();
        if (!header.isSortIndicatorShown()) return std::string();
        const std::string field = grid.Column(header.sortIndicatorSection()).FieldName;
        return (header.sortIndicatorOrder() == Qt::DescendingOrder ? "-" : "") + field;
    };
    std::vector<std::string> own;
    std::vector<std::string> byConsumerPrice;
    show([&](QWidget& report, SmartGrid& grid) {
        auto* tabs = control<QTabBar>(report, "TTab_Search_Frame1_TBC");
        own = codes(grid);
        tabs->setCurrentIndex(1);
        const int consumer = grid.ColumnCount() - 1;
        grid.sortBy(consumer, true);
        byConsumerPrice = codes(grid);
        EXPECT_NE(byConsumerPrice, own);
        tabs->setCurrentIndex(0);
        EXPECT_EQ(codes(grid), own);
        EXPECT_EQ(shownSort(grid), "");
        tabs->setCurrentIndex(1);
        EXPECT_EQ(codes(grid), byConsumerPrice);
        EXPECT_EQ(shownSort(grid), "-ConsumerPrice");
        tabs->setCurrentIndex(0);
    });
    // Closed without the column, the list still knows; it forgets when it is sorted otherwise.
    show([&](QWidget& report, SmartGrid& grid) {
        auto* tabs = control<QTabBar>(report, "TTab_Search_Frame1_TBC");
        EXPECT_EQ(codes(grid), own);
        EXPECT_EQ(shownSort(grid), "");
        tabs->setCurrentIndex(1);
        EXPECT_EQ(codes(grid), byConsumerPrice);
        EXPECT_EQ(shownSort(grid), "-ConsumerPrice");
        tabs->setCurrentIndex(0);
        grid.sortBy(0, false);
        tabs->setCurrentIndex(1);
        EXPECT_EQ(shownSort(grid), "Code");
    });
}

// What is typed while a search runs reaches its input, a blank and Enter too, and nothing is given up.
TEST_F(ReportOnDemo, whatIsTypedDuringASearchIsSearchedForNext) {
    addGoods();
    struct Case {
        const char* input;
        const char* first;
        QString then;
        std::string text;
        std::string filter;
    };
    for (const Case& typed :
         {Case{"TGeneral_Search_Frame1_EDT", "چ", QStringLiteral("ای ا"), "چای ا", "[Name] LIKE"},
          Case{"TRange_Digit_Search_Frame1_From_EDT", "1", QStringLiteral("0024"), "۱۰۰۲۴", "[Code] >= 10024"},
          Case{"TRange_Cost_Search_Frame1_From_EDT", "1", QStringLiteral("234"), "۱۲۳۴", ">= 1234"}})
        show([&](QWidget& report, SmartGrid& grid) {
            auto* input = control<QLineEdit>(report, typed.input);
            input->setFocus();
            screens.busyNotice().setPatience(0);
            bool pressed = false;
            WhenBusy busy([&](QWidget&) {
                if (std::exchange(pressed, true)) return;
                for (const QChar letter : typed.then)
                    QTest::sendKeyEvent(QTest::Click, report.windowHandle(),
                                        letter.isSpace() ? Qt::Key_Space : Qt::Key_unknown, QString(letter),
                                        Qt::NoModifier);
                QTest::sendKeyEvent(QTest::Click, report.windowHandle(), Qt::Key_Return, QStringLiteral("\r"),
                                    Qt::NoModifier);
            });
            type(input, QString::fromUtf8(typed.first));
            EXPECT_TRUE(pressed);
            neverBusy(screens);
            QTRY_COMPARE(input->text().toStdString(), typed.text);
            QTRY_VERIFY(grid.isAncestorOf(report.focusWidget()));
            const std::string statement = grid.model().dataSet()->statementText();
            EXPECT_NE(statement.find(typed.filter), std::string::npos) << statement;
        });
}

TEST_F(ReportOnDemo, theOtherTabStandsOnTheSameGood) {
    show([&](QWidget& report, SmartGrid& grid) {
        auto* tabs = control<QTabBar>(report, "TTab_Search_Frame1_TBC");
        TDataSet& rows = *grid.model().dataSet();
        rows.RecNo(7);
        const std::string good = rows.FieldByName("Code").AsString();
        const std::string sold = rows.FieldByName("Status").AsString();
        for (const int tab : {1, 0}) {
            tabs->setCurrentIndex(tab);
            EXPECT_EQ(rows.FieldByName("Code").AsString(), good);
        }
        EXPECT_EQ(rows.FieldByName("Status").AsString(), sold);
    });
}

}  // namespace
}  // namespace basalt::host
