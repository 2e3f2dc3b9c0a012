#include "ado/recording_session.h"

#include <cerrno>
#include <stdexcept>
#include <system_error>

#include "ado/error.h"
#include "ado/session_json.h"

namespace basalt {

using session_json::Json;

namespace {

// An older recording gives way, and so does a file that holds nothing; whatever else there is was not meant.
void requireFree(const std::filesystem::path& file) {
    std::error_code failure;
    if (!std::filesystem::is_regular_file(file, failure)) return;
    if (std::filesystem::file_size(file, failure) == 0 && !failure) return;
    std::ifstream in(file, std::ios::binary);
    std::string head(session_json::recordingHead.size(), '\0');
    if (in.read(head.data(), static_cast<std::streamsize>(head.size())) && head == session_json::recordingHead) return;
    throw UsageError("there is a file at " + file.string() +
                     " already, and it is not a recording, which alone would be replaced");
}

}  // namespace

RecordingSession::RecordingSession(Session& inner, const std::filesystem::path& file, const std::string& note)
    : inner_(inner), file_(file) {
    requireFree(file_);
    out_.open(file_, std::ios::binary | std::ios::trunc);
    // Of the place only the engine's name: a location can tell about servers and people.
    Json head{{"recording", 1}, {"engine", inner_.engine()}};
    if (!note.empty()) head["note"] = note;
    out_ << head.dump() << '\n' << std::flush;
    if (!out_) {
        throw std::runtime_error("the recording " + file_.string() +
                                 " cannot be written: " + std::generic_category().message(errno));
    }
}

RecordingSession::~RecordingSession() = default;

// Runs the call and writes its line: the request, and the result or the error.
template <typename Request, typename Call, typename Describe>
auto RecordingSession::recorded(Request request, Call call, Describe describe) {
    if (!out_) {
        throw DatabaseError(ErrorCategory::DiskFull, "HY000", 0,
                            "the recording " + file_.string() + " cannot be written any more");
    }
    Json line = request();
    const auto write = [&] {
        if (inner_.inTransaction()) line["inTransaction"] = true;
        out_ << line.dump() << '\n' << std::flush;
    };
    try {
        if constexpr (std::is_void_v<decltype(call())>) {
            call();
            write();
        } else {
            auto result = call();
            line["result"] = describe(result);
            write();
            return result;
        }
    } catch (const DatabaseError& error) {
        line["error"] = session_json::fromError(error);
        write();
        throw;
    }
}

BatchResult RecordingSession::run(std::string_view sql) {
    return recorded([&] { return session_json::statementRequest(sql); }, [&] { return inner_.run(sql); },
                    session_json::fromBatch);
}

BatchResult RecordingSession::run(std::string_view sql, std::span<const Value> parameters) {
    const auto request = [&] {
        Json json = session_json::statementRequest(sql);
        json["parameters"] = session_json::fromValues(parameters);
        return json;
    };
    return recorded(
        request, [&] { return inner_.run(sql, parameters); }, session_json::fromBatch);
}

ProcedureInfo RecordingSession::procedure(std::string_view name) {
    return recorded([&] { return session_json::namedRequest("procedure", name); },
                    [&] { return inner_.procedure(name); }, session_json::fromProcedure);
}

CallResult RecordingSession::call(std::string_view name, std::span<const Argument> arguments) {
    const auto request = [&] {
        Json json = session_json::namedRequest("call", name);
        json["arguments"] = session_json::fromArguments(arguments);
        return json;
    };
    return recorded(
        request, [&] { return inner_.call(name, arguments); }, session_json::fromCall);
}

TableInfo RecordingSession::table(std::string_view name) {
    return recorded([&] { return session_json::namedRequest("table", name); }, [&] { return inner_.table(name); },
                    session_json::fromTable);
}

void RecordingSession::begin() {
    recorded([] { return session_json::simpleRequest("begin"); }, [&] { inner_.begin(); }, nullptr);
}

void RecordingSession::commit() {
    recorded([] { return session_json::simpleRequest("commit"); }, [&] { inner_.commit(); }, nullptr);
}

void RecordingSession::rollback() {
    // A transaction that nobody could end would keep others out until the program ends.
    if (!out_) {
        inner_.rollback();
        return;
    }
    recorded([] { return session_json::simpleRequest("rollback"); }, [&] { inner_.rollback(); }, nullptr);
}

}  // namespace basalt
