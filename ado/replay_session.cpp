#include "ado/replay_session.h"

#include <fstream>

#include "ado/error.h"
#include "ado/session_json.h"

namespace basalt {

using session_json::Json;

namespace {

// The members that make up a request, in their order; the rest of a line is the answer.
Json requestOf(const Json& line) {
    Json request = Json::object();
    for (const char* key : {"kind", "text", "name", "parameters", "arguments"}) {
        if (line.contains(key)) request[key] = line.at(key);
    }
    return request;
}

}  // namespace

ReplaySession::ReplaySession(const std::filesystem::path& file) {
    std::ifstream in(file, std::ios::binary);
    std::string line;
    if (!std::getline(in, line)) throw UsageError("the recording " + file.string() + " cannot be read");
    try {
        const Json head = Json::parse(line);
        if (head.at("recording") != 1) {
            throw UsageError("the recording " + file.string() + " was made by a newer program");
        }
        engine_ = head.at("engine").get<std::string>();
        note_ = head.value("note", std::string());
    } catch (const Json::exception&) {
        throw UsageError("the file " + file.string() + " is not a recording");
    }
    while (std::getline(in, line))
        lines_.push_back(line);
}

std::string ReplaySession::leftover() const {
    std::string all;
    for (std::size_t i = next_; i < lines_.size(); ++i) {
        const Json line = Json::parse(lines_[i], nullptr, false);
        all += "line " + std::to_string(i + 2) + ": " + (line.is_object() ? requestOf(line).dump() : lines_[i]) + "\n";
    }
    return all;
}

template <typename Read>
auto ReplaySession::answer(const std::string& request, Read read) {
    const std::string place = "replay, line " + std::to_string(next_ + 2) + ": ";
    if (finished()) throw UsageError(place + "the recording ends here, got " + request);
    try {
        const Json line = Json::parse(lines_[next_]);
        if (const std::string expected = requestOf(line).dump(); expected != request) {
            throw UsageError(place + "expected " + expected + ", got " + request);
        }
        ++next_;
        inTransaction_ = line.value("inTransaction", false);
        if (line.contains("error")) throw session_json::toError(line.at("error"));
        return read(line);
    } catch (const Json::exception& error) {
        throw UsageError(place + "not a line of a recording: " + error.what());
    }
}

BatchResult ReplaySession::run(std::string_view sql) {
    return answer(session_json::statementRequest(sql).dump(),
                  [](const Json& line) { return session_json::toBatch(line.at("result")); });
}

BatchResult ReplaySession::run(std::string_view sql, std::span<const Value> parameters) {
    Json request = session_json::statementRequest(sql);
    request["parameters"] = session_json::fromValues(parameters);
    return answer(request.dump(), [](const Json& line) { return session_json::toBatch(line.at("result")); });
}

ProcedureInfo ReplaySession::procedure(std::string_view name) {
    return answer(session_json::namedRequest("procedure", name).dump(),
                  [](const Json& line) { return session_json::toProcedure(line.at("result")); });
}

CallResult ReplaySession::call(std::string_view name, std::span<const Argument> arguments) {
    Json request = session_json::namedRequest("call", name);
    request["arguments"] = session_json::fromArguments(arguments);
    return answer(request.dump(), [](const Json& line) { return session_json::toCall(line.at("result")); });
}

TableInfo ReplaySession::table(std::string_view name) {
    return answer(session_json::namedRequest("table", name).dump(),
                  [](const Json& line) { return session_json::toTable(line.at("result")); });
}

void ReplaySession::begin() {
    answer(session_json::simpleRequest("begin").dump(), [](const Json&) {});
}

void ReplaySession::commit() {
    answer(session_json::simpleRequest("commit").dump(), [](const Json&) {});
}

void ReplaySession::rollback() {
    answer(session_json::simpleRequest("rollback").dump(), [](const Json&) {});
}

}  // namespace basalt
