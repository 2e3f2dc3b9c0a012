// Tool tips of texts that come from people: names, paths, comments.
//
//   setToolTip(plainToolTip(name));
#pragma once

#include <QString>

namespace basalt {

// Shows the text letter for letter and breaks it into lines. Given as it is, a tool tip takes what looks like markup
// for markup. Empty for the empty text, which shows no tip.
[[nodiscard]] inline QString plainToolTip(const QString& text) {
    return text.isEmpty() ? QString() : QStringLiteral("<p dir=\"auto\">%1</p>").arg(text.toHtmlEscaped());
}

}  // namespace basalt
