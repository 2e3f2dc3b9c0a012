#include "stand_in_server.h"

#include <bit>
#include <cctype>
#include <charconv>
#include <stdexcept>

namespace basalt::odbc::test {

namespace {

TdsColumn columnFor(const ColumnInfo& info) {
    switch (info.type) {
        case FieldType::Boolean:
            return tds::bit(info.name);
        case FieldType::TinyInt:
            return tds::integer(info.name, 1);
        case FieldType::SmallInt:
            return tds::integer(info.name, 2);
        case FieldType::Integer:
            return tds::integer(info.name, 4);
        case FieldType::BigInt:
            return tds::integer(info.name, 8);
        case FieldType::Float:
            return tds::column(info.name, TdsType::Float);
        case FieldType::Decimal:
            return tds::decimal(info.name, info.precision, info.scale);
        case FieldType::Binary:
            return tds::column(info.name, TdsType::VarbinaryMax);
        case FieldType::Date:
        case FieldType::DateTime:
            return tds::column(info.name, TdsType::Datetime2, 8, 7);
        case FieldType::Text:
            break;
    }
    constexpr int kLongestText = 4000;
    if (info.size == 0 || info.size > kLongestText) return tds::column(info.name, TdsType::NvarcharMax);
    return tds::nvarchar(info.name, info.size);
}

void write(TdsReply& reply, const StatementResult& result) {
    if (!result.rows) {
        reply.done(result.affectedRows, true);
        return;
    }
    const RowSet& rows = *result.rows;
    std::vector<TdsColumn> columns;
    for (std::size_t i = 0; i < rows.columnCount(); ++i)
        columns.push_back(columnFor(rows.column(i).info()));
    reply.columns(std::move(columns));
    for (std::size_t row = 0; row < rows.rowCount(); ++row) {
        std::vector<Value> cells;
        for (std::size_t i = 0; i < rows.columnCount(); ++i)
            cells.push_back(rows.column(i).valueAt(row));
        reply.row(cells);
    }
    reply.done(static_cast<std::int64_t>(rows.rowCount()), true);
}

std::uint64_t bitsOf(std::string_view hex) {
    std::uint64_t bits = 0;
    for (std::size_t i = hex.size(); i > 2; i -= 2) {
        unsigned byte = 0;
        std::from_chars(hex.data() + i - 2, hex.data() + i, byte, 16);
        bits = bits << 8 | byte;
    }
    return bits;
}

Value valueOf(const TdsParameter& parameter) {
    if (parameter.value == "NULL") return Null{};
    if (parameter.type.starts_with("bit")) return bitsOf(parameter.value) != 0;
    if (parameter.type.starts_with("float")) return std::bit_cast<double>(bitsOf(parameter.value));
    if (parameter.type.ends_with("int")) return std::int64_t{std::stoll(parameter.value)};
    if (parameter.type.starts_with("decimal")) return *Decimal::parse(parameter.value);
    if (parameter.type.starts_with("nvarchar")) return parameter.value;
    throw std::runtime_error("the stand-in takes no parameter of type " + parameter.type);
}

// "@P1" back to the marker that it was.
std::string withMarkers(const std::string& text) {
    std::string result;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const bool name = text.compare(i, 2, "@P") == 0 && i + 2 < text.size() &&
                          std::isdigit(static_cast<unsigned char>(text[i + 2])) != 0;
        result += name ? '?' : text[i];
        if (!name) continue;
        i += 2;
        while (i + 1 < text.size() && std::isdigit(static_cast<unsigned char>(text[i + 1])) != 0)
            ++i;
    }
    return result;
}

}  // namespace

StandInServer::StandInServer(const std::string& file)
    : session_(embedded::EmbeddedSession::open(file, {.createIfMissing = true})) {
    responder_.answerWith([this](const TdsRequest& request) { return answer(request); });
}

