#include "engines/embedded/executor/constraint_error.h"

#include <algorithm>
#include <optional>

#include "ado/names.h"
#include "engines/embedded/catalog/null_guard.h"
#include "engines/embedded/catalog/object_name.h"
#include "engines/embedded/runtime/sql_error.h"

namespace basalt::embedded {

namespace {

std::string verbOf(PlanKind kind) {
    switch (kind) {
        case PlanKind::Insert:
            return "INSERT";
        case PlanKind::Update:
            return "UPDATE";
        case PlanKind::Delete:
            return "DELETE";
        case PlanKind::Select:
            return "SELECT";
    }
    return {};
}

// Behind "... constraint failed: " in SQLite's message.
std::string detailOf(const std::string& message) {
    const std::size_t at = message.find(": ");
    return at == std::string::npos ? std::string() : message.substr(at + 2);
}

// The column names in "T.a, T.b".
std::vector<std::string> columnsOf(const std::string& detail, const std::string& table) {
    std::vector<std::string> columns;
    const std::string prefix = table + ".";
    for (std::size_t at = 0; at < detail.size();) {
        std::size_t end = detail.find(", " + prefix, at);
        if (end == std::string::npos) end = detail.size();
        std::string part = detail.substr(at, end - at);
        if (part.starts_with(prefix)) part.erase(0, prefix.size());
        columns.push_back(std::move(part));
        at = end + 2;
    }
    return columns;
}

// What SQLite puts between single quotes.
std::string unquoted(std::string_view text) {
    std::string result;
    for (std::size_t i = 1; i + 1 < text.size(); ++i) {
        result += text[i];
        if (text[i] == '\'' && text[i + 1] == '\'') ++i;
    }
    return result;
}

// SQLite names an index over expressions, and of any other the columns.
std::optional<std::string> indexIn(const std::string& detail) {
    constexpr std::string_view named = "index ";
    if (!detail.starts_with(named)) return std::nullopt;
    return unquoted(detail.substr(named.size()));
}

const Index* duplicatedIn(const Table& table, const std::string& detail) {
    const auto last = [&](const auto& fits) {
        const auto found = std::ranges::find_if(table.uniques.rbegin(), table.uniques.rend(), fits);
        return found == table.uniques.rend() ? nullptr : &*found;
    };
    if (const std::optional<std::string> guard = indexIn(detail); guard && isNullGuard(*guard)) {
        const std::string name = guardedIndex(table.name, *guard);
        return last([&](const Index& index) { return sameName(index.name, name); });
    }
    const std::vector<std::string> columns = columnsOf(detail, table.name);
    const auto isOver = [&](const Index& index) { return std::ranges::equal(index.columns, columns, sameName); };
    // What two filtered by different conditions would both refuse cannot be told apart.
    if (const Index* found = last([&](const Index& index) { return !index.filtered && isOver(index); })) return found;
    if (const Index* found = last(isOver)) return found;
    // In files of former versions a guard holds those columns only that are not NULL.
    return last([&](const Index& index) {
        return !index.primary && std::ranges::all_of(columns, [&](const std::string& column) {
            return std::ranges::any_of(index.columns, [&](const std::string& each) { return sameName(each, column); });
        });
    });
}

// The table that the duplicate is in, by SQLite's detail: "T.Code, T.Name", or "index 'name'".
std::string tableIn(const std::string& detail, SqliteDatabase& database, Catalog& catalog, const std::string& changed) {
    if (detail.starts_with(changed + ".")) return changed;
    if (const std::optional<std::string> index = indexIn(detail)) {
        SqliteStatement find = database.prepare(
            "SELECT tbl_name FROM temp.sqlite_schema WHERE type = 'index' AND name = ?1 UNION ALL "
            "SELECT tbl_name FROM main.sqlite_schema WHERE type = 'index' AND name = ?1");
        find.bind(1, std::string_view(*index));
        return find.step() ? find.textAt(0) : changed;
    }
    for (std::size_t dot = detail.find('.'); dot != std::string::npos; dot = detail.find('.', dot + 1)) {
        if (const Table* table = catalog.table(detail.substr(0, dot))) return table->name;
    }
    return changed;
}

DatabaseError duplicate(const Table* table, const std::string& tableName, const std::string& detail) {
    const Index* found = table == nullptr ? nullptr : duplicatedIn(*table, detail);
    const std::string object = "object 'dbo." + std::string(shownTable(tableName)) + "'";
    if (found != nullptr && !found->constraint) {
        return sqlError(error::kDuplicateInIndex,
                        "Cannot insert duplicate key row in " + object + " with unique index '" + found->name + "'.");
    }
    const bool primary = found == nullptr || found->primary;
    return sqlError(error::kDuplicateKey, std::string("Violation of ") + (primary ? "PRIMARY" : "UNIQUE") +
                                              " KEY constraint '" +
                                              (found == nullptr ? "PK_" + tableName : found->name) +
                                              "'. Cannot insert duplicate key in " + object + ".");
}

DatabaseError foreignKey(Catalog& catalog, const Table* table, const Plan& plan) {
    // SQLite does not tell which reference failed. A change of the referencing table names its only reference; a change
    // of the referenced one names the only table that refers to it.
    const std::string verb = verbOf(plan.kind);
    struct Found {
        std::string constraint, table, column;
        bool own = false;
    };
    std::vector<Found> found;
    if (plan.kind != PlanKind::Delete && table != nullptr) {
        for (const ForeignKey& key : table->foreignKeys)
            found.push_back({key.name, key.referencedTable, key.referenced.front(), true});
    }
    if (plan.kind != PlanKind::Insert) {
        for (const std::string& name : catalog.tableNames()) {
            const Table* other = catalog.table(name);
            if (other == nullptr) continue;
            for (const ForeignKey& key : other->foreignKeys) {
                if (sameName(key.referencedTable, plan.table))
                    found.push_back({key.name, name, key.columns.front(), false});
            }
        }
    }
    const bool own = !found.empty() && std::all_of(found.begin(), found.end(), [](const Found& f) { return f.own; });
    std::string message = "The " + verb + " statement conflicted with " +
                          (own                             ? "the FOREIGN KEY"
                           : plan.kind == PlanKind::Insert ? "the FOREIGN KEY"
                                                           : "the REFERENCE") +
                          " constraint";
    if (found.size() == 1) {
        message += " \"" + found[0].constraint + "\". The conflict occurred in database \"basalt\", table \"dbo." +
                   found[0].table + "\", column '" + found[0].column + "'.";
    } else {
        message += " of table \"dbo." + plan.table +
                   "\": other rows refer to the row, or it refers to a row that is not there.";
    }
    return sqlError(error::kConstraintConflict, message);
}

}  // namespace

bool sameTable(std::string_view a, std::string_view b) {
    return sameName(a, b);
}

void throwDuplicatesUnder(std::string_view table, std::string_view index) {
    throwSqlError(1505,
                  "The CREATE UNIQUE INDEX statement terminated because a duplicate key was found for the object name "
                  "'dbo." +
                      std::string(table) + "' and the index name '" + std::string(index) + "'.");
}

DatabaseError constraintError(SqliteDatabase& database, Catalog& catalog, const Plan& plan, int code) {
    const std::string message = sqlite3_errmsg(database.handle());
    const std::string detail = detailOf(message);
    switch (code) {
        case SQLITE_CONSTRAINT_NOTNULL: {
            const std::string column = columnsOf(detail, plan.table).front();
            return sqlError(error::kNullIntoColumn, "Cannot insert the value NULL into column '" + column +
                                                        "', table '" + shownPlace(plan.table) +
                                                        "'; column does not allow nulls. " + verbOf(plan.kind) +
                                                        " fails.");
        }
        case SQLITE_CONSTRAINT_PRIMARYKEY:
        case SQLITE_CONSTRAINT_UNIQUE:
        case SQLITE_CONSTRAINT_ROWID: {
            // A reference may have carried the change on to another table.
            const std::string changed = tableIn(detail, database, catalog, plan.table);
            return duplicate(catalog.table(changed), changed, detail);
        }
        case SQLITE_CONSTRAINT_FOREIGNKEY:
            return foreignKey(catalog, catalog.table(plan.table), plan);
        case SQLITE_CONSTRAINT_CHECK:
            return sqlError(error::kConstraintConflict,
                            "The " + verbOf(plan.kind) + " statement conflicted with the CHECK constraint \"" + detail +
                                "\". The conflict occurred in database \"" +
                                (isTemporaryName(plan.table) ? "tempdb" : "basalt") + "\", table \"dbo." +
                                std::string(shownTable(plan.table)) + "\".");
        default:
            return sqlError(error::kConstraintConflict, message);
    }
}

}  // namespace basalt::embedded
