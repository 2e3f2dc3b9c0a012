// The statement that finds goods by what was typed: a code, a name or a barcode.
//
//   rowsOf(session, goodSearch(QStringLiteral("57"), 200));    // Code, Name
//
// The good that was meant comes first: the one with exactly this code, then those with exactly this barcode or name,
// then those whose code, name or one of whose barcodes begins with it, then those whose name or barcodes contain it;
// those of one kind by code. Blanks around the text do not count, and digits of all kinds are the same. An empty text
// finds all goods.
#pragma once

#include <QString>
#include <string>

namespace basalt::host {

// Of no more than `most` goods.
[[nodiscard]] std::string goodSearch(const QString& input, int most);

}  // namespace basalt::host
