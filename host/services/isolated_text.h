// Foreign words in a Persian sentence.
//
//   "پروندهٔ «" + readFromLeft("/home/a/b.csv") + "» نوشته نشد."
#pragma once

#include <string>
#include <string_view>

namespace basalt::host {

// A path or words of the system, isolated: their slashes and points stay where they are, and the
// marks of the sentence around them too.
[[nodiscard]] inline std::string readFromLeft(std::string_view words) {
    return "\u2066" + std::string(words) + "\u2069";
}

// A name, of a file for instance, that may be of either script and reads as its first letter does.
[[nodiscard]] inline std::string isolated(std::string_view name) {
    return "\u2068" + std::string(name) + "\u2069";
}

}  // namespace basalt::host
