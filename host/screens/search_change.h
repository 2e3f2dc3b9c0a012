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
    // As long as one is there, changes are not told.
    class Muted {
    public:
        explicit Muted(SearchChange& change) : change_(change) { ++change_.muted_; }
        ~Muted() { --change_.muted_; }
        Muted(const Muted&) = delete;
        Muted& operator=(const Muted&) = delete;

    private:
        SearchChange& change_;
    };

    SearchChange(ScreenContext& context, TSearchFrame& frame);

    void setManager(std::function<void()> search) { search_ = std::move(search); }
    void typed();    // by the user, letter by letter
    void changed();  // in one step
    // Tells at once, and lets errors pass to a caller that has something to put back.
    void tellNow();
    // What still waits for a pause in the typing is told now. False when that failed, which the user was shown.
    [[nodiscard]] bool finish();
    [[nodiscard]] bool isMuted() const { return muted_ > 0; }

private:
    void tell();

    ScreenContext& context_;
    TSearchFrame& frame_;
    std::function<void()> search_;
    QTimer pause_;
    bool slow_ = false;
    int muted_ = 0;
};

// What the search manager needs to know of a frame.
class SearchFrameLink {
public:
    virtual ~SearchFrameLink() = default;
    [[nodiscard]] virtual SearchChange& change() = 0;
};

}  // namespace basalt::host
