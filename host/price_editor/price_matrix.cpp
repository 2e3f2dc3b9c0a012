#include "host/price_editor/price_matrix.h"

#include "ado/error.h"
#include "ado/names.h"
#include "host/services/sql_access.h"
#include "package/numbers.h"

namespace basalt::host {
namespace {

constexpr int kSale = 1;
constexpr int kPurchase = 2;
// DECIMAL(23, 9)
constexpr int kColumnDigits = 23;
constexpr int kColumnDecimals = 9;

struct PriceCell {
    int kind;
    int level;
};

// The kind and level of a price's column; nothing for discounts and defaults.
std::optional<PriceCell> priceCell(const std::string& name) {
    for (const auto& [begin, kind] : {std::pair("CostLevel_Sell_", kSale), std::pair("CostLevel_Buy_", kPurchase)})
        if (name.starts_with(begin)) return PriceCell{kind, std::stoi(name.substr(std::string(begin).size()))};
    return std::nullopt;
}

bool isDefault(const std::string& name) {
    return name.starts_with("Default_");
}

Decimal decimalOf(const Datum& value) {
    const auto number = Decimal::parse(value.asText());
    if (!number) throw UsageError("a price reads as " + value.asText());
    return *number;
}

}  // namespace

PriceMatrix::PriceMatrix(ReferenceHost& host, const Registry& registry) : host_(host), registry_(registry) {
    for (const char* name : {"GetGoodCostDiscount", "LoadCostDiscountTitles", "CostLevel_Update"})
        (void)function(name);
}

const FunctionEntry& PriceMatrix::function(const std::string& name) const {
    const auto found = registry_.find(name);
    if (found.empty()) throw UsageError("the module has no function " + name);
    return *found.front();
}

GoodPrices PriceMatrix::read(int goodCode) {
    return read(goodCode, "");
}

GoodPrices PriceMatrix::readAndHold(int goodCode) {
    return read(goodCode, "WITH (UPDLOCK, HOLDLOCK) ");
}

GoodPrices PriceMatrix::read(int goodCode, const char* lock) {
    // To the module a price that is not there is 0, as one that has been set to 0 is. What is to be held is held before
    // the module reads it.
    const RowSet rows =
        rowsOf(host_.session(), std::string("SELECT * FROM dbo.GoodCostDiscount ") + lock + "WHERE GoodCode = ?",
               {std::int64_t{goodCode}});
    FunctionCall call(state_, {{"GoodCode", goodCode}});
    function("GetGoodCostDiscount").run(call);
    GoodPrices prices;
    for (const auto& [name, value] : call.resultValue().asRecord())
        prices[name] = decimalOf(value);
    for (auto& [name, value] : prices) {
        if (isDefault(name)) continue;
        const int column = rows.rowCount() > 0 ? rows.indexOf(name) : -1;
        const Value stored = column < 0 ? Value() : rows.column(static_cast<std::size_t>(column)).valueAt(0);
        if (isNull(stored)) {
            value.reset();
        } else {
            value = toDecimal(stored);
        }
    }
    return prices;
}

Decimal PriceMatrix::greatest() {
    return {powerOfTen(kColumnDigits) - 1, kColumnDecimals};
}

bool PriceMatrix::isKept(const std::string& name, const Decimal& value) {
    if (value > greatest() || value < Decimal(-greatest().coefficient(), kColumnDecimals)) return false;
    if (value.scale() > kColumnDecimals && value != value.rescaled(kColumnDecimals)) return false;
    return !priceCell(name) || Decimal::parse(FloatToStr_VRO(value.toExtended())) == value;
}

LevelTitles PriceMatrix::titles() {
    FunctionCall call(state_, {});
    function("LoadCostDiscountTitles").run(call);
    LevelTitles titles;
    for (const auto& [name, value] : call.outputs().at(0).second.asRecord())
        titles[name] = value.asText();
    return titles;
}

void PriceMatrix::write(int goodCode, const GoodPrices& before, const GoodPrices& after) {
    HostTransaction transaction(host_.session());
    const GoodPrices stored = readAndHold(goodCode);
    const std::int64_t good{goodCode};
    bool hasRow = false;
    for (const auto& [name, value] : after) {
        if (value == before.at(name)) continue;
        if (value && !isKept(name, *value))
            throw DatabaseError(ErrorCategory::Conversion, "22003", 8115,
                                name + " of good " + std::to_string(goodCode) + " cannot keep " + value->toString());
        if (stored.at(name) != before.at(name))
            throw DatabaseError(ErrorCategory::Conflict, "01001", 0,
                                name + " of good " + std::to_string(goodCode) + " has been changed by another user");
        if (!hasRow) {
            // The module changes prices and adds no goods.
            execute(host_.session(),
                    "INSERT INTO dbo.GoodCostDiscount (GoodCode) SELECT ? WHERE NOT EXISTS "
                    "(SELECT 1 FROM dbo.GoodCostDiscount WHERE GoodCode = ?)",
                    {good, good});
            hasRow = true;
        }
        const auto cell = priceCell(name);
        if (cell && value) {
            FunctionCall call(
                state_,
                {{"Kind", cell->kind}, {"GoodCode", goodCode}, {"Level", cell->level}, {"Price", Datum(*value)}});
            function("CostLevel_Update").run(call);
        } else {
            // The module sends no nulls, and knows of no discounts to write.
            execute(host_.session(), "UPDATE dbo.GoodCostDiscount SET " + quotedName(name) + " = ? WHERE GoodCode = ?",
                    {value ? Value{*value} : Value{}, good});
        }
    }
    transaction.commit();
}

}  // namespace basalt::host
