// Prefixes of layouts as the server compares them: the case of letters, the script of digits, signs without width and
// blanks at the end make no difference to it.
//
//   isSameToTheServer("۲۸", "28")   true
//   asTheServerSees("２۸ ")          "28"
#pragma once

#include <QString>

namespace basalt::host {

// Whether a comparison in a statement finds them equal.
[[nodiscard]] bool isSameToTheServer(const QString& a, const QString& b);

// The text in small letters and Latin digits, without signs that have no width and blanks behind it, as far as the
// server takes that for the same. It is to be looked at by the character, and not for telling whether two texts are the
// same: equal ones are, but some that the server takes for the same, as letters of rare scripts, come out different.
// isSameToTheServer tells.
[[nodiscard]] QString asTheServerSees(const QString& text);

}  // namespace basalt::host
