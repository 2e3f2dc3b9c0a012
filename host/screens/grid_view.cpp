#include "host/screens/grid_view.h"

#include <QHeaderView>
#include <QKeyEvent>
#include <QPainter>
#include <QScrollBar>
#include <QStyledItemDelegate>
#include <QTextLayout>
#include <algorithm>
#include <utility>

#include "host/screens/grid_model.h"
#include "host/screens/number_painter.h"
#include "host/screens/number_room.h"
#include "host/screens/theme.h"

namespace basalt::host {
namespace {

constexpr int kRowPadding = 12;
constexpr int kCellPadding = 11;  // where the style sheet puts the text of an item
constexpr qreal kLongestLine = 1e6;

bool isReadFromTheRight(QChar letter) {
    return letter.direction() == QChar::DirR || letter.direction() == QChar::DirAL;
}

// The sign stands on the left of a number within right-to-left text.
QString isolated(const QString& text) {
    return QChar(0x2066) + text + QChar(0x2069);
}

// What of a text may be shown on the one line of a cell. Nobody sees more of a long one, and laying it out takes long.
QString onOneLine(QString text) {
    constexpr qsizetype kMostShown = 4000;
    if (text.size() > kMostShown) text = text.left(kMostShown) + QChar(0x2026);
    text.replace(QLatin1String("\r\n"), QLatin1String(" "));
    for (QChar& character : text) {
        if (character == QChar::LineFeed || character == QChar::CarriageReturn || character == QChar::Tabulation ||
            character == QChar::LineSeparator || character == QChar::ParagraphSeparator)
            character = QChar::Space;
    }
    return text;
}

// Paints the text if all of it has room there, as QPainter::drawText would; laid out once, where measuring and painting
// it would take two.
bool paintWhole(QPainter& painter, const QRect& room, const QString& text, const QStyleOptionViewItem& style,
                Qt::Alignment alignment) {
    QTextLayout layout(text, style.font);
    QTextOption option;
    option.setTextDirection(style.direction);
    option.setWrapMode(QTextOption::NoWrap);
    layout.setTextOption(option);
    layout.beginLayout();
    QTextLine line = layout.createLine();
    line.setLineWidth(kLongestLine);
    layout.endLayout();
    const qreal width = line.horizontalAdvance();
    if (width > room.width()) return false;
    const qreal left = room.x() + (alignment.testFlag(Qt::AlignRight) ? room.width() - width : 0);
    line.draw(&painter, QPointF(left, room.y() + (room.height() - line.height()) / 2));
    return true;
}

// Paints cells without the style, which lays out every text twice and asks the style sheet for every cell: a page of a
// wide list has hundreds of them. What shows is what the style sheet says of items.
class GridDelegate final : public QStyledItemDelegate {
public:
    GridDelegate(const GridModel& model, QTableView* view) : QStyledItemDelegate(view), model_(model), view_(*view) {}

