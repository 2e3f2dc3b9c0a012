#include "host/screens/disabled_reason.h"

#include <QVariant>

#include "package/screens/tool_tip.h"

namespace basalt::host {
namespace {

// What the control said of itself before it was disabled.
constexpr const char* kOwnToolTip = "ownToolTip";
constexpr const char* kOwnDescription = "ownDescription";

}  // namespace

void enableUnless(QWidget& control, const QString& reason) {
    const bool told = control.property(kOwnToolTip).isValid();
    if (!reason.isEmpty()) {
        if (!told) {
            control.setProperty(kOwnToolTip, control.toolTip());
            control.setProperty(kOwnDescription, control.accessibleDescription());
        }
        control.setToolTip(plainToolTip(reason));
        control.setAccessibleDescription(reason);
    } else if (told) {
        control.setToolTip(control.property(kOwnToolTip).toString());
        control.setAccessibleDescription(control.property(kOwnDescription).toString());
        control.setProperty(kOwnToolTip, {});
        control.setProperty(kOwnDescription, {});
    }
    control.setEnabled(reason.isEmpty());
}

QString notPermittedReason() {
    return QStringLiteral("اجازهٔ این کار را ندارید. برای گرفتن آن به مدیر سیستم مراجعه کنید.");
}

QString nothingChosenReason() {
    return QStringLiteral("نخست سطری را در فهرست برگزینید.");
}

QString emptyListReason() {
    return QStringLiteral("فهرست خالی است.");
}

QString unreadListReason() {
    return QStringLiteral("سطرهای فهرست هنوز خوانده نشده‌اند.");
}

QString nothingChangedReason() {
    return QStringLiteral("چیزی تغییر نکرده است.");
}

QString noColumnReason() {
    return QStringLiteral("دست‌کم یک ستون باید دیده شود.");
}

}  // namespace basalt::host
