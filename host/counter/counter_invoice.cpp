#include "host/counter/counter_invoice.h"

#include <algorithm>
#include <map>
#include <utility>

#include "host/counter/money.h"
#include "package/numbers.h"

namespace basalt::host {

namespace {

// Of tables of values a server takes a few at a time, and of rows in each 1000.
constexpr std::size_t kRowsOfATable = 500;
constexpr const char* kOpening = "SELECT Code, Anbar, Mogodi FROM (VALUES ";
constexpr const char* kClosing = ") AS L (Code, Anbar, Mogodi)";

// Pieces of one good with its maker's barcode, or with the same label. For another person the price of a label is asked
// anew by its barcode, and another one may say another price.
bool cameAlike(const CounterLine& pieces, const CounterLine& others) {
    return !pieces.weighed && !others.weighed && pieces.good == others.good && pieces.barcode == others.barcode;
}

}  // namespace

Extended asStored(Extended amount) {
    return StrToFloat_VRO(FloatToStr_VRO(amount));
}

std::vector<CounterLine>::const_iterator CounterInvoice::samePieces(const CounterLine& line) const {
    if (line.weighed) return lines_.end();
    return std::find_if(lines_.begin(), lines_.end(),
                        [&line](const CounterLine& each) { return cameAlike(each, line) && each.price == line.price; });
}

Extended CounterInvoice::amountWith(const CounterLine& line) const {
    const auto same = samePieces(line);
    return same == lines_.end() ? line.amount : same->amount + line.amount;
}

void CounterInvoice::add(CounterLine line) {
    line.scanned = line.amount;
    join(std::move(line));
}

void CounterInvoice::join(CounterLine line) {
    const auto same = samePieces(line);
    if (same == lines_.end()) {
        lines_.push_back(std::move(line));
        return;
    }
    CounterLine& pieces = lines_[static_cast<std::size_t>(same - lines_.cbegin())];
    pieces.amount = asStored(pieces.amount + line.amount);
    pieces.scanned += line.scanned;
    pieces.person = line.person;
}

template <class Fits>
std::vector<CounterLine>::iterator CounterInvoice::findLast(Extended price, Fits fits) {
    auto line = std::find_if(lines_.rbegin(), lines_.rend(),
                             [&](const CounterLine& each) { return fits(each) && each.price == price; });
    if (line == lines_.rend()) line = std::find_if(lines_.rbegin(), lines_.rend(), fits);
    return line == lines_.rend() ? lines_.end() : std::next(line).base();
}

std::optional<CounterLine> CounterInvoice::takeParcel(int good, Extended amount, Extended price) {
    const auto line = findLast(
        price, [&](const CounterLine& each) { return each.good == good && each.weighed && each.scanned == amount; });
    if (line == lines_.end()) return std::nullopt;
    CounterLine taken = std::move(*line);
    lines_.erase(line);
    return taken;
}

std::optional<CounterLine> CounterInvoice::takePiece(const CounterLine& piece) {
    const auto line =
        findLast(piece.price, [&piece](const CounterLine& each) { return cameAlike(each, piece) && each.amount >= 1; });
    if (line == lines_.end()) return std::nullopt;
    CounterLine taken = *line;
    taken.amount = 1;
    line->amount = asStored(line->amount - 1);
    if (line->amount <= 0) lines_.erase(line);
    return taken;
}

std::optional<std::size_t> CounterInvoice::piecesLike(const CounterLine& piece) const {
    for (std::size_t i = lines_.size(); i-- > 0;) {
        if (cameAlike(lines_[i], piece)) return i;
    }
    return std::nullopt;
}

Extended CounterInvoice::lineTotal(std::size_t index) const {
    const CounterLine& line = lines_.at(index);
    return moneyOf(line.amount, line.price, decimals_).toExtended();
}

Extended CounterInvoice::total(Extended more) const {
    Decimal sum = moneyOf(more, 1, decimals_);
    for (const CounterLine& line : lines_)
        sum = sumOf(sum, moneyOf(line.amount, line.price, decimals_));
    return sum.toExtended();
}

void CounterInvoice::setPrices(const std::vector<Extended>& prices, int person) {
    for (std::size_t i = 0; i < lines_.size(); ++i) {
        lines_[i].price = prices.at(i);
        lines_[i].person = person;
    }
    for (std::vector<CounterLine> lines = std::exchange(lines_, {}); CounterLine & line : lines)
        join(std::move(line));
}

std::string CounterInvoice::stockQuery(int store) const {
    std::vector<std::pair<int, Extended>> amounts;
    std::map<int, std::size_t> places;
    for (const CounterLine& line : lines_) {
        const auto [place, isNew] = places.emplace(line.good, amounts.size());
        if (isNew) amounts.emplace_back(line.good, 0);
        amounts[place->second].second += line.amount;
    }
    std::string query;
    for (std::size_t i = 0; i < amounts.size(); ++i) {
        const auto& [good, amount] = amounts[i];
        if (i % kRowsOfATable != 0) {
            query += ", ";
        } else if (i == 0) {
            query += kOpening;
        } else {
            query += kClosing + std::string(" UNION ALL ") + kOpening;
        }
        query += "(" + std::to_string(good) + ", " + std::to_string(store) + ", CAST(" + FloatToStr_VRO(-amount) +
                 " AS decimal(23, 9)))";
    }
    if (!query.empty()) query += kClosing;
    return query;
}

}  // namespace basalt::host
