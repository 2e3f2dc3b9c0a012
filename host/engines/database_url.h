// How people name a database: "embedded:PATH", "embedded::memory:" or "odbc:CONNECTION STRING".
//
//   DatabaseUrl url = DatabaseUrl::parse("embedded:/var/lib/basalt/shop.db");
#pragma once

#include <string>
#include <string_view>

namespace basalt::host {

enum class EngineKind { Embedded, Odbc };

struct DatabaseUrl {
    EngineKind engine = EngineKind::Embedded;
    std::string target;  // what follows the first colon

    // UsageError that lists the forms when the text has none of them.
    [[nodiscard]] static DatabaseUrl parse(std::string_view text);
    // The file of this user, in the folder for the user's data.
    [[nodiscard]] static DatabaseUrl defaultDatabase();

    [[nodiscard]] bool inMemory() const { return engine == EngineKind::Embedded && target == ":memory:"; }
    // For people: without anything of a connection string but its server and database, because the rest may be secret.
    [[nodiscard]] std::string display() const;
    // For programs beside this one: the ODBC connection string, or "embedded:PATH". It may hold a password.
    [[nodiscard]] std::string connectionString() const {
        return engine == EngineKind::Odbc ? target : "embedded:" + target;
    }
};

}  // namespace basalt::host
