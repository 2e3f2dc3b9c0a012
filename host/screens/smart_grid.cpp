#include "host/screens/smart_grid.h"

#include <QApplication>
#include <QClipboard>
#include <QHeaderView>
#include <QJsonArray>
#include <QKeyEvent>
#include <QScopedValueRollback>
#include <QScrollBar>
#include <QVBoxLayout>
#include <algorithm>
#include <numeric>
#include <optional>
#include <utility>

#include "ado/error.h"
#include "ado/names.h"
#include "host/screens/column_chooser.h"
#include "host/screens/inside.h"
#include "host/screens/kept_order.h"
#include "host/screens/number_room.h"
#include "host/screens/output_services.h"
#include "host/screens/persian_digits.h"
#include "host/screens/table_printer.h"
#include "host/screens/table_text.h"
#include "host/screens/table_workbook.h"
#include "host/screens/theme.h"
#include "host/screens/wrapped_text.h"

namespace basalt::host {
namespace {
constexpr int kMeasuredRows = 60;
constexpr int kCellPadding = 26;
constexpr int kNarrowest = 56;
constexpr int kWidestByContent = 420;
constexpr int kTitlePadding = 14;
constexpr int kWidestWrappedTitle = 200;  // a longer word is broken
constexpr QLatin1String kVisible("visible");

QPageSize::PageSizeId paperSize(TPrintPaper paper) {
    switch (paper) {
        case TPrintPaper::A3:
            return QPageSize::A3;
        case TPrintPaper::A5:
            return QPageSize::A5;
        case TPrintPaper::Letter:
            return QPageSize::Letter;
        case TPrintPaper::A4:
            break;
    }
    return QPageSize::A4;
}

}  // namespace

// The grid as others read it: only what shows, in the order in which it shows.
class SmartGrid::Content final : public TableContent {
public:
    Content(const SmartGrid& grid, const QHeaderView& header) : Content(grid, grid.description()) {
        if (const QString part = grid.part(); !part.isEmpty()) title_ += QStringLiteral(" – ") + part;
        for (int place = 0; place < header.count(); ++place) {
            const int column = header.logicalIndex(place);
            if (!header.isSectionHidden(column)) add(column, model_.column(column).Title, header.sectionSize(column));
        }
    }

    // What the setting names of the grid's columns.
    Content(const SmartGrid& grid, const TPrintSetting& setting)
        : Content(grid, setting.Title.empty() ? grid.description() : QString::fromStdString(setting.Title)) {
        part_ = grid.part();
        for (const TPrintColumn& wanted : setting.Columns) {
            const int column = grid.columnOf(wanted.FieldName);
            if (wanted.Visible && column >= 0)
                add(column, QString::fromStdString(wanted.Title), grid.printWidth(column));
        }
    }

    [[nodiscard]] QString title() const override { return title_; }
    // A list that lacks rows must not pass for the whole.
    [[nodiscard]] QString subtitle() const override { return narrowing_; }
    // Made for prints only, and once: a screen may have something to say while it makes them.
    [[nodiscard]] std::vector<QString> headerLines() const override {
        if (!headerLines_) {
            headerLines_ = makeHeaderLines_ ? makeHeaderLines_() : std::vector<QString>();
            if (!part_.isEmpty()) headerLines_->insert(headerLines_->begin(), part_);
        }
        return *headerLines_;
    }
    [[nodiscard]] const std::vector<TableColumn>& columns() const override { return columns_; }
    [[nodiscard]] int rowCount() const override { return model_.rowCount(); }
    [[nodiscard]] Value value(int row, int column) const override { return model_.value(row, source(column)); }
    [[nodiscard]] QString shown(int row, int column) const override { return model_.shown(row, source(column)); }
    [[nodiscard]] QStringList numberShapes(int column) const override { return model_.numberShapes(source(column)); }

private:
    Content(const SmartGrid& grid, QString title)
        : model_(grid.model_),
          title_(std::move(title)),
          narrowing_(grid.narrowing_ ? grid.narrowing_() : QString()),
          makeHeaderLines_(grid.headerLines_) {}

