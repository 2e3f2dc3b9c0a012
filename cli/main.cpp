#include "cli/command_line.h"

int main(int argc, char** argv) {
    return basalt::cli::runCommandLine(argc, argv);
}
