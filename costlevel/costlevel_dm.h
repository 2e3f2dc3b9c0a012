// The store of price and discount levels.
//
//   TCostLevel_DM levels;                                   // on the attached host's connection
//   levels.CostLevel_GetAll("code > 0 AND CostType IN(1)");
//   while (!levels.CostLevel_List_QUR.Eof()) { ...; levels.CostLevel_List_QUR.Next(); }
//
// Codes count from 1; level 0 stands for all groups. Every operation but CostLevel_Delete lets a DatabaseError pass to
// the caller. The store shows no messages but those of CostLevel_Delete.
#pragma once

#include <cstdint>
#include <string>

#include "ado/data_source.h"
#include "ado/query.h"
#include "costlevel/costlevel_mapper.h"
#include "costlevel/goodcost_unt.h"
#include "package/data_module.h"
#include "package/types.h"

namespace basalt {

class TCostLevel_DM : public TDataModule {
public:
    TCostLevel_DM();

    // The list of levels: Code, Name, Comment. CostLevel_List_DS is its data source.
    TADOQuery CostLevel_List_QUR;
    TDataSource CostLevel_List_DS;
    // The record being edited, all columns of CostLevel.
    TADOQuery CostLevelGet_QUR;
    // For statements that are read or run and done with; what they hold between calls means nothing.
    TADOQuery Temp_Q7777UR;
    TADOQuery Temp1_QUR;
    // The price report, a row a good and direction.
    TADOQuery CostReport_QUR;
    TDataSource CostReport_DS;
    // A price list as it is edited: ID (read only), Type, Status, TypeCode, CostLevelCode, Cost (an amount), Default,
    // title (50 characters), deftitle (7, read only) and the calculated Row. The screen that edits the list sets the
    // statement.
    TADOQuery SetCost_QUR;
    TDataSource SetCost_DS;
    TADOQuery SetCostGet_QUR;
    // A good's prices by level, see OfferCost_GetAll.
    TADOQuery OfferCost_QUR;

    // Opens the list on the levels that meet `filter`, a condition of T-SQL without WHERE; the empty text lists every
    // row, level 0 included. After a failure the list is closed.
    void CostLevel_GetAll(const std::string& filter);

    // Opens CostLevelGet_QUR on one level, for CostLevel_InsUpd to edit; it is empty when there is no such level. After
    // a failure it is closed.
    void CostLevel_GetByID(int code, int costType);
    // The same, and reads the level into mapper. When there is no such level mapper holds `code`, empty texts and kind
    // 0. After a failure mapper is unchanged.
    void CostLevel_GetByID(int code, int costType, TCostLevelMapper& mapper);

    // How many other levels of that kind bear the name; the level of that code does not count.
    [[nodiscard]] int CostLevel_ExistName(int code, int costType, const std::string& name);

    // One more than the highest code of that kind, and than the highest that an open editor holds for that software
    // part.
    [[nodiscard]] int CostLevel_GetNewCode(int part, int costType);

    // Writes the level. isEdit: over the row that CostLevel_GetByID has opened, otherwise as a new row.
    // UsageError when an edit has no opened row. After a failure nothing is written and CostLevelGet_QUR is still being
    // edited; the next call gives that up and starts from its own mapper.
    void CostLevel_InsUpd(const TCostLevelMapper& mapper, bool isEdit);

    // Deletes the level after asking the user; true only when it was deleted. Price levels 1 and 2, and levels that
    // another user holds open, are refused with a message. A failing statement is reported as sub-records and leaves
    // the level, its print settings and the log as they were. A kind other than 1 and 3 does nothing.
    [[nodiscard]] bool CostLevel_Delete(int code, int costType);

    // Sets one price of a good: of the sale prices when kind is 1, else of the purchase prices. level counts from 1
    // to 10.
    void CostLevel_Update(int kind, int goodCode, int level, Extended price);

    // Removes a good's (or group's) price list, and the one being edited.
    void ClearCostList(int typeCode, std::uint8_t listType);
    void ClearTempCostList(int typeCode, std::uint8_t listType);

    // A good's prices, discounts and default levels. All are 0 when the good has none; a null price is 0.
    [[nodiscard]] TCostDiscount GetGoodCostDiscount(int goodCode);

    // Reads the names of all levels into GoodCostDiscountTitles. A level that is not there has a general title. After a
    // failure the titles are as they were.
    void LoadCostDiscountTitles();

    // Opens OfferCost_QUR on a good's prices, a row a level that exists: Code (the level), TypeCode (the good), Type 3,
    // Cost, Name (the level's) and deftitle, which marks the default level.
    //   kind 0  the purchase prices, 1 the sale prices; the other numbers mean nothing
    //   kind 2  the sale prices offered to a person, 3 the purchase prices offered to one (perCode)
    //   kind 4  the prices offered to a person in a currency (currCode): for sale when direction is 1, else for
    //   purchase
    // Kinds 0 and 1 mark the good's own default and nothing else: no row where the good names none, or a level that
    // does not exist. They list levels that the good has no price of, with a null Cost. What kinds 2 to 4 list and mark
    // is up to the procedures of the database; those of database/ leave out levels without a price and mark the
    // person's own level, else the good's default, for which level 1 stands where the good names none from 1 to 10. The
    // procedures take the good, the person and the currency, in this order. UsageError for another kind. After a
    // failure of the database the query is closed.
    void OfferCost_GetAll(int kind, int goodCode, int perCode, int currCode, int direction);

    // Numbers the records of a price list in Row, from 1.
    void SetCost_QURCalcFields(TDataSet& dataSet);

    // Opens CostReport_QUR on all goods, each with its sale prices (Status 2) and its purchase prices (Status 1): Code,
    // Name, AbbName, Status, F1 to F10, ConsumerPrice. After a failure it is closed.
    void CostReport_Get();

    // Adds the column of a level to the price report's table: F and `level` as text, whatever kind of value it is.
    void AddCostReportColumn(const Value& level);

private:
    [[nodiscard]] bool deletePriceLevel(int code);
    [[nodiscard]] bool deleteDiscountLevel(int code);
    [[nodiscard]] bool deleteRows(int code, TSoftwarePart part, TCostType costType);
};

}  // namespace basalt
