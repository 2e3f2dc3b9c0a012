// Gives back the codes of records whose rows could not be removed when their editors closed, because another program
// was writing: tries again by itself, more and more seldom, so that others do not go on seeing a record as open.
//
//   LockRelease release(context);      // for as long as there are screens
#pragma once

#include <QTimer>

#include "host/screens/screen_context.h"

namespace basalt::host {

class LockRelease {
public:
    explicit LockRelease(ScreenContext& context);
    ~LockRelease();
    LockRelease(const LockRelease&) = delete;
    LockRelease& operator=(const LockRelease&) = delete;

private:
    void tryAgain();

    ScreenContext& context_;
    QTimer timer_;
};

}  // namespace basalt::host
