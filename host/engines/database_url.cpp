#include "host/engines/database_url.h"

#include "ado/error.h"
#include "ado/names.h"
#include "host/services/platform/user_folders.h"

namespace basalt::host {

namespace {

constexpr std::string_view embeddedPrefix = "embedded:";
constexpr std::string_view odbcPrefix = "odbc:";

// "Server=...;Database=..." out of a connection string; values in braces may hold semicolons.
std::string publicParts(std::string_view connection) {
    std::string result;
    while (!connection.empty()) {
        const std::size_t equals = connection.find('=');
        if (equals == std::string_view::npos) break;
        std::string_view key = connection.substr(0, equals);
        while (!key.empty() && key.front() == ' ')
            key.remove_prefix(1);
        std::size_t end = equals + 1;
        if (end < connection.size() && connection[end] == '{') {
            while (end < connection.size()) {
                if (connection[end] == '}') {
                    ++end;
                    if (end >= connection.size() || connection[end] != '}') break;
                }
                ++end;
            }
        }
        end = connection.find(';', end);
        const std::string_view value =
            connection.substr(equals + 1, end == std::string_view::npos ? end : end - equals - 1);
        if (sameName(key, "server") || sameName(key, "servername") || sameName(key, "dsn") ||
            sameName(key, "database")) {
            if (!result.empty()) result += ';';
            result.append(key).append("=").append(value);
        }
        if (end == std::string_view::npos) break;
        connection.remove_prefix(end + 1);
    }
    return result;
}

}  // namespace

DatabaseUrl DatabaseUrl::parse(std::string_view text) {
    if (text.substr(0, embeddedPrefix.size()) == embeddedPrefix && text.size() > embeddedPrefix.size()) {
        return {EngineKind::Embedded, std::string(text.substr(embeddedPrefix.size()))};
    }
    if (text.substr(0, odbcPrefix.size()) == odbcPrefix && text.size() > odbcPrefix.size()) {
        return {EngineKind::Odbc, std::string(text.substr(odbcPrefix.size()))};
    }
    // The text itself may hold a password and stays out of the message.
    throw UsageError("a database is given as embedded:PATH, embedded::memory: or odbc:CONNECTION STRING");
}

DatabaseUrl DatabaseUrl::defaultDatabase() {
    const std::u8string path = (userDataFolder() / "basalt.db").u8string();
    return {EngineKind::Embedded, std::string(path.begin(), path.end())};
}

std::string DatabaseUrl::display() const {
    if (engine == EngineKind::Embedded) return std::string(embeddedPrefix) + target;
    return std::string(odbcPrefix) + publicParts(target);
}

}  // namespace basalt::host
