#include "host/engines/database_url.h"

#include "ado/error.h"
#include "engines/odbc/connection_string.h"
#include "host/services/path_text.h"
#include "host/services/platform/user_folders.h"

namespace basalt::host {

namespace {

constexpr std::string_view embeddedPrefix = "embedded:";
constexpr std::string_view odbcPrefix = "odbc:";

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
    return {EngineKind::Embedded, textFromPath(userDataFolder() / "basalt.db")};
}

std::string DatabaseUrl::display() const {
    if (engine == EngineKind::Embedded) return std::string(embeddedPrefix) + target;
    return std::string(odbcPrefix) + odbc::ConnectionString(target).publicParts();
}

}  // namespace basalt::host
