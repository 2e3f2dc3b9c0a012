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

bool hasDisplay() {
    return true;
}

}  // namespace basalt::cli
