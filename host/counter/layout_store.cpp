#include "host/counter/layout_store.h"

#include <algorithm>
#include <iterator>
#include <string>

#include "ado/error.h"
#include "host/services/sql_access.h"

namespace basalt::host {

namespace {

Value valueOf(int field) {
    return std::int64_t{field};
}
Value valueOf(bool field) {
    return field;
}
Value valueOf(const std::string& field) {
    return field;
}

void take(int& field, const RowSet& rows, std::size_t column, std::size_t row) {
    field = static_cast<int>(integerAt(rows, column, row));
}
void take(bool& field, const RowSet& rows, std::size_t column, std::size_t row) {
    field = integerAt(rows, column, row) != 0;
}
void take(std::string& field, const RowSet& rows, std::size_t column, std::size_t row) {
    field = textAt(rows, column, row);
}

struct Column {
    const char* name;
    Value (*of)(const BarcodeLayout& layout);
    void (*read)(BarcodeLayout& layout, const RowSet& rows, std::size_t column, std::size_t row);
};

template <auto Field>
constexpr Column column(const char* name) {
    return {name, [](const BarcodeLayout& layout) { return valueOf(layout.*Field); },
            [](BarcodeLayout& layout, const RowSet& rows, std::size_t column, std::size_t row) {
                take(layout.*Field, rows, column, row);
            }};
}

// All but the number.
constexpr Column kColumns[] = {
    column<&BarcodeLayout::title>("Title"),
    column<&BarcodeLayout::digitCount>("DigitCount"),
    column<&BarcodeLayout::constantStart>("ConstantStart"),
    column<&BarcodeLayout::constantCount>("ConstantCount"),
    column<&BarcodeLayout::constantCode>("ConstantCode"),
    column<&BarcodeLayout::barCodeType>("BarCodeType"),
    column<&BarcodeLayout::itemConstantCode>("ItemConstantCode"),
    column<&BarcodeLayout::itemCodeType>("ItemCodeType"),
    column<&BarcodeLayout::itemCodeStart>("ItemCodeStart"),
    column<&BarcodeLayout::itemCodeCount>("ItemCodeCount"),
    column<&BarcodeLayout::amountStart>("AmountStart"),
    column<&BarcodeLayout::amountCount>("AmountCount"),
    column<&BarcodeLayout::amountDivide>("AmountDivide"),
    column<&BarcodeLayout::balanceNoStart>("BalanceNoStart"),
    column<&BarcodeLayout::balanceNoCount>("BalanceNoCount"),
    column<&BarcodeLayout::balanceNoAsStore>("BalanceNoAsStore"),
    column<&BarcodeLayout::priceStart>("PriceStart"),
    column<&BarcodeLayout::priceCount>("PriceCount"),
};

// The names of all columns, with commas between.
std::string listed() {
    std::string list;
    for (const Column& each : kColumns)
        list += (list.empty() ? "" : ", ") + std::string(each.name);
    return list;
}

std::vector<BarcodeLayout> layoutsOf(Session& session, const std::string& behind, Values values = {}) {
    const RowSet rows = rowsOf(session, "SELECT ID, " + listed() + " FROM dbo.BarCodeFormul " + behind, values);
    std::vector<BarcodeLayout> layouts(rows.rowCount());
    for (std::size_t row = 0; row < layouts.size(); ++row) {
        take(layouts[row].id, rows, 0, row);
        for (std::size_t i = 0; i < std::size(kColumns); ++i)
            kColumns[i].read(layouts[row], rows, i + 1, row);
    }
    return layouts;
}

}  // namespace

std::vector<BarcodeLayout> LayoutStore::all() {
    return layoutsOf(session_, "ORDER BY DigitCount, ConstantCode, ID");
}

std::optional<BarcodeLayout> LayoutStore::firstFor(const QString& barcode) {
    std::vector<BarcodeLayout> found =
        layoutsOf(session_, "WHERE DigitCount = ? AND SUBSTRING(?, ConstantStart, ConstantCount) = ConstantCode",
                  {valueOf(static_cast<int>(barcode.size())), Value(barcode.toStdString())});
    if (found.empty()) return std::nullopt;
    return std::move(found.front());
}

std::optional<BarcodeLayout> LayoutStore::held(int id) {
    std::vector<BarcodeLayout> found = layoutsOf(session_, "WITH (UPDLOCK, HOLDLOCK) WHERE ID = ?", {valueOf(id)});
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
    std::string changes;
    std::vector<Value> values;
    for (const Column& column : kColumns) {
        if (!isChanged(column)) continue;
        changes += (changes.empty() ? "" : ", ") + std::string(column.name) + " = ?";
        values.push_back(column.of(to));
    }
    if (!values.empty()) {
        values.push_back(valueOf(from.id));
        (void)session_.run("UPDATE dbo.BarCodeFormul SET " + changes + " WHERE ID = ?", values);
    }
    transaction.commit();
    return LayoutOutcome::Written;
}

int LayoutStore::add(const BarcodeLayout& layout) {
    std::string places;
    std::vector<Value> values;
    for (const Column& column : kColumns) {
        places += places.empty() ? "?" : ", ?";
        values.push_back(column.of(layout));
    }
    // In one batch: the number is that of this insert, whatever other clients add.
    const BatchResult made = session_.run(
        "INSERT INTO dbo.BarCodeFormul (" + listed() + ") VALUES (" + places + "); SELECT SCOPE_IDENTITY()", values);
    const auto number = std::find_if(made.results.begin(), made.results.end(),
                                     [](const StatementResult& each) { return each.rows.has_value(); });
    if (number == made.results.end()) throw UsageError("the new layout's number was not answered");
    return static_cast<int>(integerAt(*number->rows, 0, 0));
}

LayoutOutcome LayoutStore::remove(const BarcodeLayout& read) {
    HostTransaction transaction(session_);
    const auto now = held(read.id);
    if (!now) return LayoutOutcome::Gone;
    if (*now != read) return LayoutOutcome::Changed;
    execute(session_, "DELETE FROM dbo.BarCodeFormul WHERE ID = ?", {valueOf(read.id)});
    transaction.commit();
    return LayoutOutcome::Written;
}

}  // namespace basalt::host
