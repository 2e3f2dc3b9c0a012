// Sessions whose requests can be watched and given up while they run.
//
//   if (auto* requests = dynamic_cast<InterruptibleSession*>(&session))
//       requests->onProgress([&] { return !cancelPressed(); });
#pragma once

#include <functional>

#include "ado/error.h"

namespace basalt {

class InterruptibleSession {
public:
    virtual ~InterruptibleSession() = default;
    // `goOn` is asked every few milliseconds while a request runs, on the session's own thread, and must not use the
    // session. When it answers false the request fails (isCancelled) and has changed nothing. An empty function ends
    // the asking.
    virtual void onProgress(std::function<bool()> goOn) = 0;
};

inline constexpr const char* kCancelledState = "HY008";

// Whether the request was given up because somebody asked for it.
[[nodiscard]] inline bool isCancelled(const DatabaseError& error) {
    return error.sqlState() == kCancelledState;
}

}  // namespace basalt
