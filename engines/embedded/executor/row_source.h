// Rows that statements read from what is no table: t_rows(kind, text, arguments...) AS s, a table of SQLite's whose
// columns are c1, c2, ... The generator writes it for functions that return tables, for APPLY and for system views.
//
//   t_rows('function', 'Split', 'a,b')          the rows of the user's function
//   t_rows('apply', 'SELECT ?1 + 1 AS c1', 5)   the rows of a query with these parameters
//   t_rows('system', 'sys.objects')             the rows of a system view
//
// SQLite gives a table of its own up to kMostPlainArguments arguments as they are, NULLs too. More than those come as
// t_many_rows(kind, text, t_packed(arguments...), t_packed(arguments...), ...), with kPackedTogether in each but the
// last.
#pragma once

#include <sqlite3.h>

#include <functional>
#include <map>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "ado/value.h"
#include "engines/embedded/runtime/sqlite.h"

namespace basalt::embedded {

// A source with more columns cannot be read so.
inline constexpr std::size_t kMostRowColumns = 128;
inline constexpr std::size_t kMostPlainArguments = 14;
inline constexpr std::size_t kPackedTogether = 100;
inline constexpr std::size_t kMostRowArguments = kMostPlainArguments * kPackedTogether;

class RowSource {
public:
    virtual ~RowSource() = default;
    // Moves to the first row, then to the next; false behind the last.
    [[nodiscard]] virtual bool next() = 0;
    // Columns count from 0.
    virtual void column(int index, sqlite3_context* context) = 0;
};

// Rows at hand.
class StoredRows final : public RowSource {
public:
    explicit StoredRows(std::vector<std::vector<Value>> rows) : rows_(std::move(rows)) {}
    [[nodiscard]] bool next() override { return ++current_ <= rows_.size(); }
    void column(int index, sqlite3_context* context) override;

private:
    std::vector<std::vector<Value>> rows_;
    std::size_t current_ = 0;  // counts from 1
};

// Prepared statements that wait for their next use, by text.
class StatementPool {
public:
    explicit StatementPool(SqliteDatabase& database) : database_(database) {}
    [[nodiscard]] SqliteStatement take(const std::string& sql);
    void giveBack(const std::string& sql, SqliteStatement statement);

private:
    SqliteDatabase& database_;
    std::map<std::string, std::vector<SqliteStatement>, std::less<>> waiting_;
};

// The rows of a query with its parameters.
class QueryRows final : public RowSource {
public:
    QueryRows(StatementPool& pool, std::string sql, std::span<sqlite3_value* const> parameters);
    QueryRows(const QueryRows&) = delete;
    QueryRows& operator=(const QueryRows&) = delete;
    ~QueryRows() override;
    [[nodiscard]] bool next() override { return statement_.step(); }
    void column(int index, sqlite3_context* context) override;

private:
    StatementPool& pool_;
    std::string sql_;
    SqliteStatement statement_;
};

using RowSourceOpener = std::function<std::unique_ptr<RowSource>(std::string_view kind, std::string_view text,
                                                                 std::span<sqlite3_value* const> arguments)>;

// Makes t_rows and t_many_rows known to the database; `open` lives as long as it. Errors of `open` and of the sources
// are DatabaseError.
void addRowSources(SqliteDatabase& database, const RowSourceOpener& open);

}  // namespace basalt::embedded
