// Which columns a grid shows, and in which order.
#pragma once

#include <QDialog>

#include "host/screens/column_list.h"

namespace basalt::host {

class ColumnChooser final : public QDialog {
public:
    ColumnChooser(const std::vector<ColumnChoice>& choices, QWidget* parent);

    // In the order that the user gave them. At least one is visible.
    [[nodiscard]] std::vector<ColumnChoice> choices() const { return columns_->choices(); }

private:
    ColumnList* columns_;
};

}  // namespace basalt::host