    void add(int column, const QString& title, int width) {
        const int field = model_.field(column);
        const TDataSet* rows = model_.dataSet();
        columns_.push_back({.title = title,
                            .type = rows && field >= 0 ? rows->fieldInfo(field).type : FieldType::Text,
                            .displayFormat = model_.column(column).DisplayFormat,
                            .width = width});
        sources_.push_back(column);
    }

    [[nodiscard]] int source(int column) const { return sources_[static_cast<std::size_t>(column)]; }

    const GridModel& model_;
    QString title_;
    QString part_;  // where the title does not name it
    QString narrowing_;
    std::function<std::vector<QString>()> makeHeaderLines_;
    mutable std::optional<std::vector<QString>> headerLines_;
    std::vector<TableColumn> columns_;
    std::vector<int> sources_;
};

SmartGrid::SmartGrid(ScreenContext& context, const QString& objectName, QWidget* parent)
    : TSmartDBGrid_VRO(parent), context_(context), view_(new GridView(model_, this)), scale_(themeSize(1)) {
    setObjectName(objectName);
    view_->setObjectName(objectName + QStringLiteral("_View"));
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(view_);
    setFocusProxy(view_);
    view_->viewport()->installEventFilter(this);

    model_.onRowsChanged = [this] { rowsChanged(); };
    model_.onCursorMoved = [this] { showCursor(); };
    model_.onColumnsChanged = [this] {
        applyVisibility();
        widths_.clear();
        leastWidths_.clear();
        layOutColumns();
    };
    QObject::connect(&model_, &QAbstractItemModel::dataChanged, this,
                     [this](const QModelIndex& first, const QModelIndex& last) {
                         if (first.row() == last.row()) widenFor(first.row());
                     });
    QHeaderView* header = view_->horizontalHeader();
    QObject::connect(view_->selectionModel(), &QItemSelectionModel::currentChanged, this,
                     [this](const QModelIndex& current) { takeCursor(current); });
    QObject::connect(view_, &QTableView::doubleClicked, this, [this] {
        if (OnDblClick) context_.guarded(this, [this] { OnDblClick(); });
    });
    QObject::connect(header, &QHeaderView::sectionClicked, this, [this](int column) { titleClicked(column); });
    QObject::connect(header, &QHeaderView::sectionResized, this, [this](int column, int, int size) {
        // A width that the user has drawn is kept; one that the layout gave is not.
        if (!layingOut_ && size > 0) model_.arrangement(column).Width = size;
    });
    QObject::connect(view_, &QWidget::customContextMenuRequested, this,
                     [this](const QPoint& at) { showMenu(view_->viewport()->mapToGlobal(at)); });
    QObject::connect(header, &QWidget::customContextMenuRequested, this,
                     [this, header](const QPoint& at) { showMenu(header->mapToGlobal(at)); });

    addAction("GridCopy_ACT", "رونوشت", QKeySequence::Copy, &SmartGrid::copySelection);
    // An input has a copy of its own; the other keys work wherever the focus is.
    actions_.back()->setShortcutContext(Qt::WidgetWithChildrenShortcut);
    addAction("GridColumns_ACT", "ستون‌ها…", {}, &SmartGrid::chooseColumns);
    addAction("GridSort_ACT", "مرتب‌سازی…", Qt::CTRL | Qt::Key_T, &SmartGrid::chooseSort);
    addAction("GridPrint_ACT", "پیش‌نمایش و چاپ…", QKeySequence::Print, &SmartGrid::print);
    addAction("GridPdf_ACT", "خروجی PDF…", {}, &SmartGrid::exportPdf);
    addAction("GridXlsx_ACT", "خروجی اکسل…", {}, &SmartGrid::exportWorkbook);
    addAction("GridCsv_ACT", "خروجی CSV…", {}, &SmartGrid::exportCsv);
}

void SmartGrid::addAction(const char* objectName, const char* title, const QKeySequence& key,
                          void (SmartGrid::*work)()) {
    auto* action = new QAction(QString::fromUtf8(title), this);
    action->setObjectName(QString::fromLatin1(objectName));
    action->setShortcut(key);
    QObject::connect(action, &QAction::triggered, this,
                     [this, work] { context_.guarded(this, [this, work] { (this->*work)(); }); });
    QWidget::addAction(action);
    actions_.push_back(action);
}

void SmartGrid::setRefresh(std::function<void()> refresh) {
    auto* action = new QAction(QStringLiteral("به‌روزآوری"), this);
    action->setObjectName(QStringLiteral("GridRefresh_ACT"));
    action->setShortcut(Qt::CTRL | Qt::Key_R);
    QObject::connect(action, &QAction::triggered, this,
                     [this, refresh = std::move(refresh)] { context_.guarded(this, refresh); });
    QWidget::addAction(action);
    actions_.push_front(action);
}

void SmartGrid::SetDataSource(TDataSource* source) {
    model_.setSource(source);
}

int SmartGrid::AddColumn(const TGridColumn& column) {
    const int index = model_.addColumn(column);
    bringBack(index);
    return index;
}

// What the user made of the column before it was removed.
void SmartGrid::bringBack(int column) {
    const std::string& field = model_.column(column).FieldName;
    const auto away = std::find_if(away_.begin(), away_.end(), [&](const Away& entry) {
        return sameName(entry.kept.value(QStringLiteral("field")).toString().toStdString(), field);
    });
    if (away == away_.end()) return;
    QHeaderView* header = view_->horizontalHeader();
    arrangeColumn(column, away->kept);
    header->moveSection(header->visualIndex(column), std::min(away->place, header->count() - 1));
    away_.erase(away);
    applyVisibility();
    layOutColumns();
}

void SmartGrid::checkIndex(int index, const char* operation) const {
    if (index < 0 || index >= model_.columnCount())
        throw UsageError(std::string(operation) + " of " + objectName().toStdString() + ": there is no column " +
                         std::to_string(index));
}

void SmartGrid::SetColumn(int index, const TGridColumn& column) {
    checkIndex(index, "SetColumn");
    model_.setColumn(index, column);
}

TGridColumn SmartGrid::Column(int index) const {
    checkIndex(index, "Column");
    TGridColumn column = model_.column(index);
    column.Visible = shows(index);
    return column;
}

void SmartGrid::RemoveColumn(int index) {
    checkIndex(index, "RemoveColumn");
    const Away away{arrangementOf(index), view_->horizontalHeader()->visualIndex(index)};
    if (!model_.column(index).FieldName.empty())
        away_.insert(std::upper_bound(away_.begin(), away_.end(), away,
                                      [](const Away& one, const Away& other) { return one.place < other.place; }),
                     away);
    if (model_.sortColumn() == index) {
        const Sort sort{model_.column(index).FieldName, model_.sortDescending()};
        sortBy(-1, false);
        sortAway_ = sort;
    }
    model_.removeColumnAt(index);
}

std::vector<int> SmartGrid::ColumnOrder() const {
    const QHeaderView* header = view_->horizontalHeader();
    std::vector<int> order(static_cast<std::size_t>(header->count()));
    for (int place = 0; place < header->count(); ++place)
        order[static_cast<std::size_t>(place)] = header->logicalIndex(place);
    return order;
}

void SmartGrid::SetMultiSelect(bool on) {
    view_->setSelectionMode(on ? QAbstractItemView::ExtendedSelection : QAbstractItemView::SingleSelection);
}

void SmartGrid::SetTitleLines(int lines) {
    QHeaderView* header = view_->horizontalHeader();
    titleLines_ = std::max(1, lines);
    Qt::Alignment alignment = Qt::AlignCenter;
    if (lines > 1) alignment |= static_cast<Qt::Alignment>(static_cast<int>(Qt::TextWordWrap));
    header->setDefaultAlignment(alignment);
    header->setFixedHeight(titleLines_ * header->fontMetrics().lineSpacing() + kTitlePadding);
}

int SmartGrid::CurrentRow() const {
    const TDataSet* rows = model_.dataSet();
    return rows && rows->RecordCount() > 0 ? rows->RecNo() - 1 : -1;
}

std::vector<int> SmartGrid::SelectedRows() const {
    std::vector<int> rows = rowsChosen();
    if (model_.sortColumn() < 0) return rows;
    for (int& row : rows)
        row = model_.dataRow(row);
    std::sort(rows.begin(), rows.end());
    return rows;
}

// From the ranges of the selection: to ask for the index of each row, and to sort those, takes seconds where there are
// hundreds of thousands.
std::vector<int> SmartGrid::rowsChosen() const {
    const QItemSelection selection = view_->selectionModel()->selection();
    std::vector<std::pair<int, int>> ranges;
    for (const QItemSelectionRange& range : selection)
        if (range.isValid()) ranges.emplace_back(range.top(), range.bottom());
    std::sort(ranges.begin(), ranges.end());
    std::vector<int> rows;
    for (const auto& [top, bottom] : ranges)
        for (int row = rows.empty() ? top : std::max(top, rows.back() + 1); row <= bottom; ++row)
            rows.push_back(row);
    return rows;
}

void SmartGrid::GoToLastRow() {
    TDataSet* rows = model_.dataSet();
    if (rows && model_.rowCount() > 0) rows->RecNo(model_.dataRow(model_.rowCount() - 1) + 1);
}

void SmartGrid::rowsChanged() {
    showCursor();
    // What a search leaves may want more room, never less: columns that jump at every letter are hard to follow. A list
    // without rows keeps the widths that it had.
    if (!sorting_ && model_.rowCount() > 0) {
        leastWidths_ = std::exchange(widths_, {});
        layOutColumns();
    }
}

// Data set to view.
void SmartGrid::showCursor() {
    if (followingCursor_) return;
    followingCursor_ = true;
    const int current = CurrentRow();
    const int row = current < 0 ? -1 : model_.modelRow(current);
    if (row < 0) {
        view_->setCurrentIndex({});
    } else {
        const int place = view_->horizontalScrollBar()->value();
        const QModelIndex index = model_.index(row, std::clamp(column_, 0, std::max(0, model_.columnCount() - 1)));
        // The view would look whether Control is held, of the keys that have just opened this list for instance.
        view_->selectionModel()->setCurrentIndex(index,
                                                 QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
        view_->horizontalScrollBar()->setValue(place);
        scrollToRow(index);
    }
    followingCursor_ = false;
    if (onRowsChanged) onRowsChanged();
}

void SmartGrid::scrollToRow(const QModelIndex& index) {
    QScrollBar& across = *view_->horizontalScrollBar();
    const int place = across.value();
    view_->scrollTo(index);
    across.setValue(place);
}

// View to data set.
void SmartGrid::takeCursor(const QModelIndex& current) {
    if (current.isValid()) column_ = current.column();
    if (followingCursor_ || !current.isValid()) return;
    TDataSet* rows = model_.dataSet();
    if (!rows || rows->RecordCount() == 0) return;
    followingCursor_ = true;
    context_.guarded(this, [&] { rows->RecNo(model_.dataRow(current.row()) + 1); });
    followingCursor_ = false;
    // Leaving a record can fail; the view then goes back to where the data set is.
    if (CurrentRow() != model_.dataRow(current.row())) return showCursor();
    if (onRowsChanged) onRowsChanged();
}

void SmartGrid::titleClicked(int column) {
    if (!model_.column(column).TitleButton) return;
    sortBy(column, model_.sortColumn() == column && !model_.sortDescending());
}

void SmartGrid::sortBy(int column, bool descending) {
    QHeaderView* header = view_->horizontalHeader();
    header->setSortIndicatorShown(column >= 0);
    if (column >= 0) header->setSortIndicator(column, descending ? Qt::DescendingOrder : Qt::AscendingOrder);
    sortAway_.reset();
    const QScopedValueRollback<bool> sorting(sorting_, true);
    model_.sortBy(column, descending);
}

void SmartGrid::applyVisibility() {
    // A column that comes back does so in a width that nobody has drawn.
    const bool layingOut = std::exchange(layingOut_, true);
    // Of what the user wants to see there may be nothing left, as when the only level that he looks at is deleted. The
    // wish is kept: it may come back.
    bool any = false;
    for (int column = 0; column < model_.columnCount(); ++column)
        any = any || model_.column(column).Visible;
    for (int column = 0; column < model_.columnCount(); ++column) {
        const TGridColumn& entry = model_.column(column);
        view_->setColumnHidden(column, !(any ? entry.Visible : entry.VisibleForCustomization));
    }
    layingOut_ = layingOut;
    settleSort();
}

bool SmartGrid::shows(int column) const {
    return !view_->isColumnHidden(column);
}

// An order whose column is not seen cannot be understood, so it waits until the column is.
void SmartGrid::settleSort() {
    const int awaited = sortAway_ ? columnOf(sortAway_->field) : -1;
    if (awaited >= 0 && shows(awaited)) {
        sortBy(awaited, sortAway_->descending);
        return;
    }
    const int sorted = model_.sortColumn();
    if (sorted < 0 || shows(sorted)) return;
    const Sort sort{model_.column(sorted).FieldName, model_.sortDescending()};
    sortBy(-1, false);
    sortAway_ = sort;
}

int SmartGrid::contentWidth(int column) const {
    widths_.resize(static_cast<std::size_t>(model_.columnCount()));
    int& width = widths_[static_cast<std::size_t>(column)];
    if (width == 0) {
        const auto at = static_cast<std::size_t>(column);
        width = std::max(measuredWidth(column), at < leastWidths_.size() ? leastWidths_[at] : 0);
    }
    return width;
}

// A row that has been changed may hold a longer number than any before it.
void SmartGrid::widenFor(int row) {
    bool wider = false;
    for (int column = 0; column < std::min(model_.columnCount(), static_cast<int>(widths_.size())); ++column) {
        int& width = widths_[static_cast<std::size_t>(column)];
        if (width == 0 || !model_.isNumberColumn(column)) continue;
        const qreal room = roomFor({model_.shown(row, column)}, QFontMetricsF(view_->font()));
        const int needed = static_cast<int>(room) + kCellPadding;
        if (needed <= width) continue;
        width = needed;
        wider = true;
    }
    if (wider) layOutColumns();
}

int SmartGrid::measuredWidth(int column) const {
    const QFontMetrics metrics = view_->fontMetrics();
    const QFontMetricsF titleMetrics(view_->horizontalHeader()->font());
    const int title = static_cast<int>(
        widthForLines(screenText(model_.column(column).Title), titleMetrics, std::max(1, titleLines_)));
    int widest = (titleLines_ > 1 ? std::min(title, themePixels(kWidestWrappedTitle)) : title) + kTitlePadding;
    const int most = themePixels(kWidestByContent);
    // Numbers have all the room that they need: a part of one would be another number.
    if (model_.isNumberColumn(column)) {
        const qreal room = roomFor(model_.numberShapes(column), QFontMetricsF(view_->font()));
        widest = std::max(std::min(widest, most - kCellPadding), static_cast<int>(room));
        return std::max(widest + kCellPadding, kNarrowest);
    }
    const int rows = std::min(model_.rowCount(), kMeasuredRows);
    for (int row = 0; row < rows; ++row)
        widest = std::max(widest, metrics.horizontalAdvance(model_.shown(row, column)));
    return std::clamp(widest + kCellPadding, kNarrowest, most);
}

void SmartGrid::layOutColumns() {
    // Until it is seen it may get many columns and several results; showing it lays them out once.
    if (layingOut_ || !isVisible()) return;
    layingOut_ = true;
    QHeaderView* header = view_->horizontalHeader();
    std::vector<int> stretching;
    std::vector<int> byContent;
    int used = 0;
    for (int column = 0; column < model_.columnCount(); ++column) {
        if (header->isSectionHidden(column)) continue;
        const TGridColumn& entry = model_.column(column);
        const int width = entry.Width > 0 ? entry.Width : contentWidth(column);
        header->resizeSection(column, width);
        used += width;
        if (entry.Width > 0) continue;
        byContent.push_back(column);
        if (!model_.isNumberColumn(column)) stretching.push_back(column);
    }
    if (stretching.empty()) stretching = byContent;
    int spare = view_->viewport()->width() - used;
    for (std::size_t i = 0; i < stretching.size() && spare > 0; ++i) {
        const int share = spare / static_cast<int>(stretching.size() - i);
        header->resizeSection(stretching[i], header->sectionSize(stretching[i]) + share);
        spare -= share;
    }
    layingOut_ = false;
}

int SmartGrid::columnsWidth() const {
    int width = view_->verticalScrollBar()->sizeHint().width() + 2 * view_->frameWidth();
    for (int column = 0; column < model_.columnCount(); ++column) {
        if (view_->horizontalHeader()->isSectionHidden(column)) continue;
        const int own = model_.column(column).Width;
        width += own > 0 ? own : contentWidth(column);
    }
    return width;
}

bool SmartGrid::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::Resize) {
        layOutColumns();
        if (view_->currentIndex().isValid()) scrollToRow(view_->currentIndex());
    }
    return TSmartDBGrid_VRO::eventFilter(watched, event);
}

