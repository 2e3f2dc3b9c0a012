#include <sys/ioctl.h>
#include <unistd.h>

#include <clocale>

#include "cli/terminal.h"

namespace basalt::cli {

void prepareTerminal() {
    // Only how characters are written; numbers stay as programs read them.
    std::setlocale(LC_CTYPE, "");
}

bool inputIsTerminal() {
    return isatty(STDIN_FILENO) != 0;
}

bool outputIsTerminal() {
    return isatty(STDOUT_FILENO) != 0;
}

std::size_t outputColumns() {
    if (!outputIsTerminal()) return 0;
    constexpr std::size_t usual = 80;
    winsize size = {};
    return ioctl(STDOUT_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_col > 0 ? size.ws_col : usual;
}

}  // namespace basalt::cli
