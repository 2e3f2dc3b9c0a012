#include "host/screens/typing_pause.h"

#include <QElapsedTimer>

namespace basalt::host {
namespace {
constexpr int kPauseMilliseconds = 250;
constexpr qint64 kSlowMilliseconds = 120;
}  // namespace

TypingPause::TypingPause(ScreenContext& context, QWidget& origin, std::function<void()> search)
    : context_(context), origin_(origin), search_(std::move(search)) {
    pause_.setSingleShot(true);
    pause_.setInterval(kPauseMilliseconds);
    QObject::connect(&pause_, &QTimer::timeout, &pause_, [this] { pauseEnded(); });
}

void TypingPause::pauseEnded() {
    if (context_.requestRuns()) {
        pause_.start();
    } else {
        changed();
    }
}

void TypingPause::typed() {
    if (slow_) {
        pause_.start();
    } else {
        changed();
    }
}

void TypingPause::changed() {
    static_cast<void>(search());
}

bool TypingPause::search() {
    bool done = false;
    context_.guarded(&origin_, [this, &done] {
        searchNow();
        done = true;
    });
    return done;
}

void TypingPause::searchNow() {
    pause_.stop();
    slow_ = false;
    QElapsedTimer timer;
    timer.start();
    try {
        search_();
    } catch (...) {
        // Whoever gave up a slow search does not want to wait for the next letter either.
        slow_ = timer.elapsed() > kSlowMilliseconds;
        throw;
    }
    slow_ = timer.elapsed() > kSlowMilliseconds;
}

}  // namespace basalt::host
