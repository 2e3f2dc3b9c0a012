// The hands of a user: real mouse and key events on real controls.
//
// Each function first looks whether a user could do it (StepFailure when the control is hidden, disabled or of another
// kind, nothing has happened then) and returns what does it.
#pragma once

#include <Qt>
#include <functional>
#include <string>

namespace basalt::host {

using UserAction = std::function<void()>;

[[nodiscard]] UserAction click(const std::string& object);
// On a grid its current row.
[[nodiscard]] UserAction doubleClick(const std::string& object);
// A key with its modifiers; on the screen itself it goes to the control that has the focus.
[[nodiscard]] UserAction pressKey(const std::string& object, QKeyCombination key);
// Key by key at the cursor of the control, which gets the focus first.
[[nodiscard]] UserAction typeText(const std::string& object, const std::string& text);
[[nodiscard]] UserAction clearText(const std::string& object);
// Clicks a row of a grid; rows, tabs and items count from 0.
[[nodiscard]] UserAction clickRow(const std::string& grid, int row);
[[nodiscard]] UserAction clickTab(const std::string& object, int tab);
[[nodiscard]] UserAction chooseItem(const std::string& combo, int item);

}  // namespace basalt::host
