// A server that answers TDS requests from a script, on this machine only: what a live SQL Server would say, and what it
// rarely says, for tests of the way through FreeTDS.
//
//   TdsResponder server;
//   server.answer(TdsReply().columns({tds::integer("A")}).row({1}).done(1));
//   OdbcSession::open(driver + server.connectionPart())->run("select 1 as A");
//   server.requests().at(0).text                      "select 1 as A"
#pragma once

#include <deque>
#include <functional>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include "tds_reply.h"
#include "tds_request.h"

namespace basalt::odbc::test {

class TdsResponder {
public:
    TdsResponder();
    ~TdsResponder();
    TdsResponder(const TdsResponder&) = delete;
    TdsResponder& operator=(const TdsResponder&) = delete;

    // "SERVER=127.0.0.1;PORT=...;..." without a driver.
    [[nodiscard]] std::string connectionPart() const;

    // Answers to the next requests, in this order. A request without one is answered with an error.
    void answer(const TdsReply& reply);
    // Sends so much and closes the connection in the middle of the message.
    void answerAndHangUp(const std::string& bytes);
    // Says nothing until the client gives up.
    void keepWaiting();
    // Every request that has no scripted answer, for a server that is more than a script. Called in the server's
    // thread.
    void answerWith(std::function<TdsReply(const TdsRequest&)> handler);
    // Of the next login.
    void refuseLogin(int number, const std::string& message);

    [[nodiscard]] std::vector<TdsRequest> requests() const;
    // Answers that no request has asked for.
    [[nodiscard]] std::size_t leftovers() const;
    [[nodiscard]] int logins() const;
    // How often the client has given up what it had asked for.
    [[nodiscard]] int attentions() const;

private:
    struct Answer {
        enum End { Complete, HangUp, Wait } end = Complete;
        std::string bytes;
    };
    struct Message {
        unsigned type = 0;
        std::string body;
    };

    void serve();
    void talk(int client);
    // False when the connection is to be closed.
    bool handle(int client, const Message& message);
    bool logIn(int client);
    bool respond(int client, const TdsRequest& request);

    int listener_ = -1;
    int port_ = 0;
    mutable std::mutex mutex_;
    std::deque<Answer> answers_;
    std::deque<TdsReply> refusals_;
    std::function<TdsReply(const TdsRequest&)> handler_;
    std::vector<TdsRequest> requests_;
    int logins_ = 0;
    int attentions_ = 0;
    int client_ = -1;
    bool stopping_ = false;
    std::thread thread_;
};

}  // namespace basalt::odbc::test