void SmartGrid::showEvent(QShowEvent* event) {
    TSmartDBGrid_VRO::showEvent(event);
    layOutColumns();
    if (view_->currentIndex().isValid()) view_->scrollTo(view_->currentIndex());
}

QSize SmartGrid::sizeHint() const {
    constexpr int kRows = 8;
    const int rows = kRows * view_->verticalHeader()->defaultSectionSize();
    return {TSmartDBGrid_VRO::sizeHint().width(), view_->horizontalHeader()->sizeHint().height() + rows};
}

void SmartGrid::changeEvent(QEvent* event) {
    TSmartDBGrid_VRO::changeEvent(event);
    // The parts of the grid get the font after it.
    if (event->type() == QEvent::StyleChange || event->type() == QEvent::FontChange)
        QMetaObject::invokeMethod(
            this, [this] { followFont(); }, Qt::QueuedConnection);
}

void SmartGrid::followFont() {
    if (titleLines_ > 0) SetTitleLines(titleLines_);
    const qreal scale = themeSize(1);
    if (scale == scale_) return;
    for (int column = 0; column < model_.columnCount(); ++column) {
        int& width = model_.arrangement(column).Width;
        width = qRound(width / scale_ * scale);
    }
    scale_ = scale;
    widths_.clear();
    leastWidths_.clear();
    layOutColumns();
}

