// What may be told of the words that a program was started with: one of them may be a connection string with a
// password, also where none belongs.
#pragma once

#include <span>
#include <string>

namespace basalt::host {

// The text with every ODBC connection string among the words cut to what DatabaseUrl::display() tells of it.
[[nodiscard]] std::string withoutConnectionStrings(std::string text, std::span<const std::string> words);

}  // namespace basalt::host
