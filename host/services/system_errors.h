// Why the operating system refused, in the user's words: one table for files, one for programs that do not start.
//
//   "پروندهٔ «" + readFromLeft(path) + "» نوشته نشد: " + fileErrorSentence(error.reason())
//
// A file's reason that has no sentence of its own is told in the system's words, isolated from left to right.
#pragma once

#include <string>
#include <string_view>
#include <system_error>

namespace basalt::host {

// Why a file was not written.
[[nodiscard]] std::string fileErrorSentence(const std::error_code& reason);
// Why a program was not started, from what the system said of it, which may begin with the program's path
// (StartResult::reason). Empty where that has no sentence of its own.
[[nodiscard]] std::string programErrorSentence(std::string_view systemWords);

}  // namespace basalt::host
