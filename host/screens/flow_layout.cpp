#include "host/screens/flow_layout.h"

#include <QStyle>
#include <QWidget>
#include <algorithm>

namespace basalt::host {

FlowLayout::FlowLayout(int spacing) {
    setContentsMargins(0, 0, 0, 0);
    setSpacing(spacing);
}

FlowLayout::~FlowLayout() = default;

void FlowLayout::addItem(QLayoutItem* item) {
    items_.emplace_back(item);
}

QLayoutItem* FlowLayout::itemAt(int index) const {
    if (index < 0 || index >= count()) return nullptr;
    return items_[static_cast<std::size_t>(index)].get();
}

QLayoutItem* FlowLayout::takeAt(int index) {
    if (index < 0 || index >= count()) return nullptr;
    const auto taken = items_.begin() + index;
    QLayoutItem* item = taken->release();
    items_.erase(taken);
    return item;
}

QSize FlowLayout::sizeHint() const {
    QSize size(0, 0);
    for (const auto& item : items_) {
        if (item->isEmpty()) continue;
        const QSize wanted = item->sizeHint();
        const int gap = size.width() == 0 ? 0 : spacing();
        size = QSize(size.width() + gap + wanted.width(), std::max(size.height(), wanted.height()));
    }
    return size;
}

QSize FlowLayout::minimumSize() const {
    QSize size(0, 0);
    for (const auto& item : items_)
        if (!item->isEmpty()) size = size.expandedTo(item->minimumSize());
    return size;
}

void FlowLayout::setGeometry(const QRect& area) {
    QLayout::setGeometry(area);
    place(area, true);
}

int FlowLayout::place(const QRect& area, bool move) const {
    const QWidget* parent = parentWidget();
    const Qt::LayoutDirection direction = parent ? parent->layoutDirection() : Qt::LeftToRight;
    int x = area.left();
    int y = area.top();
    int rowHeight = 0;
    for (const auto& item : items_) {
        if (item->isEmpty()) continue;
        const QSize size = item->sizeHint().boundedTo(QSize(area.width(), QWIDGETSIZE_MAX));
        if (x > area.left() && x + size.width() > area.left() + area.width()) {
            x = area.left();
            y += rowHeight + spacing();
            rowHeight = 0;
        }
        if (move) item->setGeometry(QStyle::visualRect(direction, area, QRect(QPoint(x, y), size)));
        x += size.width() + spacing();
        rowHeight = std::max(rowHeight, size.height());
    }
    return y + rowHeight - area.top();
}

}  // namespace basalt::host
