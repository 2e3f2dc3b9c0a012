// Paths of the operating system from UTF-8, and back.
#pragma once

#include <filesystem>
#include <string>

namespace basalt::host {

[[nodiscard]] inline std::filesystem::path pathFromText(const std::string& text) {
    return {std::u8string(text.begin(), text.end())};
}

[[nodiscard]] inline std::string textFromPath(const std::filesystem::path& path) {
    const std::u8string text = path.u8string();
    return {text.begin(), text.end()};
}

}  // namespace basalt::host
