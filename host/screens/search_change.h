// How a search frame tells of a change: to the screen when it listens, else to the search manager.
#pragma once

#include <QString>
#include <QStringList>
#include <functional>
#include <utility>

#include "host/screens/typing_pause.h"
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
    void tellNow() { pause_.searchNow(); }
    // What still waits for a pause in the typing is told now. False when that failed, which the user was shown.
    [[nodiscard]] bool finish() { return pause_.finish(); }
    [[nodiscard]] bool isWaiting() const { return pause_.isWaiting(); }
    [[nodiscard]] bool isMuted() const { return muted_ > 0; }

private:
    std::function<void()> search_;
    TypingPause pause_;
    int muted_ = 0;
};

// What the search manager needs to know of a frame.
class SearchFrameLink {
public:
    virtual ~SearchFrameLink() = default;
    [[nodiscard]] virtual SearchChange& change() = 0;
    // What the frame narrows the list to, as readers of a print are told; empty when it narrows nothing, or says so by
    // other means.
    [[nodiscard]] virtual QString narrowing() const { return {}; }
};

// What several frames narrow a list to, as one line; empty when none does.
[[nodiscard]] QString narrowingLine(QStringList parts);

}  // namespace basalt::host
