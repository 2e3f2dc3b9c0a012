#include "host/counter/counter_invoice.h"

#include <algorithm>
#include <map>

#include "host/counter/money.h"
#include "package/numbers.h"

namespace basalt::host {

namespace {

// Of tables of values a server takes a few at a time, and of rows in each 1000.
constexpr std::size_t kRowsOfATable = 500;
constexpr const char* kOpening = "SELECT Code, Anbar, Mogodi FROM (VALUES ";
constexpr const char* kClosing = ") AS L (Code, Anbar, Mogodi)";

bool isParcel(const CounterLine& line) {
    return !line.barcode.empty();
}

}  // namespace

void CounterInvoice::add(CounterLine line) {
    line.scanned = line.amount;
    lines_.push_back(std::move(line));
}

template <class Fits>
std::optional<CounterLine> CounterInvoice::takeLast(Extended price, Fits fits) {
    auto line = std::find_if(lines_.rbegin(), lines_.rend(),
                             [&](const CounterLine& each) { return fits(each) && each.price == price; });
    if (line == lines_.rend()) line = std::find_if(lines_.rbegin(), lines_.rend(), fits);
    if (line == lines_.rend()) return std::nullopt;
    CounterLine taken = std::move(*line);
    lines_.erase(std::next(line).base());
    return taken;
}

std::optional<CounterLine> CounterInvoice::takeParcel(int good, Extended amount, Extended price) {
    return takeLast(
        price, [&](const CounterLine& each) { return each.good == good && isParcel(each) && each.scanned == amount; });
}

std::optional<CounterLine> CounterInvoice::takePiece(int good, Extended price) {
    const auto isPiece = [good](const CounterLine& each) { return each.good == good && !isParcel(each); };
    if (auto taken = takeLast(price, [&](const CounterLine& each) { return isPiece(each) && each.amount == 1; }))
        return taken;
    const auto line = std::find_if(lines_.rbegin(), lines_.rend(),
                                   [&](const CounterLine& each) { return isPiece(each) && each.amount > 1; });
    if (line == lines_.rend()) return std::nullopt;
    line->amount -= 1;
    CounterLine taken = *line;
    taken.amount = 1;
    return taken;
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
