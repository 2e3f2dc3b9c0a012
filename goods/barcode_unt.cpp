#include "goods/barcode_unt.h"

#include "goods/character_cut.h"
#include "package/numbers.h"
#include "package/services.h"

namespace basalt {

std::unique_ptr<T_BarCode_DM> _BarCode_DM;

namespace {

[[maybe_unused]] const bool released = [] {
    whenHostLeaves([]() noexcept { _BarCode_DM.reset(); });
    return true;
}();

struct Declared {
    const char* name;
    int size = 0;
    ParameterDirection direction;
    FieldType type;
    bool nullable = false;
};
constexpr ParameterDirection kInput = ParameterDirection::Input;
// What the platform calls a word is what it takes a tinyint for.
constexpr Declared kVoucherParameters[] = {
    {.name = "@RETURN_VALUE", .direction = ParameterDirection::ReturnValue, .type = FieldType::Integer},
    {.name = "@SaveType", .direction = kInput, .type = FieldType::TinyInt, .nullable = true},
    {.name = "@SanadCode", .direction = kInput, .type = FieldType::Integer},
    {.name = "@SanadDate", .size = 10, .direction = kInput, .type = FieldType::Text},
    {.name = "@FromDate", .size = 10, .direction = kInput, .type = FieldType::Text, .nullable = true},
    {.name = "@ToDate", .size = 10, .direction = kInput, .type = FieldType::Text, .nullable = true},
    {.name = "@FromCode", .direction = kInput, .type = FieldType::Integer},
    {.name = "@ToCode", .direction = kInput, .type = FieldType::Integer},
    {.name = "@Codes", .size = 8000, .direction = kInput, .type = FieldType::Text, .nullable = true},
};

std::string goodOfCode(const std::string& code) {
    return "Select Code From goodInf Where Code=" + code;
}

}  // namespace

T_BarCode_DM::T_BarCode_DM()
    : TDataModule("T_BarCode_DM"),
      Temp_QRY(connection(), "Temp_QRY"),
      BarCodeFormul_QRY(connection(), "BarCodeFormul_QRY"),
      spTemp_PRC(connection(), "spTemp_PRC") {
    own(Temp_QRY);
    own(BarCodeFormul_QRY);
    BarCodeFormul_QRY.CommandTimeout = 0;
    spTemp_PRC.ProcedureName("AutoVoucherFirstPriodGoods;1");
    for (const Declared& each : kVoucherParameters)
        spTemp_PRC.Parameters()
            .CreateParameter(each.name, each.direction)
            .Type({.name = {}, .type = each.type, .size = each.size, .nullable = each.nullable});
}

void T_BarCode_DM::BarCodeFormul_Get(int digitCount, const std::string& barcode) {
    open(BarCodeFormul_QRY, Format("SELECT * FROM   dbo.BarCodeFormul WHERE  DigitCount = %d AND SUBSTRING(%s , "
                                   "ConstantStart, ConstantCount) = ConstantCode  ",
                                   {std::to_string(digitCount), QuotedStr(barcode)}));
}

bool T_BarCode_DM::GetCodeFromGoodInf(bool byAbbName, const std::string& code, int& goodCode) {
    open(Temp_QRY, byAbbName ? "SELECT TOP 1 Code FROM goodInf WHERE AbbName LIKE '%!" + code + "!%' ORDER BY Code DESC"
                             : goodOfCode(code));
    goodCode = Temp_QRY.Fields(0).AsInteger();
    return Temp_QRY.IsEmpty();
}

bool T_BarCode_DM::GoodInF_Valid_Code(const std::string& code) {
    if (withoutOuterBlanks(code).empty()) return false;
    open(Temp_QRY, goodOfCode(code));
    return Temp_QRY.IsEmpty();
}

T_BarCode_DM& sharedBarCodes() {
    if (!_BarCode_DM) _BarCode_DM = std::make_unique<T_BarCode_DM>();
    return *_BarCode_DM;
}

}  // namespace basalt
