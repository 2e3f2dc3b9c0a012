// basalt sql as a person meets it: on a terminal, with keys.
#include <fcntl.h>
#include <gmock/gmock.h>
#include <poll.h>
#include <sys/ioctl.h>
#include <sys/wait.h>
#include <termios.h>
#include <unistd.h>

#include <chrono>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <stdexcept>
#include <string>
#include <thread>

namespace {

namespace fs = std::filesystem;
using ::testing::HasSubstr;

// The program with a terminal of its own.
class Terminal {
public:
    Terminal(const fs::path& home, const std::string& database) {
        master_ = posix_openpt(O_RDWR | O_NOCTTY | O_CLOEXEC);
        if (master_ < 0 || grantpt(master_) != 0 || unlockpt(master_) != 0) throw std::runtime_error("no terminal");
        const std::string slave = ptsname(master_);
        process_ = fork();
        if (process_ == 0) {
            setsid();
            const int terminal = open(slave.c_str(), O_RDWR);
            const winsize size{40, 200, 0, 0};
            ioctl(terminal, TIOCSCTTY, 0);
            ioctl(terminal, TIOCSWINSZ, &size);
            for (int standard = 0; standard < 3; ++standard)
                dup2(terminal, standard);
            setenv("XDG_DATA_HOME", home.c_str(), 1);
            setenv("TERM", "vt100", 1);
            setenv("LC_ALL", "C.UTF-8", 1);
            execl(BASALT_PROGRAM, "basalt", "sql", "--database", database.c_str(), nullptr);
            _exit(127);
        }
    }
    Terminal(const Terminal&) = delete;
    Terminal& operator=(const Terminal&) = delete;
    ~Terminal() {
        if (process_ > 0) {
            kill(process_, SIGKILL);
            waitpid(process_, nullptr, 0);
        }
        close(master_);
    }

    void type(const std::string& keys) const {
        ASSERT_EQ(write(master_, keys.data(), keys.size()), static_cast<ssize_t>(keys.size()));
    }
    // All that the terminal shows next, up to and with the text; what it has shown when the text does not come.
    std::string until(const std::string& text) {
        const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(20);
        while (shown_.find(text) == std::string::npos && std::chrono::steady_clock::now() < end) {
            pollfd ready{master_, POLLIN, 0};
            if (poll(&ready, 1, 1000) <= 0) continue;
            char buffer[4096];
            const ssize_t size = read(master_, buffer, sizeof buffer);
            if (size <= 0) break;
            shown_.append(buffer, static_cast<std::size_t>(size));
        }
        const std::size_t at = shown_.find(text);
        const std::string result = shown_.substr(0, at == std::string::npos ? at : at + text.size());
        shown_.erase(0, result.size());
        return result;
    }
    // Up to a prompt that takes keys one by one; before that, the terminal itself would follow Ctrl-D and Ctrl-C.
    std::string untilPrompt(const std::string& prompt = "basalt> ") {
        std::string shown = until(prompt);
        termios modes = {};
        for (int i = 0; i < 2000 && tcgetattr(master_, &modes) == 0 && (modes.c_lflag & ICANON) != 0; ++i)
            std::this_thread::sleep_for(std::chrono::milliseconds(10));
        return shown;
    }
    // The exit status; -1 when the program does not end by itself.
    int wait() {
        shownLast_ = until("no such text");
        int status = 0;
        if (waitpid(process_, &status, WNOHANG) != process_) {
            kill(process_, SIGKILL);
            waitpid(process_, &status, 0);
        }
        process_ = -1;
        return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    }
    // What was shown while the end was waited for.
    [[nodiscard]] const std::string& shownLast() const { return shownLast_; }

private:
    int master_ = -1;
    pid_t process_ = -1;
    std::string shown_;  // and not asked for yet
    std::string shownLast_;
};

class Prompt : public ::testing::Test {
protected:
    Prompt() : home_(fs::temp_directory_path() / ("basalt-prompt-" + std::to_string(getpid()))) {
        fs::remove_all(home_);
        fs::create_directories(home_);
    }
    ~Prompt() override { fs::remove_all(home_); }

    void SetUp() override {
        const int terminal = posix_openpt(O_RDWR | O_NOCTTY | O_CLOEXEC);
        const bool usable = terminal >= 0 && grantpt(terminal) == 0 && unlockpt(terminal) == 0;
        if (terminal >= 0) close(terminal);
        if (!usable) GTEST_SKIP() << "this machine gives out no terminals (/dev/pts)";
    }

