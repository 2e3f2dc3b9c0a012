// What basalt sql does with a batch: runs it and shows its results, or follows one of the console's own commands.
//
//   SqlConsole console(database, writer, std::cout);
//   console.run("select Name from CostLevel");
//   console.run(".schema CostLevel");
//
// A batch that begins with a point is a command; T-SQL has no such statement.
#pragma once

#include <optional>
#include <ostream>
#include <string>
#include <string_view>

#include "cli/result_writer.h"
#include "cli/workspace.h"

namespace basalt::cli {

class SqlConsole {
public:
    SqlConsole(Database& database, ResultWriter& writer, std::ostream& out)
        : database_(database), writer_(writer), out_(out) {}

    // DatabaseError as the session throws it, with the server's number before the message; UsageError for a command
    // that is none.
    void run(const std::string& batch);
    [[nodiscard]] static bool isCommand(std::string_view line);
    // The commands that end a script and the prompt: .exit and .quit. Whoever reads the lines follows them.
    [[nodiscard]] static bool leaves(std::string_view line);
    // What statements can name now. Kept until a batch may have changed it.
    [[nodiscard]] const DatabaseSchema& schema();

private:
    void follow(std::string_view line);
    void listTables();
    void showSchema(std::string_view name);

    Database& database_;
    ResultWriter& writer_;
    std::ostream& out_;
    std::optional<DatabaseSchema> schema_;
};

}  // namespace basalt::cli
