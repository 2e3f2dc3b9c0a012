// The built programs on displays that are set and cannot be opened: they end with a sentence, and Qt does not abort
// them.
#include <gmock/gmock.h>
#include <netinet/in.h>
#include <signal.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <map>
#include <string>

#include "tests/support/files.h"

namespace basalt::host {
namespace {

namespace fs = std::filesystem;

using ::testing::HasSubstr;
using ::testing::Not;

class Display : public test::Files {
protected:
    Display() { fs::permissions(path(""), fs::perms::owner_all); }  // as a run-time folder has to be

    struct Run {
        int status = 0;
        std::string errors;
    };
    using Variables = std::map<std::string, std::string>;

    // The program with these variables and no others that speak of displays.
    [[nodiscard]] Run run(const std::string& program, const std::string& words, const Variables& variables) {
        std::string command = "cd '" + path("").string() +
                              "' && env -u DISPLAY -u WAYLAND_DISPLAY -u QT_QPA_PLATFORM -u XAUTHORITY "
                              "-u XDG_SESSION_TYPE -u XDG_DATA_HOME HOME='" +
                              path("").string() + "' XDG_RUNTIME_DIR='" + path("").string() + "'";
        for (const auto& [name, value] : variables)
            command += " " + name + "='" + value + "'";
        command += " timeout 30 '" + program + "' " + words + " >/dev/null 2>err";
        const int status = std::system(command.c_str());
        return {.status = WIFEXITED(status) ? WEXITSTATUS(status) : -1, .errors = read("err")};
    }
    [[nodiscard]] Run desktop(const Variables& variables) {
        return run(BASALT_DESKTOP, "--database embedded::memory:", variables);
    }
    [[nodiscard]] Run screen(const Variables& variables, const std::string& words = {}) {
        return run(BASALT_PROGRAM, "screen Open_CostLevel_List --database embedded::memory: " + words, variables);
    }
};

// A display of this machine that no server shows.
const std::string& nobodys() {
    static const std::string display = [] {
        int number = 94;
        while (fs::exists("/tmp/.X11-unix/X" + std::to_string(number)) ||
               fs::exists("/tmp/.X" + std::to_string(number) + "-lock"))
            ++number;
        return ":" + std::to_string(number);
    }();
    return display;
}

const std::string kNobody =
    "the display \"" + nobodys() +
    "\" cannot be opened: no server answers there, or it does not let this user in. Set DISPLAY to another one, or "
    "QT_QPA_PLATFORM=offscreen to draw without any";

TEST_F(Display, whereNobodyAnswersIsTold) {
    const Run shell = desktop({{"DISPLAY", nobodys()}});
    EXPECT_EQ(shell.status, 1);
    EXPECT_EQ(shell.errors, "basalt-desktop: " + kNobody + "; --tour FOLDER takes a tour without one\n");
    const Run byHand = screen({{"DISPLAY", nobodys()}});
    EXPECT_EQ(byHand.status, 1);
    EXPECT_EQ(byHand.errors, "basalt: " + kNobody + "; --steps FILE plays a screen without one\n");
}

TEST_F(Display, thatIsNotThereIsTold) {
    const Run shell = desktop({});
    EXPECT_EQ(shell.status, 1);
    EXPECT_EQ(shell.errors, "basalt-desktop: there is no display; --tour FOLDER takes a tour without one\n");
    const Run wayland = desktop({{"WAYLAND_DISPLAY", "wayland-94"}});
    EXPECT_EQ(wayland.status, 1);
    EXPECT_THAT(wayland.errors, HasSubstr("basalt-desktop: the display \"wayland-94\" cannot be "));
}

TEST_F(Display, thatIsNamedAndCannotBeOpenedIsTold) {
    const Run shell = desktop({{"DISPLAY", nobodys()}, {"QT_QPA_PLATFORM", "xcb"}});
    EXPECT_EQ(shell.status, 1);
    EXPECT_THAT(shell.errors, HasSubstr(kNobody));
}

TEST_F(Display, ofAKindThatQtDoesNotKnowIsTold) {
    const Run shell = desktop({{"QT_QPA_PLATFORM", "nonsense"}});
    EXPECT_EQ(shell.status, 1);
    EXPECT_THAT(shell.errors, HasSubstr("basalt-desktop: there is no display that windows can be shown on. "));
    const Run byHand = screen({{"QT_QPA_PLATFORM", "nonsense"}});
    EXPECT_EQ(byHand.status, 1);
    EXPECT_THAT(byHand.errors, HasSubstr("basalt: there is no display that windows can be shown on. "));
}

TEST_F(Display, isNotNeededToPlaySteps) {
    write(path("a.steps"), "expect screen TCostLevel_List_FRM\nkey - Escape\n");
    for (const Variables& variables :
         {Variables{}, Variables{{"DISPLAY", nobodys()}}, Variables{{"DISPLAY", nobodys()}, {"QT_QPA_PLATFORM", "xcb"}},
          Variables{{"QT_QPA_PLATFORM", "wayland"}}}) {
        const Run played = screen(variables, "--steps a.steps");
        EXPECT_EQ(played.status, 0);
        EXPECT_EQ(played.errors, "");
    }
}

TEST_F(Display, isLookedForOnDemand) {
    EXPECT_EQ(run(BASALT_DESKTOP, "--check-display", {{"DISPLAY", nobodys()}}).status, 1);
    const Run nonsense = run(BASALT_DESKTOP, "--check-display", {{"QT_QPA_PLATFORM", "nonsense"}});
    EXPECT_EQ(nonsense.status, 1);
    EXPECT_THAT(nonsense.errors, HasSubstr("QT_QPA_PLATFORM names \"nonsense\", for which Qt has no plugin"));
    EXPECT_EQ(run(BASALT_DESKTOP, "--check-display", {{"QT_QPA_PLATFORM", "nonsense;minimal"}}).status, 0);
    const Run offscreen = run(BASALT_DESKTOP, "--check-display", {{"QT_QPA_PLATFORM", "offscreen"}});
    EXPECT_EQ(offscreen.status, 0);
    EXPECT_EQ(offscreen.errors, "");
}

// A folder that cannot be made is the end of the tour, and shows that it was begun.
TEST_F(Display, aTourIsTakenAndTakesNoDatabaseOfOthers) {
    write(path("file"), "");
    for (const Variables& variables : {Variables{}, Variables{{"QT_QPA_PLATFORM", "xcb"}}}) {
        const Run tour = run(BASALT_DESKTOP, "--tour file/pictures --database embedded:shop.db", variables);
        EXPECT_EQ(tour.status, 1);
        EXPECT_EQ(tour.errors,
                  "basalt-desktop: the tour makes a database of its own; the one of --database is left alone\n"
                  "basalt-desktop: the folder file/pictures cannot be made: Not a directory\n");
    }
    EXPECT_FALSE(fs::exists(path("shop.db")));
}

// Takes connections and says nothing.
class SilentServer {
public:
    SilentServer() : descriptor_(socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0)) {
        constexpr int kBehind = 200;
        for (number_ = 80; number_ < kBehind; ++number_) {
            sockaddr_in address{};
            address.sin_family = AF_INET;
            address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
            address.sin_port = htons(static_cast<std::uint16_t>(6000 + number_));
            if (bind(descriptor_, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0) break;
        }
        listening_ = number_ < kBehind && listen(descriptor_, 5) == 0;
    }
    ~SilentServer() { close(descriptor_); }
    SilentServer(const SilentServer&) = delete;
    SilentServer& operator=(const SilentServer&) = delete;

    [[nodiscard]] bool listening() const { return listening_; }
    [[nodiscard]] std::string display() const { return "127.0.0.1:" + std::to_string(number_); }

private:
    int descriptor_;
    int number_ = 0;
    bool listening_ = false;
};

TEST_F(Display, thatTakesConnectionsAndNeverAnswersIsTold) {
    const SilentServer server;
    ASSERT_TRUE(server.listening());
    const Run shell = desktop({{"DISPLAY", server.display()}});
    EXPECT_EQ(shell.status, 1);
    EXPECT_THAT(shell.errors, HasSubstr("the display \"" + server.display() +
                                        "\" cannot be opened: the server there does not answer. Set DISPLAY"));
}

// An X server of the test's own.
class Server {
public:
    explicit Server(const std::string& authority) {
        std::array<int, 2> ends{};
        if (pipe(ends.data()) != 0) return;
        const std::string out = std::to_string(ends[1]);
        id_ = fork();
        if (id_ == 0) {
            close(ends[0]);
            if (std::freopen("/dev/null", "w", stderr) == nullptr) _exit(1);
            execlp("Xvfb", "Xvfb", "-displayfd", out.c_str(), "-nolisten", "tcp", "-auth", authority.c_str(), nullptr);
            _exit(127);
        }
        close(ends[1]);
        for (char c = 0; ::read(ends[0], &c, 1) == 1 && c != '\n';)
            number_ += c;
        close(ends[0]);
    }
    ~Server() {
        if (id_ <= 0) return;
        kill(id_, SIGTERM);
        waitpid(id_, nullptr, 0);
    }
    Server(const Server&) = delete;
    Server& operator=(const Server&) = delete;

