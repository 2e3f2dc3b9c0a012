// Enumerations and records that the host and the module share.
//
// The ordinals are the contract with the host, with its tables and with its user log; they never change. The
// enumerations are unscoped because hosts pass them as plain integers, and open: a value that is not named here is
// still legal.
#pragma once

#include <cstdint>
#include <string>

#include "ado/decimal.h"

namespace basalt {

// The mode of a screen.
enum TFormMode : int {
    fmBrowse = 1,  // a list shown for browsing and maintenance
    fmNew = 2,     // an editor opened for a new record
    fmEdit = 3,    // an editor opened on an existing record
    fmSelect = 5,  // a list opened to pick one row
};

// The part of the application that a permission, a log entry, a code lock or a screen belongs to.
enum TSoftwarePart : int {
    spPersons = 101,
    spGoods = 102,
    spPriceLevels = 114,
    spSelectedLists = 126,
    spTags = 127,
    spCategories = 130,
    spDiscountLevels = 134,
    spPriceReport = 519,
};

// The kind of right that is asked for, and the kind of action that is logged.
enum TPermission : int {
    prInsert = 1,
    prEdit = 2,
    prDelete = 3,
    prOpen = 6,
    prEnable = 1261,  // enable or disable a selected list
};

// The identity under which a screen's per-user layout is kept.
enum TComponentSoftwarePart : int {
    csPriceLevels = 14,
    csSelectedLists = 26,
    csDiscountLevels = 27,
    csTags = 31,
    csCategories = 101,
    csPriceReport = 162,
};

// Which kind of level a CostLevel row is. Rows of kind 4 are listed with the discount levels and written by nothing
// here.
enum TCostType : int { ctPriceLevel = 1, ctDiscountLevel = 3 };

// Results of modal screens and message boxes.
enum TModalResult : int { mrNone = 0, mrOk = 1, mrCancel = 2, mrYes = 6, mrNo = 7 };

// The signed-in user.
struct TUserInfo {
    int Code = 0;
    std::string UserName;  // the name used to sign in
    std::string FullName;  // the name shown
    bool IsManager = false;
};

// Options of this workstation, kept in the host's option file.
struct TIniOptions {
    // Identifies this workstation as the owner of code locks; unique among the workstations of one database.
    int LockOwner = 0;
    std::string WorkstationName;
};

// Company-wide settings.
struct TSettingRecord {
    int CurrencyDecimals = 0;         // decimal places of amounts on screens and reports, 0 to 9
    std::uint8_t NegativeType = 1;    // negative stock: 0 forbid, 1 warn, 2 allow
    bool FindGoodByScaleCode = true;  // goods are found by their scale code in AbbName
    bool DetailSingleUnitOnly = false;
    bool DetailTwoUnits = false;
    bool DetailPartialAmounts = false;
    bool DetailRatioUnits = false;
    bool DetailMeasured = false;
    int MetreMorabaUnit = 0;
    std::string OperationBarcode1;
    std::string OperationBarcode2;
    std::string OperationBarcode3;
    std::string CompanyName;
};

}  // namespace basalt
