// The seam between the data sets and a database engine: a handful of operations, in SQL Server's terms.
//
// An engine implements Session; RecordingSession and ReplaySession wrap or stand in for one. Everything above this
// header is the same on every engine.
//
//   BatchResult r = session.run("select Code, Name from CostLevel");
//   const RowSet& rows = *r.results.at(0).rows;
//
// Failures are DatabaseError. A statement that fails changes nothing itself; earlier statements of the batch and the
// transaction stay as they are, unless the error's category is Connection, Corrupt or DiskFull, or a value could not be
// converted (245, 8114 and their like): then the transaction has been rolled back and inTransaction() answers false.
// What the other statements of the batch brought comes with the error (DatabaseError::results).
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "ado/error.h"
#include "ado/rowset.h"
#include "ado/value.h"

namespace basalt {

struct StatementResult {
    std::optional<RowSet> rows;      // a result set, or
    std::int64_t affectedRows = -1;  // the rows changed; -1 when the statement counts none
};

struct BatchResult {
    std::vector<StatementResult> results;  // in the order of the statements
    std::vector<std::string> messages;     // PRINT and informational messages
    // For each message how many results came before it, as far as the engine knows; the rest came before all.
    std::vector<std::size_t> messagePlaces;

    // A message that comes now, behind the results so far.
    void say(std::string message) {
        messagePlaces.resize(messages.size());
        messagePlaces.push_back(results.size());
        messages.push_back(std::move(message));
    }
    [[nodiscard]] std::size_t placeOf(std::size_t message) const {
        return message < messagePlaces.size() ? messagePlaces[message] : 0;
    }
};

// The error of a batch together with what its statements brought.
[[nodiscard]] inline DatabaseError withResults(DatabaseError error, BatchResult batch) {
    if (!batch.results.empty() || !batch.messages.empty())
        error.setResults(std::make_shared<const BatchResult>(std::move(batch)));
    return error;
}

// The rows changed by the last statement of the batch that counts them; -1 when none does.
[[nodiscard]] inline std::int64_t affectedRows(const BatchResult& batch) {
    for (auto result = batch.results.rbegin(); result != batch.results.rend(); ++result) {
        if (!result->rows && result->affectedRows >= 0) return result->affectedRows;
    }
    return -1;
}

enum class ParameterDirection : std::uint8_t { Input, InputOutput, ReturnValue };

struct ParameterInfo {
    std::string name;  // with the leading @
    ParameterDirection direction = ParameterDirection::Input;
    ColumnInfo type;
    bool hasDefault = false;
};

struct ProcedureInfo {
    std::string name;
    std::vector<ParameterInfo> parameters;  // in the procedure's order; @RETURN_VALUE is not among them
};

struct Argument {
    std::string name;  // with the leading @
    Value value;
    bool output = false;
};

struct CallResult {
    BatchResult batch;
    std::int64_t returnValue = 0;
    std::vector<Argument> outputs;  // the arguments asked for as output, with their final values
};

struct TableInfo {
    std::string name;                 // as created
    std::vector<ColumnInfo> columns;  // in table order; baseTable and baseColumn filled
    std::vector<std::string> key;     // primary key columns in key order; empty when there is none
};

class Session {
public:
    Session() = default;
    Session(const Session&) = delete;
    Session& operator=(const Session&) = delete;
    virtual ~Session() = default;

    // Runs one batch of T-SQL as it stands and returns every result.
    virtual BatchResult run(std::string_view sql) = 0;
    // The same with values for the `?` markers, in their order. For the statements that data sets write themselves.
    virtual BatchResult run(std::string_view sql, std::span<const Value> parameters) = 0;

    // DatabaseError (NotFound, 2812) when there is no such procedure.
    virtual ProcedureInfo procedure(std::string_view name) = 0;
    // Arguments that are left out take the procedure's defaults.
    virtual CallResult call(std::string_view name, std::span<const Argument> arguments) = 0;

    // Transactions of the connection; they do not nest here (UsageError from TADOConnection, not from the engine).
    virtual void begin() = 0;
    virtual void commit() = 0;
    virtual void rollback() = 0;
    [[nodiscard]] virtual bool inTransaction() const = 0;

    // Columns and key of a table; DatabaseError (NotFound, 208) when there is no such table.
    virtual TableInfo table(std::string_view name) = 0;

    // How many seconds each request from now on may take before it is given up (Busy, HYT00), 0 for as long as it
    // takes; without a number, as at first, the session's own limit. Engines whose requests have no limit ignore it.
    virtual void limitTime(std::optional<int> seconds) { static_cast<void>(seconds); }

    // For the status line: "embedded" or "odbc", and where the data lives, without any password.
    [[nodiscard]] virtual std::string engine() const = 0;
    [[nodiscard]] virtual std::string location() const = 0;
};

}  // namespace basalt