void SmartGrid::keyPressEvent(QKeyEvent* event) {
    if (!view_->take(event)) event->ignore();
}

QJsonObject SmartGrid::arrangementOf(int column) const {
    const TGridColumn& state = model_.column(column);
    QJsonObject kept{{QStringLiteral("field"), QString::fromStdString(state.FieldName)},
                     // As it would be at the usual font size.
                     {QStringLiteral("width"), qRound(state.Width / scale_)}};
    // What the screen itself hides is not the user's wish, and may be shown the next time.
    if (state.VisibleForCustomization) kept.insert(kVisible, state.Visible);
    return kept;
}

void SmartGrid::arrangeColumn(int column, const QJsonObject& kept) {
    TGridColumn& state = model_.arrangement(column);
    const QJsonValue width = kept.value(QStringLiteral("width"));
    if (width.isDouble()) state.Width = qRound(std::clamp(width.toInt(), 0, 4000) * scale_);
    // What the screen keeps out of the user's reach stays as the screen has it.
    if (state.VisibleForCustomization) state.Visible = kept.value(kVisible).toBool(state.Visible);
}

QJsonObject SmartGrid::arrangement() const {
    const QHeaderView* header = view_->horizontalHeader();
    QJsonArray columns;
    for (int place = 0; place < header->count(); ++place)
        columns.append(arrangementOf(header->logicalIndex(place)));
    for (const Away& away : away_)
        columns.insert(std::min(away.place, static_cast<int>(columns.size())), away.kept);
    QJsonObject all{{QStringLiteral("columns"), columns}};
    std::optional<Sort> sort = sortAway_;
    if (model_.sortColumn() >= 0) sort = Sort{model_.column(model_.sortColumn()).FieldName, model_.sortDescending()};
    if (sort) {
        all.insert(QStringLiteral("sort"), QString::fromStdString(sort->field));
        all.insert(QStringLiteral("descending"), sort->descending);
    }
    return all;
}

