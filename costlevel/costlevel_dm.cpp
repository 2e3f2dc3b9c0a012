#include "costlevel/costlevel_dm.h"

#include "ado/transaction.h"
#include "package/messages.h"
#include "package/numbers.h"
#include "package/services.h"

namespace basalt {

namespace {

// Every installation has these two; goods and persons fall back on them.
constexpr int kLastDefaultLevel = 2;

std::string decimalText(std::int64_t number) {
    return std::to_string(number);
}

}  // namespace

TCostLevel_DM::TCostLevel_DM()
    : TDataModule("TCostLevel_DM"),
      CostLevel_List_QUR(connection(), "CostLevel_List_QUR"),
      CostLevelGet_QUR(connection(), "CostLevelGet_QUR"),
      Temp_Q7777UR(connection(), "Temp_Q7777UR"),
      Temp1_QUR(connection(), "Temp1_QUR"),
      CostReport_QUR(connection(), "CostReport_QUR"),
      SetCost_QUR(connection(), "SetCost_QUR"),
      SetCostGet_QUR(connection(), "SetCostGet_QUR"),
      OfferCost_QUR(connection(), "OfferCost_QUR") {
    own(CostLevel_List_QUR);
    own(CostLevelGet_QUR);
    own(Temp_Q7777UR);
    own(Temp1_QUR);
    own(CostReport_QUR);
    own(SetCost_QUR);
    own(SetCostGet_QUR);
    own(OfferCost_QUR);
    CostLevel_List_QUR.SQL = "select * from costLevel where code>0";
    CostLevel_List_QUR.DeclareField({.name = "Code", .type = FieldType::Integer});
    CostLevel_List_QUR.DeclareField({.name = "Title", .type = FieldType::Text, .size = 50});
    CostLevel_List_DS.SetDataSet(&CostLevel_List_QUR);
    CostReport_DS.SetDataSet(&CostReport_QUR);
    SetCost_DS.SetDataSet(&SetCost_QUR);
    SetCost_QUR.AddCalculatedField("Row", FieldType::Integer);
    SetCost_QUR.DeclareField({.name = "ID", .type = FieldType::Integer, .readOnly = true});
    SetCost_QUR.DeclareField({.name = "Type", .type = FieldType::SmallInt});
    SetCost_QUR.DeclareField({.name = "Status", .type = FieldType::Boolean});
    SetCost_QUR.DeclareField({.name = "TypeCode", .type = FieldType::Integer});
    SetCost_QUR.DeclareField({.name = "CostLevelCode", .type = FieldType::Integer});
    SetCost_QUR.DeclareField(
        {.name = "Cost", .type = FieldType::Decimal, .precision = 23, .scale = 9, .currency = true});
    SetCost_QUR.DeclareField({.name = "Default", .type = FieldType::Boolean});
    SetCost_QUR.DeclareField({.name = "title", .type = FieldType::Text, .size = 50});
    SetCost_QUR.DeclareField({.name = "deftitle", .type = FieldType::Text, .size = 7, .readOnly = true});
    SetCost_QUR.OnCalcFields = [this](TDataSet& list) { SetCost_QURCalcFields(list); };
}

void TCostLevel_DM::CostLevel_GetAll(const std::string& filter) {
    std::string statement = "select Code,Name,Comment from CostLevel";
    if (!filter.empty()) statement += "\n WHERE " + filter;
    open(CostLevel_List_QUR, statement);
}

namespace {

std::string levelStatement(int code, int costType) {
    return Format("SELECT * FROM CostLevel Where Code = %d AND CostType = %d",
                  {decimalText(code), decimalText(costType)});
}

}  // namespace

void TCostLevel_DM::CostLevel_GetByID(int code, int costType) {
    open(CostLevelGet_QUR, levelStatement(code, costType));
}

void TCostLevel_DM::CostLevel_GetByID(int code, int costType, TCostLevelMapper& mapper) {
    CostLevel_GetByID(code, costType);
    TCostLevelMapper level;
    level.Code = code;
    level.Name = CostLevelGet_QUR.FieldByName("Name").AsString();
    level.Comment = CostLevelGet_QUR.FieldByName("Comment").AsString();
    level.CostType = static_cast<int>(CostLevelGet_QUR.FieldByName("CostType").AsInteger());
    mapper = std::move(level);
}

int TCostLevel_DM::CostLevel_ExistName(int code, int costType, const std::string& name) {
    open(Temp_Q7777UR, Format("select Name from CostLevel where Name = %s and Code <> %d  AND CostType = %d",
                              {QuotedStr(name), decimalText(code), decimalText(costType)}));
    return static_cast<int>(Temp_Q7777UR.RecordCount());
}

int TCostLevel_DM::CostLevel_GetNewCode(int part, int costType) {
    // The kind's number and UNION stand without a blank between them; the server reads two tokens.
    open(Temp_Q7777UR,
         Format("select isnull(Max(Code),0)+1 from (select isnull(Max(Code),0) as Code from CostLevel WHERE CostType = "
                "%dUNION ALL Select MAX(CAST(Code AS BIGINT)) as Code FROM CodeLock_TBL WHERE Status = %d) T1",
                {decimalText(costType), decimalText(part)}));
    return static_cast<int>(Temp_Q7777UR.Fields(0).AsInteger());
}

void TCostLevel_DM::CostLevel_InsUpd(const TCostLevelMapper& mapper, bool isEdit) {
    // A new record comes without the look-up that opens the query.
    if (!isEdit && !CostLevelGet_QUR.Active()) CostLevel_GetByID(mapper.Code, mapper.CostType);
    // What an earlier call failed to write is given up, not written along with this.
    CostLevelGet_QUR.Cancel();
    if (isEdit) {
        CostLevelGet_QUR.Edit();
    } else {
        CostLevelGet_QUR.Append();
    }
    CostLevelGet_QUR.FieldByName("Code") = mapper.Code;
    CostLevelGet_QUR.FieldByName("Name") = mapper.Name;
    CostLevelGet_QUR.FieldByName("Comment") = mapper.Comment;
    CostLevelGet_QUR.FieldByName("CostType") = mapper.CostType;
    CostLevelGet_QUR.Post();
}

bool TCostLevel_DM::CostLevel_Delete(int code, int costType) {
    switch (costType) {
        case ctPriceLevel:
            return deletePriceLevel(code);
        case ctDiscountLevel:
            return deleteDiscountLevel(code);
        default:
            return false;
    }
}

bool TCostLevel_DM::deletePriceLevel(int code) {
    if (!HavePermission(UserInfo(), spPriceLevels, prDelete, false, true, "")) return false;
    if (code >= 1 && code <= kLastDefaultLevel) {
        DeleteDefault("سطح", "حذف");
        return false;
    }
    if (LocateLockCode_SoftwarePart(decimalText(code), spPriceLevels, IniOptions().LockOwner, false)) {
        // Written with Arabic yeh, unlike the discount levels' words.
        MSGInUse("سطح قيمتي");
        return false;
    }
    return deleteRows(code, spPriceLevels, ctPriceLevel);
}

bool TCostLevel_DM::deleteDiscountLevel(int code) {
    if (LocateLockCode_SoftwarePart(decimalText(code), spDiscountLevels, IniOptions().LockOwner, false)) {
        MSGInUse("سطح تخفیف");
        return false;
    }
    return deleteRows(code, spDiscountLevels, ctDiscountLevel);
}

bool TCostLevel_DM::deleteRows(int code, TSoftwarePart part, TCostType costType) {
    if (!MsgDeleteRow()) return false;
    try {
        Transaction transaction(connection());
        SetUserEvent(part, prDelete, decimalText(code), true, false);
        if (costType == ctPriceLevel) {
            // The column that the price report kept for this level.
            execute(Temp1_QUR, "Delete from PrintsSettings where PartName='CostReport' and Comment=" +
                                   QuotedStr("F" + decimalText(code)));
        }
        execute(Temp_Q7777UR, Format("Delete CostLevel where Code= %d AND CostType = %d",
                                     {decimalText(code), decimalText(costType)}));
        transaction.commit();
        return true;
    } catch (const DatabaseError&) {
        // The server refuses a level that other rows refer to; whatever failed, nothing of the delete is kept. It was
        // rolled back before the message: as long as that waits for its answer, other clients would wait for the locks.
        MsgHasSubRecords("سطر");
        return false;
    }
}

void TCostLevel_DM::CostLevel_Update(int kind, int goodCode, int level, Extended price) {
    const std::string group = kind == 1 ? "Sell" : "Buy";
    execute(Temp_Q7777UR, "update GoodCostDiscount Set CostLevel_" + group + "_" + decimalText(level) + " = " +
                              FloatToStr_VRO(price) + " where GoodCode=" + decimalText(goodCode));
}

namespace {

std::string clearStatement(const std::string& begin, int typeCode, std::uint8_t listType) {
    return begin + decimalText(listType) + " and  typecode=" + decimalText(typeCode);
}

}  // namespace

void TCostLevel_DM::ClearCostList(int typeCode, std::uint8_t listType) {
    execute(Temp_Q7777UR, clearStatement("delete from costlist where type=", typeCode, listType));
}

void TCostLevel_DM::ClearTempCostList(int typeCode, std::uint8_t listType) {
    execute(Temp_Q7777UR, clearStatement("delete from tmpcostlist where type=", typeCode, listType));
}

}  // namespace basalt
