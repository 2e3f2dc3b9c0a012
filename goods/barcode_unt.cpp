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

void open(TADOQuery& query, const std::string& statement) {
    query.Close();
    query.SQL = statement;
    query.Open();
}

void declare(TParameters& parameters, const char* name, ParameterDirection direction, FieldType type, int size = 0) {
    parameters.CreateParameter(name, direction).Type({.name = {}, .type = type, .size = size});
}

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
    spTemp_PRC.ProcedureName("AutoVoucherFirstPriodGoods;1");
    TParameters& parameters = spTemp_PRC.Parameters();
    declare(parameters, "@RETURN_VALUE", ParameterDirection::ReturnValue, FieldType::Integer);
    declare(parameters, "@SaveType", ParameterDirection::Input, FieldType::SmallInt);
    declare(parameters, "@SanadCode", ParameterDirection::Input, FieldType::Integer);
    declare(parameters, "@SanadDate", ParameterDirection::Input, FieldType::Text, 10);
    declare(parameters, "@FromDate", ParameterDirection::Input, FieldType::Text, 10);
    declare(parameters, "@ToDate", ParameterDirection::Input, FieldType::Text, 10);
    declare(parameters, "@FromCode", ParameterDirection::Input, FieldType::Integer);
    declare(parameters, "@ToCode", ParameterDirection::Input, FieldType::Integer);
    declare(parameters, "@Codes", ParameterDirection::Input, FieldType::Text, 8000);
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
