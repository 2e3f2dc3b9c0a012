// The particulars of one good, as documents show and use them.
#pragma once

#include <string>

#include "ado/decimal.h"

namespace basalt {

struct TGoodInfoMapper {
    int Code = 0;
    std::string Name = {};
    std::string Kala_Type = {};
    std::string Kala_Index = {};
    std::string Kala_Name = {};
    Extended Mogodi = 0;  // stock on hand
    int Unit = 0;
    int Unit2 = 0;
    std::string UnitName = {};
    std::string UnitName2 = {};
    std::string MinAva = {};
    std::string Pos = {};
    Extended Meghdar_Formool = 0;  // ratio of the second unit
    Extended Gheymat_Miangin = 0;  // average cost
    Extended OffPercentSell = 0;
    bool TaxExempt = false;
    bool ChargeExempt = false;
    bool Tax_In_BuyCosts = false;
    bool Tax_In_SellCosts = false;
    Extended TaxPercent = 0;
    Extended ChargePercent = 0;
    Extended ConsumerPrice = 0;
};

}  // namespace basalt
