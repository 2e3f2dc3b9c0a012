// Tells Enter that ends a scan from Enter that somebody pressed: a scanner is a keyboard that types into whatever has
// the focus, a question too, and would answer it.
//
//   if (guard_.endsScan(*keyPress)) return true;  // not an answer
#pragma once

#include <QElapsedTimer>
#include <QKeyEvent>

namespace basalt::host {

class ScanGuard {
public:
    // To be asked about each key press: whether it comes too soon behind a character to have been meant.
    [[nodiscard]] bool endsScan(const QKeyEvent& key);

private:
    QElapsedTimer sinceTyped_;
};

}  // namespace basalt::host
