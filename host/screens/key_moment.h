// When a key was pressed, for what is decided by the time between two keys.
#pragma once

#include <QtGlobal>

namespace basalt::host {

// In milliseconds.
struct KeyMoment {
    quint64 stamp = 0;  // the key's own time, 0 where the system tells none
    qint64 read = 0;    // when it was read
};

[[nodiscard]] constexpr qint64 between(const KeyMoment& earlier, const KeyMoment& later) {
    // What the program was busy with between two keys is no pause of whoever typed them.
    if (earlier.stamp != 0 && later.stamp >= earlier.stamp) return static_cast<qint64>(later.stamp - earlier.stamp);
    return later.read - earlier.read;
}

}  // namespace basalt::host
