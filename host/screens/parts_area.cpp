#include "host/screens/parts_area.h"

#include <QEvent>
#include <QScrollBar>

namespace basalt::host {

PartsArea::PartsArea(QWidget* parent) : QScrollArea(parent) {
    setWidgetResizable(true);
    setFrameShape(QFrame::NoFrame);
    setFocusPolicy(Qt::NoFocus);
    auto* content = new QWidget;
    whole_ = new QVBoxLayout(content);
    whole_->setContentsMargins(0, 0, 0, 0);
    parts_ = new QBoxLayout(QBoxLayout::LeftToRight);
    whole_->addLayout(parts_, 1);
    setWidget(content);
}

void PartsArea::addHead(QWidget* head) {
    whole_->insertWidget(whole_->count() - 1, head);
}

void PartsArea::addPart(QWidget* part, int stretch) {
    parts_->addWidget(part, stretch);
}

// By the room that is left beside a scroll bar, which comes when the parts are too high.
void PartsArea::arrange() {
    int needed = parts_->spacing() * (parts_->count() - 1);
    for (int i = 0; i < parts_->count(); ++i)
        needed += parts_->itemAt(i)->minimumSize().width();
    const int room = maximumViewportSize().width() - verticalScrollBar()->sizeHint().width();
    parts_->setDirection(needed <= room ? QBoxLayout::LeftToRight : QBoxLayout::TopToBottom);
}

bool PartsArea::eventFilter(QObject* watched, QEvent* event) {
    // A part may have come to need more.
    if (watched == widget() && event->type() == QEvent::LayoutRequest) arrange();
    return QScrollArea::eventFilter(watched, event);
}

void PartsArea::resizeEvent(QResizeEvent* event) {
    arrange();
    QScrollArea::resizeEvent(event);
}

}  // namespace basalt::host
