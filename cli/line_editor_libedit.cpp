#include <editline/readline.h>
#include <poll.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <iostream>
#include <memory>

#include "cli/line_editor.h"
#include "host/services/platform/user_folders.h"

namespace basalt::cli {

namespace {

constexpr int keptEntries = 1000;

// The library calls functions without an argument of ours.
Completer completerInUse;
std::vector<std::string> candidates;

char* nextCandidate(const char*, int state) {
    const auto index = static_cast<std::size_t>(state);
    return index < candidates.size() ? strdup(candidates[index].c_str()) : nullptr;
}

char** complete(const char* word, int, int) {
    // Nothing else, above all no names of files.
    rl_attempted_completion_over = 1;
    try {
        candidates = completerInUse(word);
    } catch (const std::exception&) {
        // A database that cannot be asked now will say so when the statement is run.
        candidates.clear();
    }
    return candidates.empty() ? nullptr : rl_completion_matches(word, nextCandidate);
}

volatile std::sig_atomic_t interrupted = 0;

class InterruptWatch;
// The one of the line that is being read; readline's callback has no other way to it.
const InterruptWatch* watchInUse = nullptr;

// While a line is typed, Ctrl-C ends the line and not the program. The signal is let in only where a key is waited for,
// so that none is missed and none comes in between.
class InterruptWatch {
public:
    InterruptWatch() {
        interrupted = 0;
        struct sigaction watch = {};
        watch.sa_handler = [](int) { interrupted = 1; };
        sigemptyset(&watch.sa_mask);
        sigaction(SIGINT, &watch, &action_);
        sigset_t blocked;
        sigemptyset(&blocked);
        sigaddset(&blocked, SIGINT);
        sigprocmask(SIG_BLOCK, &blocked, &mask_);
        watchInUse = this;
    }
    ~InterruptWatch() {
        watchInUse = nullptr;
        sigprocmask(SIG_SETMASK, &mask_, nullptr);
        sigaction(SIGINT, &action_, nullptr);
    }
    InterruptWatch(const InterruptWatch&) = delete;
    InterruptWatch& operator=(const InterruptWatch&) = delete;

    // False when there is nothing more to read, or Ctrl-C was pressed instead.
    [[nodiscard]] bool waitForInput() const {
        pollfd input{STDIN_FILENO, POLLIN, 0};
        while (!interrupted) {
            const int ready = ppoll(&input, 1, nullptr, &mask_);
            if (ready > 0) return true;
            if (ready < 0 && errno != EINTR) return false;
        }
        return false;
    }

private:
    struct sigaction action_ = {};
    sigset_t mask_ = {};
};

int readByte() {
    unsigned char byte = 0;
    while (watchInUse->waitForInput()) {
        const ssize_t size = read(STDIN_FILENO, &byte, 1);
        if (size == 1) return byte;
        if (size == 0 || errno != EINTR) return -1;
    }
    return -1;
}

// The next character that is typed; -1 for none. The library takes whole characters here, not bytes.
int readCharacter(FILE*) {
    const int first = readByte();
    if (first < 0x80) return first;
    const int more = first >= 0xF0 ? 3 : first >= 0xE0 ? 2 : 1;
    int character = first & (0x3F >> more);
    for (int i = 0; i < more; ++i) {
        const int next = readByte();
        if (next < 0) return -1;
        character = (character << 6) | (next & 0x3F);
    }
    return character;
}

// Empty for a user without a folder, whose history ends with the program.
std::filesystem::path historyFile(const std::string& name) {
    const std::filesystem::path folder = host::userDataFolderIfAny();
    return folder.empty() ? folder : folder / name;
}

}  // namespace

LineEditor::LineEditor(const std::string& historyName, Completer completer) : history_(historyFile(historyName)) {
    completerInUse = std::move(completer);
    static char breaks[] = " \t\n,;()=<>+-*/'[]";
    rl_completer_word_break_characters = breaks;
    rl_attempted_completion_function = complete;
    rl_getc_function = readCharacter;
    using_history();
    stifle_history(keptEntries);
    if (!history_.empty()) read_history(history_.c_str());
}

LineEditor::~LineEditor() {
    completerInUse = {};
    if (history_.empty()) return;
    std::error_code ignored;
    std::filesystem::create_directories(history_.parent_path(), ignored);
    // A history that cannot be written is no reason to stop anybody.
    write_history(history_.c_str());
    // Statements may hold data of the business.
    std::filesystem::permissions(history_, std::filesystem::perms::owner_read | std::filesystem::perms::owner_write,
                                 ignored);
}

std::optional<std::string> LineEditor::readLine(const std::string& prompt) {
    const InterruptWatch watch;
    const std::unique_ptr<char, decltype(&std::free)> line(readline(prompt.c_str()), &std::free);
    if (interrupted) {
        std::cout << std::endl;
        throw Interrupted();
    }
    if (!line) {
        std::cout << std::endl;
        return std::nullopt;
    }
    return std::string(line.get());
}

void LineEditor::remember(const std::string& entry) {
    add_history(entry.c_str());
}

}  // namespace basalt::cli
