#include "host/engines/tellable_words.h"

#include <string_view>

#include "engines/odbc/connection_string.h"

namespace basalt::host {

namespace {

void replaceAll(std::string& text, std::string_view from, std::string_view to) {
    for (std::size_t at = text.find(from); at != std::string::npos; at = text.find(from, at + to.size()))
        text.replace(at, from.size(), to);
}

}  // namespace

std::string withoutConnectionStrings(std::string text, std::span<const std::string> words) {
    constexpr std::string_view kPrefix = "odbc:";
    for (const std::string& word : words) {
        const std::size_t prefix = word.find(kPrefix);
        const std::string given = prefix == std::string::npos ? word : word.substr(prefix + kPrefix.size());
        const odbc::ConnectionString connection(given);
        // Elsewhere, as in a statement that says odbc:, it is one when it holds a password.
        const bool named = prefix != std::string::npos && (prefix == 0 || word[prefix - 1] == '=');
        if (given.empty() || (!named && connection.masked() == given)) continue;
        replaceAll(text, given, connection.publicParts());
    }
    return text;
}

}  // namespace basalt::host
