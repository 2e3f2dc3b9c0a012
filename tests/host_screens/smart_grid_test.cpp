// The grid over a data set: cursor, sort, columns, copy and exports.
#include "host/screens/smart_grid.h"

#include <QClipboard>
#include <QElapsedTimer>
#include <QFile>
#include <QHeaderView>
#include <QLabel>
#include <QListWidget>
#include <QPushButton>
#include <QScrollBar>
#include <QStyledItemDelegate>
#include <QTemporaryDir>

#include "host/screens/cut_text.h"
#include "host/screens/theme.h"
#include "host/services/output_error.h"
#include "tests/host_screens/painted_text.h"
#include "tests/host_screens/screen_test.h"
#include "tests/host_screens/when_busy.h"

namespace basalt::host {
namespace {

class Grid : public ScreenTest {
protected:
    Grid() {
        grid.AddColumn(column("Code", "کد"));
        grid.AddColumn(column("Name", "عنوان"));
        TGridColumn price = column("Price", "قیمت فروش");
        price.DisplayFormat = "#,#0.##;-#,#0.##;0";
        grid.AddColumn(price);
        grid.SetDataSource(&source);
        grid.resize(500, 300);
        grid.show();
    }
    static TGridColumn column(const char* field, const char* title) {
        TGridColumn made;
        made.FieldName = field;
        made.Title = QString::fromUtf8(title);
        return made;
    }
    void openThree() { open(priceRows({{3, "پنیر", "12500.50"}, {1, "آب", std::nullopt}, {2, "بادام", "-300"}})); }
    [[nodiscard]] std::string cell(int row, int column) const {
        return grid.model().index(row, column).data().toString().toStdString();
    }
    // What the screen has of a cell, without the marks that keep the sign in its place.
    [[nodiscard]] std::string painted(int row, int column) {
        PaintedText device;
        QPainter painter(&device);
        QStyleOptionViewItem option;
        option.initFrom(&view());
        option.font = view().font();
        option.rect = QRect(0, 0, view().columnWidth(column), view().rowHeight(row));
        view().itemDelegate()->paint(&painter, option, grid.model().index(row, column));
        painter.end();
        QString text = device.text();
        for (const QChar mark : {QChar(u' '), QChar(0x2066), QChar(0x2069)})
            text.remove(mark);
        return text.toStdString();
    }
    [[nodiscard]] std::vector<std::string> codes() const {
        std::vector<std::string> all;
        for (int row = 0; row < grid.model().rowCount(); ++row)
            all.push_back(cell(row, 0));
        return all;
    }
    [[nodiscard]] QTableView& view() { return *static_cast<QTableView*>(grid.View()); }
    void clickTitle(int column) {
        QHeaderView* header = view().horizontalHeader();
        const QPoint middle(header->sectionViewportPosition(column) + header->sectionSize(column) / 2,
                            header->height() / 2);
        QTest::mouseClick(header->viewport(), Qt::LeftButton, {}, middle);
    }

