#include "stand_in_server.h"

#include <bit>
#include <cctype>
#include <charconv>
#include <stdexcept>
#include <thread>

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

// Comments and names in brackets are not looked at; the scripts that come here have no quotes in them.
std::string inCodePage(const std::string& sql, const std::pair<std::string, std::string>& lost) {
    if (lost.first.empty()) return sql;
    std::string result;
    enum { Code, Kept, Changed } state = Code;
    for (std::size_t i = 0; i < sql.size(); ++i) {
        if (sql[i] == '\'') {
            state = state != Code ? Code : i > 0 && sql[i - 1] == 'N' ? Kept : Changed;
        } else if (state == Changed && sql.compare(i, lost.first.size(), lost.first) == 0) {
            result += lost.second;
            i += lost.first.size() - 1;
            continue;
        }
        result += sql[i];
    }
    return result;
}

}  // namespace

StandInServer::StandInServer(const std::string& file)
    : session_(embedded::EmbeddedSession::open(file, {.createIfMissing = true})) {
    responder_.answerWith([this](const TdsRequest& request) { return answer(request); });
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
    if (!slow_.first.empty() && request.text.find(slow_.first) != std::string::npos) {
        std::this_thread::sleep_for(slow_.second);
    }
    TdsReply reply;
    try {
        BatchResult batch;
        if (request.kind == TdsRequest::Batch) {
            batch = session_->run(inCodePage(request.text, lost_));
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
