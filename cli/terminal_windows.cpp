#define WIN32_LEAN_AND_MEAN
#include <io.h>
#include <windows.h>

#include <cstdio>

#include "cli/terminal.h"

namespace basalt::cli {

void prepareTerminal() {
    SetConsoleCP(CP_UTF8);
    SetConsoleOutputCP(CP_UTF8);
}

bool inputIsTerminal() {
    return _isatty(_fileno(stdin)) != 0;
}

bool outputIsTerminal() {
    return _isatty(_fileno(stdout)) != 0;
}

std::size_t outputColumns() {
    if (!outputIsTerminal()) return 0;
    constexpr std::size_t usual = 80;
    CONSOLE_SCREEN_BUFFER_INFO info = {};
    if (!GetConsoleScreenBufferInfo(GetStdHandle(STD_OUTPUT_HANDLE), &info)) return usual;
    return static_cast<std::size_t>(info.srWindow.Right - info.srWindow.Left + 1);
}

}  // namespace basalt::cli
