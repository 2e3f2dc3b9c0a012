// Numbers look alike whether they are stored or just being typed: in inputs for numbers, a digit of any keyboard
// appears as the digits that the user has chosen, and a point or slash as the decimal mark. A key that an input does
// not take, or a paste of which it does not take all, is told in a tip.
//
//   QLineEdit price;
//   price.setInputMethodHints(Qt::ImhFormattedNumbersOnly);
//
//   plainAmount("۱۲٬۵۰۰/۵")         "12500.5"
//   plainAmount("1,5")              nothing: one and a half to some, fifteen to others
//   groupedAmount("12500.50")       "12,500.5"
//
// Inputs for numbers are spin boxes, and line edits whose input method hints ask for digits or numbers.
#pragma once

#include <QApplication>
#include <optional>

namespace basalt::host {

// For all inputs of the application. Calling it again does nothing.
void watchNumberTyping(QApplication& application);

// The text of a key as it appears in an input for numbers.
[[nodiscard]] QString typedNumber(QString text, bool decimals);

// The number that a typed text means: a minus sign if any, ASCII digits, and a point before decimals, with a digit on
// both of its sides (".5" and "2." mean "0.5" and "2"). Digits may be of any keyboard and the decimal mark a point, a
// slash or "٫". Thousands may be marked, all of them by the same one of ",", "٬" and "،"; a mark that is not followed
// by groups of three digits makes no number, and neither does anything else.
[[nodiscard]] std::optional<QString> plainAmount(const QString& text);
// Such a number with a comma between its thousands, as those of a list have it; zeros that say nothing go.
[[nodiscard]] QString groupedAmount(const QString& plain);

}  // namespace basalt::host
