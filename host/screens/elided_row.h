// Rows of a list that end in three dots where the list has no room for them; their tool tips may show them whole.
//
//   list->setItemDelegate(new ElidedRowDelegate(list));
#pragma once

#include <QStyledItemDelegate>

namespace basalt::host {

class ElidedRowDelegate : public QStyledItemDelegate {
public:
    using QStyledItemDelegate::QStyledItemDelegate;

    // A row that asks for no width gets that of the list; one that asks for its own would run out of sight.
    [[nodiscard]] QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override {
        return {0, QStyledItemDelegate::sizeHint(option, index).height()};
    }
};

}  // namespace basalt::host
