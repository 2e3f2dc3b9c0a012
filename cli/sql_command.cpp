// basalt sql "SELECT ..." | basalt sql: statements straight to the database, with their results as tables, CSV or JSON.
#include <filesystem>
#include <fstream>
#include <iostream>
#include <memory>
#include <sstream>

#include "ado/error.h"
#include "cli/commands.h"
#include "cli/result_writer.h"
#include "cli/sql_console.h"
#include "cli/sql_prompt.h"
#include "cli/terminal.h"
#include "cli/workspace.h"
#include "cli/wrong_usage.h"
#include "host/services/path_text.h"
#include "host/services/script_batches.h"
#include "host/services/script_lines.h"

namespace basalt::cli {

namespace {

struct SqlOptions {
    std::string statement;
    std::string file;
    bool csv = false;
    bool json = false;
};

ResultFormat formatOf(const SqlOptions& options) {
    return options.csv ? ResultFormat::Csv : options.json ? ResultFormat::Json : ResultFormat::Table;
}

// The message of a batch that is not the first of its script tells where the batch begins.
void runBatch(SqlConsole& console, const host::BatchSplitter::Batch& batch, const std::string& name) {
    try {
        console.run(batch.text);
    } catch (const std::exception& error) {
        if (name.empty() && batch.firstLine == 1) throw;
        throw std::runtime_error((name.empty() ? "" : name + ": ") + "in the batch that begins at line " +
                                 std::to_string(batch.firstLine) + ": " + error.what());
    }
}

// The console's own commands stand between the batches; one that leaves ends the script. Each batch is run as soon
// as its end has been read, so that a program can be on the other side of a pipe.
void runScript(SqlConsole& console, std::istream& script, const std::string& name) {
    host::BatchSplitter splitter;
    const auto run = [&](const std::optional<host::BatchSplitter::Batch>& batch) {
        for (std::size_t i = 0; batch && i < batch->times; ++i)
            runBatch(console, *batch, name);
    };
    host::ScriptLines lines(script);
    for (std::string line; lines.next(line);) {
        if (splitter.atBegin() && SqlConsole::isCommand(line)) {
            if (SqlConsole::leaves(line)) return;
            console.run(line);
            splitter.skipLine();
            continue;
        }
        run(splitter.add(line));
    }
    run(splitter.finish());
}

std::ifstream openScript(const std::string& file) {
    std::ifstream stream(host::pathFromText(file), std::ios::binary);
    if (!stream) throw WrongUsage("the file " + file + " cannot be read");
    return stream;
}

int run(const CommonOptions& common, const SqlOptions& options) {
    ResultWriter writer(std::cout, std::cerr, formatOf(options), outputColumns());
    std::ifstream file;
    if (!options.file.empty()) file = openScript(options.file);
    Database database(common, DatabaseNeed::Any);
    // This is the tool to look after a database with, so it is not refused.
    if (const std::string warning = database.newerWarning(); !warning.empty())
        std::cerr << "basalt: warning: " << warning << std::endl;
    SqlConsole console(database, writer, std::cout);
    if (!options.file.empty()) {
        runScript(console, file, options.file);
    } else if (!options.statement.empty()) {
        std::istringstream statement(options.statement);
        runScript(console, statement, {});
    } else if (inputIsTerminal()) {
        promptForStatements(database.session(), console);
        return 0;
    } else {
        runScript(console, std::cin, {});
    }
    if (database.session().inTransaction()) {
        database.session().rollback();
        throw UsageError("the statements have left a transaction open; it has been rolled back");
    }
    database.finish();
    return 0;
}

}  // namespace

void addSqlCommand(Program& program) {
    const auto options = std::make_shared<SqlOptions>();
    CLI::App& command = program.command(program.app, "sql", "runs T-SQL and shows the results",
                                        [&common = program.options, options] { return run(common, *options); });
    CLI::Option* statement = command.add_option("STATEMENT", options->statement,
                                                "the statements; read from the standard input when left out");
    command.add_option("-f,--file", options->file, "read the statements from a file")
        ->type_name("FILE")
        ->excludes(statement);
    CLI::Option* csv = command.add_flag("--csv", options->csv, "results as CSV");
    command.add_flag("--json", options->json, "results as JSON, one result set a line")->excludes(csv);
}

}  // namespace basalt::cli
