// A database with the demo company for one test: in memory, or as a file that several clients open.
#pragma once

#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "engines/embedded/embedded_session.h"
#include "host/services/deploy.h"
#include "host/services/reference_host.h"
#include "host/services/sql_access.h"
#include "tests/support/row_lines.h"

namespace basalt::host {

// The rows of a statement.
inline std::vector<std::string> linesOf(Session& session, const std::string& sql) {
    return linesOf(rowsOf(session, sql));
}

inline std::unique_ptr<Session> openDatabase(const std::string& path) {
    return embedded::EmbeddedSession::open(path, {.createIfMissing = true});
}

// Host options that leave no file behind.
inline HostOptions workstation(const std::string& name) {
    return {.workstationName = name, .persistOptions = false};
}

// One client with a database of its own in memory.
class DemoDatabaseTest : public ::testing::Test {
protected:
    DemoDatabaseTest() { deployDatabase(*session, {.demo = true}); }

    std::unique_ptr<Session> session = openDatabase(":memory:");
};

// A file that goes away with the test.
class DemoFileTest : public ::testing::Test {
protected:
    DemoFileTest() : folder_(std::filesystem::temp_directory_path() / ("basalt-demo-" + std::to_string(getpid()))) {
        std::filesystem::remove_all(folder_);
        std::filesystem::create_directories(folder_);
        deployDatabase(*openDatabase(path()), {.demo = true});
    }
    ~DemoFileTest() override { std::filesystem::remove_all(folder_); }

    [[nodiscard]] std::string path() const { return (folder_ / "demo.basalt").string(); }

private:
    std::filesystem::path folder_;
};

// Shows nothing, keeps what was asked, answers from a list; a question beyond the list fails the test.
class QueuedMessages final : public MessageService {
public:
    ~QueuedMessages() override { EXPECT_TRUE(answers.empty()) << "questions were expected that nobody asked"; }

    int show(const MessageRequest& request) override {
        shown.push_back(request);
        if (onShow) onShow();
        if (!request.isQuestion()) return mrNone;
        if (answers.empty()) {
            ADD_FAILURE() << "nobody expected the question " << request.operation;
            return mrNone;
        }
        const int answer = answers.front();
        answers.erase(answers.begin());
        return answer;
    }

    std::vector<MessageRequest> shown;
    std::vector<int> answers;
    std::function<void()> onShow;  // while a message is on the screen
};

}  // namespace basalt::host
