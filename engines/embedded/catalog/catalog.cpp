#include "engines/embedded/catalog/catalog.h"

#include <algorithm>
#include <utility>

#include "ado/names.h"
#include "engines/embedded/catalog/null_guard.h"
#include "engines/embedded/catalog/object_name.h"
#include "engines/embedded/runtime/sql_error.h"

namespace basalt::embedded {

namespace {

std::string quotedWith(std::string_view text, char quote) {
    std::string result(1, quote);
    for (const char c : text) {
        result += c;
        if (c == quote) result += c;
    }
    result += quote;
    return result;
}

// The schema that holds the system tables for a table of that name.
std::string schemaOf(std::string_view name) {
    return isTemporaryName(name) ? "temp." : "main.";
}

bool isTextKind(std::string_view kind, std::string_view wanted) {
    return kind.empty() || sameName(kind, wanted);
}

// The first of SQLite's names for the number of a row that no column has; the last one when all of them are columns.
const char* freeRowNumber(const Table& table) {
    for (const char* name : {"rowid", "_rowid_"})
        if (table.find(name) < 0) return name;
    return "oid";
}

}  // namespace

std::string storedIndexName(std::string_view table, std::string_view index) {
    return std::string(table) + "." + std::string(index);
}

std::string shownIndexName(std::string_view table, std::string_view stored) {
    const std::string prefix = std::string(table) + ".";
    return std::string(stored.starts_with(prefix) ? stored.substr(prefix.size()) : stored);
}

std::string piecesTable(std::string_view table, std::string_view column) {
    return "basalt_pieces." + std::string(table) + "." + std::string(column);
}

std::string sqlQuoted(std::string_view name) {
    return quotedWith(name, '"');
}

std::string sqlText(std::string_view text) {
    return quotedWith(text, '\'');
}

int Table::find(std::string_view column) const {
    for (std::size_t i = 0; i < columns.size(); ++i) {
        if (sameName(columns[i].name, column)) return static_cast<int>(i);
    }
    return -1;
}

const TableColumn* Table::identityColumn() const {
    for (const TableColumn& column : columns) {
        if (column.identity) return &column;
    }
    return nullptr;
}

std::string Table::sqlName() const {
    return (temporary ? "temp." : "main.") + sqlQuoted(name);
}

void Catalog::createSystemTables(SqliteDatabase& database, bool temporary) {
    const std::string schema = temporary ? "temp." : "main.";
    // Tables compare names in C++, by the folding that all names share; these keys only keep rows apart.
    for (const std::string& columns :
         {std::string("basalt_property(name TEXT PRIMARY KEY, value TEXT) WITHOUT ROWID"),
          std::string("basalt_identity(table_name TEXT PRIMARY KEY, column_name TEXT, seed INTEGER, increment INTEGER, "
                      "last INTEGER) WITHOUT ROWID"),
          std::string("basalt_default(table_name TEXT, column_name TEXT, name TEXT, definition TEXT, kind TEXT, "
                      "PRIMARY KEY(table_name, column_name)) WITHOUT ROWID"),
          std::string("basalt_constraint(name TEXT PRIMARY KEY, table_name TEXT, kind TEXT, index_name TEXT, "
                      "definition TEXT) WITHOUT ROWID"),
          std::string("basalt_module(name TEXT PRIMARY KEY, shown_name TEXT, kind INTEGER, definition TEXT) "
                      "WITHOUT ROWID")}) {
        database.execute(std::string("CREATE TABLE IF NOT EXISTS ").append(schema).append(columns).c_str());
    }
}

bool Catalog::hasTemporarySystemTables() {
    return database_.integer("SELECT count(*) FROM temp.sqlite_schema WHERE name = 'basalt_identity'") != 0;
}

const Table* Catalog::table(std::string_view name) {
    const std::string key = foldName(name);
    if (const auto found = tables_.find(key); found != tables_.end()) return found->second.get();
    std::unique_ptr<Table> read = this->read(name);
    return tables_.emplace(key, std::move(read)).first->second.get();
}

const Table& Catalog::requireTable(std::string_view name) {
    const Table* found = table(name);
    if (found == nullptr) throwSqlError(error::kInvalidObject, "Invalid object name '" + std::string(name) + "'.");
    return *found;
}

std::vector<std::string> Catalog::tableNames() {
    SqliteStatement list = database_.prepare(
        "SELECT name FROM main.sqlite_schema WHERE type = 'table' AND name NOT LIKE 'basalt\\_%' ESCAPE '\\' AND "
        "name NOT LIKE 'sqlite\\_%' ESCAPE '\\' ORDER BY name");
    std::vector<std::string> names;
    while (list.step())
        names.push_back(list.textAt(0));
    return names;
}

std::unique_ptr<Table> Catalog::read(std::string_view name) {
    auto table = std::make_unique<Table>();
    table->temporary = isTemporaryName(name);
    const std::string schema = table->temporary ? "temp" : "main";
    const std::string folded = foldName(name);
    if (folded.starts_with("basalt_") || folded.starts_with("sqlite_")) return nullptr;
    SqliteStatement list = database_.prepare("SELECT name FROM " + schema + ".sqlite_schema WHERE type = 'table'");
    while (table->name.empty() && list.step()) {
        const std::string candidate = list.textAt(0);
        if (foldName(candidate) == folded) table->name = candidate;
    }
    if (table->name.empty()) return nullptr;
    SqliteStatement info = database_.prepare("SELECT name, type, \"notnull\", pk, hidden FROM pragma_table_xinfo(" +
                                             sqlText(table->name) + ", " + sqlText(schema) + ")");
    std::vector<std::pair<std::int64_t, std::size_t>> keyOrder;
    while (info.step()) {
        TableColumn column;
        column.name = info.textAt(0);
        const std::optional<SqlType> type = SqlType::fromDeclaration(info.textAt(1));
        column.type = type ? *type : SqlType::text(TypeKind::NVarChar, kMaxLength);
        column.nullable = info.integerAt(2) == 0;
        column.computed = info.integerAt(4) >= 2;
        if (info.integerAt(3) > 0) {
            keyOrder.emplace_back(info.integerAt(3), table->columns.size());
            column.nullable = false;
        }
        table->columns.push_back(std::move(column));
    }
    std::sort(keyOrder.begin(), keyOrder.end());
    for (const auto& [order, position] : keyOrder)
        table->key.push_back(position);
    const char* number = freeRowNumber(*table);
    // The list of tables that SQLite gives would tell this too, but reads all tables and views for it.
    if (sqlite3_table_column_metadata(database_.handle(), schema.c_str(), table->name.c_str(), number, nullptr, nullptr,
                                      nullptr, nullptr, nullptr) == SQLITE_OK)
        table->rowNumber = number;
    if (!table->temporary || hasTemporarySystemTables()) readDetails(*table);
    return table;
}

void Catalog::readDetails(Table& table) {
    const std::string schema = schemaOf(table.name);
    const std::string key = sqlText(foldName(table.name));
    SqliteStatement identity =
        database_.prepare("SELECT column_name FROM " + schema + "basalt_identity WHERE table_name = " + key);
    if (identity.step()) {
        if (const int position = table.find(identity.textAt(0)); position >= 0) {
            table.columns[static_cast<std::size_t>(position)].identity = true;
        }
    }
    SqliteStatement defaults = database_.prepare("SELECT column_name, definition FROM " + schema +
                                                 "basalt_default WHERE kind = 'D' AND table_name = " + key);
    while (defaults.step()) {
        if (const int position = table.find(defaults.textAt(0)); position >= 0) {
            table.columns[static_cast<std::size_t>(position)].defaultText = defaults.textAt(1);
        }
    }
    SqliteStatement pieces = database_.prepare("SELECT 1 FROM main.sqlite_schema WHERE type = 'table' AND name = ?1");
    for (std::size_t i = 0; i < table.columns.size() && !table.temporary; ++i) {
        if (!table.columns[i].type.isText()) continue;
        pieces.bind(1, std::string_view(piecesTable(table.name, table.columns[i].name)));
        if (pieces.step()) table.searched.push_back(i);
        pieces.reset();
    }
    const std::string schemaText = sqlText(schema.substr(0, schema.size() - 1));
    const std::string arguments = "(" + sqlText(table.name) + ", " + schemaText + ")";
    SqliteStatement indexes =
        database_.prepare("SELECT name, origin, partial FROM pragma_index_list" + arguments + " WHERE \"unique\"");
    while (indexes.step()) {
        Index index;
        const std::string internalName = indexes.textAt(0);
        if (isNullGuard(internalName)) continue;
        index.name = indexes.textAt(1) == "c" ? shownIndexName(table.name, internalName) : internalName;
        index.primary = indexes.textAt(1) == "pk";
        index.constraint = indexes.textAt(1) != "c";
        index.filtered = indexes.integerAt(2) != 0;
        SqliteStatement columns =
            database_.prepare("SELECT name, \"desc\" FROM pragma_index_xinfo(" + sqlText(internalName) + ", " +
                              schemaText + ") WHERE key ORDER BY seqno");
        while (columns.step()) {
            index.columns.push_back(columns.textAt(0));
            index.descending.push_back(columns.integerAt(1) != 0);
        }
        table.uniques.push_back(std::move(index));
    }
    SqliteStatement leading = database_.prepare("SELECT DISTINCT c.name FROM pragma_index_list" + arguments +
                                                " AS i, pragma_index_info(i.name, " + schemaText +
                                                ") AS c WHERE c.seqno = 0 AND NOT i.partial");
    while (leading.step()) {
        if (const int position = table.find(leading.textAt(0)); position >= 0)
            table.sought.push_back(static_cast<std::size_t>(position));
    }
    // SQLite numbers the indexes of constraints; their T-SQL names are kept aside, told apart by their columns.
    SqliteStatement names =
        database_.prepare("SELECT name, kind, definition FROM " + schema +
                          "basalt_constraint WHERE table_name = " + key + " AND kind IN ('PK', 'UQ', 'C')");
    while (names.step()) {
        const std::string kind = names.textAt(1);
        const std::string columns = names.textAt(2);
        if (kind == "C") {
            table.checks.push_back(columns);
            continue;
        }
        for (Index& index : table.uniques) {
            std::string joined;
            for (const std::string& column : index.columns)
                joined += (joined.empty() ? "" : ",") + foldName(column);
            if (joined == columns && index.constraint && index.primary == (kind == "PK")) index.name = names.textAt(0);
        }
    }
    SqliteStatement foreign = database_.prepare("SELECT id, \"table\", \"from\", \"to\" FROM pragma_foreign_key_list" +
                                                arguments + " ORDER BY id, seq");
    std::int64_t current = -1;
    while (foreign.step()) {
        if (foreign.integerAt(0) != current) {
            current = foreign.integerAt(0);
            table.foreignKeys.push_back({{}, foreign.textAt(1), {}, {}});
        }
        table.foreignKeys.back().columns.push_back(foreign.textAt(2));
        table.foreignKeys.back().referenced.push_back(foreign.textAt(3));
    }
    SqliteStatement foreignNames = database_.prepare("SELECT name, definition FROM " + schema +
                                                     "basalt_constraint WHERE table_name = " + key + " AND kind = 'F'");
    while (foreignNames.step()) {
        for (ForeignKey& constraint : table.foreignKeys) {
            std::string joined = foldName(constraint.referencedTable);
            for (const std::string& column : constraint.columns)
                joined += "," + foldName(column);
            if (joined == foreignNames.textAt(1)) constraint.name = foreignNames.textAt(0);
        }
    }
}

const Module* Catalog::module(std::string_view name) {
    const std::string key = foldName(name);
    if (const auto found = modules_.find(key); found != modules_.end()) return found->second.get();
    std::unique_ptr<Module> module;
    const auto read = [&](SqliteStatement& query, bool temporary) {
        query.bind(1, std::string_view(key));
        if (query.step()) {
            module = std::make_unique<Module>(
                Module{query.textAt(0), static_cast<ModuleKind>(query.integerAt(1)), query.textAt(2), temporary});
        }
        query.reset();
    };
    const std::string select = "SELECT shown_name, kind, definition FROM ";
    if (isTemporaryName(name) && hasTemporarySystemTables()) {
        SqliteStatement query = database_.prepare(select + "temp.basalt_module WHERE name = ?1");
        read(query, true);
    }
    if (module == nullptr) {
        if (!moduleStatement_) moduleStatement_ = database_.prepare(select + "main.basalt_module WHERE name = ?1");
        read(moduleStatement_, false);
    }
    return modules_.emplace(key, std::move(module)).first->second.get();
}

void Catalog::saveModule(const Module& module) {
    if (module.temporary) createSystemTables(database_, true);
    SqliteStatement insert =
        database_.prepare(std::string("INSERT OR REPLACE INTO ") + (module.temporary ? "temp." : "main.") +
                          "basalt_module VALUES (?1, ?2, ?3, ?4)");
    insert.bind(1, std::string_view(foldName(module.name)));
    insert.bind(2, std::string_view(module.name));
    insert.bind(3, static_cast<std::int64_t>(module.kind));
    insert.bind(4, std::string_view(module.text));
    insert.run();
    bumpModuleVersion();
    invalidate();
}

void Catalog::dropModule(std::string_view name) {
    const bool temporary = isTemporaryName(name);
    SqliteStatement remove = database_.prepare("DELETE FROM " + schemaOf(name) + "basalt_module WHERE name = ?1");
    remove.bind(1, std::string_view(foldName(name)));
    remove.run();
    if (!temporary) bumpModuleVersion();
    invalidate();
}

// Other programs learn of a change through SQLite's schema version, which only changes of tables move by themselves.
void Catalog::bumpModuleVersion() {
    const std::int64_t version = database_.integer("PRAGMA main.schema_version");
    database_.execute(("PRAGMA main.schema_version = " + std::to_string(version + 1)).c_str());
}

void Catalog::invalidate() {
    tables_.clear();
    modules_.clear();
    schemaVersion_ = -1;
    ++generation_;
}

bool Catalog::refresh() {
    // Nobody else can change the schema while this connection writes.
    if (schemaVersion_ != -1 && sqlite3_txn_state(database_.handle(), "main") == SQLITE_TXN_WRITE) return false;
    if (!schemaVersionStatement_) schemaVersionStatement_ = database_.prepare("PRAGMA main.schema_version");
    const std::int64_t version = schemaVersionStatement_.step() ? schemaVersionStatement_.integerAt(0) : 0;
    schemaVersionStatement_.reset();
    const bool stale = schemaVersion_ != -1 && version != schemaVersion_;
    if (stale) invalidate();
    schemaVersion_ = version;
    return stale;
}

IdentityState Catalog::identity(std::string_view table) {
    std::string key = foldName(table);
    if (const auto taken = taken_.find(key); taken != taken_.end()) return taken->second;
    SqliteStatement& query = identityStatements(table).read;
    query.bind(1, std::string_view(key));
    IdentityState state;
    if (query.step()) {
        state.seed = query.integerAt(0);
        state.increment = query.integerAt(1);
        if (!query.isNullAt(2)) state.last = query.integerAt(2);
    }
    query.reset();
    return state;
}

void Catalog::takeIdentity(std::string_view table, const IdentityState& state) {
    // Outside of a transaction nobody says when to write it.
    if (sqlite3_get_autocommit(database_.handle()) != 0) return setIdentity(table, state);
    taken_[foldName(table)] = state;
}

void Catalog::settleIdentities() {
    for (const auto& [table, state] : std::exchange(taken_, {}))
        setIdentity(table, state);
}

void Catalog::setIdentity(std::string_view table, const IdentityState& state) {
    taken_.erase(foldName(table));
    SqliteStatement& update = identityStatements(table).write;
    update.bind(1, std::string_view(foldName(table)));
    if (state.last) {
        update.bind(2, *state.last);
    } else {
        update.bindNull(2);
    }
    update.run();
}

Catalog::IdentityStatements& Catalog::identityStatements(std::string_view table) {
    IdentityStatements& statements = isTemporaryName(table) ? temporaryIdentity_ : identity_;
    if (!statements.read) {
        const std::string identities = schemaOf(table) + "basalt_identity";
        statements.read =
            database_.prepare("SELECT seed, increment, last FROM " + identities + " WHERE table_name = ?1");
        statements.write = database_.prepare("UPDATE " + identities + " SET last = ?2 WHERE table_name = ?1");
    }
    return statements;
}

// The same as long as the object has its name, never 0 and never negative.
std::int64_t Catalog::objectNumber(std::string_view name) {
    std::uint32_t hash = 2166136261U;
    for (const char c : foldName(name))
        hash = (hash ^ static_cast<unsigned char>(c)) * 16777619U;
    return static_cast<std::int64_t>((hash & 0x7FFFFFFFU) | 1U);
}

std::optional<std::int64_t> Catalog::objectId(std::string_view name, std::string_view kind) {
    while (kind.ends_with(' '))
        kind.remove_suffix(1);
    const std::string folded = foldName(name);
    const auto number = [&] { return objectNumber(folded); };
    if (isTextKind(kind, "U") && table(name) != nullptr) return number();
    if (const Module* found = module(name); found != nullptr) {
        switch (found->kind) {
            case ModuleKind::View:
                if (isTextKind(kind, "V")) return number();
                break;
            case ModuleKind::Procedure:
                if (isTextKind(kind, "P")) return number();
                break;
            case ModuleKind::Function:
                if (isTextKind(kind, "FN") || sameName(kind, "IF") || sameName(kind, "TF")) return number();
                break;
        }
    }
    SqliteStatement constraint = database_.prepare("SELECT kind FROM main.basalt_constraint WHERE name = ?1");
    constraint.bind(1, std::string_view(folded));
    if (constraint.step() && isTextKind(kind, constraint.textAt(0))) return number();
    return std::nullopt;
}

std::string Catalog::property(std::string_view name) {
    SqliteStatement query = database_.prepare("SELECT value FROM main.basalt_property WHERE name = ?1");
    query.bind(1, name);
    return query.step() ? query.textAt(0) : std::string();
}

void Catalog::setProperty(std::string_view name, std::string_view value) {
    SqliteStatement insert = database_.prepare("INSERT OR REPLACE INTO main.basalt_property VALUES (?1, ?2)");
    insert.bind(1, name);
    insert.bind(2, value);
    insert.run();
}

}  // namespace basalt::embedded
