// Why a control cannot be used, in its tool tip.
//
//   enableUnless(*save, unsaved ? QString() : QStringLiteral("چیزی تغییر نکرده است."));
#pragma once

#include <QString>
#include <QWidget>

namespace basalt::host {

// Without a reason the control is enabled and has the tool tip again that it had before; with one it is disabled and
// tells it. Assistive tools read it as the control's description.
void enableUnless(QWidget& control, const QString& reason);

// Reasons that several screens have.
[[nodiscard]] QString notPermittedReason();   // the user has no right to it
[[nodiscard]] QString nothingChosenReason();  // no row is chosen
[[nodiscard]] QString emptyListReason();      // there is no row to choose
[[nodiscard]] QString unreadListReason();     // there may be rows to choose, but they have not been read
[[nodiscard]] QString nothingChangedReason();
[[nodiscard]] QString noColumnReason();  // no column is left to be seen

}  // namespace basalt::host
