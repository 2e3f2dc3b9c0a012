#include "ado/row_writer.h"

#include <algorithm>

#include "ado/error.h"
#include "ado/names.h"

namespace basalt {

namespace {

// The old large types cannot be compared with =.
bool comparable(const ColumnInfo& info) {
    return !sameName(info.typeName, "text") && !sameName(info.typeName, "ntext") && !sameName(info.typeName, "image") &&
           !sameName(info.typeName, "xml");
}

// The server pads and writes these in its own way, so that what was written is not what it holds.
bool isGivenItsForm(const ColumnInfo& info) {
    return sameName(info.typeName, "char") || sameName(info.typeName, "nchar") ||
           sameName(info.typeName, "uniqueidentifier");
}

std::optional<Value> firstCell(const BatchResult& batch) {
    for (const StatementResult& result : batch.results) {
        if (result.rows && result.rows->rowCount() > 0) return result.rows->column(0).valueAt(0);
    }
    return std::nullopt;
}

}  // namespace

RowWriter::RowWriter(TADOConnection& connection, const std::string& component, const RowSet& rows,
                     std::string statement)
    : connection_(connection), component_(component), rows_(rows), statement_(std::move(statement)) {}

void RowWriter::fail(const std::string& problem) const {
    throw UsageError(component_ + ": " + problem + "; nothing was sent");
}

// The table of the changed columns, or of all columns when none is changed (a record to delete).
std::string RowWriter::commonTable(const std::vector<Change>& changes) const {
    bool known = false;
    for (std::size_t i = 0; i < rows_.columnCount(); ++i)
        known = known || !rows_.column(i).info().baseTable.empty();
    if (!known) {
        std::string table = singleTableOf(statement_);
        if (table.empty()) fail("the rows of this statement belong to no table");
        return table;
    }
    std::string table;
    const auto join = [&](const ColumnInfo& info) {
        if (info.baseTable.empty()) return;
        if (table.empty()) table = info.baseTable;
        if (!sameName(table, info.baseTable)) {
            fail("the values belong to more than one table (" + table + ", " + info.baseTable + ")");
        }
    };
    if (changes.empty()) {
        for (std::size_t i = 0; i < rows_.columnCount(); ++i)
            join(rows_.column(i).info());
    }
    for (const Change& change : changes) {
        const ColumnInfo& info = rows_.column(change.column).info();
        if (info.baseTable.empty()) fail("the field " + info.name + " is computed by the statement and has no column");
        join(info);
    }
    return table;
}

RowWriter::Target RowWriter::targetOf(const std::vector<Change>& changes) const {
    Target target;
    target.table = commonTable(changes);
    const TableInfo& table = connection_.table(target.table);
    for (std::size_t i = 0; i < rows_.columnCount(); ++i) {
        const ColumnInfo& info = rows_.column(i).info();
        const bool foreign = !info.baseTable.empty() && !sameName(info.baseTable, target.table);
        const std::string& wanted = info.baseColumn.empty() ? info.name : info.baseColumn;
        std::string column;
        for (const ColumnInfo& candidate : table.columns) {
            if (!foreign && sameName(candidate.name, wanted)) column = candidate.name;
        }
        target.columns.push_back(std::move(column));
    }
    requireColumns(target, changes);
    return target;
}

void RowWriter::requireColumns(const Target& target, const std::vector<Change>& changes) const {
    for (const Change& change : changes) {
        const ColumnInfo& info = rows_.column(change.column).info();
        const std::string& column = target.columns[change.column];
        if (column.empty()) fail("the field " + info.name + " is not a column of " + target.table);
        for (const ColumnInfo& candidate : connection_.table(target.table).columns) {
            if (candidate.identity && candidate.name == column) {
                fail("the field " + info.name + " is numbered by the database and cannot be assigned");
            }
        }
        for (const Change& other : changes) {
            if (&other != &change && target.columns[other.column] == column) {
                fail("the column " + column + " is assigned twice");
            }
        }
    }
}

std::string RowWriter::condition(const Target& target, std::size_t row, const std::vector<Change>& changes,
                                 std::vector<Value>& values) {
    std::string text;
    const auto compare = [&](const std::string& column, const Value& value) {
        text += (text.empty() ? " WHERE " : " AND ") + quotedName(column);
        if (isNull(value)) {
            text += " IS NULL";
        } else {
            text += " = ?";
            values.push_back(value);
        }
    };
    // Comparisons of texts see neither case nor trailing blanks nor joiners, which are what a correction may change.
    const auto compareExactly = [&](const std::string& column, const ColumnInfo& info, const Value& value) {
        if (!std::holds_alternative<std::string>(value) || isGivenItsForm(info)) return compare(column, value);
        const auto bytes = [](const std::string& of) {
            return "CAST(CAST(" + of + " AS nvarchar(max)) AS varbinary(max))";
        };
        text += (text.empty() ? " WHERE " : " AND ") + bytes(quotedName(column)) + " = " + bytes("?");
        values.push_back(value);
    };
    const std::vector<std::string>& key = connection_.table(target.table).key;
    if (key.empty()) fail("the table " + target.table + " has no primary key, so its rows cannot be told apart");
    for (const std::string& column : key) {
        std::optional<Value> value;
        for (std::size_t i = 0; i < target.columns.size(); ++i) {
            if (!sameName(target.columns[i], column)) continue;
            const Value shown = rows_.column(i).valueAt(row);
            // A table joined with itself shows two rows of it, and nothing tells which one is meant.
            if (value && !sameValue(*value, shown)) fail("the statement shows " + column + " of two rows");
            value = shown;
        }
        if (!value) fail("the key column " + column + " of " + target.table + " is not among the fields");
        compare(column, *value);
    }
    for (const Change& change : changes) {
        const std::string& column = target.columns[change.column];
        const bool inKey =
            std::any_of(key.begin(), key.end(), [&](const std::string& name) { return sameName(name, column); });
        if (inKey || !comparable(rows_.column(change.column).info())) continue;
        compareExactly(column, rows_.column(change.column).info(), rows_.column(change.column).valueAt(row));
    }
    return text;
}

BatchResult RowWriter::send(const Target& target, const std::string& text, const std::vector<Value>& values) {
    try {
        return connection_.run(component_, "post", text, values);
    } catch (const DatabaseError&) {
        connection_.forgetTable(target.table);
        throw;
    }
}

void RowWriter::requireOneRow(const BatchResult& result, const std::string& text) const {
    std::int64_t rows = -1;
    for (const StatementResult& each : result.results) {
        // The first count is the statement's own; those of triggers follow.
        if (!each.rows && each.affectedRows >= 0) {
            rows = each.affectedRows;
            break;
        }
    }
    if (rows == 1) return;
    if (rows == 0) {
        throw DatabaseError(ErrorCategory::Conflict, "01001", 0,
                            component_ +
                                ": the record was changed or deleted by another user since it was read; "
                                "refresh and try again",
                            text);
    }
    throw DatabaseError(ErrorCategory::Other, "HY000", 0,
                        component_ + ": the statement should have changed one row, the database reports " +
                            (rows < 0 ? std::string("no count") : std::to_string(rows)),
                        text);
}

// A new value as it stands in the statement. A null travels as a text where nothing tells its type, and SQL Server
// turns no text into bytes by itself (257).
std::string RowWriter::given(const Change& change, std::vector<Value>& values) const {
    if (isNull(change.value) && rows_.column(change.column).info().type == FieldType::Binary) return "NULL";
    values.push_back(change.value);
    return "?";
}

void RowWriter::update(std::size_t row, const std::vector<Change>& changes) {
    const Target target = targetOf(changes);
    std::string text = "UPDATE " + quotedName(target.table) + " SET ";
    std::vector<Value> values;
    std::string separator;
    for (const Change& change : changes) {
        text += separator + quotedName(target.columns[change.column]) + " = " + given(change, values);
        separator = ", ";
    }
    text += condition(target, row, changes, values);
    requireOneRow(send(target, text, values), text);
}

std::optional<RowWriter::Identity> RowWriter::insert(const std::vector<Change>& changes) {
    const Target target = targetOf(changes);
    std::string names;
    std::string markers;
    std::vector<Value> values;
    for (const Change& change : changes) {
        if (!names.empty()) {
            names += ", ";
            markers += ", ";
        }
        names += quotedName(target.columns[change.column]);
        markers += given(change, values);
    }
    std::optional<std::size_t> identity;
    for (const ColumnInfo& column : connection_.table(target.table).columns) {
        if (!column.identity) continue;
        for (std::size_t i = 0; i < target.columns.size(); ++i) {
            if (target.columns[i] == column.name) identity = i;
        }
    }
    std::string text = "INSERT INTO " + quotedName(target.table) + " (" + names + ") VALUES (" + markers + ")";
    if (identity) text += "; SELECT SCOPE_IDENTITY()";
    const BatchResult result = send(target, text, values);
    const Value number = identity ? firstCell(result).value_or(Null{}) : Null{};
    // FreeTDS tells no count of a statement that a result set follows; a new number says as much.
    if (affectedRows(result) >= 0 || isNull(number)) requireOneRow(result, text);
    if (!identity) return std::nullopt;
    return Identity{*identity, number};
}

void RowWriter::remove(std::size_t row) {
    const Target target = targetOf({});
    std::vector<Value> values;
    const std::string text = "DELETE FROM " + quotedName(target.table) + condition(target, row, {}, values);
    requireOneRow(send(target, text, values), text);
}

}  // namespace basalt
