// When a search follows what is being typed: at once, and where a search turns out to be slow, after a pause in the
// typing.
//
//   TypingPause pause(context, *this, [this] { search(); });
//   connect(edit, &QLineEdit::textChanged, this, [this] { pause.typed(); });
#pragma once

#include <QTimer>
#include <functional>
#include <utility>

#include "host/screens/screen_context.h"

namespace basalt::host {

class TypingPause {
public:
    // What the search throws is shown over the origin's window.
    TypingPause(ScreenContext& context, QWidget& origin, std::function<void()> search);

    void typed();    // by the user, letter by letter
    void changed();  // in one step
    // Searches at once, and lets errors pass to a caller that has something to put back.
    void searchNow();
    // What still waits for a pause is searched for now. False when that failed, which the user was shown.
    [[nodiscard]] bool finish() { return !isWaiting() || search(); }
    // Searches at once. False when that failed, which the user was shown.
    [[nodiscard]] bool search();
    [[nodiscard]] bool isWaiting() const { return pause_.isActive(); }

private:
    // The timers of some platforms run while a request does; the search is for when that is over.
    void pauseEnded();

    ScreenContext& context_;
    QWidget& origin_;
    std::function<void()> search_;
    QTimer pause_;
    bool slow_ = false;
};

}  // namespace basalt::host