    void paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const override {
        const ThemeColors& colors = themeColors();
        const bool selected = (option.state & QStyle::State_Selected) != 0;
        if (selected) painter->fillRect(option.rect, colors.selection);
        painter->fillRect(QRect(option.rect.left(), option.rect.bottom(), option.rect.width(), 1), colors.window);
        QString text = index.data(Qt::DisplayRole).toString();
        if (text.isEmpty()) return;
        QRect room = option.rect.adjusted(kCellPadding, 0, -kCellPadding, 0);
        const bool number = model_.isNumberColumn(index.column());
        // A number of which the edge of the list leaves a part would read as a smaller one.
        const int end = view_.viewport()->width();
        const bool atEdge = number && (option.rect.left() < 0 || option.rect.right() >= end);
        const auto wanted = Qt::Alignment(index.data(Qt::TextAlignmentRole).toInt());
        const Qt::Alignment alignment = QStyle::visualAlignment(option.direction, wanted) | Qt::AlignAbsolute;
        painter->setPen(colors.text);
        if (!atEdge && alignment.testFlag(Qt::AlignRight) && numbers_.paint(*painter, room, text, option.font)) return;
        text = onOneLine(std::move(text));
        painter->setFont(option.font);
        const bool isSigned = text.startsWith(QLatin1Char('-'));
        if (!atEdge && paintWhole(*painter, room, isSigned ? isolated(text) : text, option, alignment)) return;
        const QString fitting = fittingText(text, number, QFontMetricsF(option.font), room.width());
        const bool cut = fitting != text;
        text = fitting;
        if (atEdge) {
            room.setLeft(std::max(option.rect.left(), 0) + kCellPadding);
            room.setRight(std::min(option.rect.right(), end - 1) - kCellPadding);
            if (option.fontMetrics.horizontalAdvance(text) > room.width()) text = QChar(0x2026);
            // Of a few pixels' width the three dots leave one, which is much like a zero.
            if (option.fontMetrics.horizontalAdvance(text) > room.width()) return;
        }
        // What is cut of codes and Latin names, which are read from the left, is missing on the right.
        if (text.startsWith(QLatin1Char('-')) ||
            (cut && !number && std::none_of(text.cbegin(), text.cend(), isReadFromTheRight)))
            text = isolated(text);
        painter->drawText(room, static_cast<int>(alignment) | Qt::TextSingleLine, text);
    }

private:
    const GridModel& model_;
    const QTableView& view_;
    mutable NumberPainter numbers_;
};

}  // namespace

GridView::GridView(GridModel& model, QWidget* parent) : InnerControl<QTableView>(parent), rows_(model) {
    setModel(&model);
    setItemDelegate(new GridDelegate(model, this));
    setSelectionBehavior(QAbstractItemView::SelectRows);
    setSelectionMode(QAbstractItemView::SingleSelection);
    setEditTriggers(QAbstractItemView::NoEditTriggers);
    setAlternatingRowColors(true);
    setShowGrid(false);
    setWordWrap(false);
    setTabKeyNavigation(false);
    setHorizontalScrollMode(QAbstractItemView::ScrollPerPixel);
    setContextMenuPolicy(Qt::CustomContextMenu);
    verticalHeader()->hide();
    verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    followFont();
    QHeaderView* header = horizontalHeader();
    header->setSectionsClickable(true);
    header->setSectionsMovable(true);
    header->setHighlightSections(false);
    header->setContextMenuPolicy(Qt::CustomContextMenu);
    header->setMinimumSectionSize(36);
}

void GridView::followFont() {
    verticalHeader()->setDefaultSectionSize(fontMetrics().height() + kRowPadding);
}

void GridView::changeEvent(QEvent* event) {
    InnerControl::changeEvent(event);
    if (event->type() == QEvent::StyleChange || event->type() == QEvent::FontChange) followFont();
}

void GridView::paintEvent(QPaintEvent* event) {
    QTableView::paintEvent(event);
    if (model()->rowCount() > 0) return;
    QPainter painter(viewport());
    painter.setPen(themeColors().muted);
    painter.drawText(viewport()->rect(), Qt::AlignCenter,
                     rows_.isUnread() ? QStringLiteral("سطرها هنوز خوانده نشده‌اند")
                                      : QStringLiteral("موردی برای نمایش نیست"));
}

void GridView::scrollContentsBy(int dx, int dy) {
    QTableView::scrollContentsBy(dx, dy);
    keepTopRowWhole();
    // What is left of a cell decides how it is painted, so that no old half of it may stay.
    if (dx != 0) viewport()->update();
}

void GridView::updateGeometries() {
    QTableView::updateGeometries();
    keepTopRowWhole();
}

// At the end of the list the table would align the last row with its lower edge and cut the uppermost one instead.
void GridView::keepTopRowWhole() {
    // The grid's rows go before their view.
    if (!model() || model()->rowCount() == 0) return;
    QHeaderView* rows = verticalHeader();
    const int before = rows->offset();
    rows->setOffsetToSectionPosition(verticalScrollBar()->value());
    if (rows->offset() != before) viewport()->update();
}

void GridView::keyPressEvent(QKeyEvent* event) {
    const int last = model()->rowCount() - 1;
    const bool jumps = event->modifiers() == Qt::NoModifier && last >= 0;
    if (jumps && (event->key() == Qt::Key_Home || event->key() == Qt::Key_End)) {
        const int column = std::max(0, currentIndex().column());
        setCurrentIndex(model()->index(event->key() == Qt::Key_Home ? 0 : last, column));
        return;
    }
    // The grid around answers for these; the table would copy a single cell.
    if (event->matches(QKeySequence::Copy)) {
        event->ignore();
        return;
    }
    QTableView::keyPressEvent(event);
}

}  // namespace basalt::host