void SmartGrid::arrange(const QJsonObject& arrangement) {
    QHeaderView* header = view_->horizontalHeader();
    const auto indexOf = [&](const QString& field) { return columnOf(field.toStdString()); };
    std::vector<int> placed;
    int keptPlace = 0;
    away_.clear();
    for (const auto& entry : arrangement.value(QStringLiteral("columns")).toArray()) {
        const QJsonObject kept = entry.toObject();
        const int column = indexOf(kept.value(QStringLiteral("field")).toString());
        if (column < 0) {
            away_.push_back({kept, keptPlace++});
            continue;
        }
        ++keptPlace;
        arrangeColumn(column, kept);
        // A column that was out of the user's reach, or is now, stands where the screen has it.
        if (kept.contains(kVisible) && model_.column(column).VisibleForCustomization) placed.push_back(column);
    }
    int place = 0;
    for (const int column : keptOrder(placed, model_.columnCount()))
        header->moveSection(header->visualIndex(column), place++);
    applyVisibility();
    layOutColumns();
    const Sort sort{arrangement.value(QStringLiteral("sort")).toString().toStdString(),
                    arrangement.value(QStringLiteral("descending")).toBool()};
    if (sort.field.empty()) return;
    sortAway_ = sort;
    settleSort();
}

int SmartGrid::columnOf(const std::string& field) const {
    for (int column = 0; column < model_.columnCount(); ++column)
        if (sameName(model_.column(column).FieldName, field)) return column;
    return -1;
}

