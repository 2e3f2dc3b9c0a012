// The entries of a text file, which stand between lines of ----.
#pragma once

#include <fstream>
#include <sstream>
#include <stdexcept>
#include <string>
#include <vector>

namespace basalt::embedded {

inline std::vector<std::string> readCorpus(const std::string& file) {
    std::ifstream in(std::string(BASALT_SOURCE_DIR) + "/tests/embedded_front/" + file, std::ios::binary);
    if (!in) throw std::runtime_error("cannot read " + file);
    std::ostringstream all;
    all << in.rdbuf();
    const std::string text = all.str();
    const std::string separator = "\n----\n";
    std::vector<std::string> entries;
    std::size_t at = 0;
    while (at < text.size()) {
        const std::size_t end = std::min(text.find(separator, at), text.size());
        entries.push_back(text.substr(at, end - at));
        at = end + separator.size();
    }
    return entries;
}

}  // namespace basalt::embedded
