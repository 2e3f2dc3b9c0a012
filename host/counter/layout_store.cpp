#include "host/counter/layout_store.h"

#include "host/services/sql_access.h"

namespace basalt::host {

namespace {

Value integer(int value) {
    return std::int64_t{value};
}

struct Column {
    const char* name;
    Value (*of)(const BarcodeLayout& layout);
};

template <int BarcodeLayout::*Field>
Value numberOf(const BarcodeLayout& layout) {
    return integer(layout.*Field);
}

constexpr Column kColumns[] = {
    {"Title", [](const BarcodeLayout& l) { return Value(l.title); }},
    {"DigitCount", numberOf<&BarcodeLayout::digitCount>},
    {"ConstantStart", numberOf<&BarcodeLayout::constantStart>},
    {"ConstantCount", numberOf<&BarcodeLayout::constantCount>},
    {"ConstantCode", [](const BarcodeLayout& l) { return Value(l.constantCode); }},
    {"BarCodeType", numberOf<&BarcodeLayout::barCodeType>},
    {"ItemConstantCode", numberOf<&BarcodeLayout::itemConstantCode>},
    {"ItemCodeType", numberOf<&BarcodeLayout::itemCodeType>},
    {"ItemCodeStart", numberOf<&BarcodeLayout::itemCodeStart>},
    {"ItemCodeCount", numberOf<&BarcodeLayout::itemCodeCount>},
    {"AmountStart", numberOf<&BarcodeLayout::amountStart>},
    {"AmountCount", numberOf<&BarcodeLayout::amountCount>},
    {"AmountDivide", numberOf<&BarcodeLayout::amountDivide>},
    {"BalanceNoStart", numberOf<&BarcodeLayout::balanceNoStart>},
    {"BalanceNoCount", numberOf<&BarcodeLayout::balanceNoCount>},
    {"BalanceNoAsStore", [](const BarcodeLayout& l) { return Value(l.balanceNoAsStore); }},
    {"PriceStart", numberOf<&BarcodeLayout::priceStart>},
    {"PriceCount", numberOf<&BarcodeLayout::priceCount>},
};

const std::string kSelect =
    "SELECT ID, Title, DigitCount, ConstantStart, ConstantCount, ConstantCode, BarCodeType, ItemConstantCode, "
    "ItemCodeType, ItemCodeStart, ItemCodeCount, AmountStart, AmountCount, AmountDivide, BalanceNoStart, "
    "BalanceNoCount, BalanceNoAsStore, PriceStart, PriceCount FROM dbo.BarCodeFormul ";

std::vector<BarcodeLayout> layoutsOf(const RowSet& rows) {
    std::vector<BarcodeLayout> layouts;
    for (std::size_t row = 0; row < rows.rowCount(); ++row) {
        const auto number = [&](std::size_t column) { return static_cast<int>(integerAt(rows, column, row)); };
        layouts.push_back({.id = number(0),
                           .title = textAt(rows, 1, row),
                           .digitCount = number(2),
                           .constantStart = number(3),
                           .constantCount = number(4),
                           .constantCode = textAt(rows, 5, row),
                           .barCodeType = number(6),
                           .itemConstantCode = number(7),
                           .itemCodeType = number(8),
                           .itemCodeStart = number(9),
                           .itemCodeCount = number(10),
                           .amountStart = number(11),
                           .amountCount = number(12),
                           .amountDivide = number(13),
                           .balanceNoStart = number(14),
                           .balanceNoCount = number(15),
                           .balanceNoAsStore = number(16) != 0,
                           .priceStart = number(17),
                           .priceCount = number(18)});
    }
    return layouts;
}

}  // namespace

std::vector<BarcodeLayout> LayoutStore::all() {
    return layoutsOf(rowsOf(session_, kSelect + "ORDER BY DigitCount, ConstantCode, ID"));
}

std::optional<BarcodeLayout> LayoutStore::held(int id) {
    std::vector<BarcodeLayout> found =
        layoutsOf(rowsOf(session_, kSelect + "WITH (UPDLOCK, HOLDLOCK) WHERE ID = ?", {integer(id)}));
    if (found.empty()) return std::nullopt;
    return std::move(found.front());
}

LayoutOutcome LayoutStore::change(const BarcodeLayout& from, const BarcodeLayout& to) {
    HostTransaction transaction(session_);
    const auto now = held(from.id);
    if (!now) return LayoutOutcome::Gone;
    const auto isChanged = [&](const Column& column) { return column.of(to) != column.of(from); };
    for (const Column& column : kColumns) {
        if (isChanged(column) && column.of(*now) != column.of(from)) return LayoutOutcome::Changed;
    }
    for (const Column& column : kColumns) {
        if (!isChanged(column)) continue;
        execute(session_, std::string("UPDATE dbo.BarCodeFormul SET ") + column.name + " = ? WHERE ID = ?",
                {column.of(to), integer(from.id)});
    }
    transaction.commit();
    return LayoutOutcome::Written;
}

int LayoutStore::add(const BarcodeLayout& l) {
    // In one batch: the number is that of this insert, whatever other clients add.
    const RowSet made = rowsOf(
        session_,
        "INSERT INTO dbo.BarCodeFormul (Title, DigitCount, ConstantStart, ConstantCount, ConstantCode, BarCodeType, "
        "ItemConstantCode, ItemCodeType, ItemCodeStart, ItemCodeCount, AmountStart, AmountCount, AmountDivide, "
        "BalanceNoStart, BalanceNoCount, BalanceNoAsStore, PriceStart, PriceCount) VALUES (?, ?, ?, ?, ?, ?, ?, ?, "
        "?, ?, ?, ?, ?, ?, ?, ?, ?, ?); SELECT SCOPE_IDENTITY()",
        {l.title, integer(l.digitCount), integer(l.constantStart), integer(l.constantCount), l.constantCode,
         integer(l.barCodeType), integer(l.itemConstantCode), integer(l.itemCodeType), integer(l.itemCodeStart),
         integer(l.itemCodeCount), integer(l.amountStart), integer(l.amountCount), integer(l.amountDivide),
         integer(l.balanceNoStart), integer(l.balanceNoCount), l.balanceNoAsStore, integer(l.priceStart),
         integer(l.priceCount)});
    return static_cast<int>(integerAt(made, 0, 0));
}

LayoutOutcome LayoutStore::remove(const BarcodeLayout& read) {
    HostTransaction transaction(session_);
    const auto now = held(read.id);
    if (!now) return LayoutOutcome::Gone;
    if (*now != read) return LayoutOutcome::Changed;
    execute(session_, "DELETE FROM dbo.BarCodeFormul WHERE ID = ?", {integer(read.id)});
    transaction.commit();
    return LayoutOutcome::Written;
}

}  // namespace basalt::host
