// kill -9 in a loop. A writer runs transactions as fast as it can and acknowledges each commit on its standard output;
// it is killed at a random moment; then the database must be sound and hold every acknowledged commit, and nothing by
// half.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <iostream>
#include <random>
#include <string>
#include <thread>
#include <vector>

namespace {

namespace fs = std::filesystem;
using Clock = std::chrono::steady_clock;

// The program with its standard input and output on pipes.
class Child {
public:
    explicit Child(const std::vector<std::string>& words) {
        int in[2], out[2];
        if (pipe2(in, O_CLOEXEC) != 0 || pipe2(out, O_CLOEXEC) != 0) throw std::runtime_error("no pipe");
        std::vector<std::string> all = {BASALT_PROGRAM};
        all.insert(all.end(), words.begin(), words.end());
        std::vector<char*> arguments;
        for (std::string& word : all)
            arguments.push_back(word.data());
        arguments.push_back(nullptr);
        process_ = fork();
        if (process_ == 0) {
            dup2(in[0], STDIN_FILENO);
            dup2(out[1], STDOUT_FILENO);
            execv(BASALT_PROGRAM, arguments.data());
            _exit(127);
        }
        close(in[0]);
        close(out[1]);
        input_ = in[1];
        output_ = out[0];
    }
    Child(const Child&) = delete;
    Child& operator=(const Child&) = delete;
    ~Child() {
        if (process_ > 0) kill(process_, SIGKILL);
        (void)wait();
        close(output_);
        closeInput();
    }

    // False when the program reads no more.
    bool send(const std::string& text) const {
        for (std::size_t done = 0; done < text.size();) {
            const ssize_t wrote = write(input_, text.data() + done, text.size() - done);
            if (wrote <= 0) return false;
            done += static_cast<std::size_t>(wrote);
        }
        return true;
    }
    void closeInput() {
        if (input_ >= 0) close(input_);
        input_ = -1;
    }
    // What has come until the moment, or until the program's end.
    std::string receive(Clock::time_point until) const {
        std::string text;
        while (true) {
            const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(until - Clock::now()).count();
            pollfd ready{output_, POLLIN, 0};
            if (poll(&ready, 1, left > 0 ? static_cast<int>(left) : 0) <= 0) return text;
            char buffer[4096];
            const ssize_t size = read(output_, buffer, sizeof buffer);
            if (size <= 0) return text;
            text.append(buffer, static_cast<std::size_t>(size));
        }
    }
    // What comes first, however long the program takes to start.
    std::string receiveSome() const {
        char buffer[4096];
        const ssize_t size = read(output_, buffer, sizeof buffer);
        return {buffer, size > 0 ? static_cast<std::size_t>(size) : 0};
    }
    std::string receiveAll() const { return receive(Clock::now() + std::chrono::minutes(1)); }
    void killNow() const { kill(process_, SIGKILL); }
    // The status as waitpid tells it.
    int wait() {
        int status = 0;
        if (process_ > 0) waitpid(process_, &status, 0);
        process_ = -1;
        return status;
    }

private:
    pid_t process_ = -1;
    int input_ = -1;
    int output_ = -1;
};

struct Outcome {
    std::string output;
    int status = -1;
};

Outcome run(const std::vector<std::string>& words) {
    Child child(words);
    child.closeInput();
    Outcome outcome;
    outcome.output = child.receiveAll();
    const int status = child.wait();
    if (WIFEXITED(status)) outcome.status = WEXITSTATUS(status);
    return outcome;
}

// Four changes that belong together, and the acknowledgement behind the commit. Every seventh batch first begins
// something that it takes back.
std::string transaction(long number) {
    const std::string n = std::to_string(number);
    std::string batch = "BEGIN TRANSACTION\n";
    if (number % 7 == 0) batch += "DELETE FROM KillLine ROLLBACK BEGIN TRANSACTION\n";
    return batch + "INSERT INTO KillOrder (N, Note) VALUES (" + n + ", N'" + std::string(200, 'x') +
           "')\n"
           "INSERT INTO KillLine (N, Amount) VALUES (" +
           n + ", 12.5), (" + n + ", 0.000000001)\nUPDATE KillTotal SET Orders = Orders + 1\nCOMMIT\nSELECT " + n +
           " AS Done\nGO\n";
}

// The highest number that was acknowledged in whole lines; 0 for none.
long acknowledged(const std::string& output) {
    constexpr std::string_view mark = "[{\"Done\":";
    const std::string whole = output.substr(0, output.rfind('\n') == std::string::npos ? 0 : output.rfind('\n'));
    const std::size_t at = whole.rfind(mark);
    return at == std::string::npos ? 0 : std::stol(whole.substr(at + mark.size()));
}

int roundsWanted() {
    const char* wanted = std::getenv("BASALT_KILL_ROUNDS");
    return wanted ? std::stoi(wanted) : 20;
}

class Killed : public ::testing::Test {
protected:
    Killed() : folder_(fs::temp_directory_path() / ("basalt-kill-" + std::to_string(getpid()))) {
        std::signal(SIGPIPE, SIG_IGN);
        fs::remove_all(folder_);
        fs::create_directories(folder_);
        setenv("XDG_DATA_HOME", (folder_ / "data").c_str(), 1);
        database_ = "--database=embedded:" + (folder_ / "shop.db").string();
    }
    ~Killed() override { fs::remove_all(folder_); }

