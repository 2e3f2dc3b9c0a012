// Tells a scan from typing by its pace: a scanner is a keyboard that types into whatever has the focus.
//
//   ScanBurst burst(kShortestScan, kShortestBarcode - 1);
//   burst.knows = [](const QString& text) { ... };
//   void keyPressEvent(QKeyEvent* event) {
//       if (const auto scan = burst.endedBy(*event, text())) { ... scan->text is no number of this input,
//                                                                  scan->before is what somebody typed into it ... }
#pragma once

#include <QElapsedTimer>
#include <QKeyEvent>
#include <QString>
#include <functional>
#include <optional>
#include <vector>

#include "host/screens/key_moment.h"

namespace basalt::host {

// The shortest barcode that is printed on goods.
inline constexpr qsizetype kShortestBarcode = 8;
// Layouts may be shorter; at a scanner's pace nobody types even these.
inline constexpr qsizetype kShortestScan = 5;

class ScanBurst {
public:
    struct Scan {
        QString text;
        // What the input held when the scan began. What was typed by hand is in here when a pause of 0.4 s parts it
        // from the scan; with less between them nobody can tell it from a scanner that stumbles, and it is of the text.
        QString before;
        // Too long for the input, but neither at a scanner's pace nor behind a pause.
        bool maybeTyped = false;
    };

    // shortest: the fewest characters of a scan; nobody types as many at a scanner's pace. longestTyped: the most
    // digits that anybody types there; more of them are a scan at any pace.
    ScanBurst(qsizetype shortest, qsizetype longestTyped) : shortest_(shortest), longestTyped_(longestTyped) {
        clock_.start();
    }

    // Whether a text is a barcode that means something here. Asked where there is a pause: what is known with its pause
    // is one scan. Without it the pause parts.
    std::function<bool(const QString& text)> knows;

    // To be asked about each key press, in turn, with what the input holds before it: the scan that this one, Enter,
    // has ended.
    [[nodiscard]] std::optional<Scan> endedBy(const QKeyEvent& key, const QString& held);
    void forget() { keys_.clear(); }

private:
    struct Key {
        QString text;
        KeyMoment at;
        QString held;
    };

    [[nodiscard]] QString textFrom(std::size_t begin) const;
    [[nodiscard]] bool isAtPace(std::size_t begin, const KeyMoment& enter) const;
    [[nodiscard]] bool isTooLong(std::size_t begin) const;
    // Where the scan among the keys begins that is over now; nullopt when there is none.
    [[nodiscard]] std::optional<std::size_t> beginOfScan(const KeyMoment& enter) const;

    qsizetype shortest_;
    qsizetype longestTyped_;
    std::vector<Key> keys_;
    QElapsedTimer clock_;
};

}  // namespace basalt::host
