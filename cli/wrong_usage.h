// The command line itself is wrong: exit status 2, where every other failure is 1.
#pragma once

#include <stdexcept>

namespace basalt::cli {

class WrongUsage : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

}  // namespace basalt::cli
