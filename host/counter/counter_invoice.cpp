#include "host/counter/counter_invoice.h"

#include <algorithm>

#include "package/numbers.h"

namespace basalt::host {

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

std::string CounterInvoice::stockQuery(int store) const {
    std::vector<std::pair<int, Extended>> amounts;
    for (const CounterLine& line : lines_) {
        const auto known =
            std::find_if(amounts.begin(), amounts.end(), [&](const auto& each) { return each.first == line.good; });
        if (known == amounts.end()) {
            amounts.emplace_back(line.good, line.amount);
        } else {
            known->second += line.amount;
        }
    }
    std::string query;
    for (const auto& [good, amount] : amounts) {
        query += (query.empty() ? "SELECT " : " UNION ALL SELECT ") + std::to_string(good) + " AS Code, " +
                 std::to_string(store) + " AS Anbar, CAST(" + FloatToStr_VRO(-amount) + " AS decimal(23, 9)) AS Mogodi";
    }
    return query;
}

}  // namespace basalt::host
