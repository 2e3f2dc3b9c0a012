// The time of Escape's rest (host/screens/escape_rest.h) in the hands of a test: it stands still until the test lets it
// pass, and nothing rests when the test begins.
#pragma once

#include "host/screens/escape_rest.h"

namespace basalt::host {

class EscapeClock final {
public:
    EscapeClock() {
        EscapeRest::ofApplication().setClock([this] { return now_; });
    }
    ~EscapeClock() { EscapeRest::ofApplication().setClock({}); }
    EscapeClock(const EscapeClock&) = delete;
    EscapeClock& operator=(const EscapeClock&) = delete;

    void pass(qint64 milliseconds) { now_ += milliseconds; }

private:
    qint64 now_ = 0;
};

}  // namespace basalt::host
