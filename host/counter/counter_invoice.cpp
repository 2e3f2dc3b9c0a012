#include "host/counter/counter_invoice.h"

#include <algorithm>
#include <map>

#include "package/numbers.h"

namespace basalt::host {

namespace {

// Of tables of values a server takes a few at a time, and of rows in each 1000.
constexpr std::size_t kRowsOfATable = 500;
constexpr const char* kOpening = "SELECT Code, Anbar, Mogodi FROM (VALUES ";
constexpr const char* kClosing = ") AS L (Code, Anbar, Mogodi)";

}  // namespace

std::optional<CounterLine> CounterInvoice::takeParcel(int good, Extended amount, Extended price) {
    const auto last = [this](auto fits) { return std::find_if(lines_.rbegin(), lines_.rend(), fits); };
    const auto isIt = [&](const CounterLine& each) { return each.good == good && each.amount == amount; };
    auto line = last([&](const CounterLine& each) { return isIt(each) && each.price == price; });
    if (line == lines_.rend()) line = last(isIt);
    if (line == lines_.rend()) return std::nullopt;
    CounterLine taken = std::move(*line);
    lines_.erase(std::next(line).base());
    return taken;
}

std::optional<CounterLine> CounterInvoice::takePiece(int good, Extended price) {
    if (auto taken = takeParcel(good, 1, price)) return taken;
    const auto line = std::find_if(lines_.rbegin(), lines_.rend(),
                                   [&](const CounterLine& each) { return each.good == good && each.amount > 1; });
    if (line == lines_.rend()) return std::nullopt;
    line->amount -= 1;
    CounterLine taken = *line;
    taken.amount = 1;
    return taken;
}

Extended CounterInvoice::lineTotal(std::size_t index) const {
    const CounterLine& line = lines_.at(index);
    const Extended exact = line.amount * line.price;
    const auto rounded = Decimal::fromExtended(exact, decimals_);
    return rounded ? rounded->toExtended() : exact;
}

Extended CounterInvoice::total() const {
    Extended sum = 0;
    for (std::size_t i = 0; i < lines_.size(); ++i)
        sum += lineTotal(i);
    return sum;
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
