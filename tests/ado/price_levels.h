// A small table, its rows and its description, on which most tests of the components run.
#pragma once

#include <initializer_list>
#include <string>
#include <utility>
#include <vector>

#include "ado/session.h"

namespace basalt {

inline Value integer(std::int64_t value) {
    return value;
}
inline Value text(std::string value) {
    return Value(std::move(value));
}

inline RowSet makeRows(std::vector<ColumnInfo> columns, const std::vector<std::vector<Value>>& rows) {
    RowSet set(std::move(columns));
    for (const std::vector<Value>& row : rows) {
        for (std::size_t i = 0; i < row.size(); ++i)
            set.column(i).appendValue(row[i]);
        set.finishRow();
    }
    return set;
}

inline ColumnInfo levelColumn(std::string name, FieldType type, int size = 0) {
    ColumnInfo info;
    info.name = name;
    info.type = type;
    info.size = size;
    info.baseTable = "CostLevel";
    info.baseColumn = std::move(name);
    return info;
}

inline std::vector<ColumnInfo> levelColumns() {
    ColumnInfo rate = levelColumn("Rate", FieldType::Decimal);
    rate.precision = 9;
    rate.scale = 2;
    return {levelColumn("Code", FieldType::Integer), levelColumn("CostType", FieldType::TinyInt),
            levelColumn("Name", FieldType::Text, 10), rate};
}

inline TableInfo levelTable() {
    return {.name = "CostLevel", .columns = levelColumns(), .key = {"CostType", "Code"}};
}

// Four levels; one without a rate.
inline RowSet levelRows() {
    return makeRows(levelColumns(), {{integer(1), integer(1), text("عمده"), Decimal(1250, 2)},
                                     {integer(2), integer(1), text("تک"), Null{}},
                                     {integer(1), integer(3), text("Alpha"), Decimal(0, 2)},
                                     {integer(7), integer(3), text("beta"), Decimal(-50, 2)}});
}

}  // namespace basalt
