#include "engines/embedded/executor/row_source.h"

#include <algorithm>
#include <array>

#include "engines/embedded/executor/packed_values.h"
#include "engines/embedded/runtime/row_table.h"
#include "engines/embedded/runtime/value_codec.h"

namespace basalt::embedded {

namespace {

// Texts that keep statements; more than a program has in use at a time.
constexpr std::size_t kKeptTexts = 64;

struct Module {
    SqliteDatabase* database;
    RowSourceOpener open;
    bool packed;
};

struct SourceTable : RowTable {
    Module* owner;

    explicit SourceTable(void* module) : owner(static_cast<Module*>(module)) {}
    static constexpr bool kInnocuous = false;
    static std::string declaration();
    static int bestIndex(sqlite3_index_info* info);
    void failed(const DatabaseError& error) const { owner->database->setFunctionError(error); }
};

std::string SourceTable::declaration() {
    std::string result = "CREATE TABLE x(";
    for (std::size_t i = 1; i <= kMostRowColumns; ++i)
        result += "c" + std::to_string(i) + ", ";
    result += "kind HIDDEN, source HIDDEN";
    for (std::size_t i = 1; i <= kMostPlainArguments; ++i)
        result += ", a" + std::to_string(i) + " HIDDEN";
    return result + ")";
}

// All hidden columns have to be known, in their order. SQLite would compare those beyond the sixteenth once more with
// what the row says of them, and find no NULL equal to itself.
int SourceTable::bestIndex(sqlite3_index_info* info) {
    std::array<int, kMostPlainArguments + 2> places{};
    places.fill(-1);
    for (int i = 0; i < info->nConstraint; ++i) {
        const auto& constraint = info->aConstraint[i];
        const int hidden = constraint.iColumn - static_cast<int>(kMostRowColumns);
        if (hidden < 0 || constraint.op != SQLITE_INDEX_CONSTRAINT_EQ) continue;
        if (constraint.usable == 0) return SQLITE_CONSTRAINT;
        places[static_cast<std::size_t>(hidden)] = i;
    }
    int argument = 0;
    for (const int place : places) {
        if (place < 0) break;
        info->aConstraintUsage[place].argvIndex = ++argument;
        info->aConstraintUsage[place].omit = 1;
    }
    info->estimatedCost = 1000;
    info->estimatedRows = 100;
    return SQLITE_OK;
}

struct SourceCursor : RowCursor {
    std::unique_ptr<RowSource> rows;
    bool ended = true;

    void start(SourceTable& table, std::span<sqlite3_value* const> arguments) {
        const auto textOf = [&](std::size_t i) {
            const auto* text = reinterpret_cast<const char*>(sqlite3_value_text(arguments[i]));
            return std::string_view(text == nullptr ? "" : text,
                                    static_cast<std::size_t>(sqlite3_value_bytes(arguments[i])));
        };
        if (arguments.size() < 2) throw std::logic_error("t_rows takes a kind and a source.");
        rows.reset();
        if (table.owner->packed) {
            const std::vector<HeldValue> values = unpacked(*table.owner->database, arguments.subspan(2));
            std::vector<sqlite3_value*> plain;
            for (const HeldValue& value : values)
                plain.push_back(value.get());
            rows = table.owner->open(textOf(0), textOf(1), plain);
        } else {
            rows = table.owner->open(textOf(0), textOf(1), arguments.subspan(2));
        }
        advance();
    }
    void advance() { ended = !rows->next(); }
    [[nodiscard]] bool atEnd() const { return ended; }
    void column(int index, sqlite3_context* context) const {
        if (index < static_cast<int>(kMostRowColumns)) rows->column(index, context);
    }
};

}  // namespace

void StoredRows::column(int index, sqlite3_context* context) {
    const std::vector<Value>& row = rows_[current_ - 1];
    if (static_cast<std::size_t>(index) < row.size()) returnValue(context, row[static_cast<std::size_t>(index)]);
}

SqliteStatement StatementPool::take(const std::string& sql) {
    const auto found = waiting_.find(sql);
    if (found == waiting_.end() || found->second.empty()) return database_.prepare(sql);
    SqliteStatement statement = std::move(found->second.back());
    found->second.pop_back();
    return statement;
}

void StatementPool::giveBack(const std::string& sql, SqliteStatement statement) {
    statement.reset();
    if (waiting_.size() >= kKeptTexts && !waiting_.contains(sql)) waiting_.clear();
    waiting_[sql].push_back(std::move(statement));
}

QueryRows::QueryRows(StatementPool& pool, std::string sql, std::span<sqlite3_value* const> parameters)
    : pool_(pool), sql_(std::move(sql)), statement_(pool.take(sql_)) {
    for (std::size_t i = 0; i < parameters.size(); ++i)
        sqlite3_bind_value(statement_.handle(), static_cast<int>(i + 1), parameters[i]);
}

QueryRows::~QueryRows() {
    pool_.giveBack(sql_, std::move(statement_));
}

void QueryRows::column(int index, sqlite3_context* context) {
    if (index < sqlite3_column_count(statement_.handle()))
        sqlite3_result_value(context, sqlite3_column_value(statement_.handle(), index));
}

void addRowSources(SqliteDatabase& database, const RowSourceOpener& open) {
    const auto add = [&](const char* name, bool packed) {
        auto owned = std::make_unique<Module>(Module{&database, open, packed});
        addRowTable<SourceTable, SourceCursor>(database, name, owned.release(),
                                               [](void* pointer) { delete static_cast<Module*>(pointer); });
    };
    add("t_rows", false);
    add("t_many_rows", true);
    addPackedValues(database);
}

}  // namespace basalt::embedded
