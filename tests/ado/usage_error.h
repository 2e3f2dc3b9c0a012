// What a use that is not allowed is told.
#pragma once

#include <functional>
#include <string>

#include "ado/error.h"

namespace basalt {

// The message of the UsageError that the action ends in, "no error" where it ends well. Other errors pass through.
inline std::string usageErrorOf(const std::function<void()>& action) {
    try {
        action();
    } catch (const UsageError& error) {
        return error.what();
    }
    return "no error";
}

}  // namespace basalt
