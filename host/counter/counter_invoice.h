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
    std::string barcode = {};  // of the label of a scale; empty for what came with its maker's barcode
    bool weighed = false;      // its label says the amount; anything else is counted by piece
    int person = 0;            // whose price it is; 0 for nobody's
    bool operator==(const CounterLine&) const = default;
};

// An amount as the ledger has it, with nine digits behind the point: what is less than that is nothing.
[[nodiscard]] Extended asStored(Extended amount);

class CounterInvoice {
public:
    // decimals: of amounts of money, 0 to 9; lines are rounded half away from zero.
    explicit CounterInvoice(int decimals) : decimals_(decimals) {}

    // What was weighed is a line of its own. Pieces of a good at one price that came alike, with its maker's barcode or
    // with the same label, are one line, which is then the new ones' person's. The amount is what was scanned.
    void add(CounterLine line);
    // What the line of these pieces would come to; the amount itself for what gets a line of its own.
    [[nodiscard]] Extended amountWith(const CounterLine& line) const;
    // Takes off the last parcel of that good whose label says that amount: one of that price when there is any, since
    // labels of equal weight may say different prices. nullopt when there is none; a parcel is whole or not there.
    std::optional<CounterLine> takeParcel(int good, Extended amount, Extended price);
    // Takes one piece off the last line of pieces that came like this one, with the maker's barcode of its good or with
    // the same label: off one of its price that has a piece, else off one of any price. nullopt when there is none;
    // less than a piece is not cut.
    std::optional<CounterLine> takePiece(const CounterLine& piece);
    // The place of the last line of pieces that came like this one; nullopt when there is none.
    [[nodiscard]] std::optional<std::size_t> piecesLike(const CounterLine& piece) const;
    void remove(std::size_t index) { lines_.erase(lines_.begin() + static_cast<std::ptrdiff_t>(index)); }
    void setAmount(std::size_t index, Extended amount) { lines_.at(index).amount = asStored(amount); }
    // One a line, as that person's. Pieces that cost the same then are one line.
    void setPrices(const std::vector<Extended>& prices, int person);
    void clear() { lines_.clear(); }
    // Takes the lines off, and counts money with so many decimals from now on.
    void begin(int decimals) {
        clear();
        decimals_ = decimals;
    }

    [[nodiscard]] const std::vector<CounterLine>& lines() const { return lines_; }
    [[nodiscard]] Extended lineTotal(std::size_t index) const;
    // Of the lines and what is to be paid besides.
    [[nodiscard]] Extended total(Extended more = 0) const;

    // A statement that gives what the invoice takes out of a store: Code, Anbar, Mogodi (negative), one row a good, by
    // the first appearance of the goods. Empty for an invoice without lines.
    [[nodiscard]] std::string stockQuery(int store) const;

private:
    void join(CounterLine line);
    // The last line that fits, of that price when there is one.
    template <class Fits>
    std::vector<CounterLine>::iterator findLast(Extended price, Fits fits);
    // Where these pieces are counted already; the end for none.
    [[nodiscard]] std::vector<CounterLine>::const_iterator samePieces(const CounterLine& line) const;

    int decimals_;
    std::vector<CounterLine> lines_;
};

}  // namespace basalt::host
