#include "host/screens/elided_label.h"

#include <QHelpEvent>
#include <QPainter>
#include <QStyle>
#include <QToolTip>
#include <algorithm>

#include "package/screens/tool_tip.h"

namespace basalt::host {

namespace {

constexpr int kLeastCharacters = 8;

}  // namespace

QSize ElidedLabel::minimumSizeHint() const {
    const QSize whole = QLabel::minimumSizeHint();
    return {std::min(whole.width(), fontMetrics().averageCharWidth() * kLeastCharacters), whole.height()};
}

QString ElidedLabel::shownText() const {
    return fontMetrics().elidedText(text(), mode_, contentsRect().width());
}

bool ElidedLabel::event(QEvent* event) {
    if (event->type() != QEvent::ToolTip || !toolTip().isEmpty()) return QLabel::event(event);
    if (shownText() == text()) {
        QToolTip::hideText();
    } else {
        QToolTip::showText(static_cast<QHelpEvent*>(event)->globalPos(), plainToolTip(text()), this);
    }
    return true;
}

void ElidedLabel::paintEvent(QPaintEvent* event) {
    const QRect room = contentsRect();
    const QString shown = shownText();
    if (shown == text()) {
        QLabel::paintEvent(event);
        return;
    }
    QPainter painter(this);
    const auto aligned = static_cast<int>(QStyle::visualAlignment(layoutDirection(), alignment()));
    style()->drawItemText(&painter, room, aligned, palette(), isEnabled(), shown, foregroundRole());
}

}  // namespace basalt::host
