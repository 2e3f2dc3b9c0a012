// How a search frame tells of a change: to the screen when it listens, else to the search manager.
//
// Typing narrows at once. Where a search turns out to be slow, the following keystrokes wait for a pause in the typing.
#pragma once

#include <QTimer>
#include <functional>

#include "host/screens/screen_context.h"
#include "package/screens/controls.h"

namespace basalt::host {

class SearchChange {
public:
    SearchChange(ScreenContext& context, TSearchFrame& frame);

    void setManager(std::function<void()> search) { search_ = std::move(search); }
    void typed();    // by the user, letter by letter
    void changed();  // in one step
    // Tells at once, and lets errors pass to a caller that has something to put back.
    void tellNow();
    // What still waits for a pause in the typing is told now. False when that failed, which the user was shown.
    [[nodiscard]] bool finish();
    // Changes made meanwhile are not told.
    [[nodiscard]] bool isMuted() const { return muted_; }
    void mute(bool on) { muted_ = on; }

private:
    void tell();

    ScreenContext& context_;
    TSearchFrame& frame_;
    std::function<void()> search_;
    QTimer pause_;
    bool slow_ = false;
    bool muted_ = false;
};

// What the search manager needs to know of a frame.
class SearchFrameLink {
public:
    virtual ~SearchFrameLink() = default;
    [[nodiscard]] virtual SearchChange& change() = 0;
};

}  // namespace basalt::host
