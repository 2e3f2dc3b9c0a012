// What a user does when the notice of a long request appears.
//
//   WhenBusy busy([](QWidget& notice) { notice.findChild<QPushButton*>("BusyCancel_BTN")->click(); });
//
// A test that is about something else must never see one, however slow the machine: the work that is queued for the
// loop of a window that opens would be done in the notice's turn, before the window is there. Fixtures say neverBusy,
// and a test that wants the notice sets the patience that it needs.
#pragma once

#include <QApplication>
#include <QEvent>
#include <QWidget>
#include <functional>
#include <limits>

#include "host/screens/screen_services_impl.h"

namespace basalt::host {

inline void neverBusy(HostScreenServices& screens) {
    screens.busyNotice().setPatience(std::numeric_limits<int>::max());
}

// The work that hears of a notice while the request goes on: an event, since timers do not run then.
class WhenBusy final : public QObject {
public:
    explicit WhenBusy(std::function<void(QWidget&)> work) : work_(std::move(work)) { qApp->installEventFilter(this); }
    int times = 0;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override {
        auto* window = qobject_cast<QWidget*>(watched);
        if (event->type() == QEvent::Paint && window && window->objectName() == QStringLiteral("Busy_FRM")) {
            ++times;
            QMetaObject::invokeMethod(
                window, [this, window] { work_(*window); }, Qt::QueuedConnection);
        }
        return false;
    }

private:
    std::function<void(QWidget&)> work_;
};

}  // namespace basalt::host
