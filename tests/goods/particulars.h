// What the procedure of a good's particulars answers, for tests with a scripted session.
//
//   script.setProcedure(particularsProcedure());
//   script.expectCall("GoodParticularInfo_SP", {{"@GoodCode", text("57"), false}}, withRows(particularRows({...})));
#pragma once

#include "tests/goods/rows.h"

namespace basalt {

// The procedure that reads one good.
inline ProcedureInfo particularsProcedure() {
    return {.name = "GoodParticularInfo_SP",
            .parameters = {{.name = "@GoodCode",
                            .direction = ParameterDirection::Input,
                            .type = {.name = {}, .type = FieldType::Text, .size = 20},
                            .hasDefault = false}}};
}

// One row a good, its values in the order of the particulars.
inline RowSet particularRows(const std::vector<std::vector<Value>>& values) {
    return rows({{"Code", FieldType::Integer},
                 {"Name", FieldType::Text, 150},
                 {"Kala_Type", FieldType::Text, 50},
                 {"Kala_Index", FieldType::Text, 50},
                 {"Kala_Name", FieldType::Text, 150},
                 {"Mogodi", FieldType::Decimal},
                 {"Unit", FieldType::Integer},
                 {"Unit2", FieldType::Integer},
                 {"UnitName", FieldType::Text, 50},
                 {"UnitName2", FieldType::Text, 50},
                 {"MinAva", FieldType::Decimal},
                 {"Pos", FieldType::Text, 50},
                 {"Meghdar_Formool", FieldType::Float},
                 {"Gheymat_Miangin", FieldType::Decimal},
                 {"OffPercentSell", FieldType::Float},
                 {"TaxExempt", FieldType::Boolean},
                 {"ChargeExempt", FieldType::Boolean},
                 {"Tax_In_BuyCosts", FieldType::Boolean},
                 {"Tax_In_SellCosts", FieldType::Boolean},
                 {"TaxPercent", FieldType::Float},
                 {"ChargePercent", FieldType::Float},
                 {"ConsumerPrice", FieldType::Decimal}},
                values);
}

inline CallResult withRows(RowSet set) {
    CallResult result;
    result.batch.results.push_back({.rows = std::move(set)});
    return result;
}

}  // namespace basalt
