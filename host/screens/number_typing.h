// Numbers look alike whether they are stored or just being typed: in inputs for numbers, a digit of any keyboard
// appears as the digits that the user has chosen, and a point or slash as the decimal mark.
//
//   QLineEdit price;
//   price.setInputMethodHints(Qt::ImhFormattedNumbersOnly);
//
// Inputs for numbers are spin boxes, and line edits whose input method hints ask for digits or numbers.
#pragma once

#include <QApplication>

namespace basalt::host {

// For all inputs of the application. Calling it again does nothing.
void watchNumberTyping(QApplication& application);

// The text of a key as it appears in an input for numbers.
[[nodiscard]] QString typedNumber(QString text, bool decimals);

}  // namespace basalt::host
