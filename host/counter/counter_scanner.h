// Takes a scan into the invoice, and says what happened.
//
//   CounterScanner scanner(host, calls, invoice);
//   const ScanReport report = scanner.scan("2800057012505", {.person = 12});
//   show(report.text, report.mood);
#pragma once

#include <QString>
#include <optional>
#include <vector>

#include "host/counter/barcode_layout.h"
#include "host/counter/counter_invoice.h"
#include "host/counter/module_calls.h"
#include "host/services/reference_host.h"

namespace basalt::host {

enum class ScanMood {
    Added,    // a line, or a price to the sum
    Removed,  // the same taken off
    Matched,  // the total of the barcode is the invoice's
    Warned,   // the total differs, or nothing had to be done
    Refused,  // the barcode means nothing here
};

struct ScanReport {
    ScanMood mood = ScanMood::Refused;
    QString text;
};

struct ScanOptions {
    int person = 0;
    bool removing = false;
};

class CounterScanner {
public:
    CounterScanner(ReferenceHost& host, ModuleCalls& calls, CounterInvoice& invoice)
        : host_(host), calls_(calls), invoice_(invoice) {}

    // The text as it was typed. Errors of the database pass on, but for those of a barcode that does not hold what its
    // layout wants, or of a layout that looks in the wrong place: these are told. What the ledger could not hold is
    // refused, and so is taking off what is not there.
    ScanReport scan(const QString& typed, const ScanOptions& options);

    // Whether a layout fits or a good has that barcode. Takes nothing, and leaves the module as it is.
    [[nodiscard]] bool knows(const QString& typed);

    // What the lines cost that person, line by line: pieces, and scale labels without a price, are asked again where
    // they were priced for somebody else. Other lines keep theirs.
    [[nodiscard]] std::vector<Extended> pricesFor(int person);

    // What the invoice comes to with the barcodes that carry a price alone.
    [[nodiscard]] Extended total();
    [[nodiscard]] Extended priceSum();
    // Forgets the sum of these barcodes, for the next invoice.
    void resetPriceSum();

private:
    ModuleReply extract(int useType, const std::string& code, int person);
    // The layout by which the module reads the code: the first one, when that fits to the letter.
    [[nodiscard]] std::optional<BarcodeLayout> layoutOf(const QString& code);
    ScanReport takeGood(const std::optional<BarcodeLayout>& layout, const QString& code, const ScanOptions& options);
    [[nodiscard]] std::optional<QString> faultIn(const std::optional<BarcodeLayout>& layout, const QString& code);
    // A barcode whose good's field would find a good that nobody meant, told before a statement is made of it: letters
    // where a good is looked up by its code ("1E002" finds good 100, and "Unit" is a column), nothing where it is
    // looked up by its scale code.
    [[nodiscard]] std::optional<QString> unsafeField(const std::optional<BarcodeLayout>& layout, const QString& code);
    // A layout that keeps the server from finding any.
    [[nodiscard]] std::optional<QString> brokenPrefix();
    // Of a barcode whose total is not the invoice's: the module has said that much, and here is what differs.
    ScanReport otherTotal(const std::optional<BarcodeLayout>& layout, const QString& code);
    // The good that has the barcode of its maker; 0 for none. The code is plain.
    [[nodiscard]] int goodOfBarcode(const QString& code);
    ScanReport takeOwnBarcode(const QString& code, const ScanOptions& options);
    // A barcode that the module has summed already; sumBefore is the sum without it.
    ScanReport takePrice(Extended sumBefore, bool removing);
    ScanReport takeLine(CounterLine line, bool removing);
    // Of a line that is not there to be taken off.
    [[nodiscard]] ScanReport notThere(const CounterLine& line) const;
    // Fills name and unit, and without a label its person's price; false when there is no such good.
    bool describe(CounterLine& line);
    // What a label would get: the price of the level that the person is offered. A good without one has the price that
    // its maker says.
    [[nodiscard]] Extended pieceFor(int person, int good, Extended consumerPrice);
    // Of the line's good, with what its label says.
    [[nodiscard]] std::optional<Extended> priceFor(int person, const CounterLine& line);

    ReferenceHost& host_;
    ModuleCalls& calls_;
    CounterInvoice& invoice_;
    // Of the barcodes that carry a price alone and are in the sum.
    std::vector<Extended> prices_;
};

// Whether the ledger can hold that much of something at that price.
[[nodiscard]] bool fitsInvoice(Extended amount, Extended price);

// An amount as people read it: grouped by thousands, Persian digits.
[[nodiscard]] QString amountText(Extended amount);
// With its unit behind it, if it has one.
[[nodiscard]] QString amountText(Extended amount, const std::string& unit);

}  // namespace basalt::host
