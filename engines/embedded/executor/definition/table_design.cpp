#include "engines/embedded/executor/definition/table_design.h"

#include <algorithm>
#include <cstdio>

#include "ado/names.h"
#include "engines/embedded/catalog/data_type.h"
#include "engines/embedded/executor/definition/stored_index.h"
#include "engines/embedded/generator/sql_writer.h"
#include "engines/embedded/parser/parser.h"
#include "engines/embedded/printer/printer.h"
#include "engines/embedded/runtime/sql_error.h"
#include "engines/embedded/runtime/utf16.h"

namespace basalt::embedded {

namespace {

const char* nameOf(ast::ReferentialAction action) {
    switch (action) {
        case ast::ReferentialAction::Cascade:
            return "CASCADE";
        case ast::ReferentialAction::SetNull:
            return "SET NULL";
        case ast::ReferentialAction::SetDefault:
            return "SET DEFAULT";
        default:
            return "NO ACTION";
    }
}

std::string joined(const std::vector<std::string>& columns) {
    std::string result;
    for (const std::string& column : columns)
        result += (result.empty() ? "" : ",") + foldName(column);
    return result;
}

std::string quotedList(const std::vector<std::string>& columns) {
    std::string result;
    for (const std::string& column : columns)
        result += (result.empty() ? "" : ", ") + sqlQuoted(column);
    return result;
}

std::vector<std::string> namesOf(const std::vector<DesignKeyColumn>& columns) {
    std::vector<std::string> names;
    names.reserve(columns.size());
    for (const DesignKeyColumn& column : columns)
        names.push_back(column.name);
    return names;
}

void insertInto(SqliteDatabase& database, const std::string& table, std::initializer_list<std::string> values) {
    std::string sql = "INSERT INTO " + table + " VALUES (";
    for (std::size_t i = 1; i <= values.size(); ++i)
        sql += (i == 1 ? "?" : ", ?") + std::to_string(i);
    SqliteStatement statement = database.prepare(sql + ")");
    int index = 1;
    for (const std::string& value : values)
        statement.bind(index++, std::string_view(value));
    statement.run();
}

BoundPtr boundOver(Binder& binder, const Table& table, const ast::Expression& expression) {
    Scope scope(nullptr);
    ScopeSource source{table.name, "", {}};
    for (const TableColumn& column : table.columns)
        source.columns.push_back({{column.name, column.type, column.nullable, {}}, sqlQuoted(column.name)});
    scope.sources.push_back(std::move(source));
    return ast::isCondition(expression.kind) ? binder.condition(expression, &scope)
                                             : binder.expression(expression, &scope);
}

// Parses "SELECT x" or "SELECT 1 WHERE x" and hands the one expression on.
template <typename Use>
auto withExpression(Catalog& catalog, const std::string& text, bool condition, Use use) {
    const ast::Batch batch = parse((condition ? "SELECT 1 WHERE " : "SELECT ") + text);
    Binder binder(catalog, {.text = batch.text, .literals = &batch.literals, .inlineLiterals = true});
    const ast::Select& select = ast::firstSelect(*ast::as<ast::SelectStatement>(*batch.statements.front()).query->body);
    return use(binder, condition ? *select.where : *select.items.front().expression);
}

bool hasQuery(const BoundExpression& expression) {
    return expression.query != nullptr ||
           std::ranges::any_of(expression.arguments, [](const BoundPtr& each) { return hasQuery(*each); });
}

void refuseQuery(const BoundExpression& expression) {
    if (!hasQuery(expression)) return;
    throwSqlError(1046, "Subqueries are not allowed in this context. Only scalar expressions are allowed.");
}

// Rows that were right would not be so for ever, and a copy of the database or a changed table would be refused for
// them.
void refuseSession(SqlWriter& writer) {
    if (writer.takeSlots().empty()) return;
    throwSqlError(40517,
                  "What a statement asks its session, GETDATE() for instance, is not supported in checks, computed "
                  "columns and indexes of this database.");
}

// What a default may be is a constant, if a computed one.
void requireConstant(Catalog& catalog, const std::string& text) {
    try {
        withExpression(catalog, text, false, [&](Binder& binder, const ast::Expression& expression) {
            refuseQuery(*boundOver(binder, {}, expression));
        });
    } catch (const DatabaseError& failure) {
        const std::string_view what = failure.what();
        if (failure.nativeCode() == 137) throwSqlError(112, "Variables are not allowed in the CREATE TABLE statement.");
        if (failure.nativeCode() != error::kInvalidColumn) throw;
        const std::size_t begin = what.find('\'') + 1;
        throwSqlError(128, "The name \"" + std::string(what.substr(begin, what.find('\'', begin) - begin)) +
                               "\" is not permitted in this context. Valid expressions are constants, constant "
                               "expressions, and (in some contexts) variables. Column names are not permitted.");
    }
}

// Columns that refer to each other hold the same values in the same form.
void requireSameTypes(const DesignForeignKey& key, const Table& table, const Table& referenced, const Binder& binder,
                      SourceRange range) {
    for (std::size_t i = 0; i < key.columns.size(); ++i) {
        const TableColumn& own = table.columns[static_cast<std::size_t>(table.find(key.columns[i]))];
        const TableColumn& other = referenced.columns[static_cast<std::size_t>(referenced.find(key.referenced[i]))];
        if (own.type == other.type) continue;
        const bool sameKind = own.type.kind == other.type.kind;
        std::string message = "Column '" + referenced.name + "." + other.name + "' is not the same " +
                              (sameKind ? "length or scale" : "data type") + " as referencing column '" + table.name +
                              "." + own.name + "' in foreign key '" + key.name + "'.";
        if (sameKind) {
            message +=
                " Columns participating in a foreign key relationship must be defined with the same length and scale.";
        }
        binder.fail(sameKind ? 1753 : 1778, message, range);
    }
}

bool reads(const BoundExpression& expression, const std::string& quoted) {
    return (expression.kind == BoundKind::Column && expression.name == quoted) ||
           std::ranges::any_of(expression.arguments, [&](const BoundPtr& each) { return reads(*each, quoted); });
}

}  // namespace

std::string storedCondition(Catalog& catalog, const Table& table, const std::string& text, bool nested) {
    return withExpression(catalog, text, true, [&](Binder& binder, const ast::Expression& expression) {
        const BoundPtr bound = boundOver(binder, table, expression);
        refuseQuery(*bound);
        SqlWriter writer;
        if (nested) writer.keepCallsNested();
        writer.expression(*bound);
        refuseSession(writer);
        return writer.sql();
    });
}

void requireKeyType(std::string_view table, std::string_view column, const SqlType& type) {
    if (type.length != kMaxLength || !(type.isText() || type.isBinary())) return;
    throwSqlError(1919, "Column '" + std::string(column) + "' in table '" + std::string(table) +
                            "' is of a type that is invalid for use as a key column in an index.");
}

bool readsColumn(Catalog& catalog, const Table& table, const std::string& text, bool condition,
                 std::string_view column) {
    const int position = table.find(column);
    if (position < 0) return false;
    const std::string quoted = sqlQuoted(table.columns[static_cast<std::size_t>(position)].name);
    return withExpression(catalog, text, condition, [&](Binder& binder, const ast::Expression& expression) {
        return reads(*boundOver(binder, table, expression), quoted);
    });
}

DesignColumn* TableDesign::find(std::string_view column) {
    for (DesignColumn& candidate : columns) {
        if (sameName(candidate.name, column)) return &candidate;
    }
    return nullptr;
}

bool TableDesign::isNullable(std::string_view column) const {
    for (const DesignColumn& candidate : columns) {
        if (sameName(candidate.name, column)) return candidate.nullable;
    }
    return true;
}

bool TableDesign::hasConstraint(std::string_view wanted) const {
    const auto named = [&](const auto& each) { return sameName(each.name, wanted); };
    return std::ranges::any_of(keys, named) || std::ranges::any_of(foreignKeys, named) ||
           std::ranges::any_of(checks, named) ||
           std::ranges::any_of(columns, [&](const DesignColumn& each) { return sameName(each.defaultName, wanted); });
}

std::string TableDesign::generatedName(std::string_view kind, std::string_view column, std::string_view rest) const {
    std::string result = std::string(kind) + "__" + std::string(utf16Substring(name, 0, 9)) + "__";
    if (!column.empty()) result += std::string(utf16Substring(column, 0, 5)) + "__";
    // Names belong to the whole database, so the number stands for all that tells one constraint from another.
    std::uint64_t number = 0xCBF29CE484222325;
    const std::string folded = foldName(name);
    for (const std::string_view part : {kind, std::string_view(folded), column, rest}) {
        for (const char c : part)
            number = (number ^ static_cast<unsigned char>(c)) * 0x100000001B3;
        number = (number ^ 0xFF) * 0x100000001B3;
    }
    const bool key = kind == "PK" || kind == "UQ";
    for (;; ++number) {
        char digits[20];
        std::snprintf(digits, sizeof digits, key ? "%016llX" : "%08llX",
                      static_cast<unsigned long long>(key ? number : number & 0xFFFFFFFF));
        if (!hasConstraint(result + digits)) return result + digits;
    }
}

Table TableDesign::shape() const {
    Table table;
    table.name = name;
    table.temporary = temporary;
    for (const DesignColumn& column : columns)
        table.columns.push_back(
            {column.name, column.type, column.nullable, column.identity.has_value(), {}, !column.computedText.empty()});
    return table;
}

void TableDesign::add(const ast::TableDefinition& definition, const LiteralTable& literals, Binder& binder) {
    for (const ast::ColumnDefinition& column : definition.columns)
        addColumn(column, literals, binder);
    // Only now, because one may stand in front of the columns that it reads.
    for (const ast::ColumnDefinition& column : definition.columns) {
        if (column.computed != nullptr) typeComputed(column, binder);
    }
    // References last: they may mean a key of the table itself that is written behind them.
    for (const bool references : {false, true}) {
        const auto addThese = [&](const std::vector<ast::Constraint>& constraints, const std::string& column) {
            for (const ast::Constraint& constraint : constraints) {
                if ((constraint.kind == ast::ConstraintKind::ForeignKey) == references)
                    addConstraint(constraint, column, literals, binder);
            }
        };
        for (const ast::ColumnDefinition& column : definition.columns)
            addThese(column.constraints, column.name.text);
        addThese(definition.constraints, {});
    }
}

void TableDesign::addColumn(const ast::ColumnDefinition& column, const LiteralTable& literals, Binder& binder) {
    if (find(column.name.text) != nullptr) {
        binder.fail(2705,
                    "Column names in each table must be unique. Column name '" + column.name.text + "' in table '" +
                        name + "' is specified more than once.",
                    column.name.range);
    }
    DesignColumn design;
    design.name = column.name.text;
    if (column.computed != nullptr) {
        design.computedText = print(*column.computed, literals);
        // Until the other columns are there. No other computed column may read it.
        design.type = SqlType::of(TypeKind::Int);
        design.nullable = column.nullable.value_or(true);
        columns.push_back(std::move(design));
        return;
    }
    if (!isKnownType(column.type))
        binder.fail(2715, unknownTypeText(column.type, columns.size() + 1), column.type.range);
    // Nothing here would count its versions.
    if (sameName(column.type.name.last(), "rowversion") || sameName(column.type.name.last(), "timestamp"))
        binder.unsupported("a column of the type " + column.type.name.last(), column.type.range);
    design.type = binder.dataType(column.type);
    binder.requireOwnCollation(column.collation);
    design.nullable = column.nullable.value_or(true);
    design.takesNull = column.nullable.value_or(false);
    if (column.identity) {
        if (design.takesNull) {
            binder.fail(
                8147,
                "Could not create IDENTITY attribute on nullable column '" + design.name + "', table '" + name + "'.",
                column.range);
        }
        for (const DesignColumn& other : columns) {
            if (other.identity) {
                binder.fail(2744,
                            "Multiple identity columns specified for table '" + name +
                                "'. Only one identity column per table is allowed.",
                            column.range);
            }
        }
        requireIdentityType(design, binder, column.range);
        design.identity = IdentityState{column.identity->seed, column.identity->increment, std::nullopt};
        design.nullable = false;
    }
    columns.push_back(std::move(design));
}

void TableDesign::typeComputed(const ast::ColumnDefinition& column, Binder& binder) {
    const Table table = shape();
    // Where it is written, so that an error tells its place there.
    static_cast<void>(boundOver(binder, table, *column.computed));
    DesignColumn& design = *find(column.name.text);
    withExpression(binder.catalog(), design.computedText, false, [&](Binder& inner, const ast::Expression& e) {
        const BoundPtr value = boundOver(inner, table, e);
        refuseQuery(*value);
        for (const DesignColumn& other : columns) {
            if (other.computedText.empty() || !reads(*value, sqlQuoted(other.name))) continue;
            binder.fail(1759,
                        "Computed column '" + other.name + "' in table '" + name +
                            "' is not allowed to be used in another computed-column definition.",
                        column.range);
        }
        if (value->order != TextOrder::Database) {
            binder.unsupported("a column with another collation than the database's", column.range);
        }
        design.type = value->type;
    });
}

void TableDesign::requireIdentityType(const DesignColumn& column, Binder& binder, SourceRange range) {
    const SqlType& type = column.type;
    const bool whole =
        (type.isInteger() && type.kind != TypeKind::Bit) || (type.kind == TypeKind::Decimal && type.scale == 0);
    if (whole) return;
    binder.fail(2749,
                "Identity column '" + column.name +
                    "' must be of data type int, bigint, smallint, tinyint, or decimal or numeric with a scale of 0, "
                    "and constrained to be nonnullable.",
                range);
}

void TableDesign::addConstraint(const ast::Constraint& constraint, const std::string& column,
                                const LiteralTable& literals, Binder& binder) {
    const std::string& given = constraint.name.text;
    std::vector<DesignKeyColumn> keyColumns;
    for (const ast::KeyColumn& key : constraint.columns)
        keyColumns.push_back({key.name.text, key.descending});
    if (keyColumns.empty() && !column.empty()) keyColumns.push_back({column, false});
    for (DesignKeyColumn& key : keyColumns) {
        const DesignColumn* found = find(key.name);
        if (found == nullptr) {
            binder.fail(1911, "Column name '" + key.name + "' does not exist in the target table or view.",
                        constraint.range);
        }
        key.name = found->name;
    }
    const bool isKey =
        constraint.kind == ast::ConstraintKind::PrimaryKey || constraint.kind == ast::ConstraintKind::Unique;
    for (std::size_t i = 0; isKey && i < keyColumns.size(); ++i) {
        const std::string& each = keyColumns[i].name;
        if (std::any_of(keyColumns.begin(), keyColumns.begin() + static_cast<std::ptrdiff_t>(i),
                        [&](const DesignKeyColumn& other) { return sameName(other.name, each); })) {
            binder.fail(1909,
                        "Cannot use duplicate column names in index. Column name '" + each + "' listed more than once.",
                        constraint.range);
        }
        requireKeyType(name, each, find(each)->type);
        // SQLite has no such key.
        if (constraint.kind == ast::ConstraintKind::PrimaryKey && !find(each)->computedText.empty())
            binder.unsupported("a computed column in a PRIMARY KEY", constraint.range);
    }
    switch (constraint.kind) {
        case ast::ConstraintKind::PrimaryKey:
        case ast::ConstraintKind::Unique: {
            const bool primary = constraint.kind == ast::ConstraintKind::PrimaryKey;
            std::string joinedNames;
            for (const DesignKeyColumn& key : keyColumns) {
                joinedNames += "_" + key.name;
                if (primary && find(key.name)->takesNull) {
                    binder.fail(8111,
                                "Cannot define PRIMARY KEY constraint on nullable column in table '" + name + "'.",
                                constraint.range);
                }
                if (primary) find(key.name)->nullable = false;
            }
            for (const DesignKey& other : keys) {
                if (primary && other.primary) {
                    binder.fail(1779, "Table '" + name + "' already has a primary key defined on it.",
                                constraint.range);
                }
            }
            keys.push_back(
                {primary, given.empty() ? generatedName(primary ? "PK" : "UQ", {}, joinedNames) : given, keyColumns});
            break;
        }
        case ast::ConstraintKind::ForeignKey: {
            // SQLite, which looks after references, does not know the defaults.
            for (const ast::ReferentialAction action : {constraint.onDelete, constraint.onUpdate}) {
                if (action == ast::ReferentialAction::SetDefault)
                    binder.unsupported("a reference with SET DEFAULT", constraint.range);
            }
            DesignForeignKey key;
            key.columns = namesOf(keyColumns);
            const std::string& wanted = constraint.referencedTable.last();
            const bool self = sameName(wanted, name);
            const Table* referenced = self ? nullptr : binder.catalog().table(wanted);
            if (referenced == nullptr && !self) {
                binder.fail(1767, "Foreign key '" + given + "' references invalid table '" + wanted + "'.",
                            constraint.referencedTable.range);
            }
            key.table = self ? name : referenced->name;
            for (const ast::Identifier& other : constraint.referencedColumns)
                key.referenced.push_back(other.text);
            if (key.referenced.empty() && referenced != nullptr) {
                for (const std::size_t position : referenced->key)
                    key.referenced.push_back(referenced->columns[position].name);
            } else if (key.referenced.empty()) {
                for (const DesignKey& own : keys) {
                    if (own.primary) key.referenced = namesOf(own.columns);
                }
            }
            if (key.referenced.size() != key.columns.size()) {
                binder.fail(
                    8139,
                    "Number of referencing columns in foreign key differs from number of referenced columns, table '" +
                        name + "'.",
                    constraint.range);
            }
            bool unique = false;
            const auto matches = [&](const std::vector<std::string>& other) {
                return std::is_permutation(other.begin(), other.end(), key.referenced.begin(), key.referenced.end(),
                                           sameName);
            };
            if (referenced != nullptr) {
                for (const Index& index : referenced->uniques)
                    unique = unique || (!index.filtered && matches(index.columns));
            } else {
                for (const DesignKey& own : keys)
                    unique = unique || matches(namesOf(own.columns));
            }
            if (!unique) {
                binder.fail(1776,
                            "There are no primary or candidate keys in the referenced table '" + key.table +
                                "' that match the referencing column list in the foreign key '" + given + "'.",
                            constraint.range);
            }
            key.onDelete = nameOf(constraint.onDelete);
            key.onUpdate = nameOf(constraint.onUpdate);
            key.name = given.empty()
                           ? generatedName("FK", key.columns.front(), joined(key.columns) + foldName(key.table))
                           : given;
            const Table own = shape();
            requireSameTypes(key, own, self ? own : *referenced, binder, constraint.range);
            foreignKeys.push_back(std::move(key));
            break;
        }
        case ast::ConstraintKind::Check: {
            std::string condition = print(*constraint.expression, literals);
            checks.push_back({given.empty() ? generatedName("CK", column, condition) : given, condition});
            break;
        }
        case ast::ConstraintKind::Default: {
            const std::string& target = constraint.forColumn.empty() ? column : constraint.forColumn.text;
            DesignColumn* found = find(target);
            if (found == nullptr || !found->computedText.empty()) {
                binder.fail(
                    1752,
                    "Column '" + target + "' in table '" + name + "' is invalid for creating a default constraint.",
                    constraint.range);
            }
            if (!found->defaultText.empty()) {
                binder.fail(1781, "Column already has a DEFAULT bound to it.", constraint.range);
            }
            if (found->identity) {
                binder.fail(1754,
                            "Defaults cannot be created on columns with an IDENTITY attribute. Table '" + name +
                                "', column '" + found->name + "'.",
                            constraint.range);
            }
            found->defaultName = given.empty() ? generatedName("DF", found->name, {}) : given;
            found->defaultText = print(*constraint.expression, literals);
            found->withValues = constraint.withValues;
            requireConstant(binder.catalog(), found->defaultText);
            break;
        }
    }
}

TableDesign TableDesign::of(const Table& table, SqliteDatabase& database, Catalog& catalog) {
    TableDesign design;
    design.name = table.name;
    design.temporary = table.temporary;
    const std::string schema = table.temporary ? "temp" : "main";
    const std::string key = sqlText(foldName(table.name));
    for (const TableColumn& column : table.columns) {
        DesignColumn copy;
        copy.name = column.name;
        copy.type = column.type;
        copy.nullable = column.nullable;
        copy.takesNull = column.nullable;
        if (column.identity) copy.identity = catalog.identity(table.name);
        design.columns.push_back(std::move(copy));
    }
    SqliteStatement defaults = database.prepare("SELECT column_name, name, definition, kind FROM " + schema +
                                                ".basalt_default WHERE table_name = " + key);
    while (defaults.step()) {
        DesignColumn* column = design.find(defaults.textAt(0));
        if (column == nullptr) continue;
        if (defaults.textAt(3) == "D") {
            column->defaultName = defaults.textAt(1);
            column->defaultText = defaults.textAt(2);
        } else {
            column->computedText = defaults.textAt(2);
        }
    }
    for (const Index& index : table.uniques) {
        if (!index.constraint) continue;
        DesignKey unique{index.primary, index.name, {}};
        for (std::size_t i = 0; i < index.columns.size(); ++i)
            unique.columns.push_back({index.columns[i], index.descending[i]});
        // A primary key's index lists the columns in key order.
        design.keys.push_back(std::move(unique));
    }
    SqliteStatement foreign =
        database.prepare("SELECT id, \"from\", \"to\", on_delete, on_update, \"table\" FROM pragma_foreign_key_list(" +
                         sqlText(table.name) + ", '" + schema + "') ORDER BY id, seq");
    std::int64_t current = -1;
    while (foreign.step()) {
        if (foreign.integerAt(0) != current) {
            current = foreign.integerAt(0);
            DesignForeignKey reference;
            reference.table = foreign.textAt(5);
            reference.onDelete = foreign.textAt(3);
            reference.onUpdate = foreign.textAt(4);
            reference.name = table.foreignKeys[design.foreignKeys.size()].name;
            design.foreignKeys.push_back(std::move(reference));
        }
        design.foreignKeys.back().columns.push_back(foreign.textAt(1));
        design.foreignKeys.back().referenced.push_back(foreign.textAt(2));
    }
    SqliteStatement checks = database.prepare("SELECT name, definition FROM " + schema +
                                              ".basalt_constraint WHERE kind = 'C' AND table_name = " + key);
    while (checks.step())
        design.checks.push_back({checks.textAt(0), checks.textAt(1)});
    return design;
}

void TableDesign::create(SqliteDatabase& database, Catalog& catalog) const {
    const std::string schema = temporary ? "temp." : "main.";
    const Table table = shape();
    bool clustered = false;
    std::string sql = "CREATE TABLE " + table.sqlName() + "(";
    bool first = true;
    const auto next = [&]() -> std::string& {
        if (!first) sql += ", ";
        first = false;
        return sql;
    };
    for (const DesignColumn& column : columns) {
        next() += sqlQuoted(column.name) + " " + column.type.columnDeclaration();
        if (!column.computedText.empty()) {
            sql +=
                " GENERATED ALWAYS AS (" +
                withExpression(catalog, column.computedText, false,
                               [&](Binder& binder, const ast::Expression& expression) {
                                   SqlWriter writer;
                                   writer.keepCallsNested();
                                   // A column that an earlier version made may have another type than its
                                   // expression has now; indexes and their conditions go by that type.
                                   writer.expression(*binder.cast(boundOver(binder, table, expression), column.type));
                                   refuseSession(writer);
                                   return writer.sql();
                               }) +
                ") STORED";
        }
        if (!column.nullable) sql += " NOT NULL";
    }
    for (const DesignKey& key : keys) {
        clustered = clustered || key.primary;
        next() += key.primary ? "PRIMARY KEY(" : "UNIQUE(";
        for (std::size_t i = 0; i < key.columns.size(); ++i) {
            sql += (i == 0 ? "" : ", ") + sqlQuoted(key.columns[i].name) + (key.columns[i].descending ? " DESC" : "");
        }
        sql += ")";
    }
    for (const DesignForeignKey& key : foreignKeys) {
        next() += "FOREIGN KEY(" + quotedList(key.columns) + ") REFERENCES " + sqlQuoted(key.table) + "(" +
                  quotedList(key.referenced) + ") ON DELETE " + key.onDelete + " ON UPDATE " + key.onUpdate;
    }
    for (const DesignCheck& check : checks)
        next() +=
            "CONSTRAINT " + sqlQuoted(check.name) + " CHECK (" + storedCondition(catalog, table, check.text) + ")";
    // A table with a primary key is stored in the key's order, as SQL Server's clustered tables are.
    sql += clustered ? ") WITHOUT ROWID" : ")";
    if (!clustered && table.find("rowid") >= 0 && table.find("_rowid_") >= 0 && table.find("oid") >= 0) {
        throwSqlError(40517,
                      "A table without a primary key that has columns named rowid, _rowid_ and oid is not supported in "
                      "this database.");
    }
    database.execute(sql.c_str());

    const std::string key = foldName(name);
    for (const DesignColumn& column : columns) {
        if (column.identity) {
            SqliteStatement insert =
                database.prepare("INSERT INTO " + schema + "basalt_identity VALUES (?1, ?2, ?3, ?4, ?5)");
            insert.bind(1, std::string_view(key));
            insert.bind(2, std::string_view(column.name));
            insert.bind(3, column.identity->seed);
            insert.bind(4, column.identity->increment);
            if (column.identity->last) insert.bind(5, *column.identity->last);
            insert.run();
        }
        if (!column.defaultText.empty()) {
            insertInto(database, schema + "basalt_default",
                       {key, column.name, column.defaultName, column.defaultText, "D"});
        }
        if (!column.computedText.empty()) {
            insertInto(database, schema + "basalt_default", {key, column.name, "", column.computedText, "C"});
        }
    }
    const auto constraint = [&](const std::string& constraintName, const char* kind, const std::string& definition) {
        SqliteStatement taken = database.prepare("SELECT 1 FROM " + schema + "basalt_constraint WHERE name = ?1");
        taken.bind(1, std::string_view(constraintName));
        if (taken.step()) {
            throwSqlError(2714, "There is already an object named '" + constraintName + "' in the database.");
        }
        insertInto(database, schema + "basalt_constraint", {constraintName, key, kind, "", definition});
    };
    for (const DesignKey& each : keys) {
        const std::vector<std::string> names = namesOf(each.columns);
        constraint(each.name, each.primary ? "PK" : "UQ", joined(names));
        if (!each.primary) createNullGuard(table, each.name, names, {}, database);
    }
    for (const DesignForeignKey& each : foreignKeys)
        constraint(each.name, "F", foldName(each.table) + "," + joined(each.columns));
    for (const DesignCheck& each : checks)
        constraint(each.name, "C", each.text);
}

void TableDesign::forget(const std::string& table, bool temporary, SqliteDatabase& database) {
    for (const char* system : {"basalt_identity", "basalt_default", "basalt_constraint"}) {
        SqliteStatement remove = database.prepare(std::string("DELETE FROM ") + (temporary ? "temp." : "main.") +
                                                  system + " WHERE table_name = ?1");
        remove.bind(1, std::string_view(foldName(table)));
        remove.run();
    }
}

}  // namespace basalt::embedded
