#include "host/screens/elided_label.h"

#include <QPainter>
#include <QStyle>
#include <algorithm>

namespace basalt::host {

namespace {

constexpr int kLeastCharacters = 8;

}  // namespace

QSize ElidedLabel::minimumSizeHint() const {
    const QSize whole = QLabel::minimumSizeHint();
    return {std::min(whole.width(), fontMetrics().averageCharWidth() * kLeastCharacters), whole.height()};
}

void ElidedLabel::paintEvent(QPaintEvent* event) {
    const QRect room = contentsRect();
    const QString shown = fontMetrics().elidedText(text(), mode_, room.width());
    if (shown == text()) {
        QLabel::paintEvent(event);
        return;
    }
    QPainter painter(this);
    const auto aligned = static_cast<int>(QStyle::visualAlignment(layoutDirection(), alignment()));
    style()->drawItemText(&painter, room, aligned, palette(), isEnabled(), shown, foregroundRole());
}

}  // namespace basalt::host
