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

}  // namespace

std::vector<BarcodeLayout> LayoutStore::all() {
    const RowSet rows = rowsOf(
        session_,
        "SELECT ID, Title, DigitCount, ConstantStart, ConstantCount, ConstantCode, BarCodeType, ItemConstantCode, "
        "ItemCodeType, ItemCodeStart, ItemCodeCount, AmountStart, AmountCount, AmountDivide, BalanceNoStart, "
        "BalanceNoCount, BalanceNoAsStore, PriceStart, PriceCount FROM dbo.BarCodeFormul ORDER BY DigitCount, "
        "ConstantCode, ID");
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

bool LayoutStore::change(const BarcodeLayout& from, const BarcodeLayout& to) {
    HostTransaction transaction(session_);
    for (const Column& column : kColumns) {
        const Value value = column.of(to);
        if (value == column.of(from)) continue;
        const std::string statement = std::string("UPDATE dbo.BarCodeFormul SET ") + column.name + " = ? WHERE ID = ?";
        if (execute(session_, statement, {value, integer(to.id)}) == 0) return false;
    }
    transaction.commit();
    return true;
}

int LayoutStore::add(const BarcodeLayout& l) {
    HostTransaction transaction(session_);
    execute(
        session_,
        "INSERT INTO dbo.BarCodeFormul (Title, DigitCount, ConstantStart, ConstantCount, ConstantCode, BarCodeType, "
        "ItemConstantCode, ItemCodeType, ItemCodeStart, ItemCodeCount, AmountStart, AmountCount, AmountDivide, "
        "BalanceNoStart, BalanceNoCount, BalanceNoAsStore, PriceStart, PriceCount) VALUES (?, ?, ?, ?, ?, ?, ?, ?, "
        "?, ?, ?, ?, ?, ?, ?, ?, ?, ?)",
        {l.title, integer(l.digitCount), integer(l.constantStart), integer(l.constantCount), l.constantCode,
         integer(l.barCodeType), integer(l.itemConstantCode), integer(l.itemCodeType), integer(l.itemCodeStart),
         integer(l.itemCodeCount), integer(l.amountStart), integer(l.amountCount), integer(l.amountDivide),
         integer(l.balanceNoStart), integer(l.balanceNoCount), l.balanceNoAsStore, integer(l.priceStart),
         integer(l.priceCount)});
    const RowSet made = rowsOf(session_, "SELECT MAX(ID) FROM dbo.BarCodeFormul");
    transaction.commit();
    return static_cast<int>(integerAt(made, 0, 0));
}

void LayoutStore::remove(int id) {
    execute(session_, "DELETE FROM dbo.BarCodeFormul WHERE ID = ?", {integer(id)});
}

}  // namespace basalt::host
