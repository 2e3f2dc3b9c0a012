// The program from its arguments to its exit status: 0, 1 for a failure, 2 for wrong usage.
#pragma once

namespace basalt::cli {

int runCommandLine(int argc, char** argv);

}  // namespace basalt::cli
