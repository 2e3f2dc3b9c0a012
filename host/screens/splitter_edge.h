// Keeps the parts of a splitter inside of it: from right to left Qt moves them one pixel too far to the right, where
// the edge of the first one is cut off.
#pragma once

#include <QSplitter>

namespace basalt::host {

inline void keepPartsInside(QSplitter& splitter) {
    splitter.setContentsMargins(0, 0, splitter.isRightToLeft() ? 1 : 0, 0);
}

}  // namespace basalt::host
