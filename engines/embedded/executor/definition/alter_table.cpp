// ALTER TABLE: the table is built anew from its changed design, with its rows.
#include <algorithm>
#include <functional>

#include "ado/names.h"
#include "engines/embedded/catalog/data_type.h"
#include "engines/embedded/catalog/included_columns.h"
#include "engines/embedded/catalog/text_search.h"
#include "engines/embedded/executor/constraint_error.h"
#include "engines/embedded/executor/definition/column_users.h"
#include "engines/embedded/executor/definition/schema_reader.h"
#include "engines/embedded/executor/definition/stored_index.h"
#include "engines/embedded/executor/definition/table_design.h"
#include "engines/embedded/executor/executor.h"
#include "engines/embedded/generator/sql_writer.h"
#include "engines/embedded/lexer/error_context.h"
#include "engines/embedded/runtime/sql_error.h"

namespace basalt::embedded {

namespace {

// The number that a row of a new identity takes by its place.
BoundPtr numbered(const IdentityState& identity) {
    const SqlType big = SqlType::of(TypeKind::BigInt);
    auto place = std::make_unique<BoundExpression>();
    place->kind = BoundKind::Aggregate;
    place->type = big;
    place->name = "row_number";
    place->over = std::make_unique<BoundOver>();
    BoundPtr steps = boundInfix("-", big, std::move(place), boundInteger(1));
    BoundPtr distance = boundCall("t_mul64", big, std::move(steps), boundConstant(identity.increment, big));
    return boundCall("t_add64", big, std::move(distance), boundConstant(identity.seed, big));
}

// The number of the last of so many rows.
std::int64_t lastNumber(const DesignColumn& column, std::int64_t rows) {
    const TypeKind kind = column.type.isInteger() ? column.type.kind : TypeKind::BigInt;
    std::int64_t value = 0;
    if (__builtin_mul_overflow(rows - 1, column.identity->increment, &value) ||
        __builtin_add_overflow(value, column.identity->seed, &value) || value > highest(kind) || value < lowest(kind)) {
        throwSqlError(error::kArithmeticOverflow, "Arithmetic overflow error converting IDENTITY to data type " +
                                                      std::string(column.type.baseName()) + ".");
    }
    return value;
}

// What the rows that are there already take for a column: the old value, converted, the default, or the next identity.
BoundPtr valueFor(const DesignColumn& column, const Table& before, Binder& binder) {
    if (before.find(column.name) < 0 && column.identity)
        return binder.cast(numbered(*column.identity), column.type);  // as the rows come
    BoundPtr value;
    if (const int position = before.find(column.name); position >= 0) {
        value = std::make_unique<BoundExpression>();
        value->kind = BoundKind::Column;
        value->type = before.columns[static_cast<std::size_t>(position)].type;
        value->name = sqlQuoted(column.name);
    } else if ((!column.nullable || column.withValues) && !column.defaultText.empty()) {
        TableColumn shown;
        shown.defaultText = column.defaultText;
        value = binder.defaultOf(shown);
    } else {
        return boundConstant(Null{}, column.type);
    }
    TableColumn target;
    target.name = column.name;
    target.type = column.type;
    return binder.assigned(std::move(value), target, before.name, {});
}

bool erase(std::vector<DesignKey>& keys, std::string_view name) {
    return std::erase_if(keys, [&](const DesignKey& key) { return sameName(key.name, name); }) != 0;
}

bool dropConstraint(TableDesign& design, std::string_view name) {
    if (erase(design.keys, name)) return true;
    if (std::erase_if(design.foreignKeys, [&](const DesignForeignKey& key) { return sameName(key.name, name); }) != 0)
        return true;
    if (std::erase_if(design.checks, [&](const DesignCheck& check) { return sameName(check.name, name); }) != 0)
        return true;
    for (DesignColumn& column : design.columns) {
        if (!sameName(column.defaultName, name)) continue;
        column.defaultName.clear();
        column.defaultText.clear();
        return true;
    }
    return false;
}

// While it lives, references are not looked at: rows that refer to the table miss it for a moment only, and must not
// follow it.
class References {
public:
    explicit References(SqliteDatabase& database) : database_(database) { enable(false); }
    References(const References&) = delete;
    References& operator=(const References&) = delete;
    ~References() { enable(true); }

    // Throws when the rows of the table, or those that refer to it, refer to nothing now.
    void check(const Table& table, Catalog& catalog) const {
        if (table.temporary) return;
        checkOne(table.name, catalog);
        for (const std::string& name : catalog.tableNames()) {
            const Table* other = catalog.table(name);
            if (other == nullptr || sameName(name, table.name)) continue;
            for (const ForeignKey& key : other->foreignKeys) {
                if (!sameName(key.referencedTable, table.name)) continue;
                checkOne(name, catalog);
                break;
            }
        }
    }

private:
    void enable(bool on) const {
        sqlite3_db_config(database_.handle(), SQLITE_DBCONFIG_ENABLE_FKEY, on ? 1 : 0, nullptr);
    }