int SmartGrid::printWidth(int column) const {
    // A column that is hidden on the screen has no width there.
    const QHeaderView* header = view_->horizontalHeader();
    if (!header->isSectionHidden(column)) return header->sectionSize(column);
    const int own = model_.column(column).Width;
    return own > 0 ? own : contentWidth(column);
}

void SmartGrid::setDescription(std::function<QString()> title, std::function<std::vector<QString>()> headerLines) {
    title_ = std::move(title);
    headerLines_ = std::move(headerLines);
}

QString SmartGrid::description() const {
    QString title = title_ ? title_() : QString();
    return title.isEmpty() ? QStringLiteral("فهرست") : title;
}

std::unique_ptr<SmartGrid::Content> SmartGrid::content() const {
    return std::make_unique<Content>(*this, *view_->horizontalHeader());
}

void SmartGrid::showMenu(const QPoint& at) {
    QMenu menu(this);
    menu.setObjectName(objectName() + QStringLiteral("_Menu"));
    if (menuHead_) menuHead_(menu);
    if (!menu.isEmpty()) menu.addSeparator();
    menu.addActions(actions_);
    menu.exec(at);
}

void SmartGrid::copySelection() {
    const std::vector<int> rows = rowsChosen();
    if (rows.empty()) return;
    QApplication::clipboard()->setText(tabSeparated(*content(), rows, context_.writing()));
}

