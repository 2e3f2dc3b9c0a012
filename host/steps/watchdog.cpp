#include "host/steps/watchdog.h"

namespace basalt::host {

Watchdog::Watchdog(std::chrono::milliseconds patience, std::function<void()> onStandstill)
    : patience_(patience), onStandstill_(std::move(onStandstill)), thread_([this] { watch(); }) {}

Watchdog::~Watchdog() {
    {
        const std::lock_guard lock(mutex_);
        stopping_ = true;
    }
    changed_.notify_all();
    thread_.join();
}

void Watchdog::alive() {
    const std::lock_guard lock(mutex_);
    lastSign_ = std::chrono::steady_clock::now();
}

void Watchdog::watch() {
    std::unique_lock lock(mutex_);
    while (!stopping_) {
        changed_.wait_until(lock, lastSign_ + patience_);
        if (!stopping_ && std::chrono::steady_clock::now() >= lastSign_ + patience_) {
            lock.unlock();
            onStandstill_();
            return;
        }
    }
}

}  // namespace basalt::host
