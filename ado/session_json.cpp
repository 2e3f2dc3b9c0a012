#include "ado/session_json.h"

#include <array>
#include <charconv>
#include <string_view>

#include "ado/error.h"
#include "ado/field_type_words.h"
#include "ado/unicode.h"

namespace basalt::session_json {

namespace {

constexpr std::array<std::string_view, 13> kCategories = {
    "other",    "syntax",     "notFound", "constraint", "conversion", "truncation", "busy",
    "conflict", "connection", "corrupt",  "diskFull",   "version",    "limit"};
constexpr std::array<std::string_view, 3> kDirections = {"input", "inputOutput", "returnValue"};

// The place of a word in its list, so that a file stays readable when an enumeration grows.
template <typename Enum, std::size_t N>
Enum fromWord(const std::array<std::string_view, N>& words, const std::string& word) {
    for (std::size_t i = 0; i < N; ++i) {
        if (words[i] == word) return static_cast<Enum>(i);
    }
    throw UsageError("the recording holds the unknown word '" + word + "'");
}

std::string hex(std::string_view bytes) {
    constexpr std::string_view kDigits = "0123456789ABCDEF";
    std::string text;
    text.reserve(bytes.size() * 2);
    for (const char c : bytes) {
        const auto byte = static_cast<unsigned char>(c);
        text += kDigits[byte >> 4];
        text += kDigits[byte & 15];
    }
    return text;
}

std::string unhex(const std::string& text) {
    std::string bytes;
    bytes.reserve(text.size() / 2);
    for (std::size_t i = 0; i < text.size(); i += 2) {
        unsigned char byte = 0;
        const char* const end = text.data() + i + 2;
        if (i + 1 >= text.size() || std::from_chars(text.data() + i, end, byte, 16).ptr != end) {
            throw UsageError("the recording holds bytes that are not hexadecimal digits");
        }
        bytes += static_cast<char>(byte);
    }
    return bytes;
}

std::string floatText(double value) {
    std::array<char, 64> buffer;
    return {buffer.data(), std::to_chars(buffer.data(), buffer.data() + buffer.size(), value).ptr};
}

double floatOf(const std::string& text) {
    double value = 0;
    if (std::from_chars(text.data(), text.data() + text.size(), value).ptr != text.data() + text.size()) {
        throw UsageError("the recording holds a float that is none: " + text);
    }
    return value;
}

// Strict about what JSON texts may hold: no overlong forms, no surrogates.
Json fromText(const std::string& text) {
    if (findInvalidUtf8(text) == kValidUtf8) return text;
    return {{"rawText", hex(text)}};
}

Json fromValue(const Value& value) {
    switch (value.index()) {
        case 1:
            return std::get<bool>(value);
        case 2:
            return std::get<std::int64_t>(value);
        case 3:
            return {{"float", floatText(std::get<double>(value))}};
        case 4:
            return {{"decimal", std::get<Decimal>(value).toString()}};
        case 5:
            return fromText(std::get<std::string>(value));
        case 6: {
            const auto& bytes = std::get<Bytes>(value);
            return {{"bytes", hex({reinterpret_cast<const char*>(bytes.data()), bytes.size()})}};
        }
        case 7:
            return {{"datetime", toText(value)}};
        default:
            return nullptr;
    }
}

std::string toTextValue(const Json& json) {
    return std::get<std::string>(toValue(json));
}

Json fromColumn(const ColumnInfo& column) {
    Json json = {{"name", fromText(column.name)}, {"type", kFieldTypeWords[static_cast<std::size_t>(column.type)]}};
    // Only what differs from a plain column, so that lines stay short enough to read.
    const ColumnInfo plain;
    if (column.size != plain.size) json["size"] = column.size;
    if (column.precision != plain.precision) json["precision"] = column.precision;
    if (column.scale != plain.scale) json["scale"] = column.scale;
    if (column.nullable != plain.nullable) json["nullable"] = column.nullable;
    if (column.identity != plain.identity) json["identity"] = column.identity;
    if (column.fixedLength != plain.fixedLength) json["fixedLength"] = column.fixedLength;
    if (!column.typeName.empty()) json["typeName"] = fromText(column.typeName);
    if (!column.baseTable.empty()) json["baseTable"] = fromText(column.baseTable);
    if (!column.baseColumn.empty()) json["baseColumn"] = fromText(column.baseColumn);
    return json;
}

ColumnInfo toColumn(const Json& json) {
    ColumnInfo column;
    column.name = toTextValue(json.at("name"));
    column.type = fromWord<FieldType>(kFieldTypeWords, json.at("type"));
    column.size = json.value("size", column.size);
    column.precision = json.value("precision", column.precision);
    column.scale = json.value("scale", column.scale);
    column.nullable = json.value("nullable", column.nullable);
    column.identity = json.value("identity", column.identity);
    column.fixedLength = json.value("fixedLength", column.fixedLength);
    const auto text = [&](const char* key) { return json.contains(key) ? toTextValue(json.at(key)) : std::string(); };
    column.typeName = text("typeName");
    column.baseTable = text("baseTable");
    column.baseColumn = text("baseColumn");
    return column;
}

Json fromRows(const RowSet& rows) {
    Json columns = Json::array();
    for (std::size_t i = 0; i < rows.columnCount(); ++i)
        columns.push_back(fromColumn(rows.column(i).info()));
    Json lines = Json::array();
    for (std::size_t row = 0; row < rows.rowCount(); ++row) {
        Json line = Json::array();
        for (std::size_t i = 0; i < rows.columnCount(); ++i)
            line.push_back(fromValue(rows.column(i).valueAt(row)));
        lines.push_back(std::move(line));
    }
    return {{"columns", std::move(columns)}, {"rows", std::move(lines)}};
}

RowSet toRows(const Json& json) {
    std::vector<ColumnInfo> columns;
    for (const Json& column : json.at("columns"))
        columns.push_back(toColumn(column));
    RowSet rows(std::move(columns));
    for (const Json& line : json.at("rows")) {
        if (line.size() != rows.columnCount()) throw UsageError("the recording holds a row of another length");
        for (std::size_t i = 0; i < rows.columnCount(); ++i)
            rows.column(i).appendValue(toValue(line[i]));
        rows.finishRow();
    }
    return rows;
}

std::vector<Argument> toArguments(const Json& json) {
    std::vector<Argument> arguments;
    for (const Json& each : json) {
        arguments.push_back({toTextValue(each.at("name")), toValue(each.at("value")), each.value("output", false)});
    }
    return arguments;
}

Json fromTexts(const std::vector<std::string>& texts) {
    Json json = Json::array();
    for (const std::string& text : texts)
        json.push_back(fromText(text));
    return json;
}

std::vector<std::string> toTexts(const Json& json) {
    std::vector<std::string> texts;
    for (const Json& each : json)
        texts.push_back(toTextValue(each));
    return texts;
}

}  // namespace

Json simpleRequest(const char* kind) {
    return {{"kind", kind}};
}

Json statementRequest(std::string_view sql) {
    return {{"kind", "run"}, {"text", fromText(std::string(sql))}};
}

Json namedRequest(const char* kind, std::string_view name) {
    return {{"kind", kind}, {"name", fromText(std::string(name))}};
}

Json fromValues(std::span<const Value> values) {
    Json json = Json::array();
    for (const Value& value : values)
        json.push_back(fromValue(value));
    return json;
}

Json fromArguments(std::span<const Argument> arguments) {
    Json json = Json::array();
    for (const Argument& each : arguments) {
        Json argument = {{"name", fromText(each.name)}, {"value", fromValue(each.value)}};
        if (each.output) argument["output"] = true;
        json.push_back(std::move(argument));
    }
    return json;
}

Json fromBatch(const BatchResult& batch) {
    Json results = Json::array();
    for (const StatementResult& result : batch.results) {
        results.push_back(result.rows ? fromRows(*result.rows) : Json{{"affectedRows", result.affectedRows}});
    }
    Json json = {{"results", std::move(results)}};
    if (!batch.messages.empty()) json["messages"] = fromTexts(batch.messages);
    if (!batch.messagePlaces.empty()) json["messagePlaces"] = batch.messagePlaces;
    return json;
}

Json fromCall(const CallResult& call) {
    Json json = fromBatch(call.batch);
    json["returnValue"] = call.returnValue;
    json["outputs"] = fromArguments(call.outputs);
    return json;
}

Json fromProcedure(const ProcedureInfo& procedure) {
    Json parameters = Json::array();
    for (const ParameterInfo& each : procedure.parameters) {
        Json parameter = {{"name", fromText(each.name)},
                          {"direction", kDirections[static_cast<std::size_t>(each.direction)]},
                          {"type", fromColumn(each.type)}};
        if (each.hasDefault) parameter["hasDefault"] = true;
        parameters.push_back(std::move(parameter));
    }
    return {{"name", fromText(procedure.name)}, {"parameters", std::move(parameters)}};
}

Json fromTable(const TableInfo& table) {
    Json columns = Json::array();
    for (const ColumnInfo& column : table.columns)
        columns.push_back(fromColumn(column));
    return {{"name", fromText(table.name)}, {"columns", std::move(columns)}, {"key", fromTexts(table.key)}};
}

Json fromError(const DatabaseError& error) {
    Json json{{"category", kCategories[static_cast<std::size_t>(error.category())]},
              {"sqlState", fromText(error.sqlState())},
              {"nativeCode", error.nativeCode()},
              {"message", fromText(error.what())},
              {"statement", fromText(error.statement())}};
    if (error.results()) json.update(fromBatch(*error.results()));
    return json;
}

Value toValue(const Json& json) {
    if (json.is_null()) return Null{};
    if (json.is_boolean()) return json.get<bool>();
    if (json.is_number_integer()) return json.get<std::int64_t>();
    if (json.is_string()) return json.get<std::string>();
    if (!json.is_object() || json.size() != 1) throw UsageError("the recording holds a value of no known kind");
    const std::string& kind = json.begin().key();
    const auto text = json.begin().value().get<std::string>();
    if (kind == "float") return floatOf(text);
    if (kind == "rawText") return unhex(text);
    if (kind == "bytes") {
        const std::string bytes = unhex(text);
        return Bytes(bytes.begin(), bytes.end());
    }
    if (kind == "decimal") {
        if (const auto decimal = Decimal::parse(text)) return *decimal;
    }
    if (kind == "datetime") {
        if (const auto point = parseDateTime(text)) return *point;
    }
    throw UsageError("the recording holds a value of no known kind: " + kind + " " + text);
}

BatchResult toBatch(const Json& json) {
    BatchResult batch;
    for (const Json& result : json.at("results")) {
        StatementResult& each = batch.results.emplace_back();
        if (result.contains("columns")) {
            each.rows = toRows(result);
        } else {
            each.affectedRows = result.at("affectedRows").get<std::int64_t>();
        }
    }
    if (json.contains("messages")) batch.messages = toTexts(json.at("messages"));
    if (json.contains("messagePlaces")) {
        batch.messagePlaces = json.at("messagePlaces").get<std::vector<std::size_t>>();
    }
    return batch;
}

CallResult toCall(const Json& json) {
    CallResult call;
    call.batch = toBatch(json);
    call.returnValue = json.at("returnValue").get<std::int64_t>();
    call.outputs = toArguments(json.at("outputs"));
    return call;
}

ProcedureInfo toProcedure(const Json& json) {
    ProcedureInfo procedure;
    procedure.name = toTextValue(json.at("name"));
    for (const Json& each : json.at("parameters")) {
        procedure.parameters.push_back({toTextValue(each.at("name")),
                                        fromWord<ParameterDirection>(kDirections, each.at("direction")),
                                        toColumn(each.at("type")), each.value("hasDefault", false)});
    }
    return procedure;
}

TableInfo toTable(const Json& json) {
    TableInfo table;
    table.name = toTextValue(json.at("name"));
    for (const Json& column : json.at("columns"))
        table.columns.push_back(toColumn(column));
    table.key = toTexts(json.at("key"));
    return table;
}

DatabaseError toError(const Json& json) {
    DatabaseError error(fromWord<ErrorCategory>(kCategories, json.at("category")), toTextValue(json.at("sqlState")),
                        json.at("nativeCode").get<int>(), toTextValue(json.at("message")),
                        toTextValue(json.at("statement")));
    if (json.contains("results")) return withResults(std::move(error), toBatch(json));
    return error;
}

}  // namespace basalt::session_json
