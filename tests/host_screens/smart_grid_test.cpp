// The grid over a data set: cursor, sort, columns, copy and exports.
#include "host/screens/smart_grid.h"

#include <QClipboard>
#include <QElapsedTimer>
#include <QFile>
#include <QHeaderView>
#include <QImage>
#include <QJsonArray>
#include <QLabel>
#include <QListWidget>
#include <QPushButton>
#include <QScrollBar>
#include <QStyledItemDelegate>
#include <QTemporaryDir>
#include <ctime>
#include <functional>
#include <set>

#include "host/screens/column_chooser.h"
#include "host/screens/cut_text.h"
#include "host/screens/selection_summary.h"
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
    [[nodiscard]] std::string painted(int row, int column, int cellLeft = 0) {
        PaintedText device;
        QPainter painter(&device);
        QStyleOptionViewItem option;
        option.initFrom(&view());
        option.font = view().font();
        option.rect = QRect(cellLeft, 0, view().columnWidth(column), view().rowHeight(row));
        view().itemDelegate()->paint(&painter, option, grid.model().index(row, column));
        painter.end();
        QString text = device.text();
        for (const QChar mark : {QChar(u' '), QChar(0x2066), QChar(0x2069)})
            text.remove(mark);
        return text.toStdString();
    }
    // The same as pixels, by the list itself or by what paints instead of it.
    [[nodiscard]] QImage picture(const std::function<void(QPainter&, const QStyleOptionViewItem&)>& paint) {
        QImage image(320, 34, QImage::Format_ARGB32_Premultiplied);
        image.fill(Qt::white);
        QPainter painter(&image);
        painter.setLayoutDirection(Qt::RightToLeft);
        QStyleOptionViewItem option;
        option.initFrom(&view());
        option.font = view().font();
        option.rect = image.rect();
        paint(painter, option);
        return image;
    }
    [[nodiscard]] QImage pictureOfCell(int row, int column) {
        return picture([&](QPainter& painter, const QStyleOptionViewItem& option) {
            view().itemDelegate()->paint(&painter, option, grid.model().index(row, column));
        });
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

    // Opens the menu of sorting by its key and acts on it.
    void onSortMenu(const std::function<void(QMenu&)>& act) {
        // A menu that has closed leaves it to the display which window comes next.
        grid.activateWindow();
        ASSERT_TRUE(QTest::qWaitForWindowActive(&grid));
        view().setFocus();
        QTimer::singleShot(0, &grid, [&act] {
            auto* menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
            ASSERT_NE(menu, nullptr);
            act(*menu);
            if (menu->isVisible()) menu->close();
        });
        QTest::keyClick(&view(), Qt::Key_T, Qt::ControlModifier);
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

TEST_F(Grid, isSortedByTheKeyboardToo) {
    TGridColumn still = grid.Column(2);
    still.TitleButton = false;
    grid.SetColumn(2, still);
    openThree();
    std::vector<std::string> offered;
    const auto choose = [&](const std::vector<Qt::Key>& keys) {
        offered.clear();
        onSortMenu([&](QMenu& menu) {
            for (const QAction* action : menu.actions())
                if (!action->isSeparator())
                    offered.push_back(action->text().toStdString() + (action->isChecked() ? " *" : ""));
            for (const Qt::Key key : keys)
                QTest::keyClick(&menu, key);
        });
    };
    // It stands where the list is now, and goes around at its ends.
    choose({Qt::Key_Down, Qt::Key_Return});
    EXPECT_EQ(offered, (std::vector<std::string>{"کد", "عنوان", "ترتیب خود فهرست *"}));
    EXPECT_EQ(codes(), (std::vector<std::string>{"۱", "۲", "۳"}));
    choose({Qt::Key_Return});
    EXPECT_EQ(offered, (std::vector<std::string>{"کد (صعودی) *", "عنوان", "ترتیب خود فهرست"}));
    EXPECT_EQ(codes(), (std::vector<std::string>{"۳", "۲", "۱"}));
    choose({Qt::Key_Down, Qt::Key_Return});
    EXPECT_EQ(offered, (std::vector<std::string>{"کد (نزولی) *", "عنوان", "ترتیب خود فهرست"}));
    EXPECT_EQ(grid.model().sortColumn(), 1);
    choose({Qt::Key_Escape});
    EXPECT_EQ(grid.model().sortColumn(), 1);
    choose({Qt::Key_Down, Qt::Key_Return});
    EXPECT_EQ(codes(), (std::vector<std::string>{"۳", "۱", "۲"}));
    EXPECT_FALSE(view().horizontalHeader()->isSortIndicatorShown());
}

// Beside its list it would lie over another program.
TEST_F(Grid, theMenuOfSortingHangsFromTheCurrentColumnsTitleInsideOfTheList) {
    openThree();
    grid.move(100, 100);
    grid.resize(500, 400);
    QCoreApplication::processEvents();
    QRect menu;
    const auto openMenu = [&] { onSortMenu([&menu](QMenu& opened) { menu = opened.geometry(); }); };
    const auto list = [&] { return QRect(grid.mapToGlobal(QPoint()), grid.size()); };
    const auto title = [&](int column) {
        const QHeaderView* header = view().horizontalHeader();
        return QRect(header->viewport()->mapToGlobal(QPoint(header->sectionViewportPosition(column), 0)),
                     QSize(header->sectionSize(column), header->height()));
    };
    std::set<int> places;
    for (const int column : {0, 1, 2}) {
        view().setCurrentIndex(grid.model().index(1, column));
        openMenu();
        EXPECT_TRUE(list().contains(menu)) << column;
        EXPECT_EQ(menu.top(), title(column).bottom() + 1) << column;
        EXPECT_EQ(menu.right(), std::max(title(column).right(), list().left() + menu.width() - 1)) << column;
        places.insert(menu.right());
    }
    EXPECT_GT(places.size(), 1U);
    // Out of sight.
    for (int column = 0; column < 3; ++column)
        view().setColumnWidth(column, 400);
    for (const int place : {0, view().horizontalScrollBar()->maximum()}) {
        view().horizontalScrollBar()->setValue(place);
        openMenu();
        EXPECT_TRUE(list().contains(menu)) << place;
    }
    // In a low window it goes over the titles.
    grid.resize(500, menu.height() + 10);
    QCoreApplication::processEvents();
    openMenu();
    EXPECT_TRUE(list().contains(menu));
    EXPECT_EQ(menu.bottom(), list().bottom());
}

// Nobody could tell why the rows stand as they do.
TEST_F(Grid, anOrderByAHiddenColumnWaitsUntilItIsSeen) {
    openThree();
    const auto show = [&](int index, bool visible) {
        TGridColumn changed = grid.Column(index);
        changed.Visible = visible;
        grid.SetColumn(index, changed);
    };
    grid.sortBy(0, false);
    show(0, false);
    EXPECT_EQ(cell(0, 0), "۳") << "the data set's own order";
    const QJsonObject kept = grid.arrangement();
    grid.arrange(kept);
    EXPECT_EQ(cell(0, 0), "۳");
    show(0, true);
    EXPECT_EQ(cell(0, 0), "۱");
    show(0, false);
    grid.sortBy(1, false);
    show(0, true);
    EXPECT_EQ(grid.model().sortColumn(), 1) << "sorted otherwise meanwhile";
    // And one that was kept while its column still showed.
    QJsonObject sorted = kept;
    sorted.insert(QStringLiteral("descending"), true);
    grid.sortBy(-1, false);
    grid.arrange(sorted);
    EXPECT_EQ(grid.model().sortColumn(), -1);
    show(0, true);
    EXPECT_TRUE(grid.model().sortDescending());
    EXPECT_EQ(grid.model().sortColumn(), 0);
}

// As when the only price level that a user looks at is deleted, or shows on another tab only.
TEST_F(Grid, showsItsColumnsWhenNoneIsLeftThatTheUserWants) {
    TGridColumn secret = column("Secret", "نهان");
    secret.Visible = false;
    secret.VisibleForCustomization = false;
    grid.AddColumn(secret);
    openThree();
    const auto only = [](const char* wanted) {
        QJsonArray columns;
        for (const char* field : {"Code", "Name", "Price", "Gone"})
            columns.append(QJsonObject{{QStringLiteral("field"), QString::fromLatin1(field)},
                                       {QStringLiteral("visible"), QLatin1String(field) == QLatin1String(wanted)}});
        return QJsonObject{{QStringLiteral("columns"), columns}};
    };
    const auto seen = [&] {
        std::string names;
        for (int i = 0; i < grid.ColumnCount(); ++i) {
            EXPECT_EQ(grid.Column(i).Visible, !view().isColumnHidden(i)) << i;
            if (grid.Column(i).Visible) names += grid.Column(i).FieldName + " ";
        }
        return names;
    };
    grid.arrange(only("Gone"));
    EXPECT_EQ(seen(), "Code Name Price ");
    grid.arrange(only("Price"));
    EXPECT_EQ(seen(), "Price ");
    grid.RemoveColumn(2);
    EXPECT_EQ(seen(), "Code Name ");
    EXPECT_GT(view().columnWidth(0), 30);
    // The wish stays as it was, and comes true again.
    EXPECT_EQ(grid.arrangement().value("columns").toArray().at(0).toObject().value("visible").toBool(), false);
    grid.AddColumn(column("Price", "قیمت"));
    EXPECT_EQ(seen(), "Price ");
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

// "۱۲٬۵۰۰" cut by the edge of the list may be read as "۵۰۰".
TEST_F(Grid, aNumberOfWhichAPartIsSeenIsNotShown) {
    openThree();
    view().setColumnWidth(2, 200);
    const int seen = view().viewport()->width();
    EXPECT_EQ(painted(0, 2, seen - 40), "…");
    EXPECT_EQ(painted(0, 2, -160), "…");
    EXPECT_EQ(painted(0, 2, -190), "") << "one of the three dots would read as a zero";
    EXPECT_EQ(painted(0, 2, -60), "۱۲٬۵۰۰٫۵");
    EXPECT_EQ(painted(0, 2, seen - 140), "۱۲٬۵۰۰٫۵");
    EXPECT_EQ(painted(0, 2, seen - 200), "۱۲٬۵۰۰٫۵");
    // A name has its dots where its column ends.
    EXPECT_EQ(painted(0, 1, 10 - view().columnWidth(1)), "پنیر");
}

TEST_F(Grid, scrollingSidewaysPaintsWholeCells) {
    openThree();
    for (int column = 0; column < 3; ++column)
        view().setColumnWidth(column, 400);
    QApplication::processEvents();
    struct Paints final : QObject {
        QRegion region;
        bool eventFilter(QObject*, QEvent* event) override {
            if (event->type() == QEvent::Paint) region += static_cast<QPaintEvent*>(event)->region();
            return false;
        }
    } paints;
    view().viewport()->installEventFilter(&paints);
    QScrollBar& bar = *view().horizontalScrollBar();
    ASSERT_GT(bar.maximum(), 100);
    bar.setValue(bar.value() == bar.maximum() ? bar.value() - 30 : bar.value() + 30);
    QApplication::processEvents();
    EXPECT_EQ(paints.region.boundingRect(), view().viewport()->rect());
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

TEST_F(Grid, rowsThatAreReadAnewLeaveTheColumnsWhereTheyAre) {
    openThree();
    for (int column = 0; column < 3; ++column)
        view().setColumnWidth(column, 400);
    SelectionSummary summary(grid, nullptr);
    grid.SetMultiSelect(true);
    view().setCurrentIndex(grid.model().index(1, 2));
    QScrollBar& across = *view().horizontalScrollBar();
    QCoreApplication::processEvents();
    ASSERT_GT(across.maximum(), 0);
    for (const int place : {across.maximum(), across.maximum() / 2}) {
        across.setValue(place);
        session.expect("select rows", priceRows({{3, "پنیر", "12500.50"}, {2, "بادام", "-300"}}));
        query.Requery();
        QCoreApplication::processEvents();
        EXPECT_EQ(view().currentIndex().column(), 2);
        EXPECT_EQ(across.value(), place);
        // Over a list that is closed, or finds nothing, too.
        query.Close();
        openThree();
        QCoreApplication::processEvents();
        EXPECT_EQ(view().currentIndex().column(), 2);
        EXPECT_EQ(across.value(), place);
    }
    view().selectAll();
    EXPECT_EQ(summary.text().remove(QChar(0x2066)).remove(QChar(0x2069)).toStdString(),
              "۳ سطر   |   ۳ سطر برگزیده   |   قیمت فروش: جمع ۱۲٬۲۰۰٫۵، میانگین ۶٬۱۰۰٫۲۵");
}

TEST_F(Grid, aTextIsPaintedAsQtLaysItOut) {
    for (const char* text : {"پنیر سفید ۴۰۰ گرمی", "فروشگاه‌های زنجیره‌ای", "Cheese (B)",
                             "کابل USB-C ۱ متری", "- بی‌نام", "&شیر", "ß\xC3\xA9 😀"}) {
        open(priceRows({{1, text, {}}}));
        const QImage own = pictureOfCell(0, 1);
        const QImage laidOut = picture([&](QPainter& painter, const QStyleOptionViewItem& option) {
            painter.fillRect(QRect(0, option.rect.bottom(), option.rect.width(), 1), themeColors().window);
            painter.setPen(themeColors().text);
            painter.setFont(option.font);
            QString shown = QString::fromUtf8(text);
            if (shown.startsWith(QLatin1Char('-'))) shown = QChar(0x2066) + shown + QChar(0x2069);
            painter.drawText(option.rect.adjusted(11, 0, -11, 0),
                             Qt::AlignRight | Qt::AlignAbsolute | Qt::AlignVCenter | Qt::TextSingleLine, shown);
        });
        EXPECT_EQ(own, laidOut) << text;
    }
}

TEST_F(Grid, aTextOfSeveralLinesStandsOnOne) {
    for (const char* text : {"AA\r\nBB", "AA\rBB", "AA\nBB", "AA\tBB", "AA\u2028BB", "AA\u2029BB"}) {
        open(priceRows({{1, text, {}}, {2, "AA BB", {}}, {3, "AA", {}}}));
        EXPECT_EQ(pictureOfCell(0, 1), pictureOfCell(1, 1)) << text;
        EXPECT_NE(pictureOfCell(0, 1), pictureOfCell(2, 1)) << text;
    }
}

TEST_F(Grid, ofAVeryLongTextTheBeginningIsShown) {
    std::string text = "آغاز";
    for (int i = 0; i < 20'000; ++i)
        text += " کالا";
    open(priceRows({{1, text, {}}, {2, text.substr(0, 2000), {}}}));
    EXPECT_EQ(pictureOfCell(0, 1), pictureOfCell(1, 1));
}

TEST_F(Grid, aCodeThatIsCutKeepsItsBeginningWhereItIsRead) {
    open(priceRows({{1, "(6261001000018)(6261001000025)(6261001000032)", {}}}));
    view().setColumnWidth(1, 120);
    PaintedText device;
    QPainter painter(&device);
    QStyleOptionViewItem option;
    option.initFrom(&view());
    option.font = view().font();
    option.rect = QRect(0, 0, 120, 30);
    view().itemDelegate()->paint(&painter, option, grid.model().index(0, 1));
    painter.end();
    EXPECT_TRUE(device.text().startsWith(QStringLiteral("\u2066(۶۲۶۱"))) << device.text().toStdString();
    EXPECT_TRUE(device.text().endsWith(QStringLiteral("…\u2069"))) << device.text().toStdString();
    // The whole of it is shown where the mouse rests.
    EXPECT_EQ(cutTextAt(*view().viewport(), view().visualRect(grid.model().index(0, 1)).center()).toStdString(),
              "(۶۲۶۱۰۰۱۰۰۰۰۱۸)(۶۲۶۱۰۰۱۰۰۰۰۲۵)(۶۲۶۱۰۰۱۰۰۰۰۳۲)");
}

TEST_F(Grid, aLongCopyCanBeGivenUp) {
    std::vector<std::tuple<int, std::string, std::optional<std::string>>> rows;
    for (int row = 0; row < 5000; ++row)
        rows.emplace_back(row, "کالا", "1");
    open(priceRows(rows));
    grid.SetMultiSelect(true);
    view().selectAll();
    QApplication::clipboard()->setText(QStringLiteral("before"));
    int asked = 0;
    screens.context().setWriting([&asked](int done, int all) {
        EXPECT_EQ(all, 5000);
        return ++asked < 3 || done == 0;
    });
    grid.gridActions().front()->trigger();
    EXPECT_EQ(asked, 3);
    EXPECT_EQ(QApplication::clipboard()->text(), QStringLiteral("before"));
    screens.context().setWriting({});
    grid.gridActions().front()->trigger();
    EXPECT_EQ(QApplication::clipboard()->text().count(QLatin1Char('\n')), 5001);
}

// Its notice comes, and it can be given up, before the rows have been looked at one by one.
TEST_F(Grid, aCopyOfAllRowsOfALongListAsksAtOnce) {
    RowSet rows = priceRows({});
    for (int code = 0; code < 200'000; ++code) {
        rows.column(0).appendInt(code);
        rows.column(1).appendText("x");
        rows.column(2).appendNull();
        rows.finishRow();
    }
    open(std::move(rows));
    grid.SetMultiSelect(true);
    view().selectAll();
    int asked = 0;
    std::clock_t firstAsked = 0;
    screens.context().setWriting([&](int done, int all) {
        EXPECT_EQ(done, 0);
        EXPECT_EQ(all, 200'000);
        ++asked;
        firstAsked = std::clock();
        return false;
    });
    const std::clock_t start = std::clock();
    grid.gridActions().front()->trigger();
    ASSERT_EQ(asked, 1);
    const std::clock_t untilAsked = firstAsked - start;
    screens.context().setWriting({});
    const std::clock_t before = std::clock();
    EXPECT_EQ(view().selectionModel()->selectedRows().size(), 200'000);
    EXPECT_LT(5 * untilAsked, std::clock() - before);
    EXPECT_EQ(grid.SelectedRows().size(), 200'000U);
}

TEST_F(Grid, rowsAreCopiedAsTheyStandHoweverTheyWereChosen) {
    open(priceRows({{1, "الف", {}}, {5, "ب", {}}, {2, "ج", {}}, {4, "د", {}}, {3, "ه", {}}}));
    grid.SetMultiSelect(true);
    grid.sortBy(0, false);
    const auto choose = [this](int first, int last) {
        const GridModel& model = grid.model();
        view().selectionModel()->select(QItemSelection(model.index(first, 0), model.index(last, 0)),
                                        QItemSelectionModel::Select | QItemSelectionModel::Rows);
    };
    view().clearSelection();
    choose(4, 4);
    choose(0, 1);
    choose(1, 2);
    EXPECT_EQ(grid.SelectedRows(), (std::vector<int>{0, 1, 2, 4}));
    grid.copySelection();
    EXPECT_EQ(QApplication::clipboard()->text().toStdString(),
              "کد\tعنوان\tقیمت فروش\n1\tالف\t\n2\tج\t\n3\tه\t\n5\tب\t\n");
    view().clearSelection();
    EXPECT_TRUE(grid.SelectedRows().empty());
}

TEST_F(Grid, aLongTitleIsWholeAmongTheColumns) {
    ColumnChooser chooser(
        {{0, QStringLiteral("قیمت همکار ").repeated(8), true}, {1, QStringLiteral("سطح ").repeated(12), true}},
        nullptr);
    chooser.show();
    const auto& list = *chooser.findChild<QListWidget*>(QStringLiteral("Columns_LST"));
    for (int row = 0; row < 2; ++row)
        EXPECT_LE(list.visualItemRect(list.item(row)).width(), list.viewport()->width()) << row;
    EXPECT_GT(list.visualItemRect(list.item(1)).height(), 2 * list.fontMetrics().height() - 4);
}

}  // namespace
}  // namespace basalt::host
