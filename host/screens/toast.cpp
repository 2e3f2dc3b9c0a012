#include "host/screens/toast.h"

#include <QAbstractButton>
#include <QEvent>
#include <QHBoxLayout>
#include <algorithm>

#include "host/screens/persian_digits.h"

namespace basalt::host {
namespace {
constexpr int kShortest = 2500;
constexpr int kPerCharacter = 60;
constexpr int kMargin = 24;
constexpr int kAboveFooter = 64;
constexpr int kAboveButton = 8;

// Moved up until it covers no button; where there is no such place it stays.
QRect clearOfButtons(const QWidget& window, const QRect& wanted) {
    QRect place = wanted;
    for (bool moved = true; moved && place.top() >= 0;) {
        moved = false;
        for (const QAbstractButton* button : window.findChildren<QAbstractButton*>()) {
            const QRect covered(button->mapTo(&window, QPoint(0, 0)), button->size());
            if (!button->isVisibleTo(&window) || !covered.intersects(place)) continue;
            place.moveBottom(covered.top() - kAboveButton);
            moved = true;
        }
    }
    return place.top() >= 0 ? place : wanted;
}
}  // namespace

Toast::Toast(QWidget* window) : QFrame(window), label_(new QLabel(this)) {
    setObjectName(QStringLiteral("Toast"));
    setProperty("kind", QStringLiteral("toast"));
    setAttribute(Qt::WA_TransparentForMouseEvents);
    setFocusPolicy(Qt::NoFocus);
    label_->setObjectName(QStringLiteral("ToastText_LBL"));
    label_->setTextFormat(Qt::PlainText);
    label_->setWordWrap(true);
    label_->setAlignment(Qt::AlignCenter);
    auto* layout = new QHBoxLayout(this);
    layout->setContentsMargins(16, 10, 16, 10);
    layout->addWidget(label_);
    timer_.setSingleShot(true);
    QObject::connect(&timer_, &QTimer::timeout, this, &QObject::deleteLater);
    window->installEventFilter(this);
}

void Toast::show(QWidget* window, const QString& text, int milliseconds) {
    if (!window) return;
    auto* toast = static_cast<Toast*>(window->findChild<QFrame*>(QStringLiteral("Toast"), Qt::FindDirectChildrenOnly));
    if (!toast) toast = new Toast(window);
    toast->label_->setText(screenText(text));
    toast->setAccessibleName(text);
    toast->place();
    toast->QFrame::show();
    toast->raise();
    toast->timer_.start(milliseconds > 0 ? milliseconds
                                         : std::max(kShortest, kPerCharacter * static_cast<int>(text.size())));
}

void Toast::place() {
    const QWidget* window = parentWidget();
    const int widest = std::max(120, window->width() - 2 * kMargin);
    const int wanted = label_->fontMetrics().horizontalAdvance(label_->text()) + 48;
    const int width = std::min(wanted, widest);
    const int height = layout()->hasHeightForWidth() ? layout()->heightForWidth(width) : sizeHint().height();
    const QRect place((window->width() - width) / 2, window->height() - height - kAboveFooter, width, height);
    setGeometry(clearOfButtons(*window, place));
}

bool Toast::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::Resize) place();
    return QFrame::eventFilter(watched, event);
}

}  // namespace basalt::host
