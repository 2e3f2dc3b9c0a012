#include "host/screens/grid_view.h"

#include <QHeaderView>
#include <QKeyEvent>
#include <QPainter>
#include <QStyledItemDelegate>

#include "host/screens/grid_model.h"
#include "host/screens/theme.h"

namespace basalt::host {
namespace {

constexpr int kRowPadding = 12;

class GridDelegate final : public QStyledItemDelegate {
public:
    using QStyledItemDelegate::QStyledItemDelegate;

protected:
    void initStyleOption(QStyleOptionViewItem* option, const QModelIndex& index) const override {
        QStyledItemDelegate::initStyleOption(option, index);
        // The row is what is chosen, so no single cell is framed.
        option->state &= ~QStyle::State_HasFocus;
        option->textElideMode = Qt::ElideRight;
        // Keeps the sign on the left of a number within right-to-left text.
        if (option->text.startsWith(QLatin1Char('-'))) option->text = QChar(0x2066) + option->text + QChar(0x2069);
    }
};

}  // namespace

GridView::GridView(GridModel& model, QWidget* parent) : InnerControl<QTableView>(parent), model_(model) {
    setModel(&model);
    setItemDelegate(new GridDelegate(this));
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
    verticalHeader()->setDefaultSectionSize(fontMetrics().height() + kRowPadding);
    QHeaderView* header = horizontalHeader();
    header->setSectionsClickable(true);
    header->setSectionsMovable(true);
    header->setHighlightSections(false);
    header->setContextMenuPolicy(Qt::CustomContextMenu);
    header->setMinimumSectionSize(36);
}

void GridView::paintEvent(QPaintEvent* event) {
    QTableView::paintEvent(event);
    if (model_.rowCount() > 0) return;
    QPainter painter(viewport());
    painter.setPen(themeColors().muted);
    painter.drawText(viewport()->rect(), Qt::AlignCenter, QStringLiteral("موردی یافت نشد"));
}

void GridView::keyPressEvent(QKeyEvent* event) {
    const int last = model_.rowCount() - 1;
    const bool jumps = event->modifiers() == Qt::NoModifier && last >= 0;
    if (jumps && (event->key() == Qt::Key_Home || event->key() == Qt::Key_End)) {
        const int column = std::max(0, currentIndex().column());
        setCurrentIndex(model_.index(event->key() == Qt::Key_Home ? 0 : last, column));
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
