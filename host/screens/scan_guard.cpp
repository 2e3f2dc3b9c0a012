#include "host/screens/scan_guard.h"

namespace basalt::host {

namespace {

// A slow scanner's pause between two characters, with room; nobody types and then decides as fast.
constexpr qint64 kPause = 300;

}  // namespace

bool ScanGuard::endsScan(const QKeyEvent& key) {
    const bool presses = key.key() == Qt::Key_Return || key.key() == Qt::Key_Enter || key.key() == Qt::Key_Space;
    if (presses) return sinceTyped_.isValid() && sinceTyped_.elapsed() <= kPause;
    if (!key.text().isEmpty() && key.text()[0].isPrint()) sinceTyped_.start();
    return false;
}

}  // namespace basalt::host
