// Where the host takes the time from. Replaceable, so that a test or a replayed session lives on a day of its choosing.
//
//   FixedClock clock({.year = 2026, .month = 11, .day = 21, .hour = 9});
//   host.setClock(clock);
#pragma once

#include "ado/value.h"

namespace basalt::host {

class Clock {
public:
    virtual ~Clock() = default;
    // The local date and time.
    [[nodiscard]] virtual CivilDateTime now() = 0;
};

class SystemClock final : public Clock {
public:
    CivilDateTime now() override;
};

class FixedClock final : public Clock {
public:
    explicit FixedClock(CivilDateTime moment) : moment_(moment) {}
    CivilDateTime now() override { return moment_; }
    void set(CivilDateTime moment) { moment_ = moment; }

private:
    CivilDateTime moment_;
};

}  // namespace basalt::host
