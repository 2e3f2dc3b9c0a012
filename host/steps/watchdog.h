// Ends the program when it stands still: a screen that never comes back must not hold up a run without a person.
#pragma once

#include <chrono>
#include <condition_variable>
#include <functional>
#include <mutex>
#include <thread>

namespace basalt::host {

class Watchdog {
public:
    // `onStandstill` is called on another thread when alive() has not been called for that long.
    Watchdog(std::chrono::milliseconds patience, std::function<void()> onStandstill);
    ~Watchdog();
    Watchdog(const Watchdog&) = delete;
    Watchdog& operator=(const Watchdog&) = delete;

    void alive();

private:
    void watch();

    std::chrono::milliseconds patience_;
    std::function<void()> onStandstill_;
    std::mutex mutex_;
    std::condition_variable changed_;
    std::chrono::steady_clock::time_point lastSign_ = std::chrono::steady_clock::now();
    bool stopping_ = false;
    std::thread thread_;
};

}  // namespace basalt::host
