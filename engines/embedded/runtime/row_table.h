// A table of SQLite's that is there by itself, in every database, and whose rows are worked out while they are read:
// what a function with rows is to SQLite.
//
//   struct Numbers : RowTable {                  made for each use in a statement
//       explicit Numbers(void* owner);
//       static constexpr bool kInnocuous = false;   whether triggers and views of any file may read it
//       static std::string declaration();        "CREATE TABLE x(value, upTo HIDDEN)"
//       static int bestIndex(sqlite3_index_info* info);
//       void failed(const DatabaseError& error);
//   };
//   struct NumbersCursor : RowCursor {           made for each run through its rows; may be started again
//       void start(Numbers& table, std::span<sqlite3_value* const> arguments);     stands on the first row then
//       void advance();
//       [[nodiscard]] bool atEnd() const;
//       void column(int index, sqlite3_context* context);
//   };
//   addRowTable<Numbers, NumbersCursor>(database, "numbers", owner, nullptr);
//
// What the cursor throws ends the statement; a DatabaseError is handed to failed() before.
#pragma once

#include <sqlite3.h>

#include <memory>
#include <new>
#include <span>

#include "ado/error.h"
#include "engines/embedded/runtime/sqlite.h"

namespace basalt::embedded {

// The bases of table and cursor.
struct RowTable : sqlite3_vtab {
    RowTable() : sqlite3_vtab{} {}
};

struct RowCursor : sqlite3_vtab_cursor {
    RowCursor() : sqlite3_vtab_cursor{} {}
    sqlite3_int64 row = 0;
};

template <typename Table, typename Cursor>
class RowTableModule {
public:
    [[nodiscard]] static const sqlite3_module& module() {
        static const sqlite3_module made = [] {
            sqlite3_module m{};
            m.xConnect = connect;  // no xCreate: the table is there by itself and nowhere else
            m.xDisconnect = disconnect;
            m.xBestIndex = [](sqlite3_vtab*, sqlite3_index_info* info) { return Table::bestIndex(info); };
            m.xOpen = open;
            m.xClose = close;
            m.xFilter = filter;
            m.xNext = next;
            m.xEof = [](sqlite3_vtab_cursor* cursor) { return of(cursor).atEnd() ? 1 : 0; };
            m.xColumn = column;
            m.xRowid = rowNumber;
            return m;
        }();
        return made;
    }

private:
    static Cursor& of(sqlite3_vtab_cursor* cursor) { return *static_cast<Cursor*>(cursor); }
    static Table& tableOf(sqlite3_vtab_cursor* cursor) { return *static_cast<Table*>(cursor->pVtab); }

    // Runs `body` and passes what it throws through SQLite.
    template <typename Body>
    static int guarded(sqlite3_vtab_cursor* cursor, Body body) noexcept {
        try {
            body();
            return SQLITE_OK;
        } catch (const DatabaseError& error) {
            tableOf(cursor).failed(error);
            return SQLITE_ERROR;
        } catch (const std::bad_alloc&) {
            return SQLITE_NOMEM;
        } catch (const std::exception&) {
            return SQLITE_ERROR;
        }
    }

    static int connect(sqlite3* database, void* owner, int, const char* const*, sqlite3_vtab** table, char**) {
        const int code = sqlite3_declare_vtab(database, Table::declaration().c_str());
        if (code != SQLITE_OK) return code;
        if (Table::kInnocuous) sqlite3_vtab_config(database, SQLITE_VTAB_INNOCUOUS);
        *table = new Table(owner);
        return SQLITE_OK;
    }
    static int disconnect(sqlite3_vtab* table) {
        delete static_cast<Table*>(table);
        return SQLITE_OK;
    }
    static int open(sqlite3_vtab*, sqlite3_vtab_cursor** cursor) {
        *cursor = new Cursor();
        return SQLITE_OK;
    }
    static int close(sqlite3_vtab_cursor* cursor) {
        delete static_cast<Cursor*>(cursor);
        return SQLITE_OK;
    }
    static int filter(sqlite3_vtab_cursor* cursor, int, const char*, int count, sqlite3_value** values) {
        return guarded(cursor, [&] {
            of(cursor).row = 0;
            of(cursor).start(tableOf(cursor), {values, static_cast<std::size_t>(count)});
        });
    }
    static int next(sqlite3_vtab_cursor* cursor) {
        return guarded(cursor, [&] {
            of(cursor).advance();
            ++of(cursor).row;
        });
    }
    static int column(sqlite3_vtab_cursor* cursor, sqlite3_context* context, int index) {
        return guarded(cursor, [&] { of(cursor).column(index, context); });
    }
    static int rowNumber(sqlite3_vtab_cursor* cursor, sqlite3_int64* number) {
        *number = of(cursor).row;
        return SQLITE_OK;
    }
};

// Makes the table known to the database; `drop` is called for the owner when the database closes.
template <typename Table, typename Cursor>
void addRowTable(SqliteDatabase& database, const char* name, void* owner, void (*drop)(void*)) {
    const int code =
        sqlite3_create_module_v2(database.handle(), name, &RowTableModule<Table, Cursor>::module(), owner, drop);
    if (code != SQLITE_OK) throw database.failure(code);
}

}  // namespace basalt::embedded