// What the catalog of a live server would say; the embedded engine keeps one of another form.
TdsReply StandInServer::describe(const std::string& question) {
    const std::size_t begin = question.find("N'[") + 3;
    const std::string name = question.substr(begin, question.find("]'", begin) - begin);
    const auto text = [](const std::string& value) { return Value(value); };
    const auto number = [](std::int64_t value) { return Value(value); };
    const std::vector<TdsColumn> named = {tds::nvarchar("name", 128)};
    const std::vector<TdsColumn> typed = {tds::nvarchar("name", 128),
                                          tds::nvarchar("", 128),
                                          tds::integer("max_length", 2),
                                          tds::integer("precision", 1),
                                          tds::integer("scale", 1),
                                          tds::bit("first"),
                                          tds::bit("second")};
    const auto row = [&](const std::string& its, const ColumnInfo& type, bool first, bool second) {
        const int characters = type.typeName.starts_with("n") ? 2 : 1;
        const std::int64_t length = type.size == 0 ? -1 : std::int64_t{type.size} * characters;
        return std::vector<Value>{
            text(its), text(type.typeName), number(length), number(type.precision), number(type.scale), first, second};
    };
    TdsReply reply;
    if (question.find("sys.parameters") != std::string::npos) {
        const ProcedureInfo info = session_->procedure(name);
        reply.columns(named).row({text(info.name)}).done(1, true).columns(typed);
        for (const ParameterInfo& parameter : info.parameters)
            reply.row(row(parameter.name, parameter.type, parameter.direction != ParameterDirection::Input, false));
        return reply.done(static_cast<std::int64_t>(info.parameters.size()));
    }
    const TableInfo info = session_->table(name);
    reply.columns(named).row({text(info.name)}).done(1, true).columns(typed);
    for (const ColumnInfo& column : info.columns)
        reply.row(row(column.name, column, column.nullable, column.identity));
    reply.done(static_cast<std::int64_t>(info.columns.size()), true).columns(named);
    for (const std::string& column : info.key)
        reply.row({text(column)});
    return reply.done(static_cast<std::int64_t>(info.key.size()));
}

// By place, as the driver calls; the answers' names are the procedure's own.
TdsReply StandInServer::call(const TdsRequest& request) {
    const ProcedureInfo info = session_->procedure(request.text);
    std::vector<Argument> arguments;
    for (std::size_t i = 0; i < request.parameters.size(); ++i) {
        arguments.push_back({info.parameters.at(i).name, valueOf(request.parameters[i]), request.parameters[i].output});
    }
    const CallResult result = session_->call(request.text, arguments);
    TdsReply reply;
    for (const StatementResult& each : result.batch.results)
        write(reply, each);
    reply.returnStatus(static_cast<int>(result.returnValue));
    int ordinal = 0;
    for (const Argument& output : result.outputs) {
        ColumnInfo type;
        for (const ParameterInfo& parameter : info.parameters) {
            if (parameter.name == output.name) type = parameter.type;
        }
        reply.returnValue(ordinal++, columnFor(type), output.value);
    }
    return reply.doneProcedure();
}

TdsReply StandInServer::answer(const TdsRequest& request) {
    TdsReply reply;
    try {
        BatchResult batch;
        if (request.kind == TdsRequest::Batch) {
            if (request.text.starts_with("SELECT o.name FROM ")) return describe(request.text);
            batch = session_->run(request.text);
        } else {
            if (request.text != "sp_executesql") return call(request);
            std::vector<Value> values;
            // After the statement and the declaration of its parameters.
            for (std::size_t i = 2; i < request.parameters.size(); ++i)
                values.push_back(valueOf(request.parameters[i]));
            batch = session_->run(withMarkers(request.parameters.at(0).value), values);
        }
        for (const std::string& message : batch.messages)
            reply.info(0, message);
        for (const StatementResult& result : batch.results)
            write(reply, result);
        return reply.done();
    } catch (const DatabaseError& error) {
        return reply.error(error.nativeCode() == 0 ? 50000 : error.nativeCode(), 16, error.what()).doneWithError();
    }
}

}  // namespace basalt::odbc::test
