#include "goods/barcode_extractor_unt.h"

#include "ado/error.h"
#include "goods/barcode_unt.h"
#include "goods/character_cut.h"
#include "package/messages.h"
#include "package/numbers.h"
#include "package/services.h"

namespace basalt {

namespace Barcode_extractor_unt {

std::string Fi;
std::string Weight;
std::string BalanceNum;
Value GoodCode;
Value Percode;
Extended BarCodePriceSum = 0;
Method_as_Event After_Equal_Total_Price;

}  // namespace Barcode_extractor_unt

namespace {

namespace state = Barcode_extractor_unt;

constexpr TNotificationMessage kGoodNotFound{10152};
constexpr int kGoodNotFoundMilliseconds = 3000;
constexpr int kTotalDiffersMilliseconds = 2000;
// Scales give the amount in thousandths. Which value above 0 the layout holds makes no difference.
constexpr Extended kAmountDivisor = 1000;
constexpr const char* kNoBalance = "-1";

[[maybe_unused]] const bool released = [] {
    whenHostLeaves([]() noexcept {
        state::Fi.clear();
        state::Weight.clear();
        state::BalanceNum.clear();
        state::GoodCode = Null{};
        state::Percode = Null{};
        state::BarCodePriceSum = 0;
        state::After_Equal_Total_Price = {};
    });
    return true;
}();

// A barcode with the layout that fits it.
class Scan {
public:
    Scan(TADOQuery& layout, const std::string& barcode) : layout_(layout), barcode_(barcode) {}

    [[nodiscard]] int number(const char* column) const { return layout_.FieldByName(column).AsInteger(); }
    [[nodiscard]] bool flag(const char* column) const { return layout_.FieldByName(column).AsBoolean(); }
    [[nodiscard]] std::string text(const char* column) const { return layout_.FieldByName(column).AsString(); }

    // The characters of a field, whose position and length stand in the columns NameStart and NameCount.
    [[nodiscard]] std::string field(const std::string& name) const {
        return cutCharacters(barcode_, number((name + "Start").c_str()), number((name + "Count").c_str()));
    }
    [[nodiscard]] Extended amount(const std::string& name, const std::string& characters) const {
        try {
            return StrToFloat_VRO(characters);
        } catch (const DatabaseError& error) {
            throw DatabaseError(error.category(), error.sqlState(), error.nativeCode(),
                                "barcode " + barcode_ + ", field " + name + ": " + error.what());
        }
    }
    [[nodiscard]] Extended amount(const std::string& name) const { return amount(name, field(name)); }

    // The server has compared already, but by a collation that may take different letters for the same.
    [[nodiscard]] bool fits() const {
        return number("DigitCount") == static_cast<std::int64_t>(utf16Length(barcode_)) &&
               field("Constant") == text("ConstantCode");
    }

private:
    TADOQuery& layout_;
    const std::string& barcode_;
};

std::string goodOf(const Scan& scan) {
    if (const int always = scan.number("ItemConstantCode"); always > 0) return std::to_string(always);
    std::string characters = scan.field("ItemCode");
    if (scan.number("ItemCodeType") == kGoodFieldIsItsCode) return characters;
    return std::to_string(GetBarcode_Code(characters, SettingRecord().FindGoodByScaleCode, true));
}

std::string defaultPrice(const std::string& person, const std::string& good) {
    TADOQuery& query = sharedBarCodes().Temp_QRY;
    query.SQL = "{call GetDefaultCostLevel(" + person + "," + good + ",0)}";
    query.Open();
    return FloatToStr_VRO(toExtended(VarIsNull_VRO(query.FieldByName("Cost").AsValue())));
}

void takeGood(const Scan& scan, const std::string& person) {
    const std::string good = goodOf(scan);
    state::GoodCode = good;

    if (scan.number("AmountCount") > 0) {
        state::Weight = scan.field("Amount");
        if (scan.number("AmountDivide") > 0)
            state::Weight = FloatToStr_VRO(scan.amount("Amount", state::Weight) / kAmountDivisor);
    } else {
        state::Weight = "1";
    }

    const bool hasBalance = scan.number("BalanceNoCount") > 0 && scan.flag("BalanceNoAsStore");
    state::BalanceNum = hasBalance ? scan.field("BalanceNo") : kNoBalance;

    state::Fi = scan.number("PriceCount") > 0 ? scan.field("Price") : defaultPrice(person, good);
}

void takePrice(const Scan& scan, TBarCodeUseType useType) {
    const Extended price = scan.amount("Price");
    if (useType == butNew) state::BarCodePriceSum += price;
    if (useType == butDelete) state::BarCodePriceSum -= price;
}

void compareTotal(const Scan& scan, Extended totalPrice) {
    if (scan.amount("Price") == totalPrice) {
        // A copy: the handler may take itself away, or put another in its place.
        if (const Method_as_Event handler = state::After_Equal_Total_Price) handler();
        return;
    }
    ShowFlashMessage("جمع مبلغ فاکتور با مبلغ بارکد  وارده برابر نمي باشد.", kTotalDiffersMilliseconds);
}

}  // namespace

bool FillGoodInfFromBarcode(TBarCodeUseType useType, TBarCodeFormulType& formulType, const std::string& barcode,
                            const std::string& perCode, const std::string& /*itemCode*/, Extended totalPrice) {
    const std::string scanned(withoutOuterBlanks(barcode));
    T_BarCode_DM& barcodes = sharedBarCodes();
    state::Percode = perCode;
    barcodes.BarCodeFormul_Get(static_cast<int>(utf16Length(scanned)), scanned);
    formulType = bftNone;
    if (barcodes.BarCodeFormul_QRY.IsEmpty()) return false;
    const Scan scan(barcodes.BarCodeFormul_QRY, scanned);
    if (!scan.fits()) return false;

    const int kind = scan.number("BarCodeType");
    switch (kind) {
        case bftAmount:
            takeGood(scan, perCode);
            break;
        case bftConstPrice:
            takePrice(scan, useType);
            break;
        case bftTotalPrice:
            compareTotal(scan, totalPrice);
            break;
        default:  // a kind that other programs know
            break;
    }
    formulType = static_cast<TBarCodeFormulType>(kind);
    return true;
}

int GetBarcode_Code(const std::string& code, bool byAbbName, bool showMessage) {
    int good = 0;
    const bool missing = sharedBarCodes().GetCodeFromGoodInf(byAbbName, code, good);
    if (!missing) return good;
    if (showMessage) ShowSmartMessage(kGoodNotFound, {}, nullptr, nullptr, kGoodNotFoundMilliseconds);
    return 0;
}

void Get_Barcode_Data(std::string& price, std::string& weight, std::string& balanceNum, Value& goodCode,
                      Extended& priceSum) {
    price = state::Fi;
    weight = state::Weight;
    balanceNum = state::BalanceNum;
    goodCode = state::GoodCode;
    priceSum = state::BarCodePriceSum;
}

std::uint8_t GetGoodInFromBarCode() {
    return sharedBarCodes().GoodInF_Valid_Code(toText(state::GoodCode)) ? 2 : 1;
}

}  // namespace basalt
