#include "host/desktop/centred_box.h"

#include <QApplication>
#include <QEvent>
#include <QPainter>

namespace basalt::host {
namespace {

const QStyle& styleOf(const QStyleOptionViewItem& option) {
    return option.widget ? *option.widget->style() : *QApplication::style();
}

QRect boxIn(const QStyleOptionViewItem& cell) {
    return styleOf(cell).subElementRect(QStyle::SE_ItemViewItemCheckIndicator, &cell, cell.widget);
}

}  // namespace

int CentredBox::shift(const QStyleOptionViewItem& option, const QModelIndex& index) const {
    QStyleOptionViewItem cell = option;
    initStyleOption(&cell, index);
    if (!(cell.features & QStyleOptionViewItem::HasCheckIndicator)) return 0;
    return cell.rect.center().x() - boxIn(cell).center().x();
}

void CentredBox::paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const {
    QStyleOptionViewItem cell = option;
    initStyleOption(&cell, index);
    const QStyle& style = styleOf(cell);
    // The ground of the whole cell, and on it the box and the note where they belong.
    QStyleOptionViewItem ground = cell;
    ground.features &= ~(QStyleOptionViewItem::HasCheckIndicator | QStyleOptionViewItem::HasDisplay);
    ground.text.clear();
    style.drawControl(QStyle::CE_ItemViewItem, &ground, painter, cell.widget);
    painter->save();
    painter->setClipRect(cell.rect);
    cell.rect.translate(shift(option, index), 0);
    cell.state &= ~(QStyle::State_Selected | QStyle::State_HasFocus | QStyle::State_MouseOver);
    cell.backgroundBrush = Qt::NoBrush;
    cell.features &= ~QStyleOptionViewItem::Alternate;
    style.drawControl(QStyle::CE_ItemViewItem, &cell, painter, cell.widget);
    painter->restore();
}

QSize CentredBox::sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const {
    QStyleOptionViewItem cell = option;
    initStyleOption(&cell, index);
    QSize size = QStyledItemDelegate::sizeHint(option, index);
    // The note lies on one side of the middle, and as much room on the other.
    if (!cell.text.isEmpty()) size.setWidth(2 * size.width() - boxIn(cell).width());
    return size;
}

bool CentredBox::editorEvent(QEvent* event, QAbstractItemModel* model, const QStyleOptionViewItem& option,
                             const QModelIndex& index) {
    QStyleOptionViewItem moved = option;
    moved.rect.translate(shift(option, index), 0);
    const bool taken = QStyledItemDelegate::editorEvent(event, model, moved, index);
    // The box is ticked when the button is let go. A press that the view does not get would leave the current cell
    // where it was, and the keys would work on another one than the mouse.
    return taken && event->type() != QEvent::MouseButtonPress;
}

}  // namespace basalt::host
