// What a scanner typed, whatever keyboard layout was on.
//
//   repairedScan("۲۸۰۰۰۵۷")     "2800057"
//   repairedScan("شز۱۲")        "ac12"      a and c on the keys of a Persian layout
#pragma once

#include <QString>

namespace basalt::host {

// Persian and Arabic digits, and the signs that a Persian layout has above its digits, become digits; letters of the
// Persian layout the Latin letters of their keys. Direction marks and blanks around go.
[[nodiscard]] QString repairedScan(const QString& typed);

// Letters and digits alone, as a code that is safe to look up; the empty text is none.
[[nodiscard]] bool isPlainCode(const QString& text);

}  // namespace basalt::host
