// Answers from a recording (ado/recording_session.h) in place of a database.
//
//   ReplaySession replay("case.jsonl");
//   TADOConnection connection(replay);
//   ...
//   if (!replay.finished()) std::cerr << replay.leftover();
//
// Each call must be the next one of the recording, byte for byte. Any other one is a UsageError that shows both, and
// the recording stays where it is.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "ado/session.h"

namespace basalt {

class ReplaySession final : public Session {
public:
    // UsageError when the file cannot be read or is no recording.
    explicit ReplaySession(const std::filesystem::path& file);

    // What the recorder left to be known; empty when nothing.
    [[nodiscard]] const std::string& note() const { return note_; }
    // Whether every recorded call was made.
    [[nodiscard]] bool finished() const { return next_ == lines_.size(); }
    // The calls not made, one a line with its line number; empty when finished.
    [[nodiscard]] std::string leftover() const;

    BatchResult run(std::string_view sql) override;
    BatchResult run(std::string_view sql, std::span<const Value> parameters) override;
    ProcedureInfo procedure(std::string_view name) override;
    CallResult call(std::string_view name, std::span<const Argument> arguments) override;
    void begin() override;
    void commit() override;
    void rollback() override;
    [[nodiscard]] bool inTransaction() const override { return inTransaction_; }
    TableInfo table(std::string_view name) override;
    // Of the recorded session.
    [[nodiscard]] std::string engine() const override { return engine_; }
    [[nodiscard]] std::string location() const override { return "recording"; }

private:
    template <typename Read>
    auto answer(const std::string& request, Read read);

    std::vector<std::string> lines_;  // without the first one, which tells what the file is
    std::size_t next_ = 0;
    std::string engine_;
    std::string note_;
    bool inTransaction_ = false;
};

}  // namespace basalt
