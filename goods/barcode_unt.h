// The store behind the scale barcodes: their layouts, and which good a barcode's field means.
//
//   T_BarCode_DM& barcodes = sharedBarCodes();
//   barcodes.BarCodeFormul_Get(13, "2800057012505");
//   if (!barcodes.BarCodeFormul_QRY.IsEmpty()) ...
//
// Codes are pasted into the statements as they stand, without quotes and unchecked: "105;DELETE FROM Items" is two
// statements and both are run. Where a good is looked up by its code, letters alone do harm: "1E002" finds good 100,
// and "Unit" is a column. Who takes a code from outside, from a scanner for one, has to look at it first. Digits alone
// may pass to a look-up by code, digits and letters to one by scale code; docs/scales.md says which scans come to
// which. A DatabaseError passes to the caller.
#pragma once

#include <memory>
#include <string>

#include "ado/query.h"
#include "ado/stored_proc.h"
#include "package/data_module.h"

namespace basalt {

class T_BarCode_DM : public TDataModule {
public:
    T_BarCode_DM();

    // For goods and for the default price.
    TADOQuery Temp_QRY;
    // The layouts. It may take as long as it takes, whatever limit the workstation sets on statements.
    TADOQuery BarCodeFormul_QRY;
    // The voucher of the first period, with its parameters; the host runs it.
    TADOStoredProc spTemp_PRC;

    // Opens BarCodeFormul_QRY on the layouts for barcodes of digitCount characters whose prefix stands in this one. In
    // which order several come is the server's choice. After a failure it is closed.
    void BarCodeFormul_Get(int digitCount, const std::string& barcode);

    // Looks the good up by its scale code (!code! in its AbbName; of several the highest) or by its own code. True when
    // there is NO such good; goodCode is 0 then, else the good's. After a failure goodCode is unchanged.
    [[nodiscard]] bool GetCodeFromGoodInf(bool byAbbName, const std::string& code, int& goodCode);

    // True when there is NO good of that code; a blank code is asked of nobody and gives false.
    [[nodiscard]] bool GoodInF_Valid_Code(const std::string& code);
};

// The one that all share, null until somebody needs it. It goes when its host does.
extern std::unique_ptr<T_BarCode_DM> _BarCode_DM;  // NOLINT(bugprone-reserved-identifier): hosts know it by this name
// The same, made when it is not there.
[[nodiscard]] T_BarCode_DM& sharedBarCodes();

}  // namespace basalt
