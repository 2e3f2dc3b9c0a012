// Texts made to fit a column.
#pragma once

#include <string>

namespace basalt::host {

// The longest beginning of whole characters that has at most `length` UTF-16 units, as SQL Server counts.
[[nodiscard]] std::string cutText(const std::string& text, std::size_t length);

}  // namespace basalt::host
