// What a scanner typed, whatever keyboard layout was on.
//
//   repairedScan("۲۸۰۰۰۵۷")     "2800057"
//   repairedScan("شز۱۲")        "ac12"      a and c on the keys of a Persian layout
//   repairedScan("٬*((")        "2800"      all digits with the shift key held
//   repairedScan("۲*۰۰")        "2*00"
#pragma once

#include <QString>

namespace basalt::host {

// Persian and Arabic digits become digits, letters of the Persian layout the Latin letters of their keys. A scan that
// consists of the signs above the digits of that layout, at least one of which no other layout has there, becomes
// digits; any other sign stays, since it is the barcode's own. Direction marks and blanks around go.
[[nodiscard]] QString repairedScan(const QString& typed);

// Letters and digits alone, as a code that is safe to look up; the empty text is none.
[[nodiscard]] bool isPlainCode(const QString& text);

}  // namespace basalt::host
