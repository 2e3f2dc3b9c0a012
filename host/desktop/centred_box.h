// Cells with a box to tick: the box stands in the middle, under its title, and what is noted beside it follows.
//
//   table.setItemDelegate(new CentredBox(&table));
#pragma once

#include <QStyledItemDelegate>

namespace basalt::host {

class CentredBox final : public QStyledItemDelegate {
public:
    using QStyledItemDelegate::QStyledItemDelegate;

    void paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const override;
    // Wide enough for the note beside a box in the middle.
    [[nodiscard]] QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override;

protected:
    bool editorEvent(QEvent* event, QAbstractItemModel* model, const QStyleOptionViewItem& option,
                     const QModelIndex& index) override;

private:
    // How far the box lies from the middle of the cell.
    [[nodiscard]] int shift(const QStyleOptionViewItem& option, const QModelIndex& index) const;
};

}  // namespace basalt::host
