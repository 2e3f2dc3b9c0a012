// Texts as the cells of a workbook hold them: characters that XML does not allow are written as _xHHHH_, which
// spreadsheets read as the character, and a piece of a text that only looks so is told from it.
//
//   workbookText("الف\0ب")        "الف_x0000_ب"
//   workbookText("_x0041_")       "_x005F_x0041_"
#pragma once

#include <string>
#include <string_view>

namespace basalt::host {

// UTF-8 of at most 32,767 characters (UTF-16 units, as spreadsheets count): what is longer is cut, never inside of a
// character. Bytes that are not UTF-8 become U+FFFD.
[[nodiscard]] std::string workbookText(std::string_view text);

}  // namespace basalt::host