void SmartGrid::chooseColumns() {
    std::vector<ColumnChoice> choices;
    const QHeaderView* header = view_->horizontalHeader();
    for (int place = 0; place < header->count(); ++place) {
        const int column = header->logicalIndex(place);
        const TGridColumn& entry = model_.column(column);
        if (entry.VisibleForCustomization) choices.push_back({column, entry.Title, shows(column)});
    }
    ColumnChooser chooser(choices, window());
    if (chooser.exec() != QDialog::Accepted) return;
    int place = 0;
    for (const ColumnChoice& choice : chooser.choices()) {
        model_.arrangement(choice.column).Visible = choice.visible;
        view_->horizontalHeader()->moveSection(header->visualIndex(choice.column), place++);
    }
    applyVisibility();
    layOutColumns();
}

// What a click on a title does, for whoever has no mouse.
void SmartGrid::chooseSort() {
    QMenu menu(this);
    menu.setObjectName(objectName() + QStringLiteral("_SortMenu"));
    const auto add = [&](const QString& title, const char* name, bool now, std::function<void()> sort) {
        QAction* action = menu.addAction(title);
        action->setObjectName(QStringLiteral("GridSort_%1_ACT").arg(QString::fromLatin1(name)));
        action->setCheckable(true);
        action->setChecked(now);
        QObject::connect(action, &QAction::triggered, this,
                         [this, sort = std::move(sort)] { context_.guarded(this, sort); });
        if (now) menu.setActiveAction(action);
    };
    const QHeaderView* header = view_->horizontalHeader();
    const int sorted = model_.sortColumn();
    for (int place = 0; place < header->count(); ++place) {
        const int column = header->logicalIndex(place);
        if (!shows(column) || !model_.column(column).TitleButton) continue;
        QString title = screenText(model_.column(column).Title).simplified();
        title.replace(QLatin1Char('&'), QStringLiteral("&&"));
        if (column == sorted)
            title += model_.sortDescending() ? QStringLiteral(" (نزولی)") : QStringLiteral(" (صعودی)");
        add(title, model_.column(column).FieldName.c_str(), column == sorted, [this, column] { titleClicked(column); });
    }
    menu.addSeparator();
    add(QStringLiteral("ترتیب خود فهرست"), "Own", sorted < 0, [this] { sortBy(-1, false); });
    menu.ensurePolished();
    menu.exec(placeBelowTitle(menu.sizeHint()));
}

