// basalt sql "SELECT ..." | basalt sql: statements straight to the database, with their results as tables, CSV or JSON.
#include <iostream>
#include <iterator>
#include <memory>
#include <optional>

#include "ado/names.h"
#include "cli/commands.h"
#include "cli/line_editor.h"
#include "cli/result_writer.h"
#include "cli/terminal.h"
#include "cli/workspace.h"
#include "cli/wrong_usage.h"
#include "host/services/deploy.h"

namespace basalt::cli {

namespace {

struct SqlOptions {
    std::string statement;
    bool csv = false;
    bool json = false;
};

ResultFormat formatOf(const SqlOptions& options) {
    if (options.csv && options.json) throw WrongUsage("--csv and --json exclude each other");
    return options.csv ? ResultFormat::Csv : options.json ? ResultFormat::Json : ResultFormat::Table;
}

void runScript(Session& session, const std::string& script, ResultWriter& writer) {
    for (const std::string& batch : host::splitBatches(script))
        writer.write(session.run(batch));
}

bool endsStatement(const std::string& line) {
    const std::size_t last = line.find_last_not_of(" \t");
    return last != std::string::npos && line[last] == ';';
}

bool isWord(const std::string& line, const char* word) {
    const std::size_t first = line.find_first_not_of(" \t");
    if (first == std::string::npos) return false;
    const std::size_t last = line.find_last_not_of(" \t;");
    if (last == std::string::npos) return false;
    return sameName(std::string_view(line).substr(first, last - first + 1), word);
}

int prompt(Session& session, ResultWriter& writer) {
    LineEditor editor("sql_history");
    std::cout << "Connected to " << session.engine() << ":" << session.location()
              << "\nA statement ends with ; at the end of a line or with a line GO. exit leaves.\n";
    std::string statement;
    while (const std::optional<std::string> line = editor.readLine(statement.empty() ? "basalt> " : "     -> ")) {
        if (statement.empty() && (isWord(*line, "exit") || isWord(*line, "quit"))) break;
        const bool go = isWord(*line, "go");
        if (!go) statement += *line + "\n";
        if ((!go && !endsStatement(*line)) || statement.find_first_not_of(" \t\n;") == std::string::npos) {
            if (go || statement.find_first_not_of(" \t\n") == std::string::npos) statement.clear();
            continue;
        }
        statement.pop_back();
        editor.remember(statement);
        try {
            writer.write(session.run(statement));
        } catch (const std::exception& error) {
            std::cerr << error.what() << '\n';
        }
        statement.clear();
    }
    if (session.inTransaction()) {
        session.rollback();
        std::cerr << "The open transaction has been rolled back.\n";
    }
    return 0;
}

int run(const CommonOptions& common, const SqlOptions& options) {
    ResultWriter writer(std::cout, formatOf(options), outputIsTerminal());
    Database database(common, DatabaseNeed::Any);
    if (options.statement.empty() && inputIsTerminal()) return prompt(database.session(), writer);
    std::string script = options.statement;
    if (script.empty()) script.assign(std::istreambuf_iterator<char>(std::cin), {});
    runScript(database.session(), script, writer);
    database.finish();
    return 0;
}

}  // namespace

void addSqlCommand(Program& program) {
    const auto options = std::make_shared<SqlOptions>();
    CLI::App& command = program.command(program.app, "sql", "runs T-SQL and shows the results",
                                        [&common = program.options, options] { return run(common, *options); });
    command.add_option("STATEMENT", options->statement, "the statements; read from the standard input when left out");
    command.add_flag("--csv", options->csv, "results as CSV");
    command.add_flag("--json", options->json, "results as JSON, one result set a line");
}

}  // namespace basalt::cli
