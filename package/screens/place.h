// Puts a control into a panel of the base.
//
//   place(*base().ListPanel(), *grid);
#pragma once

#include <QVBoxLayout>
#include <QWidget>

namespace basalt {

// Below what the panel already holds. A panel without a layout gets one that leaves margins to the panel's owner.
inline void place(QWidget& panel, QWidget& control) {
    if (panel.layout() == nullptr) {
        auto* column = new QVBoxLayout(&panel);
        column->setContentsMargins(0, 0, 0, 0);
    }
    panel.layout()->addWidget(&control);
}

}  // namespace basalt
