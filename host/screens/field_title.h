// Under which words the user knows an input or a field of the data.
#pragma once

#include <QString>
#include <QWidget>
#include <string>

namespace basalt::host {

// The words beside an input: of the label whose buddy it is, else its accessible name; without the colon at their end.
[[nodiscard]] QString labelOf(const QWidget& input, const QWidget& form);

// The input for a field, found by its name ("Name_EDT" for the field Name); null when the window has none.
[[nodiscard]] QWidget* inputOf(const QWidget& window, const std::string& field);

// The title of a field in a window: that of its input, else of its column in a grid, else the field's own name.
[[nodiscard]] std::string fieldTitle(const QWidget* window, const std::string& field);

}  // namespace basalt::host
