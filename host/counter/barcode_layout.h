// A layout of scale barcodes, what of a barcode each of its fields is, and what is wrong with it.
//
//   for (const LayoutProblem& problem : problemsOf(layout)) warn(problem.text);
//   for (const FieldSpan& span : spansOf(layout)) colour(span.begin, span.end, span.field);
#pragma once

#include <QString>
#include <optional>
#include <string>
#include <vector>

#include "ado/decimal.h"
#include "goods/barcode_types.h"

namespace basalt::host {

// A row of BarCodeFormul. Positions count characters from 1.
struct BarcodeLayout {
    int id = 0;  // 0: not stored yet
    std::string title;
    int digitCount = 13;
    int constantStart = 1;
    int constantCount = 2;
    std::string constantCode;
    int barCodeType = bftAmount;
    int itemConstantCode = 0;
    int itemCodeType = kGoodFieldIsItsCode;
    int itemCodeStart = 0;
    int itemCodeCount = 0;
    int amountStart = 0;
    int amountCount = 0;
    int amountDivide = 0;
    int balanceNoStart = 0;
    int balanceNoCount = 0;
    bool balanceNoAsStore = false;
    int priceStart = 0;
    int priceCount = 0;
    bool operator==(const BarcodeLayout&) const = default;
};

// Its title, or for people that it has none.
[[nodiscard]] QString nameOf(const BarcodeLayout& layout);

enum class LayoutField { Constant, Item, Amount, Balance, Price };

// Persian, for people.
[[nodiscard]] QString titleOf(LayoutField field);

// Characters begin to end - 1, from 1.
struct FieldSpan {
    LayoutField field;
    int begin;
    int end;
    bool operator==(const FieldSpan&) const = default;
};

// The fields that this kind of layout cuts, by their place; fields without characters are left out. Spans may lie
// outside of the barcode.
[[nodiscard]] std::vector<FieldSpan> spansOf(const BarcodeLayout& layout);

// Whether the barcode, without outer blanks, is read by this layout: its length, and its prefix to the letter.
[[nodiscard]] bool fits(const BarcodeLayout& layout, const QString& barcode);

// The amount of money that the layout cuts from the barcode; nullopt when there is no number.
[[nodiscard]] std::optional<Extended> priceIn(const BarcodeLayout& layout, const QString& barcode);

// Whether the server gives the layout for the barcode. It takes prefixes for the same that differ in the case of
// letters, the script of digits, signs without width and blanks behind them (host/counter/prefix_comparison.h). A scan
// takes the first layout that it gives, and none when that one does not fit to the letter.
[[nodiscard]] bool isFoundFor(const BarcodeLayout& layout, const QString& barcode);

// Why a barcode that the layout reads gives no good, amount or price, in a sentence that says what to do; nullopt when
// nothing in it stands in the way. byScaleCode: goods whose field is not their code are found by their scale codes.
[[nodiscard]] std::optional<QString> faultOf(const BarcodeLayout& layout, const QString& barcode, bool byScaleCode);

// A prefix of less than no characters keeps the server from comparing it, and so from finding any layout: what of the
// layout is to be mended.
[[nodiscard]] QString prefixFault(const BarcodeLayout& layout);

// Whether there is a barcode that the server would give both for; either may come first.
[[nodiscard]] bool mayBothFit(const BarcodeLayout& a, const BarcodeLayout& b);

struct LayoutProblem {
    QString text;  // a sentence for people
    // No barcode can be read by a layout with it; the others may be meant.
    bool isHopeless = false;
    // Where it is mended, if that is the place of one field.
    std::optional<LayoutField> field = {};
};

// What is wrong with the layout. Hopeless: a barcode without characters, negative counts, a prefix that is not as long
// as what is compared with it or has other characters than scans have (Latin letters and digits), a kind that nobody
// knows, a good, an amount or a price that lies wholly outside of the barcode, a field that its kind needs and does not
// have. Else: fields of which only a part lies in the barcode, fields that overlap, others that fit the same barcodes.
// A layout is not compared with itself (the same id, when stored).
[[nodiscard]] std::vector<LayoutProblem> problemsOf(const BarcodeLayout& layout,
                                                    const std::vector<BarcodeLayout>& others);

}  // namespace basalt::host
