// Answers on a command line: --answer takes one word, and the answers behind that word too.
#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace basalt::cli {

// The words of a command line with an --answer before each answer that stands behind another one, so that "--answer yes
// no" reads as "--answer yes --answer no". A word is an answer as long as it is yes, no, cancel or ok; a number is one
// only where an argument of the call stands before it, and is an argument itself elsewhere. What stands behind "--"
// stays as it is.
//
//   withSingleAnswers({"call", "F", "4", "--answer", "yes", "6"}, takesValue)
//       call F 4 --answer yes --answer 6
//
// `takesValue` tells whether the word behind an option is its value.
[[nodiscard]] std::vector<std::string> withSingleAnswers(const std::vector<std::string>& words,
                                                         const std::function<bool(const std::string&)>& takesValue);

}  // namespace basalt::cli
