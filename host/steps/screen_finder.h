// Finds the screen on top and the objects on it.
#pragma once

#include <QMenu>
#include <QWidget>
#include <string>

namespace basalt::host {

// The modal screen on top, else the active window, else the last visible one; null when nothing is shown. Balloons,
// pop-up lists and notes that go away by themselves do not count.
[[nodiscard]] QWidget* topScreen();
// StepFailure when no screen is open.
[[nodiscard]] QWidget& requireTopScreen();

// The object of that name on the screen on top; "-" and the screen's own name are the screen. Of several the visible
// one. Null when there is none; StepFailure without a screen.
[[nodiscard]] QWidget* findObject(const std::string& name);
// The same; StepFailure when there is none, with the names that there are.
[[nodiscard]] QWidget& requireObject(const std::string& name);

// What has the focus on that screen, or would have it were the screen the active window; null for nothing. Where no
// window manager is at work, a menu that closes leaves no window active.
[[nodiscard]] QWidget* focusOn(const QWidget& screen);

// The menu that is open on top of everything; null when there is none.
[[nodiscard]] QMenu* openMenu();
// The visible item of that name; null when the menu has none.
[[nodiscard]] QAction* menuItem(const QMenu& menu, const std::string& name);
// The same; StepFailure when the menu has none, with the items that it has.
[[nodiscard]] QAction& requireItem(const QMenu& menu, const std::string& name);

}  // namespace basalt::host
