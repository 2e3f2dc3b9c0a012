// Digits as the user reads them and digits as data holds them.
//
//   persianDigits("12,500")   "۱۲,۵۰۰"
//   latinDigits("۱۲٣")        "123"
#pragma once

#include <QString>

namespace basalt::host {

// ASCII digits become Persian ones; all other characters stay.
[[nodiscard]] QString persianDigits(QString text);
// Persian and Arabic digits become ASCII ones; all other characters stay.
[[nodiscard]] QString latinDigits(QString text);

}  // namespace basalt::host