QPoint SmartGrid::placeBelowTitle(const QSize& menu) const {
    const QHeaderView* header = view_->horizontalHeader();
    const int column = std::clamp(column_, 0, std::max(0, model_.columnCount() - 1));
    const int end = header->sectionViewportPosition(column) + header->sectionSize(column);
    QRect place(QPoint(), menu);
    // Menus are read from the right, as titles are.
    place.moveTopRight(header->viewport()->mapToGlobal(QPoint(end - 1, header->height())));
    const QRect list(view_->mapToGlobal(QPoint()), view_->size());
    const QRect around(window()->mapToGlobal(QPoint()), window()->size());
    // Beside the list it would lie over another program. Of the screen's edges the menu itself takes care.
    return movedInside(place, QRect(list.left(), around.top(), list.width(), around.height())).topLeft();
}

void SmartGrid::preview(const TableContent& table, std::optional<QPageLayout> paper) {
    checkPrintable(table);
    TableDocument document(table, QString::fromStdString(context_.host().NowDate("/")), context_.companyName());
    context_.output().preview(context_, window(), document, paper ? *paper : document.suitablePaper());
}

void SmartGrid::print() {
    if (gate_ && !gate_()) return;
    preview(*content(), std::nullopt);
}

void SmartGrid::CheckPrintable() const {
    checkPrintable(*content());
}

void SmartGrid::PrintPreview(const TPrintSetting& setting) {
    const Content table(*this, setting);
    if (table.columns().empty())
        throw UsageError("PrintPreview of " + objectName().toStdString() + ": the setting shows no column of the grid");
    preview(table, pageLayout(paperSize(setting.Paper), setting.Orientation == TPrintOrientation::Landscape
                                                            ? QPageLayout::Landscape
                                                            : QPageLayout::Portrait));
}

void SmartGrid::save(const QString& title, const QString& suffix, const Writer& write, const Check& check) {
    if (gate_ && !gate_()) return;
    if (check) check();
    const auto table = content();
    const auto path = context_.output().chooseFile(window(), title, table->title(), suffix);
    if (!path) return;
    write(*table, *path, context_.writing());
    tellSaved(*window(), *path);
}

void SmartGrid::exportPdf() {
    save(
        QStringLiteral("خروجی PDF"), QStringLiteral("pdf"),
        [this](const TableContent& table, const QString& path, const OutputProgress& progress) {
            TableDocument document(table, QString::fromStdString(context_.host().NowDate("/")), context_.companyName());
            writePdf(document, document.suitablePaper(), path, progress);
        },
        [this] { CheckPrintable(); });
}

void SmartGrid::exportWorkbook() {
    save(QStringLiteral("خروجی اکسل"), QStringLiteral("xlsx"),
         [](const TableContent& table, const QString& path, const OutputProgress& progress) {
             writeWorkbook(table, path, progress);
         });
}

void SmartGrid::exportCsv() {
    save(QStringLiteral("خروجی CSV"), QStringLiteral("csv"), &writeCsv);
}

}  // namespace basalt::host
