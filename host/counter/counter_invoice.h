// The lines of an invoice at the counter.
//
//   CounterInvoice invoice(0);                         // amounts of money without decimals
//   invoice.add({.good = 57, .name = "برنج", .amount = 1.25L, .price = 12500});
//   invoice.total()                                    // 15625
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "ado/decimal.h"

namespace basalt::host {

struct CounterLine {
    int good = 0;
    std::string name;
    std::string unit = {};
    Extended amount = 0;
    Extended price = 0;
    std::string scale = {};    // the scale's number; empty for none
    std::string barcode = {};  // the scale's label; empty for a piece
    int person = 0;            // whose price it is; 0 for nobody's
};

class CounterInvoice {
public:
    // decimals: of amounts of money, 0 to 9; lines are rounded half away from zero.
    explicit CounterInvoice(int decimals) : decimals_(decimals) {}

    void add(CounterLine line) { lines_.push_back(std::move(line)); }
    // Takes off the last line of that good and amount: one of that price when there is any, since labels of equal
    // weight may say different prices. nullopt when no line has that amount; a parcel is whole or not there.
    std::optional<CounterLine> takeParcel(int good, Extended amount, Extended price);
    // Takes one piece off: a line of one, else from the last line of the good that has more. nullopt when there is
    // none.
    std::optional<CounterLine> takePiece(int good, Extended price);
    void remove(std::size_t index) { lines_.erase(lines_.begin() + static_cast<std::ptrdiff_t>(index)); }
    void setAmount(std::size_t index, Extended amount) { lines_.at(index).amount = amount; }
    // One a line, as that person's.
    void setPrices(const std::vector<Extended>& prices, int person);
    void clear() { lines_.clear(); }

    [[nodiscard]] const std::vector<CounterLine>& lines() const { return lines_; }
    [[nodiscard]] Extended lineTotal(std::size_t index) const;
    [[nodiscard]] Extended total() const;

    // A statement that gives what the invoice takes out of a store: Code, Anbar, Mogodi (negative), one row a good, by
    // the first appearance of the goods. Empty for an invoice without lines.
    [[nodiscard]] std::string stockQuery(int store) const;

private:
    int decimals_;
    std::vector<CounterLine> lines_;
};

}  // namespace basalt::host
