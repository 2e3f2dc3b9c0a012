#include "host/screens/wheel_guard.h"

#include <QAbstractSpinBox>
#include <QComboBox>
#include <QEvent>
#include <utility>

namespace basalt::host {
namespace {

bool isTurnable(QObject* object) {
    return qobject_cast<QComboBox*>(object) || qobject_cast<QAbstractSpinBox*>(object);
}

class WheelGuard final : public QObject {
public:
    using QObject::QObject;

    bool eventFilter(QObject* watched, QEvent* event) override {
        if (event->type() != QEvent::Wheel && event->type() != QEvent::Polish) return false;
        if (!isTurnable(watched)) return false;
        if (event->type() == QEvent::Polish) {
            // A wheel that gave the focus would have it by now.
            auto& input = *static_cast<QWidget*>(watched);
            if (input.focusPolicy() == Qt::WheelFocus) input.setFocusPolicy(Qt::StrongFocus);
            return false;
        }
        event->ignore();
        return true;
    }
};

}  // namespace

void guardInputsFromWheel(QApplication& application) {
    static bool guarding = false;
    if (std::exchange(guarding, true)) return;
    application.installEventFilter(new WheelGuard(&application));
}

}  // namespace basalt::host