    fs::path home_;
};

TEST_F(Prompt, completesNamesRunsStatementsAndShowsErrors) {
    Terminal terminal(home_, "embedded::memory:");
    EXPECT_THAT(terminal.untilPrompt(), HasSubstr("Connected to embedded::memory:"));
    terminal.type("select Name from costle\t where Code = 3 and CostType = 1;\r");
    const std::string table = terminal.until("(1 row)");
    EXPECT_THAT(table, HasSubstr("CostLevel"));
    EXPECT_THAT(table, HasSubstr("همکار\u200E"));
    terminal.type("select 1 +\r");
    EXPECT_THAT(terminal.untilPrompt("-> "), HasSubstr("->"));
    terminal.type("from T;\r");
    EXPECT_THAT(terminal.until("^^^^"), HasSubstr("error 156: Incorrect syntax near the keyword 'from'."));
    terminal.type("create procedure P as\rselect 7 as Seven;\rgo\rexec P;\r");
    EXPECT_THAT(terminal.until("(1 row)"), HasSubstr("Seven"));
    terminal.type(".nothing\r");
    EXPECT_THAT(terminal.until(".help lists them"), HasSubstr("there is no command .nothing"));
    (void)terminal.untilPrompt();
    terminal.type("exit\r");
    EXPECT_EQ(terminal.wait(), 0) << terminal.shownLast();
}

TEST_F(Prompt, remembersStatementsFromRunToRun) {
    {
        Terminal terminal(home_, "embedded::memory:");
        (void)terminal.untilPrompt();
        terminal.type("select 40 + 2 -- sum\ras Answer;\r");
        EXPECT_THAT(terminal.untilPrompt(), HasSubstr("42"));
        terminal.type("\x04");
        EXPECT_EQ(terminal.wait(), 0) << terminal.shownLast();
    }
    const fs::path history = home_ / "basalt" / "sql_history";
    EXPECT_EQ(fs::status(history).permissions(), fs::perms::owner_read | fs::perms::owner_write);
    Terminal terminal(home_, "embedded::memory:");
    (void)terminal.untilPrompt();
    terminal.type("\x1b[A\r");
    const std::string again = terminal.until("(1 row)");
    EXPECT_THAT(again, HasSubstr("select 40 + 2 -- sum"));
    EXPECT_THAT(again, HasSubstr("as Answer;"));
    EXPECT_THAT(again, HasSubstr("42"));
}

// A line break in a text is part of the value; in the same run and in the next.
TEST_F(Prompt, remembersTheLineBreaksOfATextToo) {
    const std::string statement =
        "select CAST(LEN(N'a\rb') as nvarchar) + N'/' +\rCAST(UNICODE(SUBSTRING(N'a\rb', 2, 1)) as nvarchar) as Found;\r";
    for (const bool typed : {true, false}) {
        Terminal terminal(home_, "embedded::memory:");
        (void)terminal.untilPrompt();
        if (typed) {
            terminal.type(statement);
            EXPECT_THAT(terminal.until("(1 row)"), HasSubstr("3/10"));
            (void)terminal.untilPrompt();
        }
        terminal.type("\x1b[A\r");
        EXPECT_THAT(terminal.until("(1 row)"), HasSubstr("3/10"));
        (void)terminal.untilPrompt();
        terminal.type("exit\r");
        EXPECT_EQ(terminal.wait(), 0) << terminal.shownLast();
    }
}

// GO is not of the statement, and is waited for again.
TEST_F(Prompt, takesWhatIsRecalledAsIfItWereTyped) {
    Terminal terminal(home_, "embedded::memory:");
    (void)terminal.untilPrompt();
    terminal.type("select 3\r+ 4 as Seven\rgo\r");
    EXPECT_THAT(terminal.until("(1 row)"), HasSubstr("7"));
    (void)terminal.untilPrompt();
    terminal.type("\x1b[A\r");
    (void)terminal.untilPrompt("-> ");
    terminal.type("go\r");
    EXPECT_THAT(terminal.until("(1 row)"), HasSubstr("7"));
    (void)terminal.untilPrompt();
    terminal.type("exit\r");
    EXPECT_EQ(terminal.wait(), 0) << terminal.shownLast();
}

TEST_F(Prompt, forgetsWhatIsTypedWhenInterrupted) {
    Terminal terminal(home_, "embedded::memory:");
    (void)terminal.untilPrompt();
    terminal.type("select (\r");
    (void)terminal.untilPrompt("-> ");
    terminal.type("1");
    (void)terminal.until("1");
    terminal.type("\x03");
    (void)terminal.untilPrompt();
    terminal.type("select N'بیست و سه' as Answer;\r");
    EXPECT_THAT(terminal.until("(1 row)"), HasSubstr("\r\nبیست و سه\u200E\r\n"));
    (void)terminal.untilPrompt();
    terminal.type("exit\r");
    EXPECT_EQ(terminal.wait(), 0) << terminal.shownLast();
}

TEST_F(Prompt, rollsBackWhatIsLeftOpen) {
    Terminal terminal(home_, "embedded::memory:");
    (void)terminal.untilPrompt();
    terminal.type("begin transaction delete from CostList;\r");
    (void)terminal.until("affected)");
    (void)terminal.untilPrompt();
    terminal.type("quit\r");
    EXPECT_THAT(terminal.until("rolled back."), HasSubstr("The open transaction has been rolled back."));
    EXPECT_EQ(terminal.wait(), 0) << terminal.shownLast();
}

}  // namespace
