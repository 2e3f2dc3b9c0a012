// Layouts of scale barcodes as the database gives them.
//
//   script.expect("SELECT * FROM   dbo.BarCodeFormul ...", layoutRows({{.DigitCount = 13, .ConstantCode = "28",
//   ...}}));
#pragma once

#include <string>
#include <vector>

#include "tests/goods/rows.h"

namespace basalt {

struct Layout {
    int DigitCount = 13;
    int ConstantStart = 1;
    int ConstantCount = 2;
    std::string ConstantCode = "28";
    int BarCodeType = 1;
    int ItemConstantCode = 0;
    int ItemCodeType = 1;
    int ItemCodeStart = 3;
    int ItemCodeCount = 5;
    int AmountStart = 8;
    int AmountCount = 5;
    int AmountDivide = 1000;
    int BalanceNoStart = 0;
    int BalanceNoCount = 0;
    bool BalanceNoAsStore = false;
    int PriceStart = 0;
    int PriceCount = 0;
};

inline RowSet layoutRows(const std::vector<Layout>& layouts) {
    std::vector<std::vector<Value>> values;
    for (const Layout& l : layouts)
        values.push_back({number(l.DigitCount), number(l.ConstantStart), number(l.ConstantCount), l.ConstantCode,
                          number(l.BarCodeType), number(l.ItemConstantCode), number(l.ItemCodeType),
                          number(l.ItemCodeStart), number(l.ItemCodeCount), number(l.AmountStart),
                          number(l.AmountCount), number(l.AmountDivide), number(l.BalanceNoStart),
                          number(l.BalanceNoCount), l.BalanceNoAsStore, number(l.PriceStart), number(l.PriceCount)});
    return rows({{"DigitCount", FieldType::Integer},
                 {"ConstantStart", FieldType::Integer},
                 {"ConstantCount", FieldType::Integer},
                 {"ConstantCode", FieldType::Text, 20},
                 {"BarCodeType", FieldType::Integer},
                 {"ItemConstantCode", FieldType::Integer},
                 {"ItemCodeType", FieldType::Integer},
                 {"ItemCodeStart", FieldType::Integer},
                 {"ItemCodeCount", FieldType::Integer},
                 {"AmountStart", FieldType::Integer},
                 {"AmountCount", FieldType::Integer},
                 {"AmountDivide", FieldType::Integer},
                 {"BalanceNoStart", FieldType::Integer},
                 {"BalanceNoCount", FieldType::Integer},
                 {"BalanceNoAsStore", FieldType::Boolean},
                 {"PriceStart", FieldType::Integer},
                 {"PriceCount", FieldType::Integer}},
                values);
}

}  // namespace basalt
