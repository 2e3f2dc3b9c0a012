// Making and checking the reference database.
//
//   if (schemaState(session) == SchemaState::Missing) deployDatabase(session, {.demo = true});
#pragma once

#include <string>
#include <vector>

#include "ado/session.h"

namespace basalt::host {

// The version that this program makes and works with. It rises with any change to a script that databases already made
// shall get too, procedures included.
inline constexpr int kSchemaVersion = 6;

struct DeployOptions {
    bool demo = false;  // demo data too, into tables that are empty
};

enum class SchemaState {
    Missing,  // no tables of ours, or none that tells a version (missingObjects)
    Older,    // deploying brings it up to date
    Current,
};

// DatabaseError (Version) when the database was made by a newer program.
[[nodiscard]] SchemaState schemaState(Session& session);
struct MissingObjects {
    std::vector<std::string> names;  // of tables, views, functions and procedures, in the order of the scripts
    bool all = false;                // the database has none of them
};

// What deploying makes and the database does not have.
[[nodiscard]] MissingObjects missingObjects(Session& session);
// True when the database holds the demo data.
[[nodiscard]] bool holdsDemoData(Session& session);

// Runs the scripts in their order, each in a transaction of its own. Deploying again changes nothing. Errors name the
// script; scripts before it stay done. Returns the names of the scripts.
std::vector<std::string> deployDatabase(Session& session, DeployOptions options = {});

}  // namespace basalt::host