    // COUNT and MAX of the orders, the lines, the total, and lines without an order.
    std::string contents() {
        return run({"sql", "--csv", database_,
                    "SELECT COUNT(*) AS Orders, ISNULL(MAX(N), 0) AS Last, (SELECT COUNT(*) FROM KillLine) AS Lines, "
                    "(SELECT SUM(Orders) FROM KillTotal) AS Total FROM KillOrder"})
            .output;
    }

    fs::path folder_;
    std::string database_;
};

TEST_F(Killed, aWriterLosesNothingThatItAcknowledged) {
    ASSERT_EQ(run({"db", "create", "--demo", database_}).status, 0);
    ASSERT_EQ(run({"sql", database_,
                   "CREATE TABLE KillOrder (N int NOT NULL PRIMARY KEY, Note nvarchar(300) NULL) "
                   "CREATE TABLE KillLine (ID int IDENTITY(1,1) PRIMARY KEY, N int NOT NULL REFERENCES KillOrder (N), "
                   "Amount decimal(23,9) NOT NULL) CREATE INDEX IX_KillLine_N ON KillLine (N) "
                   "CREATE TABLE KillTotal (Orders int NOT NULL) INSERT INTO KillTotal VALUES (0)"})
                  .status,
              0);
    std::random_device seed;
    const unsigned start = seed();
    std::mt19937 random(start);
    SCOPED_TRACE("random seed " + std::to_string(start));
    const auto begun = Clock::now();
    const int rounds = roundsWanted();
    long last = 0;
    long acknowledgements = 0;
    int written = 0;
    for (int round = 0; round < rounds; ++round) {
        Child writer({"sql", "--json", database_});
        long next = last + 1;
        std::thread feeder([&] {
            while (writer.send(transaction(next)))
                ++next;
        });
        // Every other one may die while it starts and recovers the file, the rest in the middle of the work.
        std::string output;
        if (round % 2 == 0) output = writer.receiveSome();
        output += writer.receive(Clock::now() + std::chrono::milliseconds(random() % 100));
        std::this_thread::sleep_for(std::chrono::microseconds(random() % 2000));
        writer.killNow();
        output += writer.receiveAll();
        const int status = writer.wait();
        feeder.join();
        ASSERT_TRUE(WIFSIGNALED(status)) << "round " << round << ": the writer ended by itself: " << output;
        const long done = std::max(acknowledged(output), last);
        acknowledgements += done - last;
        written += done > last ? 1 : 0;

        ASSERT_EQ(run({"db", "check", database_}).status, 0) << "round " << round;
        const std::string found = contents();
        // What was committed and not yet acknowledged is there or not; at most one transaction is of that kind.
        const auto expected = [](long orders) {
            const std::string n = std::to_string(orders);
            return "Orders,Last,Lines,Total\r\n" + n + "," + n + "," + std::to_string(2 * orders) + "," + n + "\r\n";
        };
        const bool oneMore = found == expected(done + 1);
        ASSERT_TRUE(oneMore || found == expected(done)) << "round " << round << ": " << done << " acknowledged, found\n"
                                                        << found;
        last = done + (oneMore ? 1 : 0);
    }
    const auto seconds = std::chrono::duration_cast<std::chrono::seconds>(Clock::now() - begun).count();
    std::cout << rounds << " writers killed, " << written << " of them after a commit; " << acknowledgements
              << " commits acknowledged, none lost; " << seconds << " s\n";
    EXPECT_GT(acknowledgements, 0);
}

// Files appear under their names when they are whole.
TEST_F(Killed, aLoadOrABackupLeavesAWholeDatabaseOrNone) {
    ASSERT_EQ(run({"db", "create", "--demo", database_}).status, 0);
    const std::string dump = (folder_ / "shop.sql").string();
    ASSERT_EQ(run({"db", "dump", dump, database_}).status, 0);
    const std::string contents = run({"db", "dump", database_}).output;
    const fs::path made = folder_ / "made.db";
    const std::string target = "--database=embedded:" + made.string();
    const std::vector<std::string> commands[] = {{"db", "load", dump, target}, {"db", "backup", made, database_}};
    std::mt19937 random(std::random_device{}());
    const int rounds = roundsWanted();
    int there = 0;
    for (int round = 0; round < rounds; ++round) {
        fs::remove(made);
        {
            Child child(commands[round % 2]);
            child.closeInput();
            std::this_thread::sleep_for(std::chrono::microseconds(random() % (round % 2 == 0 ? 300'000 : 150'000)));
            child.killNow();
            (void)child.wait();
        }
        if (!fs::exists(made)) continue;
        ++there;
        ASSERT_EQ(run({"db", "check", target}).status, 0) << "round " << round;
        ASSERT_EQ(run({"db", "dump", target}).output, contents) << "round " << round;
    }
    // What the last killed one has left is in nobody's way.
    fs::remove(made);
    ASSERT_EQ(run(commands[0]).status, 0);
    ASSERT_EQ(run({"db", "dump", target}).output, contents);
    std::cout << rounds << " loads and backups killed, " << there
              << " of them after their end; all whole or not there\n";
}

// What a killed restore leaves is the old database or the new one, each as a whole, whatever log lay beside the old.
TEST_F(Killed, aRestoreLeavesTheOldOrTheNewDatabase) {
    ASSERT_EQ(run({"db", "create", "--demo", database_}).status, 0);
    const std::string backup = (folder_ / "backup.db").string();
    ASSERT_EQ(run({"db", "backup", backup, database_}).status, 0);
    const std::string contents = run({"db", "dump", database_}).output;
    std::mt19937 random(std::random_device{}());
    const int rounds = roundsWanted();
    int restored = 0;
    for (int round = 0; round < rounds; ++round) {
        // Commits that only the log has.
        {
            Child writer({"sql", database_, "--json"});
            ASSERT_TRUE(writer.send("update CostLevel set Comment = N'" + std::to_string(round) + "'\nGO\n"));
            ASSERT_NE(writer.receiveSome().find("affectedRows"), std::string::npos);
            writer.killNow();
            (void)writer.wait();
        }
        {
            Child child({"db", "restore", backup, database_});
            child.closeInput();
            std::this_thread::sleep_for(std::chrono::microseconds(random() % 250'000));
            child.killNow();
            (void)child.wait();
        }
        ASSERT_EQ(run({"db", "check", database_}).status, 0) << "round " << round;
        const std::string now = run({"db", "dump", database_}).output;
        if (now == contents) {
            ++restored;
        } else {
            ASSERT_EQ(run({"sql", database_, "--json", "select distinct Comment from CostLevel"}).output,
                      "[{\"Comment\":\"" + std::to_string(round) + "\"}]\n")
                << "round " << round;
        }
    }
    std::cout << rounds << " restores killed, " << restored << " of them after the copy had its place\n";
}

}  // namespace
