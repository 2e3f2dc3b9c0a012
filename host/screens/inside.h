// Keeps what is shown inside of what has the room for it.
#pragma once

#include <QRect>

namespace basalt::host {

// The rectangle moved no further than it must be to lie inside of the room. What is larger than that begins where the
// room begins, at the left and at the top.
[[nodiscard]] inline QRect movedInside(QRect part, const QRect& room) {
    if (part.right() > room.right()) part.moveRight(room.right());
    if (part.bottom() > room.bottom()) part.moveBottom(room.bottom());
    if (part.left() < room.left()) part.moveLeft(room.left());
    if (part.top() < room.top()) part.moveTop(room.top());
    return part;
}

}  // namespace basalt::host
