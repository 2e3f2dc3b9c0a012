// The particulars of one good, as documents show and use them.
#pragma once

#include <string>

#include "ado/decimal.h"

namespace basalt {

// NOLINTBEGIN(bugprone-reserved-identifier): documents know the fields by these names
struct TGoodInfoMapper {
    int _Code = 0;
    std::string _Name = {};
    std::string _Kala_Type = {};
    std::string _Kala_Index = {};
    std::string _Kala_Name = {};
    Extended _Mogodi = 0;  // stock on hand
    int _Unit = 0;
    int _Unit2 = 0;
    std::string _UnitName = {};
    std::string _UnitName2 = {};
    std::string _MinAva = {};
    std::string _Pos = {};
    Extended _Meghdar_Formool = 0;  // ratio of the second unit
    Extended _Gheymat_Miangin = 0;  // average cost
    Extended _OffPercentSell = 0;
    bool _TaxExempt = false;
    bool _ChargeExempt = false;
    bool _Tax_In_BuyCosts = false;
    bool _Tax_In_SellCosts = false;
    Extended _TaxPercent = 0;
    Extended _ChargePercent = 0;
    Extended _ConsumerPrice = 0;
};
// NOLINTEND(bugprone-reserved-identifier)

}  // namespace basalt
