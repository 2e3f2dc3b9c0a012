#include "host/screens/balloon.h"

#include <QApplication>
#include <QScreen>

#include "host/screens/inside.h"
#include "host/screens/persian_digits.h"

namespace basalt::host {
namespace {
constexpr int kUsualMilliseconds = 10000;
constexpr int kBelow = 6;  // between the control and the balloon
}  // namespace

Balloon::Balloon(QWidget& control) : QLabel(control.window(), Qt::ToolTip), control_(control) {
    setObjectName(QStringLiteral("Balloon"));
    setProperty("kind", QStringLiteral("balloon"));
    setAttribute(Qt::WA_ShowWithoutActivating);
    setAttribute(Qt::WA_DeleteOnClose);
    setTextFormat(Qt::PlainText);
    setFocusPolicy(Qt::NoFocus);
    timer_.setSingleShot(true);
    QObject::connect(&timer_, &QTimer::timeout, this, &QWidget::close);
    // With the control it goes at once: the window may live on, or have been closed.
    QObject::connect(&control, &QObject::destroyed, this, &QObject::deleteLater);
    qApp->installEventFilter(this);
}

void Balloon::show(QWidget& control, const QString& text, int milliseconds) {
    delete control.window()->findChild<QLabel*>(QStringLiteral("Balloon"), Qt::FindDirectChildrenOnly);
    auto* balloon = new Balloon(control);
    balloon->setText(screenText(text));
    balloon->setAccessibleName(text);
    balloon->pointAt(control);
    balloon->QLabel::show();
    balloon->timer_.start(milliseconds > 0 ? milliseconds : kUsualMilliseconds);
}

void Balloon::pointAt(const QWidget& control) {
    ensurePolished();
    adjustSize();
    const QPoint below = control.mapToGlobal(QPoint(control.width() / 2, control.height() + kBelow));
    const QRect place(QPoint(below.x() - width() / 2, below.y()), size());
    move(movedInside(place, control.screen()->availableGeometry()).topLeft());
}

void Balloon::mousePressEvent(QMouseEvent* /*event*/) {
    close();
}

bool Balloon::eventFilter(QObject* watched, QEvent* event) {
    // The window that has just come to the front stands above it else.
    if (event->type() == QEvent::WindowActivate) QTimer::singleShot(0, this, &QWidget::raise);
    if (event->type() == QEvent::Hide && watched == &control_) close();
    return QLabel::eventFilter(watched, event);
}

}  // namespace basalt::host
