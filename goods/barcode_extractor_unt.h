// Takes the barcodes apart that scales and labelling machines print.
//
//   TBarCodeFormulType kind = bftNone;
//   if (FillGoodInfFromBarcode(butNew, kind, "2800057012505", "12", "", total) && kind == bftAmount) {
//       std::string price, weight, scale;
//       Value good;
//       Extended sum = 0;
//       Get_Barcode_Data(price, weight, scale, good, sum);     // good "00057", weight "1.25"
//   }
//
// A layout (a row of BarCodeFormul) says by position what lies where. Positions count characters (UTF-16 units) from 1
// in the barcode without outer blanks. A field that reaches beyond the barcode is what of it lies inside: shorter or
// empty.
//
// What a scan finds stays in the variables of Barcode_extractor_unt until the next scan. The functions are not
// re-entrant. A DatabaseError passes to the caller.
#pragma once

#include <functional>
#include <string>

#include "ado/value.h"
#include "goods/barcode_types.h"

namespace basalt {

using Method_as_Event = std::function<void()>;

// The state of the extraction, for the host to read and to reset. Zero, empty or unassigned when a host is attached.
namespace Barcode_extractor_unt {

// Of the last barcode that carried a good.
extern std::string Fi;          // unit price
extern std::string Weight;      // amount
extern std::string BalanceNum;  // scale number, "-1" for none
extern Value GoodCode;          // a text
// The person of the last call.
extern Value Percode;  // a text
// Of the barcodes that carry a price alone; only the host sets it back.
extern Extended BarCodePriceSum;
// Called when a barcode's total is the invoice's.
extern Method_as_Event After_Equal_Total_Price;

}  // namespace Barcode_extractor_unt

// Takes a barcode apart. False when no layout fits; formulType is bftNone then and only Percode has changed.
//
// With several fitting layouts the server's first counts. What happens by the layout's kind:
//   bftAmount      fills Fi, Weight, BalanceNum and GoodCode. A good that the scale code does not lead to is reported
//   with
//                  message 10152 and has code 0. Without a price in the barcode it is the person's default price.
//   bftConstPrice  adds the price to BarCodePriceSum (butNew) or takes it off (butDelete).
//   bftTotalPrice  calls After_Equal_Total_Price when the barcode's total is totalPrice to the last digit, else notes
//   the
//                  difference to the user.
// perCode is the invoice's person, as text. itemCode is not looked at.
//
// perCode and what a barcode has in its field of the good go into statements as they stand. A caller passes on digits
// alone as perCode, and of barcodes only those of letters and digits (goods/barcode_unt.h).
//
// A number field that is not a number is a DatabaseError (Conversion) that names barcode and field. After a failure
// formulType is bftNone, or as it was when the layouts could not be read, and the variables hold what was found before
// it.
[[nodiscard]] bool FillGoodInfFromBarcode(TBarCodeUseType useType, TBarCodeFormulType& formulType,
                                          const std::string& barcode, const std::string& perCode,
                                          const std::string& itemCode, Extended totalPrice);

// The code of the good that the text means: its own code, or with byAbbName a scale code. 0 when there is none, which
// showMessage has the user told.
[[nodiscard]] int GetBarcode_Code(const std::string& code, bool byAbbName, bool showMessage);

// What the scans have left.
void Get_Barcode_Data(std::string& price, std::string& weight, std::string& balanceNum, Value& goodCode,
                      Extended& priceSum);

// Whether the good of the last scan exists: 1 when it does or when there was none, 2 when there is no such good.
[[nodiscard]] std::uint8_t GetGoodInFromBarCode();

}  // namespace basalt
