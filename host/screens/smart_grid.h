// The host's grid.
//
// Rows that it reports (CurrentRow, SelectedRows) are rows of the data set, whatever the sort order on the screen; rows
// of View() are as they are seen.
#pragma once

#include <QAction>
#include <QJsonObject>
#include <QMenu>
#include <QPageLayout>
#include <functional>
#include <memory>
#include <optional>

#include "host/screens/grid_model.h"
#include "host/screens/grid_view.h"
#include "host/screens/screen_context.h"
#include "host/screens/table_content.h"

namespace basalt::host {

class SmartGrid final : public TSmartDBGrid_VRO {
public:
    SmartGrid(ScreenContext& context, const QString& objectName, QWidget* parent);

    void SetDataSource(TDataSource* source) override;
    int AddColumn(const TGridColumn& column) override;
    void SetColumn(int index, const TGridColumn& column) override;
    [[nodiscard]] TGridColumn Column(int index) const override;
    [[nodiscard]] int ColumnCount() const override { return model_.columnCount(); }
    void RemoveColumn(int index) override;
    [[nodiscard]] std::vector<int> ColumnOrder() const override;
    void SetMultiSelect(bool on) override;
    void SetTitleLines(int lines) override;
    [[nodiscard]] int CurrentRow() const override;
    [[nodiscard]] std::vector<int> SelectedRows() const override;
    [[nodiscard]] QAbstractItemView* View() override { return view_; }
    void GoToLastRow() override;
    void CheckPrintable() const override;
    void PrintPreview(const TPrintSetting& setting) override;

    [[nodiscard]] GridModel& model() { return model_; }
    [[nodiscard]] const GridModel& model() const { return model_; }
    // Sorts by a column, keeping the current record; -1 is the data set's own order. A sort by a column that is removed
    // or hidden goes with it and comes back with it, unless the list has been sorted otherwise meanwhile.
    void sortBy(int column, bool descending);

    // The order, widths and visibility of the columns and the sort, as one object. When none of the columns is left
    // that it shows, all show that the user may choose from. What it says of a field that has no column is remembered
    // until one comes; a column that it has no place for comes behind the one before it by index.
    [[nodiscard]] QJsonObject arrangement() const;
    void arrange(const QJsonObject& arrangement);

    // Copy, columns, sort, print, PDF, XLSX and CSV, in the order of menus.
    [[nodiscard]] const QList<QAction*>& gridActions() const { return actions_; }
    // Puts an action before the grid's own that reads the rows anew, also by its key anywhere in the window.
    void setRefresh(std::function<void()> refresh);
    // What a context menu shows above the grid's own actions.
    void setMenuHead(std::function<void(QMenu&)> head) { menuHead_ = std::move(head); }
    // Titles prints and files, and gives the lines above a printed list.
    void setDescription(std::function<QString()> title, std::function<std::vector<QString>()> headerLines);
    // Asked before the rows are printed or exported; false lets nothing happen.
    void setGate(std::function<bool()> gate) { gate_ = std::move(gate); }
    // Names the part of the list that shows (a tab's title): behind the title, or above a print that has its own.
    void setPart(std::function<QString()> part) { part_ = std::move(part); }
    // Says in words what a search has narrowed the list to; above prints. Empty where all rows show.
    void setNarrowing(std::function<QString()> narrowing) { narrowing_ = std::move(narrowing); }
    // Told when the current record or the rows have changed.
    std::function<void()> onRowsChanged;

    void copySelection();
    void chooseColumns();
    // Offers the columns that show; the one by which the list is sorted turns it around.
    void chooseSort();
    void print();
    void exportPdf();
    void exportWorkbook();
    void exportCsv();

    // At which all columns that show are seen without scrolling.
    [[nodiscard]] int columnsWidth() const;
    // A title and some rows, where a window has the room.
    [[nodiscard]] QSize sizeHint() const override;

protected:
    void changeEvent(QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void showEvent(QShowEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    class Content;
    // What the user made of a column that is not there at the moment.
    struct Away {
        QJsonObject kept;
        int place;  // among the columns as they were shown
    };
    struct Sort {
        std::string field;
        bool descending = false;
    };

    void checkIndex(int index, const char* operation) const;
    // Rows of the view, upwards.
    [[nodiscard]] std::vector<int> rowsChosen() const;
    void addAction(const char* objectName, const char* title, const QKeySequence& key, void (SmartGrid::*work)());
    void rowsChanged();
    void showCursor();
    // Brings the row into sight; the columns in sight stay.
    void scrollToRow(const QModelIndex& index);
    void takeCursor(const QModelIndex& current);
    void titleClicked(int column);
    void showMenu(const QPoint& at);
    // On the screen: where a menu of that size hangs from the title of the current column, within the list.
    [[nodiscard]] QPoint placeBelowTitle(const QSize& menu) const;
    void applyVisibility();
    [[nodiscard]] bool shows(int column) const;
    void settleSort();
    void layOutColumns();
    // The size of the font is another one now.
    void followFont();
    void bringBack(int column);
    [[nodiscard]] int contentWidth(int column) const;
    [[nodiscard]] int measuredWidth(int column) const;
    void widenFor(int row);
    [[nodiscard]] int printWidth(int column) const;
    [[nodiscard]] QJsonObject arrangementOf(int column) const;
    void arrangeColumn(int column, const QJsonObject& kept);
    [[nodiscard]] int columnOf(const std::string& field) const;  // -1: none
    [[nodiscard]] std::unique_ptr<Content> content() const;
    void preview(const TableContent& table, std::optional<QPageLayout> paper);  // none: what suits the table
    [[nodiscard]] QString description() const;
    [[nodiscard]] QString part() const { return part_ ? part_() : QString(); }
    using Writer = std::function<void(const TableContent&, const QString& path, const OutputProgress&)>;
    using Check = std::function<void()>;  // made before the user is asked for a file
    void save(const QString& title, const QString& suffix, const Writer& write, const Check& check = {});

    ScreenContext& context_;
    GridModel model_;
    GridView* view_;
    QList<QAction*> actions_;
    std::function<void(QMenu&)> menuHead_;
    std::function<QString()> title_;
    std::function<QString()> part_;
    std::function<QString()> narrowing_;
    std::function<std::vector<QString>()> headerLines_;
    std::function<bool()> gate_;
    std::vector<Away> away_;        // by their places
    std::optional<Sort> sortAway_;  // by a column that is not seen at the moment; the list stands in its own order
    int titleLines_ = 0;            // 0: as the title bar has it
    qreal scale_;                   // of the font for which the columns have their widths
    int column_ = 0;                // the current one; the view forgets it with the rows
    bool followingCursor_ = false;
    bool layingOut_ = false;
    bool sorting_ = false;             // the rows are the same, in another order
    mutable std::vector<int> widths_;  // by content; 0: not measured yet
    std::vector<int> leastWidths_;     // of the same columns for the rows before
};

}  // namespace basalt::host