    SmartGrid grid{screens.context(), QStringLiteral("List_GRD"), nullptr};
};

TEST_F(Grid, showsNumbersInPersianDigitsAndKeepsTheDataAsItIs) {
    openThree();
    EXPECT_EQ(cell(0, 0), "۳");
    EXPECT_EQ(cell(0, 1), "پنیر");
    EXPECT_EQ(cell(0, 2), "۱۲٬۵۰۰٫۵");
    EXPECT_EQ(cell(1, 2), "");
    EXPECT_EQ(cell(2, 2), "-۳۰۰");
    EXPECT_EQ(grid.model().index(0, 2).data(Qt::EditRole).toString().toStdString(), "12500.50");
}

TEST_F(Grid, aColumnWithoutItsFieldIsEmpty) {
    grid.AddColumn(column("Nowhere", "هیچ"));
    openThree();
    EXPECT_EQ(cell(0, 3), "");
}

TEST_F(Grid, followsTheDataSetsCursorAndLeadsIt) {
    openThree();
    EXPECT_EQ(grid.CurrentRow(), 0);
    query.Last();
    EXPECT_EQ(view().currentIndex().row(), 2);
    QTest::keyClick(&grid, Qt::Key_Up);
    EXPECT_EQ(query.RecNo(), 2);
    QTest::keyClick(&grid, Qt::Key_Home);
    EXPECT_EQ(query.RecNo(), 1);
    QTest::keyClick(&grid, Qt::Key_End);
    EXPECT_EQ(query.RecNo(), 3);
    const QRect second = view().visualRect(grid.model().index(1, 1));
    QTest::mouseClick(view().viewport(), Qt::LeftButton, {}, second.center());
    EXPECT_EQ(query.RecNo(), 2);
    EXPECT_EQ(grid.CurrentRow(), 1);
}

TEST_F(Grid, hasNoCurrentRowWhileEmptyOrClosed) {
    EXPECT_EQ(grid.CurrentRow(), -1);
    open(priceRows({}));
    EXPECT_EQ(grid.CurrentRow(), -1);
    EXPECT_TRUE(grid.SelectedRows().empty());
    openThree();
    query.Close();
    EXPECT_EQ(grid.CurrentRow(), -1);
    EXPECT_EQ(grid.model().rowCount(), 0);
}

TEST_F(Grid, sortsByTitleAndKeepsTheRecord) {
    openThree();
    query.RecNo(3);  // code 2
    clickTitle(0);
    EXPECT_EQ(codes(), (std::vector<std::string>{"۱", "۲", "۳"}));
    EXPECT_EQ(query.RecNo(), 3);
    EXPECT_EQ(view().currentIndex().row(), 1);
    EXPECT_EQ(grid.CurrentRow(), 2);
    clickTitle(0);
    EXPECT_EQ(codes(), (std::vector<std::string>{"۳", "۲", "۱"}));
    clickTitle(1);
    EXPECT_EQ(codes(), (std::vector<std::string>{"۱", "۲", "۳"}));
    // The cursor moves as the eye does.
    QTest::keyClick(&grid, Qt::Key_Up);
    EXPECT_EQ(query.FieldByName("Code").AsInteger(), 1);
    // New rows come in the chosen order.
    open(priceRows({{7, "هل", {}}, {8, "آش", {}}}));
    EXPECT_EQ(codes(), (std::vector<std::string>{"۸", "۷"}));
}

TEST_F(Grid, aTitleThatIsNoButtonDoesNotSort) {
    TGridColumn still = grid.Column(0);
    still.TitleButton = false;
    grid.SetColumn(0, still);
    openThree();
    clickTitle(0);
    EXPECT_EQ(codes(), (std::vector<std::string>{"۳", "۱", "۲"}));
}

TEST_F(Grid, columnsComeChangeAndGo) {
    openThree();
    TGridColumn hidden = grid.Column(1);
    hidden.Visible = false;
    grid.SetColumn(1, hidden);
    EXPECT_TRUE(view().isColumnHidden(1));
    TGridColumn rebound = column("Name", "نام");
    grid.SetColumn(0, rebound);
    EXPECT_EQ(cell(0, 0), "پنیر");
    grid.RemoveColumn(2);
    EXPECT_EQ(grid.ColumnCount(), 2);
    EXPECT_EQ(grid.AddColumn(column("Price", "قیمت")), 2);
    EXPECT_THROW(grid.RemoveColumn(3), UsageError);
    EXPECT_THROW(static_cast<void>(grid.Column(-1)), UsageError);
}

TEST_F(Grid, showsWholeNumbersWhereverTheyStand) {
    std::vector<std::tuple<int, std::string, std::optional<std::string>>> rows;
    for (int i = 0; i < 300; ++i)
        rows.emplace_back(i, "کالا", "5");
    rows[250] = {2147483647, "کالا", "-99999999999999.99"};
    open(priceRows(rows));
    EXPECT_EQ(painted(250, 2), "-۹۹٬۹۹۹٬۹۹۹٬۹۹۹٬۹۹۹٫۹۹");
    EXPECT_EQ(painted(250, 0), "۲۱۴۷۴۸۳۶۴۷");
    // Fewer rows, as after a search: the columns stay where the eye has found them.
    const int wide = view().columnWidth(2);
    openThree();
    EXPECT_EQ(view().columnWidth(2), wide);
    EXPECT_EQ(painted(0, 2), "۱۲٬۵۰۰٫۵");
    rows.resize(1);
    rows[0] = {1, "کالا", "1250000000"};
    open(priceRows(rows));
    EXPECT_EQ(painted(0, 2), "۱٬۲۵۰٬۰۰۰٬۰۰۰");
}

TEST_F(Grid, aNumberInTooNarrowAColumnIsNotShortened) {
    openThree();
    view().horizontalHeader()->resizeSection(2, 60);
    EXPECT_EQ(painted(0, 2).substr(0, 1), "#");
    EXPECT_EQ(painted(0, 2).find_first_not_of('#'), std::string::npos);
    EXPECT_EQ(painted(2, 2), "-۳۰۰");
    // Resting the mouse on it tells the number.
    const QRect cell = view().visualRect(grid.model().index(0, 2));
    EXPECT_EQ(cutTextAt(*view().viewport(), cell.center()).toStdString(), "۱۲٬۵۰۰٫۵");
}

TEST_F(Grid, aHiddenColumnThatIsShownIsAsWideAsItsContent) {
    TGridColumn price = grid.Column(2);
    price.Visible = false;
    grid.SetColumn(2, price);
    openThree();
    price = grid.Column(2);
    price.Visible = true;
    price.Title = QStringLiteral("قیمت فروشگاه‌های زنجیره‌ای");
    grid.SetColumn(2, price);
    EXPECT_EQ(grid.Column(2).Width, 0);
    EXPECT_GE(view().columnWidth(2), view().horizontalHeader()->fontMetrics().horizontalAdvance(price.Title));
}

TEST_F(Grid, aDoubleClickIsOnlyForRows) {
    int clicks = 0;
    grid.OnDblClick = [&] { ++clicks; };
    openThree();
    const QPoint row = view().visualRect(grid.model().index(1, 1)).center();
    QTest::mouseClick(view().viewport(), Qt::LeftButton, {}, row);
    QTest::mouseDClick(view().viewport(), Qt::LeftButton, {}, row);
    EXPECT_EQ(clicks, 1);
    QTest::mouseDClick(view().viewport(), Qt::LeftButton, {}, QPoint(10, view().viewport()->height() - 5));
    EXPECT_EQ(clicks, 1);
}

TEST_F(Grid, selectsSeveralRowsWhenAsked) {
    grid.SetMultiSelect(true);
    openThree();
    QTest::keyClick(&grid, Qt::Key_A, Qt::ControlModifier);
    EXPECT_EQ(grid.SelectedRows(), (std::vector<int>{0, 1, 2}));
    grid.sortBy(0, true);
    QTest::keyClick(&grid, Qt::Key_Home);
    EXPECT_EQ(grid.SelectedRows(), std::vector<int>{0});
}

TEST_F(Grid, selectsTheCurrentRowAloneWhileControlIsHeld) {
    grid.SetMultiSelect(true);
    // The keys that have opened the list are still down when it fills.
    QTest::keyPress(&grid, Qt::Key_F12, Qt::ControlModifier);
    ASSERT_EQ(QApplication::keyboardModifiers(), Qt::ControlModifier);
    openThree();
    EXPECT_EQ(grid.SelectedRows(), std::vector<int>{0});
    query.Next();
    EXPECT_EQ(grid.SelectedRows(), std::vector<int>{1});
    query.Next();
    EXPECT_EQ(grid.SelectedRows(), std::vector<int>{2});
    QTest::keyRelease(&grid, Qt::Key_F12);
}

TEST_F(Grid, copiesWhatSpreadsheetsPaste) {
    openThree();
    grid.copySelection();
    EXPECT_EQ(QApplication::clipboard()->text().toStdString(), "کد\tعنوان\tقیمت فروش\n3\tپنیر\t12500.5\n");
    grid.SetMultiSelect(true);
    TGridColumn hidden = grid.Column(1);
    hidden.Visible = false;
    grid.SetColumn(1, hidden);
    QTest::keyClick(&grid, Qt::Key_A, Qt::ControlModifier);
    grid.copySelection();
    EXPECT_EQ(QApplication::clipboard()->text().toStdString(), "کد\tقیمت فروش\n3\t12500.5\n1\t\n2\t-300\n");
}

TEST_F(Grid, columnsAreChosenAndMovedByTheUser) {
    openThree();
    whenShown([] {
        auto* chooser = static_cast<QDialog*>(QApplication::activeModalWidget());
        ASSERT_NE(chooser, nullptr);
        auto* list = control<QListWidget>(*chooser, "Columns_LST");
        ASSERT_EQ(list->count(), 3);
        list->item(0)->setCheckState(Qt::Unchecked);
        list->setCurrentRow(2);
        QTest::mouseClick(control<QPushButton>(*chooser, "Up_BTN"), Qt::LeftButton);
        QTest::mouseClick(control<QPushButton>(*chooser, "Ok_BTN"), Qt::LeftButton);
    });
    grid.chooseColumns();
    EXPECT_FALSE(grid.Column(0).Visible);
    EXPECT_EQ(view().horizontalHeader()->visualIndex(2), 1);
    EXPECT_EQ(view().horizontalHeader()->visualIndex(1), 2);
}

TEST_F(Grid, atLeastOneColumnStays) {
    whenShown([] {
        auto* chooser = static_cast<QDialog*>(QApplication::activeModalWidget());
        auto* list = control<QListWidget>(*chooser, "Columns_LST");
        for (int row = 0; row < list->count(); ++row)
            list->item(row)->setCheckState(Qt::Unchecked);
        EXPECT_FALSE(control<QPushButton>(*chooser, "Ok_BTN")->isEnabled());
        chooser->reject();
    });
    grid.chooseColumns();
    EXPECT_TRUE(grid.Column(0).Visible);
}

TEST_F(Grid, anArrangementComesBack) {
    openThree();
    view().horizontalHeader()->resizeSection(1, 222);
    view().horizontalHeader()->moveSection(2, 0);
    TGridColumn hidden = grid.Column(0);
    hidden.Visible = false;
    grid.SetColumn(0, hidden);
    grid.sortBy(1, true);
    const QJsonObject kept = grid.arrangement();

    SmartGrid other(screens.context(), QStringLiteral("Other_GRD"), nullptr);
    other.AddColumn(column("Code", "کد"));
    other.AddColumn(column("Name", "عنوان"));
    other.AddColumn(column("New", "تازه"));
    other.AddColumn(column("Price", "قیمت فروش"));
    other.SetDataSource(&source);
    other.arrange(kept);
    auto& otherView = *static_cast<QTableView*>(other.View());
    EXPECT_EQ(otherView.horizontalHeader()->visualIndex(3), 0);
    EXPECT_EQ(other.Column(1).Width, 222);
    EXPECT_FALSE(other.Column(0).Visible);
    EXPECT_TRUE(other.Column(2).Visible);
    EXPECT_EQ(other.model().index(0, 1).data().toString().toStdString(), "پنیر");
    EXPECT_EQ(other.model().index(2, 1).data().toString().toStdString(), "آب");
    other.arrange(QJsonObject{{QStringLiteral("columns"), 5}, {QStringLiteral("sort"), QStringLiteral("Gone")}});
    EXPECT_EQ(other.ColumnCount(), 4);
}

TEST_F(Grid, columnsFollowTheFont) {
    applyTheme(*qApp);
    openThree();
    TGridColumn fixed = grid.Column(1);
    fixed.Width = 100;
    grid.SetColumn(1, fixed);
    view().horizontalHeader()->resizeSection(0, 90);
    const int rowHeight = view().verticalHeader()->defaultSectionSize();
    setThemeFontSize(16);
    EXPECT_TRUE(QTest::qWaitFor([this] { return grid.Column(1).Width == 160; }));
    EXPECT_EQ(grid.Column(0).Width, 144) << "what the user has drawn, too";
    EXPECT_EQ(view().columnWidth(1), 160);
    EXPECT_GT(view().verticalHeader()->defaultSectionSize(), rowHeight);
    // What is kept is meant for the usual font.
    const QJsonObject kept = grid.arrangement();
    EXPECT_EQ(kept.value("columns").toArray().at(1).toObject().value("width").toInt(), 100);
    setThemeFontSize(10);
    EXPECT_TRUE(QTest::qWaitFor([this] { return grid.Column(1).Width == 100; }));
    grid.arrange(kept);
    EXPECT_EQ(grid.Column(0).Width, 90);
}

TEST_F(Grid, aColumnThatTheScreenHidesIsNotKeptAsTheUsersWish) {
    openThree();
    TGridColumn unused = grid.Column(2);
    unused.Visible = false;
    unused.VisibleForCustomization = false;
    grid.SetColumn(2, unused);
    const QJsonObject kept = grid.arrangement();
    unused.Visible = true;
    unused.VisibleForCustomization = true;
    grid.SetColumn(2, unused);
    grid.arrange(kept);
    EXPECT_TRUE(grid.Column(2).Visible);
}

TEST_F(Grid, copyingAsksForNoLinesAboveAPrint) {
    openThree();
    int asked = 0;
    grid.setDescription([] { return QStringLiteral("فهرست"); },
                        [&asked] {
                            ++asked;
                            return std::vector<QString>{QStringLiteral("سطر")};
                        });
    view().selectAll();
    grid.copySelection();
    EXPECT_EQ(asked, 0);
}

TEST_F(Grid, writesFilesWhereTheUserSays) {
    openThree();
    QTemporaryDir folder;
    output.files = {folder.filePath("list.csv"), std::nullopt};
    grid.exportCsv();
    QFile file(folder.filePath("list.csv"));
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    EXPECT_EQ(file.readAll().toStdString(),
              "\xEF\xBB\xBFکد,عنوان,قیمت فروش\r\n3,پنیر,12500.5\r\n1,آب,\r\n2,بادام,-300\r\n");
    EXPECT_EQ(control<QLabel>(grid, "ToastText_LBL")->text().toStdString(), "پروندهٔ «\u2068list.csv\u2069» نوشته شد.");
    grid.exportWorkbook();  // thought better of it
    EXPECT_EQ(folder.path().isEmpty(), false);
    EXPECT_EQ(output.asked.at(0).toStdString(), "خروجی CSV|فهرست.csv");
    EXPECT_EQ(QDir(folder.path()).entryList(QDir::Files), QStringList{QStringLiteral("list.csv")});
}

TEST_F(Grid, aLongFileShowsHowFarItIsAndCanBeGivenUp) {
    std::vector<std::tuple<int, std::string, std::optional<std::string>>> rows;
    for (int row = 0; row < 2000; ++row)
        rows.emplace_back(row, "کالا", "12500.50");
    open(priceRows(rows));
    QTemporaryDir folder;
    const QString path = folder.filePath("old");
    QFile old(path);
    ASSERT_TRUE(old.open(QIODevice::WriteOnly));
    old.write("old");
    old.close();
    expectCompanyName();
    screens.busyNotice().setPatience(0);
    for (const char* action : {"GridCsv_ACT", "GridXlsx_ACT", "GridPdf_ACT"}) {
        output.files = {path};
        std::string said;
        WhenBusy busy([&](QWidget& notice) {
            said = notice.findChild<QLabel*>("Busy_LBL")->text().toStdString();
            notice.findChild<QPushButton*>("BusyCancel_BTN")->click();
        });
        // Nobody is told what he has wished himself.
        grid.findChild<QAction*>(QString::fromLatin1(action))->trigger();
        EXPECT_GT(busy.times, 0) << action;
        EXPECT_EQ(said.substr(0, said.find("… ")), "نوشتن خروجی") << action;
        QFile file(path);
        ASSERT_TRUE(file.open(QIODevice::ReadOnly));
        EXPECT_EQ(file.readAll().toStdString(), "old") << action;
    }
    EXPECT_EQ(QDir(folder.path()).entryList(QDir::Files | QDir::Hidden), QStringList{QStringLiteral("old")});
}

TEST_F(Grid, titlesOfTwoLinesWrapAtTheirWords) {
    TGridColumn price = grid.Column(2);
    price.Title = QStringLiteral("قیمت ویژه همکاران و نمایندگان استان های شمالی ۱۲۳");
    ASSERT_GE(price.Title.size(), 49);
    grid.SetColumn(2, price);
    openThree();
    const int whole = view().columnWidth(2);
    grid.SetTitleLines(2);
    grid.SetColumn(2, price);
    const int wrapped = view().columnWidth(2);
    EXPECT_LT(wrapped, whole * 3 / 4);
    // Its header draws two lines, both whole.
    QHeaderView& header = *view().horizontalHeader();
    PaintedText device;
    header.render(&device, {}, {}, QWidget::DrawChildren);
    EXPECT_FALSE(device.text().contains(QChar(0x2026))) << device.text().toStdString();
    // A word that is longer than that is broken.
    price.Title = QString(50, QLatin1Char('W'));
    grid.SetColumn(2, price);
    EXPECT_LT(view().columnWidth(2), 260);
}

TEST_F(Grid, aFileThatCannotBeWrittenIsAMessage) {
    openThree();
    output.files = {QStringLiteral("/nowhere/at/all.csv"), QStringLiteral("/nowhere/at/all.xlsx"),
                    QStringLiteral("/nowhere/at/all.pdf")};
    expectCompanyName();
    for (const char* action : {"GridCsv_ACT", "GridXlsx_ACT", "GridPdf_ACT"}) {
        messages.expect("OutputError");
        grid.findChild<QAction*>(QString::fromLatin1(action))->trigger();
    }
    EXPECT_NE(messages.shown.at(0).arguments.at(0).find("/nowhere/at/all.csv"), std::string::npos);
}

TEST_F(Grid, forgetsASourceThatGoesFirst) {
    auto own = std::make_unique<TDataSource>(&query);
    grid.SetDataSource(own.get());
    openThree();
    EXPECT_EQ(grid.model().rowCount(), 3);
    own.reset();
    EXPECT_EQ(grid.model().rowCount(), 0);
    query.Close();
}

TEST_F(Grid, theLastRowIsTheLastOneShown) {
    openThree();
    grid.GoToLastRow();
    EXPECT_EQ(query.RecNo(), 3);
    grid.sortBy(0, true);  // 3, 2, 1
    query.First();
    grid.GoToLastRow();
    EXPECT_EQ(query.FieldByName("Code").AsInteger(), 1);
    EXPECT_EQ(view().currentIndex().row(), 2);
    open(priceRows({}));
    grid.GoToLastRow();
    EXPECT_EQ(grid.CurrentRow(), -1);
}

TEST_F(Grid, aListThatOpensAtItsEndBeginsWithAWholeRow) {
    std::vector<std::tuple<int, std::string, std::optional<std::string>>> rows;
    for (int i = 0; i < 100; ++i)
        rows.emplace_back(i, "سطر", "1");
    open(priceRows(rows));
    const auto beginsWhole = [&] {
        const int top = view().rowAt(0);
        return top > 0 && view().rowViewportPosition(top) == 0;
    };
    const auto endsWhole = [&] {
        const int last = view().rowViewportPosition(99) + view().rowHeight(99);
        return last <= view().viewport()->height() && last > view().viewport()->height() - view().rowHeight(99);
    };
    for (int height = 290; height < 290 + view().rowHeight(0); ++height) {
        grid.resize(500, height);
        grid.GoToLastRow();
        EXPECT_TRUE(beginsWhole()) << height;
        EXPECT_TRUE(endsWhole()) << height;
        // As does one that another size or a move of the bar has brought there.
        view().verticalScrollBar()->setValue(0);
        EXPECT_EQ(view().rowAt(0), 0);
        view().verticalScrollBar()->setValue(view().verticalScrollBar()->maximum());
        EXPECT_TRUE(beginsWhole() && endsWhole()) << height;
        grid.resize(500, height - 13);
        EXPECT_TRUE(beginsWhole()) << height;
    }
}

TEST_F(Grid, printsWhatASettingNames) {
    openThree();
    grid.SetColumn(1, [] {
        TGridColumn hidden = column("Name", "عنوان");
        hidden.Visible = false;
        return hidden;
    }());
    TPrintSetting setting{.Title = "لیست", .Paper = TPrintPaper::A5, .Orientation = TPrintOrientation::Landscape};
    setting.Columns = {{.FieldName = "Price", .Title = "قیمت"},
                       {.FieldName = "Code", .Title = "کد", .Visible = false},
                       {.FieldName = "name", .Title = "نام کالا"},
                       {.FieldName = "F9", .Title = "سطح نه"}};
    QTemporaryDir folder;
    const QString file = folder.filePath("pages.pdf");
    output.onPreview = [&](PrintDocument& document) { writePdf(document, pageLayout(), file); };
    expectCompanyName();
    grid.PrintPreview(setting);
    EXPECT_EQ(output.previews, std::vector<QString>{QStringLiteral("لیست")});
    ASSERT_EQ(output.layouts.size(), 1U);
    EXPECT_EQ(output.layouts[0].pageSize().id(), QPageSize::A5);
    EXPECT_EQ(output.layouts[0].orientation(), QPageLayout::Landscape);
    EXPECT_GT(QFileInfo(file).size(), 1000);

    setting.Columns = {{.FieldName = "F9", .Title = "سطح نه"}};
    EXPECT_THROW(grid.PrintPreview(setting), UsageError);
}

TEST_F(Grid, aListTooLongToPrintIsRefusedBeforeAFileIsAskedFor) {
    ColumnInfo code;
    code.name = "Code";
    code.type = FieldType::Integer;
    RowSet rows({code});
    for (int i = 0; i <= 100'000; ++i) {
        rows.column(0).appendInt(i);
        rows.finishRow();
    }
    open(std::move(rows));
    EXPECT_THROW(grid.CheckPrintable(), OutputError);
    EXPECT_THROW(grid.PrintPreview({.Title = "لیست", .Columns = {{.FieldName = "Code", .Title = "کد"}}}), OutputError);
    for (const char* action : {"GridPdf_ACT", "GridPrint_ACT"}) {
        messages.expect("OutputError");
        grid.findChild<QAction*>(QString::fromLatin1(action))->trigger();
    }
    EXPECT_TRUE(output.asked.empty());
    EXPECT_TRUE(output.previews.empty());
    query.Filter("Code > 0");
    query.Filtered(true);
    EXPECT_NO_THROW(grid.CheckPrintable());
}

TEST_F(Grid, aMillionRowsScrollSmoothly) {
    ColumnInfo code;
    code.name = "Code";
    code.type = FieldType::Integer;
    ColumnInfo name;
    name.name = "Name";
    RowSet rows({code, name});
    for (int i = 0; i < 1'000'000; ++i) {
        rows.column(0).appendInt(i);
        rows.column(1).appendText("کالا");
        rows.finishRow();
    }
    QElapsedTimer timer;
    timer.start();
    open(std::move(rows));
    grid.grab();
    EXPECT_LT(timer.restart(), 5'000);
    for (int page = 0; page < 20; ++page) {
        QTest::keyClick(&grid, Qt::Key_PageDown);
        view().viewport()->grab();
    }
    EXPECT_LT(timer.elapsed(), 5'000);
    query.Last();
    EXPECT_EQ(view().currentIndex().row(), 999'999);
}

}  // namespace
}  // namespace basalt::host
