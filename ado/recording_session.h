// Writes down what passes between the components and a database, so that a case can be repeated without that database.
//
//   RecordingSession recording(session, "case.jsonl");
//   TADOConnection connection(recording);
//
// The file is new, or replaces an older recording; each call is one line of JSON, written before the call returns. It
// holds the statements and the data that came back, so it is as confidential as the data. It never holds a connection
// string.
#pragma once

#include <filesystem>
#include <fstream>
#include <string>

#include "ado/session.h"

namespace basalt {

class RecordingSession final : public Session {
public:
    // The inner session is borrowed. The note is whatever else a replay has to know. UsageError when there is
    // a file already that is neither empty nor a recording, which stays as it is; std::runtime_error when the file
    // cannot be written.
    RecordingSession(Session& inner, const std::filesystem::path& file, const std::string& note = {});
    ~RecordingSession() override;

    // As the inner session's. When the last line could not be written, the next call is a DatabaseError (DiskFull) and
    // is not passed on; but rollback always is, as the inner session would be left in its transaction.
    BatchResult run(std::string_view sql) override;
    BatchResult run(std::string_view sql, std::span<const Value> parameters) override;
    ProcedureInfo procedure(std::string_view name) override;
    CallResult call(std::string_view name, std::span<const Argument> arguments) override;
    void begin() override;
    void commit() override;
    void rollback() override;
    [[nodiscard]] bool inTransaction() const override { return inner_.inTransaction(); }
    TableInfo table(std::string_view name) override;
    // Not written: a replay answers at once.
    void limitTime(std::optional<int> seconds) override { inner_.limitTime(seconds); }
    [[nodiscard]] std::string engine() const override { return inner_.engine(); }
    [[nodiscard]] std::string location() const override { return inner_.location(); }

private:
    template <typename Request, typename Call, typename Describe>
    auto recorded(Request request, Call call, Describe describe);

    Session& inner_;
    std::filesystem::path file_;
    std::ofstream out_;
};

}  // namespace basalt
