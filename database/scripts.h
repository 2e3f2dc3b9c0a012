// The SQL files of this folder, as data of the program.
//
//   for (const SqlScript& script : scripts()) run(script.text);
#pragma once

#include <span>
#include <string_view>

namespace basalt::database {

struct SqlScript {
    std::string_view name;  // "schema/010_users.sql"
    std::string_view text;  // batches separated by lines that say GO
    bool demo = false;      // demo data, which a deployment may leave out
};

// In the order in which they are to run.
[[nodiscard]] std::span<const SqlScript> scripts();

}  // namespace basalt::database
