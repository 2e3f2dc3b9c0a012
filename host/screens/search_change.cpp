#include "host/screens/search_change.h"

#include <QElapsedTimer>

namespace basalt::host {
namespace {
constexpr int kPauseMilliseconds = 250;
constexpr qint64 kSlowMilliseconds = 120;
}  // namespace

SearchChange::SearchChange(ScreenContext& context, TSearchFrame& frame) : context_(context), frame_(frame) {
    pause_.setSingleShot(true);
    pause_.setInterval(kPauseMilliseconds);
    QObject::connect(&pause_, &QTimer::timeout, &pause_, [this] { tell(); });
}

void SearchChange::typed() {
    if (isMuted()) return;
    if (slow_) {
        pause_.start();
    } else {
        tell();
    }
}

void SearchChange::changed() {
    if (!isMuted()) tell();
}

bool SearchChange::finish() {
    if (!pause_.isActive()) return true;
    bool told = false;
    context_.guarded(&frame_, [this, &told] {
        tellNow();
        told = true;
    });
    return told;
}

void SearchChange::tell() {
    context_.guarded(&frame_, [this] { tellNow(); });
}

void SearchChange::tellNow() {
    pause_.stop();
    slow_ = false;
    QElapsedTimer timer;
    timer.start();
    if (frame_.OnChange) {
        frame_.OnChange();
    } else if (search_) {
        search_();
    }
    slow_ = timer.elapsed() > kSlowMilliseconds;
}

}  // namespace basalt::host
