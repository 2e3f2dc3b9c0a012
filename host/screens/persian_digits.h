// How numbers become text on the screen, and how such text becomes data again. Everything that shows a number comes
// through here; what leaves the screen (clipboard, exports, statements) does not.
//
//   screenNumber("-12500.5")        "-۱۲۵۰۰٫۵"
//   screenNumber("12,500.5")        "۱۲٬۵۰۰٫۵"
//   screenText("سطر 12 از A4")      "سطر ۱۲ از A4"
//   plainNumber("۱۲٬۵۰۰٫۵")         "12,500.5"
//   latinDigits("۱۲٣")              "123"
#pragma once

#include <QString>
#include <string_view>

namespace basalt::host {

// Whether numbers are shown in Persian digits with Persian marks; true until the user wishes otherwise. Spin boxes that
// are made from now on follow it too. What stands on the screen already stays as it is.
void showPersianDigits(bool on);
[[nodiscard]] bool showsPersianDigits();

// A number in plain or grouped form: its digits, the decimal point and the marks between thousands.
[[nodiscard]] QString screenNumber(std::string_view number);
// The same for sentences and cells that go from right to left: isolated, so that a sign stays on the left of its
// number.
[[nodiscard]] QString isolatedNumber(std::string_view number);
// A text with numbers in it: digits become Persian but in words with Latin letters, which are names, codes and keys.
// All other characters stay.
[[nodiscard]] QString screenText(QString text);
// ASCII digits become Persian ones; all other characters stay.
[[nodiscard]] QString persianDigits(QString text);
// Persian and Arabic digits become ASCII ones; all other characters stay.
[[nodiscard]] QString latinDigits(QString text);
// The same, Persian marks of decimals and thousands become a point and a comma, and marks of direction go.
[[nodiscard]] QString plainNumber(QString text);

}  // namespace basalt::host
