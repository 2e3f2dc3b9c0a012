// A good's particulars, the check for negative stock, and two pick lists.
//
//   if (!FillGoodInfo("57", GoodInfoMapper)) return;                 // there is no such good
//   if (!Check_TockMinus(lines, "1405/08/30", 1204, false)) return;  // the user has been told why
//
// The functions borrow the host's DM.SharedQuery and DM.SharedProc, leave them closed and are not re-entrant. A
// DatabaseError passes to the caller. SelectQuery is T-SQL that gives the document's lines: one row a good and store
// with Code (good), Anbar (store) and Mogodi (the signed quantity that the document moves; see below for edited ones).
// Dates are texts that order as they stand (yyyy/mm/dd).
#pragma once

#include <string>

#include "goods/good_info_mapper.h"
#include "goods/pick_list.h"

namespace basalt {

// For callers to fill and share.
extern TGoodInfoMapper GoodInfoMapper;
// The codes of the goods that the last check by stored procedure found negative, as the procedure gives them; empty
// when it found none or the user went on. A check that fails leaves it as it was.
extern std::string strMinusGoodCodes;

// Reads the good of that code; false when there is none. info is unchanged then, and after a failure.
[[nodiscard]] bool FillGoodInfo(const std::string& goodCode, TGoodInfoMapper& info);

// True when the document may be saved. What happens when it would drive a good's stock below zero is the setting
// NegativeType: 0 refuses with message 30055, 1 asks with message 20091, 2 does not look at all.
//
// By stored procedure, which also names the goods. globalID orders the document among those of its date. The lines of a
// document that is edited are its new ones: the procedure takes the rows that it has in the ledger as gone.
[[nodiscard]] bool Check_TockMinus(const std::string& selectQuery, const std::string& date, int globalID,
                                   bool storeTransition);
// By the ledger's rows: from fromDate up to (toDate, globalID) none may fall below zero; when there is none that does,
// neither may the balance of fromDate. What the document has in the ledger already counts: for one that is edited the
// caller gives the difference between its new and its old lines, with a line for each good that was taken out of it. A
// document that took 5 and is to take 6 is asked for with -1; its new line of -6 would be taken twice over.
[[nodiscard]] bool Check_TockMinus(const std::string& selectQuery, const std::string& fromDate,
                                   const std::string& toDate, int globalID);

// Replaces items by the thirteen financial types of goods; the object is the stored number, 0 the prompt to choose.
void Fill_FinanceGoodTypes(TStrings& items);
// Replaces items by the default (object 0) and the selling price levels (object: the level's code), by code. After a
// failure items holds the default alone.
void Fill_SellCostLevel(TStrings& items);

// Does nothing; documents of older hosts call it.
void SplitBarcode(const std::string& barcode, char16_t separator);

}  // namespace basalt
