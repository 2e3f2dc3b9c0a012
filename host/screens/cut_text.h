// Texts that have no room end in an ellipsis; resting the mouse on one shows the whole of it.
#pragma once

#include <QApplication>

namespace basalt::host {

// Shows the whole text of labels, combo boxes, buttons, titles and cells that are cut, unless they have a tip of their
// own. Calling it again does nothing.
void showCutTexts(QApplication& application);

// The whole text of what is at that point of a widget, when it is cut there; empty otherwise.
[[nodiscard]] QString cutTextAt(QWidget& widget, const QPoint& position);

}  // namespace basalt::host
