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
    Extended scanned = 0;  // what the label says; the amount may be less, without its boxes
    Extended price = 0;
    std::string scale = {};    // the scale's number; empty for none
    std::string barcode = {};  // the scale's label; empty for a piece
    int person = 0;            // whose price it is; 0 for nobody's
};

class CounterInvoice {
public:
    // decimals: of amounts of money, 0 to 9; lines are rounded half away from zero.
    explicit CounterInvoice(int decimals) : decimals_(decimals) {}

    // A line with a barcode is a weighed parcel, any other one are pieces. The amount is what was scanned.
    void add(CounterLine line);
    // Takes off the last parcel of that good whose label says that amount: one of that price when there is any, since
    // labels of equal weight may say different prices. nullopt when there is none; a parcel is whole or not there.
    std::optional<CounterLine> takeParcel(int good, Extended amount, Extended price);
    // Takes one piece off: a line of one, of that price when there is any, else from the last line that has more
    // pieces. nullopt when there is none.
    std::optional<CounterLine> takePiece(int good, Extended price);
    void remove(std::size_t index) { lines_.erase(lines_.begin() + static_cast<std::ptrdiff_t>(index)); }
    void setAmount(std::size_t index, Extended amount) { lines_.at(index).amount = amount; }
    // One a line, as that person's.
    void setPrices(const std::vector<Extended>& prices, int person);
    void clear() { lines_.clear(); }

    [[nodiscard]] const std::vector<CounterLine>& lines() const { return lines_; }
    [[nodiscard]] Extended lineTotal(std::size_t index) const;
    // Of the lines and what is to be paid besides.
    [[nodiscard]] Extended total(Extended more = 0) const;

    // A statement that gives what the invoice takes out of a store: Code, Anbar, Mogodi (negative), one row a good, by
    // the first appearance of the goods. Empty for an invoice without lines.
    [[nodiscard]] std::string stockQuery(int store) const;

private:
    // The last line that fits, of that price when there is one.
    template <class Fits>
    std::optional<CounterLine> takeLast(Extended price, Fits fits);

    int decimals_;
    std::vector<CounterLine> lines_;
};

}  // namespace basalt::host