    void checkOne(const std::string& name, Catalog& catalog) const {
        const Table& table = catalog.requireTable(name);
        SqliteStatement list;
        try {
            list = database_.prepare("PRAGMA main.foreign_key_check(" + sqlQuoted(name) + ")");
        } catch (const DatabaseError&) {
            // There is no key any more that the reference could mean.
            throwSqlError(3725, "The key of the table is being referenced by table '" + table.name +
                                    "', foreign key constraint '" +
                                    (table.foreignKeys.empty() ? std::string() : table.foreignKeys.front().name) +
                                    "'.");
        }
        if (!list.step()) return;
        const auto number = static_cast<std::size_t>(list.integerAt(3));
        const std::string key = number < table.foreignKeys.size() ? table.foreignKeys[number].name : std::string();
        throwSqlError(error::kConstraintConflict,
                      "The ALTER TABLE statement conflicted with the FOREIGN KEY constraint \"" + key +
                          "\". The conflict occurred in database \"basalt\", table \"dbo." + list.textAt(2) + "\".");
    }

    SqliteDatabase& database_;
};

// Binds what a statement reads of its session: the moment of a GETDATE(), for instance.
using BindSlots = std::function<void(SqliteStatement&, const std::vector<Slot>&)>;

// Takes the rows over; what they break is said as ALTER TABLE says it.
void fill(const std::string& table, SqliteStatement insert, SqliteDatabase& database, Catalog& catalog) {
    const int code = sqlite3_step(insert.handle());
    if (code == SQLITE_DONE) return;
    if ((code & 0xFF) != SQLITE_CONSTRAINT) throw database.failure(code);
    Plan plan;
    plan.kind = PlanKind::Update;
    plan.table = table;
    const DatabaseError error = constraintError(database, catalog, plan, code);
    std::string message = error.what();
    if (error.nativeCode() == error::kDuplicateKey) {
        const std::size_t begin = message.find('\'') + 1;
        throwDuplicatesUnder(table, message.substr(begin, message.find('\'', begin) - begin));
    }
    if (error.nativeCode() == error::kConstraintConflict) message.replace(0, 10, "The ALTER TABLE");
    throwSqlError(error.nativeCode(), message);
}

void rebuild(const Table& before, const TableDesign& after, SqliteDatabase& database, Catalog& catalog,
             const BindSlots& bind) {
    const std::vector<StoredIndex> indexes = indexesOf(before, database);
    std::string columns;
    std::string values;
    Binder binder(catalog, {});
    SqlWriter writer;
    for (const DesignColumn& column : after.columns) {
        if (!column.computedText.empty()) continue;
        columns += (columns.empty() ? "" : ", ") + sqlQuoted(column.name);
        const std::size_t written = writer.sql().size();
        writer.expression(*valueFor(column, before, binder));
        values += (values.empty() ? "" : ", ") + writer.sql().substr(written);
    }
    const References references(database);
    database.execute(("CREATE TEMP TABLE basalt_rebuild AS SELECT * FROM " + before.sqlName()).c_str());
    dropTextSearch(database, before);
    database.execute(("DROP TABLE " + before.sqlName()).c_str());
    TableDesign::forget(before.name, before.temporary, database);
    after.create(database, catalog);
    catalog.invalidate();
    SqliteStatement insert = database.prepare("INSERT INTO " + before.sqlName() + "(" + columns + ") SELECT " + values +
                                              " FROM temp.basalt_rebuild");
    bind(insert, writer.takeSlots());
    fill(before.name, std::move(insert), database, catalog);
    database.execute("DROP TABLE temp.basalt_rebuild");
    for (const Table filled = catalog.requireTable(before.name); const StoredIndex& index : indexes)
        create(index, filled, database, catalog);
    catalog.invalidate();
    if (!before.temporary) {
        settleTextSearch(database, catalog.requireTable(before.name), includedColumns(database, before));
        catalog.invalidate();
    }
    references.check(before, catalog);
}

// Users keep the column: they are told first, and what they have prevented last.
void requireUnused(const std::string& users, const std::string& action, const ast::Batch& batch,
                   const ast::Identifier& column) {
    if (users.empty()) return;
    throw statementError(ErrorCategory::Constraint, 5074,
                         users + "ALTER TABLE " + action + " COLUMN " + column.text +
                             " failed because one or more objects access this column.",
                         batch.text, column.range);
}

}  // namespace

void Executor::alterTable(const ast::Batch& batch, const ast::AlterTableStatement& statement) {
    const Table* found = catalog_.table(statement.name.last());
    if (found == nullptr) {
        throw statementError(ErrorCategory::NotFound, 4902,
                             "Cannot find the object \"" + statement.name.last() +
                                 "\" because it does not exist or you do not have permissions.",
                             batch.text, statement.name.range);
    }
    const Table table = *found;
    Binder binder(catalog_, {.text = batch.text, .literals = &batch.literals, .inlineLiterals = true});
    TableDesign design = TableDesign::of(table, database_, catalog_);
    using Action = ast::AlterTableStatement::Action;
    switch (statement.action) {
        case Action::Add: {
            const std::size_t count = design.columns.size();
            design.add(statement.added, batch.literals, binder);
            const bool filled =
                database_.integer(("SELECT EXISTS (SELECT 1 FROM " + table.sqlName() + ")").c_str()) != 0;
            for (std::size_t i = count; i < design.columns.size(); ++i) {
                DesignColumn& column = design.columns[i];
                if (filled && column.identity) {
                    const std::int64_t rows = database_.integer(("SELECT count(*) FROM " + table.sqlName()).c_str());
                    column.identity->last = lastNumber(column, rows);
                }
                if (!filled || column.nullable || column.identity || !column.defaultText.empty() ||
                    !column.computedText.empty())
                    continue;
                throwSqlError(
                    4901,
                    "ALTER TABLE only allows columns to be added that can contain nulls, or have a DEFAULT definition "
                    "specified. Column '" +
                        column.name + "' cannot be added to non-empty table '" + table.name +
                        "' because it does not satisfy these conditions.");
            }
            break;
        }
        case Action::AlterColumn: {
            DesignColumn* column = design.find(statement.altered->name.text);
            if (column == nullptr) {
                throw statementError(ErrorCategory::NotFound, 4924,
                                     "ALTER TABLE ALTER COLUMN failed because column '" + statement.altered->name.text +
                                         "' does not exist in table '" + table.name + "'.",
                                     batch.text, statement.altered->name.range);
            }
            if (!column->computedText.empty()) {
                throw statementError(ErrorCategory::Other, 4928,
                                     "Cannot alter column '" + column->name + "' because it is 'COMPUTED'.", batch.text,
                                     statement.altered->name.range);
            }
            DesignColumn altered = *column;
            altered.type = declaredTypeOf(statement.altered->type, 1, batch.text);
            binder.requireOwnCollation(statement.altered->collation);
            if (column->identity && statement.altered->nullable.value_or(false)) {
                throw statementError(ErrorCategory::Other, 8147,
                                     "Could not create IDENTITY attribute on nullable column '" + column->name +
                                         "', table '" + table.name + "'.",
                                     batch.text, statement.altered->range);
            }
            altered.nullable = !column->identity && statement.altered->nullable.value_or(true);
            requireUnused(ColumnUsers(table, design, database_, catalog_).ofAlteration(*column, altered), "ALTER",
                          batch, statement.altered->name);
            if (altered.identity) design.requireIdentityType(altered, binder, statement.altered->range);
            *column = std::move(altered);
            break;
        }
        case Action::Drop:
            for (const ast::AlterTableStatement::DropItem& item : statement.dropped) {
                if (!item.column) {
                    if (!dropConstraint(design, item.name.text) && !item.ifExists) {
                        throw statementError(ErrorCategory::NotFound, 3728,
                                             "'" + item.name.text + "' is not a constraint.", batch.text,
                                             item.name.range);
                    }
                    continue;
                }
                if (design.find(item.name.text) == nullptr) {
                    if (item.ifExists) continue;
                    throw statementError(ErrorCategory::NotFound, 4924,
                                         "ALTER TABLE DROP COLUMN failed because column '" + item.name.text +
                                             "' does not exist in table '" + table.name + "'.",
                                         batch.text, item.name.range);
                }
                requireUnused(ColumnUsers(table, design, database_, catalog_).of(item.name.text), "DROP", batch,
                              item.name);
                std::erase_if(design.columns,
                              [&](const DesignColumn& column) { return sameName(column.name, item.name.text); });
                if (std::ranges::all_of(design.columns,
                                        [](const DesignColumn& column) { return !column.computedText.empty(); })) {
                    throw statementError(ErrorCategory::Other, 4923,
                                         "ALTER TABLE DROP COLUMN failed because '" + item.name.text +
                                             "' is the only data column in table '" + table.name +
                                             "'. A table must have at least one data column.",
                                         batch.text, item.name.range);
                }
            }
            break;
        case Action::EnableConstraints:
            return;  // constraints are always on
        case Action::DisableConstraints:
            throwUnsupported("NOCHECK CONSTRAINT", batch.text, statement.range);
    }
    rebuild(table, design, database_, catalog_, [this](SqliteStatement& filling, const std::vector<Slot>& slots) {
        for (std::size_t i = 0; i < slots.size(); ++i)
            bindSlot(filling, static_cast<int>(i + 1), slots[i], {});
    });
    const TableColumn* before = table.identityColumn();
    const bool stays = before != nullptr && design.find(before->name) != nullptr && design.find(before->name)->identity;
    // The numbers of another column count for nothing.
    if (!stays) usedIdentities_.erase(foldName(table.name));
}

}  // namespace basalt::embedded
