// How the list of layouts shows its rows: where there is no room for all of a row its title ends in dots. The prefix
// and the length behind it are what tells layouts apart, and half of them would be another layout's.
//
//   list->setItemDelegate(new LayoutRowDelegate(list));
//   list->addItem(newLayoutRow(layout));
#pragma once

#include <QListWidgetItem>

#include "host/counter/barcode_layout.h"
#include "host/screens/elided_row.h"

namespace basalt::host {

// For the list to own. Its text is the whole row, and its tool tip too.
[[nodiscard]] QListWidgetItem* newLayoutRow(const BarcodeLayout& layout);

class LayoutRowDelegate final : public ElidedRowDelegate {
public:
    using ElidedRowDelegate::ElidedRowDelegate;

protected:
    void initStyleOption(QStyleOptionViewItem* option, const QModelIndex& index) const override;
};

}  // namespace basalt::host
