// The line below a list: the count of rows, and the sum and average of what is selected.
#include "host/screens/selection_summary.h"

#include "tests/host_screens/screen_test.h"

namespace basalt::host {
namespace {

class Summary : public ScreenTest {
protected:
    Summary() {
        grid.AddColumn({.FieldName = "Code", .Title = QStringLiteral("کد")});
        grid.AddColumn({.FieldName = "Name", .Title = QStringLiteral("عنوان")});
        grid.AddColumn({.FieldName = "Price", .Title = QStringLiteral("قیمت"), .DisplayFormat = "#,#0.##;-#,#0.##;0"});
        grid.SetMultiSelect(true);
        grid.SetDataSource(&source);
        grid.resize(500, 300);
        grid.show();
    }
    // Selects rows from the first to the last given, with the current cell in the column.
    void select(int first, int last, int column) {
        QItemSelectionModel& selection = *grid.View()->selectionModel();
        const GridModel& model = grid.model();
        selection.setCurrentIndex(model.index(first, column), QItemSelectionModel::NoUpdate);
        selection.select(QItemSelection(model.index(first, 0), model.index(last, 0)),
                         QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
    }
    [[nodiscard]] std::string text() const { return summary.text().toStdString(); }

    SmartGrid grid{screens.context(), QStringLiteral("List_GRD"), nullptr};
    SelectionSummary summary{grid, nullptr};
};

TEST_F(Summary, countsTheRows) {
    open(priceRows({}));
    EXPECT_EQ(text(), "۰ سطر");
    query.Close();
    open(priceRows({{3, "پنیر", "12500.50"}, {1, "آب", std::nullopt}}));
    EXPECT_EQ(text(), "۲ سطر");
}

TEST_F(Summary, addsUpTheSelectionsCurrentColumn) {
    open(priceRows({{3, "پنیر", "12500.50"}, {1, "آب", std::nullopt}, {2, "بادام", "-300"}}));
    select(0, 2, 2);
    EXPECT_EQ(text(), "۳ سطر   |   ۳ سطر برگزیده   |   قیمت: جمع ۱۲٬۲۰۰٫۵، میانگین ۶٬۱۰۰٫۲۵");
    // Codes and names have no sum, and one row needs none.
    select(0, 2, 0);
    EXPECT_EQ(text(), "۳ سطر   |   ۳ سطر برگزیده");
    select(0, 2, 1);
    EXPECT_EQ(text(), "۳ سطر   |   ۳ سطر برگزیده");
    select(1, 1, 2);
    EXPECT_EQ(text(), "۳ سطر");
}

TEST_F(Summary, namesItsColumnAsTheGridDoes) {
    grid.SetColumn(2, {.FieldName = "Price", .Title = QStringLiteral("سطح 100%"), .DisplayFormat = "#,#0"});
    open(priceRows({{3, "پنیر", "12500"}, {1, "آب", "0"}}));
    select(0, 1, 2);
    EXPECT_EQ(text(), "۲ سطر   |   ۲ سطر برگزیده   |   سطح ۱۰۰%: جمع ۱۲٬۵۰۰، میانگین ۶٬۲۵۰");
}

TEST_F(Summary, nothingButNullsHasNoSum) {
    open(priceRows({{3, "پنیر", std::nullopt}, {1, "آب", std::nullopt}}));
    select(0, 1, 2);
    EXPECT_EQ(text(), "۲ سطر   |   ۲ سطر برگزیده");
}

TEST_F(Summary, averageIsRoundedHalfAwayFromZero) {
    open(priceRows({{1, "الف", "0.01"}, {2, "ب", "0"}, {3, "ج", "-0.01"}, {4, "د", "0"}}));
    const auto totalOf = [&](int first, int last, int column) {
        const GridModel& model = grid.model();
        return columnTotal(model, QItemSelection(model.index(first, 0), model.index(last, 0)), column).value();
    };
    EXPECT_EQ(totalOf(0, 1, 2).average, *Decimal::parse("0.01"));
    EXPECT_EQ(totalOf(2, 3, 2).average, *Decimal::parse("-0.01"));
    EXPECT_EQ(totalOf(0, 1, 0).average, *Decimal::parse("1.5"));
    EXPECT_EQ(totalOf(0, 3, 0).count, 4);
}

TEST_F(Summary, goesBeforeItsGridDoes) {
    open(priceRows({{1, "الف", "0.01"}}));
    auto* own = new SmartGrid(screens.context(), QStringLiteral("Other_GRD"), nullptr);
    own->AddColumn({.FieldName = "Code", .Title = QStringLiteral("کد")});
    own->SetDataSource(&source);
    auto* below = new SelectionSummary(*own, nullptr);
    EXPECT_EQ(below->text(), QStringLiteral("۱ سطر"));
    delete below;
    own->View()->selectionModel()->clearSelection();
    delete own;
}

}  // namespace
}  // namespace basalt::host
