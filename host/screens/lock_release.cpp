#include "host/screens/lock_release.h"

#include <algorithm>

namespace basalt::host {
namespace {

// Each attempt holds the windows up for a moment where the other program still writes.
constexpr int kFirstWaitMs = 1000;
constexpr int kLongestWaitMs = 15'000;

}  // namespace

LockRelease::LockRelease(ScreenContext& context) : context_(context) {
    timer_.setSingleShot(true);
    QObject::connect(&timer_, &QTimer::timeout, &timer_, [this] { tryAgain(); });
    context_.host().codeLocks().onUnreleased([this] { timer_.start(kFirstWaitMs); });
}

LockRelease::~LockRelease() {
    context_.host().codeLocks().onUnreleased({});
}

void LockRelease::tryAgain() {
    if (!context_.requestRuns() && context_.host().codeLocks().retryReleases()) return;
    timer_.start(std::min(timer_.interval() * 2, kLongestWaitMs));
}

}  // namespace basalt::host
