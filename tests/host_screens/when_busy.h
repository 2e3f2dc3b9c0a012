// What a user does when the notice of a long request appears.
//
//   WhenBusy busy([](QWidget& notice) { notice.findChild<QPushButton*>("BusyCancel_BTN")->click(); });
#pragma once

#include <QApplication>
#include <QEvent>
#include <QWidget>
#include <functional>

namespace basalt::host {

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
