#include "goods/goodsinfo_unt.h"

#include <cstdint>

#include "ado/stored_proc.h"
#include "package/borrowed.h"
#include "package/messages.h"
#include "package/numbers.h"
#include "package/services.h"

namespace basalt {

TGoodInfoMapper GoodInfoMapper;
std::string strMinusGoodCodes;

namespace {

// The policy about negative stock, as the company has set it.
constexpr std::uint8_t kForbid = 0;
constexpr std::uint8_t kWarn = 1;
constexpr std::uint8_t kAllow = 2;

constexpr TErrorMessage kNotEnough{30055};
constexpr TConfirmationMessage kGoOn{20091};

[[maybe_unused]] const bool released = [] {
    whenHostLeaves([]() noexcept {
        GoodInfoMapper = {};
        strMinusGoodCodes.clear();
    });
    return true;
}();

Extended amountOf(TDataSet& row, const char* field) {
    return toExtended(VarIsNull_VRO(row.FieldByName(field).AsValue()));
}

TGoodInfoMapper particulars(TDataSet& row) {
    return {._Code = row.FieldByName("Code").AsInteger(),
            ._Name = row.FieldByName("Name").AsString(),
            ._Kala_Type = row.FieldByName("Kala_Type").AsString(),
            ._Kala_Index = row.FieldByName("Kala_Index").AsString(),
            ._Kala_Name = row.FieldByName("Kala_Name").AsString(),
            ._Mogodi = amountOf(row, "Mogodi"),
            ._Unit = row.FieldByName("Unit").AsInteger(),
            ._Unit2 = row.FieldByName("Unit2").AsInteger(),
            ._UnitName = row.FieldByName("UnitName").AsString(),
            ._UnitName2 = row.FieldByName("UnitName2").AsString(),
            ._MinAva = row.FieldByName("MinAva").AsString(),
            ._Pos = row.FieldByName("Pos").AsString(),
            ._Meghdar_Formool = amountOf(row, "Meghdar_Formool"),
            ._Gheymat_Miangin = amountOf(row, "Gheymat_Miangin"),
            ._OffPercentSell = amountOf(row, "OffPercentSell"),
            ._TaxExempt = row.FieldByName("TaxExempt").AsBoolean(),
            ._ChargeExempt = row.FieldByName("ChargeExempt").AsBoolean(),
            ._Tax_In_BuyCosts = row.FieldByName("Tax_In_BuyCosts").AsBoolean(),
            ._Tax_In_SellCosts = row.FieldByName("Tax_In_SellCosts").AsBoolean(),
            ._TaxPercent = amountOf(row, "TaxPercent"),
            ._ChargePercent = amountOf(row, "ChargePercent"),
            ._ConsumerPrice = amountOf(row, "ConsumerPrice")};
}

// Whether the statement finds something.
bool finds(const std::string& statement) {
    const Borrowed<TADOQuery> query(DM().SharedQuery);
    query->SQL = statement;
    query->Open();
    return !query->IsEmpty();
}

// A movement of the span after which too little would be left.
std::string laterMovements(const std::string& selectQuery, const std::string& fromDate, const std::string& toDate,
                           int globalID) {
    return "select * from (" + selectQuery +
           " ) as S join Kardex as k on k.kala = S.Code and (ISNULL(k.RemainInAnbar, 0) + S.mogodi) < 0 "
           " and ("
           "      (k.[Date] >= " +
           QuotedStr(fromDate) + " and k.[Date] < " + QuotedStr(toDate) +
           ") "
           "      or "
           "      (k.[Date] = " +
           QuotedStr(toDate) + " and k.Global_ID < " + std::to_string(globalID) +
           ") "
           "     )"
           " and S.Anbar = K.Anbar ";
}

// A line that the balance up to the date does not cover; a good without movements has nothing.
std::string uncoveredLines(const std::string& selectQuery, const std::string& fromDate) {
    return "select sq.Code, sq.Mogodi + ISNULL(K.Mogodi, 0) from  (" + selectQuery +
           ") sq "
           " LEFT JOIN (Select kala as code, Anbar, SUM(Tedad) as Mogodi from Kardex WHERE Date <= " +
           QuotedStr(fromDate) +
           " group by kala, Anbar) K "
           "ON sq.Code = K.Code AND sq.Anbar = K.Anbar WHERE (sq.mogodi + ISNULL(K.Mogodi, 0)) < 0";
}

}  // namespace

bool FillGoodInfo(const std::string& goodCode, TGoodInfoMapper& info) {
    const Borrowed<TADOStoredProc> proc(DM().SharedProc);
    proc->ProcedureName("GoodParticularInfo_SP");
    proc->Parameters().Refresh();
    proc->Parameters()["@GoodCode"] = goodCode;
    proc->Open();
    if (proc->IsEmpty()) return false;
    info = particulars(*proc);
    return true;
}

bool Check_TockMinus(const std::string& selectQuery, const std::string& date, int globalID, bool storeTransition) {
    const std::uint8_t policy = SettingRecord().NegativeType;
    if (policy == kAllow) return true;

    // One of its own: a caller may have the shared procedure open.
    TADOStoredProc check("CheckNegativeInventory_PRC");
    check.Connection(DM().SharedQuery.Connection());
    check.ProcedureName("CheckNegativeInventory_SP");
    TParameters& parameters = check.Parameters();
    parameters.Refresh();
    parameters["@NegativeType"] = policy;
    parameters["@SelectQuery"] = selectQuery;
    parameters["@Date"] = date;
    parameters["@globalID"] = globalID;
    parameters["@StoreTransition"] = storeTransition;
    parameters["@NegProductNames"].Direction(ParameterDirection::InputOutput);
    parameters["@NegProductCodes"].Direction(ParameterDirection::InputOutput);
    check.ExecProc();

    strMinusGoodCodes.clear();
    const bool negative = static_cast<std::uint8_t>(parameters["@RETURN_VALUE"].AsInteger()) != 0;
    const std::string codes = parameters["@NegProductCodes"].AsString();
    if (!negative) return true;
    const std::string names = parameters["@NegProductNames"].AsString();
    if (policy == kForbid) {
        strMinusGoodCodes = codes;
        ShowSmartMessage(kNotEnough, {names});
        return false;
    }
    if (policy == kWarn) {
        if (ShowSmartMessage(kGoOn, {names}) == mrYes) return true;
        strMinusGoodCodes = codes;
        return false;
    }
    return true;
}

bool Check_TockMinus(const std::string& selectQuery, const std::string& fromDate, const std::string& toDate,
                     int globalID) {
    const std::uint8_t policy = SettingRecord().NegativeType;
    if (policy == kAllow) return true;
    const bool negative =
        finds(laterMovements(selectQuery, fromDate, toDate, globalID)) || finds(uncoveredLines(selectQuery, fromDate));
    if (!negative) return true;
    if (policy == kForbid) {
        ShowSmartMessage(kNotEnough);
        return false;
    }
    if (policy == kWarn) return ShowSmartMessage(kGoOn) == mrYes;
    return true;
}

void Fill_FinanceGoodTypes(TStrings& items) {
    // The formatter counts bytes of joined letters as columns and would cut the texts to pieces.
    // clang-format off
    items = {
        {"انتخاب کنید ...", 0},
        {"دارو", 1},
        {"دخانیات", 2},
        {"موبایل", 3},
        {"لوازم خانگی  برقی", 4},
        {"قطعات مصرفی و یدکی وسایل نقلیه", 5},
        {"فرآورده ها و مشتقات نفتی و گازی و پتروشیمیای", 6},
        {"طلا اعم از شمش، مسکوکات و مصنوعات زینتی", 7},
        {"منسوجات و پوشاک", 8},
        {"اسباب بازی", 9},
        {"دام زنده، گوشت سفید و قرمز", 10},
        {"محصولات اساسی کشاورزی", 11},
        {"سایر کالاها", 12},
    };
    // clang-format on
}

void Fill_SellCostLevel(TStrings& items) {
    items = {{"پيش فرض", 0}};
    const Borrowed<TADOQuery> levels(DM().SharedQuery);
    levels->SQL = "SELECT Code, Name FROM CostLevel WHERE CostType = 1 AND Code > 0 ORDER BY Code";
    levels->Open();
    for (levels->First(); !levels->Eof(); levels->Next())
        items.push_back({levels->FieldByName("Name").AsString(), levels->FieldByName("Code").AsInteger()});
}

void SplitBarcode(const std::string& /*barcode*/, char16_t /*separator*/) {}

}  // namespace basalt
