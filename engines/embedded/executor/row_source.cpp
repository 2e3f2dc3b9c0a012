#include "engines/embedded/executor/row_source.h"

#include <algorithm>
#include <array>

#include "engines/embedded/runtime/value_codec.h"

namespace basalt::embedded {

namespace {

// Texts that keep statements; more than a program has in use at a time.
constexpr std::size_t kKeptTexts = 64;

struct Module {
    SqliteDatabase* database;
    RowSourceOpener open;
};

struct VirtualTable : sqlite3_vtab {
    Module* module = nullptr;
};

struct Cursor : sqlite3_vtab_cursor {
    std::unique_ptr<RowSource> rows;
    bool atEnd = true;
    sqlite3_int64 number = 0;
};

Cursor& cursorOf(sqlite3_vtab_cursor* cursor) {
    return *static_cast<Cursor*>(cursor);
}

// Runs `body` and passes what it throws through SQLite.
template <typename Body>
int guarded(sqlite3_vtab* table, Body body) noexcept {
    try {
        body();
        return SQLITE_OK;
    } catch (const DatabaseError& error) {
        static_cast<VirtualTable*>(table)->module->database->setFunctionError(error);
        return SQLITE_ERROR;
    } catch (const std::bad_alloc&) {
        return SQLITE_NOMEM;
    } catch (const std::exception&) {
        return SQLITE_ERROR;
    }
}

int connect(sqlite3* database, void* module, int, const char* const*, sqlite3_vtab** table, char**) {
    std::string declaration = "CREATE TABLE x(";
    for (std::size_t i = 1; i <= kMostRowColumns; ++i)
        declaration += "c" + std::to_string(i) + ", ";
    declaration += "kind HIDDEN, source HIDDEN";
    for (std::size_t i = 1; i <= kMostRowArguments; ++i)
        declaration += ", a" + std::to_string(i) + " HIDDEN";
    const int code = sqlite3_declare_vtab(database, (declaration + ")").c_str());
    if (code != SQLITE_OK) return code;
    auto made = std::make_unique<VirtualTable>();
    made->module = static_cast<Module*>(module);
    *table = made.release();
    return SQLITE_OK;
}

int disconnect(sqlite3_vtab* table) {
    delete static_cast<VirtualTable*>(table);
    return SQLITE_OK;
}

// All hidden columns have to be known, in their order.
int bestIndex(sqlite3_vtab*, sqlite3_index_info* info) {
    std::array<int, kMostRowArguments + 2> places{};
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

int openCursor(sqlite3_vtab*, sqlite3_vtab_cursor** cursor) {
    *cursor = new Cursor();
    return SQLITE_OK;
}

int closeCursor(sqlite3_vtab_cursor* cursor) {
    delete static_cast<Cursor*>(cursor);
    return SQLITE_OK;
}

int advance(sqlite3_vtab_cursor* cursor) {
    return guarded(cursor->pVtab, [&] {
        cursorOf(cursor).atEnd = !cursorOf(cursor).rows->next();
        ++cursorOf(cursor).number;
    });
}

int filter(sqlite3_vtab_cursor* cursor, int, const char*, int count, sqlite3_value** values) {
    const int code = guarded(cursor->pVtab, [&] {
        const auto textOf = [&](int i) {
            const auto* text = reinterpret_cast<const char*>(sqlite3_value_text(values[i]));
            return std::string_view(text == nullptr ? "" : text,
                                    static_cast<std::size_t>(sqlite3_value_bytes(values[i])));
        };
        if (count < 2) throw std::logic_error("t_rows takes a kind and a source.");
        cursorOf(cursor).rows.reset();
        cursorOf(cursor).rows =
            static_cast<VirtualTable*>(cursor->pVtab)
                ->module->open(textOf(0), textOf(1), {values + 2, static_cast<std::size_t>(count - 2)});
        cursorOf(cursor).number = 0;
    });
    return code == SQLITE_OK ? advance(cursor) : code;
}

int atEnd(sqlite3_vtab_cursor* cursor) {
    return cursorOf(cursor).atEnd ? 1 : 0;
}

int column(sqlite3_vtab_cursor* cursor, sqlite3_context* context, int index) {
    return guarded(cursor->pVtab, [&] {
        if (index < static_cast<int>(kMostRowColumns)) cursorOf(cursor).rows->column(index, context);
    });
}

int rowNumber(sqlite3_vtab_cursor* cursor, sqlite3_int64* number) {
    *number = cursorOf(cursor).number;
    return SQLITE_OK;
}

const sqlite3_module& module() {
    static const sqlite3_module made = [] {
        sqlite3_module m{};
        m.xConnect = connect;  // no xCreate: the table is there by itself and nowhere else
        m.xDisconnect = disconnect;
        m.xBestIndex = bestIndex;
        m.xOpen = openCursor;
        m.xClose = closeCursor;
        m.xFilter = filter;
        m.xNext = advance;
        m.xEof = atEnd;
        m.xColumn = column;
        m.xRowid = rowNumber;
        return m;
    }();
    return made;
}

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

void addRowSources(SqliteDatabase& database, RowSourceOpener open) {
    auto owned = std::make_unique<Module>(Module{&database, std::move(open)});
    const int code = sqlite3_create_module_v2(database.handle(), "t_rows", &module(), owned.release(),
                                              [](void* pointer) { delete static_cast<Module*>(pointer); });
    if (code != SQLITE_OK) throw database.failure(code);
}

}  // namespace basalt::embedded
