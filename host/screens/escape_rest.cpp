#include "host/screens/escape_rest.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QPointer>
#include <utility>

namespace basalt::host {
namespace {
constexpr qint64 kRestMilliseconds = 400;
}

EscapeRest& EscapeRest::ofApplication() {
    static QPointer<EscapeRest> rest;
    if (!rest) rest = new EscapeRest(QCoreApplication::instance());
    return *rest;
}

void EscapeRest::setClock(Clock clock) {
    end();
    if (!clock) {
        QElapsedTimer timer;
        timer.start();
        clock = [timer] { return timer.elapsed(); };
    }
    clock_ = std::move(clock);
}

void EscapeRest::begin(quint64 stamp) {
    began_ = {stamp, clock_()};
    resting_ = true;
    // Once, however often it begins.
    QCoreApplication::instance()->installEventFilter(this);
}

void EscapeRest::end() {
    resting_ = false;
    QCoreApplication::instance()->removeEventFilter(this);
}

bool EscapeRest::isOn() const {
    return resting_ && between(began_, {0, clock_()}) <= kRestMilliseconds;
}

// A key that is kept down repeats itself for as long as it likes.
bool EscapeRest::belongsToTheLast(const QKeyEvent& escape) const {
    return escape.isAutoRepeat() || between(began_, {escape.timestamp(), clock_()}) <= kRestMilliseconds;
}

bool EscapeRest::eventFilter(QObject* /*watched*/, QEvent* event) {
    if (event->type() != QEvent::KeyPress && event->type() != QEvent::ShortcutOverride) return false;
    const auto& key = static_cast<const QKeyEvent&>(*event);
    if (key.key() != Qt::Key_Escape) return false;
    if (!belongsToTheLast(key)) {
        end();
        return false;
    }
    // A short cut does not act then either: the key itself comes next.
    event->accept();
    return true;
}

}  // namespace basalt::host