    // Empty when there is no server to be had here.
    [[nodiscard]] std::string display() const { return number_.empty() ? "" : ":" + number_; }

private:
    pid_t id_ = -1;
    std::string number_;
};

// A file of one entry for any display: family 0xFFFF, no address, no number, the scheme, sixteen octets.
std::string authorityFile() {
    const auto counted = [](const std::string& text) {
        return std::string{static_cast<char>(text.size() / 256), static_cast<char>(text.size() % 256)} + text;
    };
    return "\xff\xff" + counted("") + counted("") + counted("MIT-MAGIC-COOKIE-1") + counted("0123456789abcdef");
}

TEST_F(Display, isOpenedByThoseWhomItLetsIn) {
    write(path("authority"), authorityFile());
    const Server server(path("authority"));
    if (server.display().empty()) GTEST_SKIP() << "there is no Xvfb here";
    const Run refused = run(BASALT_DESKTOP, "--check-display", {{"DISPLAY", server.display()}});
    EXPECT_EQ(refused.status, 1);
    EXPECT_THAT(refused.errors, HasSubstr("basalt-desktop: the display \"" + server.display() + "\" cannot be opened"));
    const Run shell = desktop({{"DISPLAY", server.display()}});
    EXPECT_EQ(shell.status, 1);
    EXPECT_THAT(shell.errors, Not(HasSubstr("could not connect")));

    const Run allowed = run(BASALT_DESKTOP, "--check-display",
                            {{"DISPLAY", server.display()}, {"XAUTHORITY", path("authority").string()}});
    EXPECT_EQ(allowed.status, 0);
    EXPECT_EQ(allowed.errors, "");
    write(path("a.steps"), "expect screen TCostLevel_List_FRM\nkey - Escape\n");
    const Run played =
        screen({{"DISPLAY", server.display()}, {"XAUTHORITY", path("authority").string()}}, "--steps a.steps");
    EXPECT_EQ(played.status, 0);
    EXPECT_EQ(played.errors, "");
}

}  // namespace
}  // namespace basalt::host
