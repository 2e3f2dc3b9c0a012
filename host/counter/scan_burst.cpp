#include "host/counter/scan_burst.h"

#include <algorithm>
#include <utility>

namespace basalt::host {

namespace {

constexpr qint64 kMillisecondsEach = 60;
// Scanners stumble, but none stops for so long within a barcode.
constexpr qint64 kPause = 400;

}  // namespace

QString ScanBurst::textFrom(std::size_t begin) const {
    QString text;
    for (std::size_t i = begin; i < keys_.size(); ++i)
        text += keys_[i].text;
    return text;
}

bool ScanBurst::isAtPace(std::size_t begin, const KeyMoment& enter) const {
    const auto count = static_cast<qint64>(keys_.size() - begin);
    if (count < shortest_) return false;
    qint64 fast = 0;
    for (std::size_t i = begin; i < keys_.size(); ++i) {
        if (between(keys_[i].at, i + 1 < keys_.size() ? keys_[i + 1].at : enter) <= kMillisecondsEach) ++fast;
    }
    // Either may be spoilt: the mean by one stumble, the half by a jittery line.
    return 2 * fast > count || between(keys_[begin].at, enter) <= kMillisecondsEach * count;
}

bool ScanBurst::isTooLong(std::size_t begin) const {
    const QString text = textFrom(begin);
    return text.size() > longestTyped_ && std::all_of(text.begin(), text.end(), [](QChar c) { return c.isDigit(); });
}

std::optional<std::size_t> ScanBurst::beginOfScan(const KeyMoment& enter) const {
    std::vector<std::size_t> begins;
    for (std::size_t i = 0; i < keys_.size(); ++i) {
        const bool isBehindPause = i == 0 || between(keys_[i - 1].at, keys_[i].at) >= kPause;
        if (isBehindPause && (isAtPace(i, enter) || isTooLong(i))) begins.push_back(i);
    }
    if (begins.empty()) return std::nullopt;
    if (begins.size() > 1 && knows) {
        const auto known =
            std::find_if(begins.begin(), begins.end(), [&](auto begin) { return knows(textFrom(begin)); });
        if (known != begins.end()) return *known;
    }
    return begins.back();
}

std::optional<ScanBurst::Scan> ScanBurst::endedBy(const QKeyEvent& key, const QString& held) {
    const KeyMoment now{key.timestamp(), clock_.elapsed()};
    if (key.key() == Qt::Key_Return || key.key() == Qt::Key_Enter) {
        const auto begin = beginOfScan(now);
        if (!begin) {
            keys_.clear();
            return std::nullopt;
        }
        Scan scan{
            .text = textFrom(*begin), .before = keys_[*begin].held, .maybeTyped = *begin == 0 && !isAtPace(0, now)};
        keys_.clear();
        return scan;
    }
    const bool plain = (key.modifiers() & (Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier)) == 0;
    if (plain && !key.isAutoRepeat() && !key.text().isEmpty() && key.text()[0].isPrint()) {
        keys_.push_back({key.text(), now, held});
    } else if (!key.text().isEmpty()) {
        keys_.clear();  // a scanner corrects nothing, and holds no key down
    }
    return std::nullopt;
}

}  // namespace basalt::host
