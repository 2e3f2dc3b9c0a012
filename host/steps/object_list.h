// The names that steps may use on a screen.
#pragma once

#include <QWidget>
#include <string>
#include <vector>

namespace basalt::host {

// The name that steps may use for the control: its own, or that of what it is a nameless part of.
[[nodiscard]] std::string nameFor(const QWidget& object);

// The names on the screen, those that can be seen first, each once.
[[nodiscard]] std::vector<std::string> objectNames(const QWidget& screen);

// For people: the screen's name, then an object a line with its state and what it shows. While a menu is open, its
// items come first.
[[nodiscard]] std::string objectList(const QWidget& screen);

}  // namespace basalt::host
