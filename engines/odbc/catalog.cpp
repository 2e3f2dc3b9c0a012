#include "engines/odbc/catalog.h"

#include "ado/names.h"
#include "engines/odbc/column_types.h"

namespace basalt::odbc {

namespace {

std::string literal(std::string_view text) {
    std::string result = "N'";
    for (const char c : text) {
        if (c == '\'') result += c;
        result += c;
    }
    return result += '\'';
}

// The catalog in which the object stands, with its point, and the literal for OBJECT_ID.
struct Place {
    std::string catalog;
    std::string object;
};

Place placeOf(std::string_view name) {
    // Names with points or brackets say themselves what their parts are.
    const bool plain = name.find_first_of(".[\"") == std::string_view::npos;
    const std::string quoted = plain ? quotedName(name) : std::string(name);
    // The tables of this session live elsewhere.
    if (name.starts_with('#') || name.starts_with("[#")) return {"tempdb.", literal("tempdb.." + quoted)};
    return {"", literal(quoted)};
}

// The result sets of an answer; counts do not matter.
const RowSet& resultOf(const BatchResult& answer, std::size_t index) {
    for (const StatementResult& result : answer.results) {
        if (result.rows && index-- == 0) return *result.rows;
    }
    throw DatabaseError(ErrorCategory::Other, "HY000", 0, "the server's catalog did not answer as expected");
}

int number(const RowSet& rows, std::size_t column, std::size_t row) {
    return static_cast<int>(toInt64(rows.column(column).valueAt(row)));
}

std::string text(const RowSet& rows, std::size_t column, std::size_t row) {
    return toText(rows.column(column).valueAt(row));
}

// The columns of both questions begin alike: name, type, max_length, precision, scale.
ColumnInfo typeIn(const RowSet& rows, std::size_t row) {
    ColumnInfo column;
    column.name = text(rows, 0, row);
    describeFromCatalog(column, {.name = text(rows, 1, row),
                                 .maxLength = number(rows, 2, row),
                                 .precision = number(rows, 3, row),
                                 .scale = number(rows, 4, row)});
    return column;
}

bool names(const RowSet& rows) {
    return rows.rowCount() == 1 && !rows.column(0).isNull(0);
}

}  // namespace

std::string tableQuestion(std::string_view name) {
    const auto [catalog, object] = placeOf(name);
    return "SELECT o.name FROM " + catalog + "sys.objects o WHERE o.object_id = OBJECT_ID(" + object +
           ") AND o.type IN ('U', 'V')\n"
           "SELECT c.name, TYPE_NAME(c.system_type_id), c.max_length, c.precision, c.scale, c.is_nullable, "
           "c.is_identity FROM " +
           catalog + "sys.columns c WHERE c.object_id = OBJECT_ID(" + object +
           ") ORDER BY c.column_id\n"
           "SELECT c.name FROM " +
           catalog + "sys.indexes i INNER JOIN " + catalog +
           "sys.index_columns k ON k.object_id = i.object_id AND k.index_id = i.index_id INNER JOIN " + catalog +
           "sys.columns c ON c.object_id = k.object_id AND c.column_id = k.column_id WHERE i.is_primary_key = 1 AND "
           "i.object_id = OBJECT_ID(" +
           object + ") ORDER BY k.key_ordinal";
}

TableInfo readTable(const BatchResult& answer, std::string_view name) {
    const RowSet& self = resultOf(answer, 0);
    if (!names(self)) {
        throw DatabaseError(ErrorCategory::NotFound, "42S02", 208, "Invalid object name '" + std::string(name) + "'.");
    }
    TableInfo table;
    // The server lengthens the name of a temporary table with a number of its own.
    table.name = name.starts_with('#') ? std::string(name) : text(self, 0, 0);
    const RowSet& columns = resultOf(answer, 1);
    for (std::size_t row = 0; row < columns.rowCount(); ++row) {
        ColumnInfo column = typeIn(columns, row);
        column.nullable = number(columns, 5, row) != 0;
        column.identity = number(columns, 6, row) != 0;
        column.baseTable = table.name;
        column.baseColumn = column.name;
        table.columns.push_back(std::move(column));
    }
    const RowSet& key = resultOf(answer, 2);
    for (std::size_t row = 0; row < key.rowCount(); ++row)
        table.key.push_back(text(key, 0, row));
    return table;
}

std::string procedureQuestion(std::string_view name) {
    const std::string object = placeOf(name).object;
    return "SELECT o.name FROM sys.objects o WHERE o.object_id = OBJECT_ID(" + object +
           ") AND o.type IN ('P', 'PC')\n"
           "SELECT p.name, TYPE_NAME(p.system_type_id), p.max_length, p.precision, p.scale, p.is_output, "
           "p.has_default_value FROM sys.parameters p WHERE p.object_id = OBJECT_ID(" +
           object + ") AND p.parameter_id > 0 ORDER BY p.parameter_id";
}

ProcedureInfo readProcedure(const BatchResult& answer, std::string_view name) {
    const RowSet& self = resultOf(answer, 0);
    if (!names(self)) {
        throw DatabaseError(ErrorCategory::NotFound, "42000", 2812,
                            "Could not find stored procedure '" + std::string(name) + "'.");
    }
    ProcedureInfo procedure;
    procedure.name = text(self, 0, 0);
    const RowSet& parameters = resultOf(answer, 1);
    for (std::size_t row = 0; row < parameters.rowCount(); ++row) {
        ParameterInfo parameter;
        parameter.type = typeIn(parameters, row);
        parameter.name = parameter.type.name;
        if (number(parameters, 5, row) != 0) parameter.direction = ParameterDirection::InputOutput;
        // The server keeps this of procedures in other languages only; of T-SQL's own it always says no.
        parameter.hasDefault = number(parameters, 6, row) != 0;
        procedure.parameters.push_back(std::move(parameter));
    }
    return procedure;
}

}  // namespace basalt::odbc
