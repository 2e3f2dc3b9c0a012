// A server that speaks TDS and T-SQL on this machine: the scripted responder, with answers from the embedded engine. It
// shows that real scripts and real data pass through FreeTDS unharmed.
#pragma once

#include <chrono>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "engines/embedded/embedded_session.h"
#include "tds_responder.h"

namespace basalt::odbc::test {

class StandInServer {
public:
    // Keeps its data in that file.
    explicit StandInServer(const std::string& file);

    [[nodiscard]] std::string connectionPart() const { return responder_.connectionPart(); }
    // As under a collation whose code page has no place for the letter: in literals without N it becomes another.
    void loseLetter(const std::string& letter, const std::string& other) { lost_ = {letter, other}; }
    // Statements with these words in them are answered so much later; to be said before the first request.
    void takeTime(const std::string& words, std::chrono::milliseconds time) { slow_ = {words, time}; }
    [[nodiscard]] std::vector<TdsRequest> requests() const { return responder_.requests(); }

private:
    TdsReply answer(const TdsRequest& request);
    TdsReply call(const TdsRequest& request);

    std::pair<std::string, std::string> lost_;
    std::pair<std::string, std::chrono::milliseconds> slow_;
    std::unique_ptr<embedded::EmbeddedSession> session_;
    TdsResponder responder_;  // goes first, with its thread
};

}  // namespace basalt::odbc::test
