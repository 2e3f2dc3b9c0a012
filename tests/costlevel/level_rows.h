// Rows of levels as the database gives them, for tests with a scripted session.
//
//   script.expect("SELECT * FROM CostLevel Where Code = 4 AND CostType = 1", levelRows({{4, "نمایندگی", nullptr, 1}}));
#pragma once

#include <string>
#include <vector>

#include "ado/session.h"

namespace basalt {

struct LevelRow {
    int code;
    const char* name;
    const char* comment;  // nullptr: null
    int costType;
};

inline ColumnInfo levelColumn(const char* name, FieldType type, int size = 0) {
    return {.name = name, .type = type, .size = size, .baseTable = "CostLevel", .baseColumn = name};
}

inline std::vector<ColumnInfo> levelColumns() {
    return {levelColumn("Code", FieldType::Integer), levelColumn("Name", FieldType::Text, 50),
            levelColumn("Comment", FieldType::Text, 200), levelColumn("CostType", FieldType::Integer)};
}

inline RowSet levelRows(const std::vector<LevelRow>& rows) {
    RowSet set(levelColumns());
    for (const LevelRow& row : rows) {
        set.column(0).appendInt(row.code);
        set.column(1).appendText(row.name);
        if (row.comment != nullptr) {
            set.column(2).appendText(row.comment);
        } else {
            set.column(2).appendNull();
        }
        set.column(3).appendInt(row.costType);
        set.finishRow();
    }
    return set;
}

// The names that another level bears, as the look-up of names gives them.
inline RowSet nameRows(const std::vector<const char*>& rows) {
    RowSet set({levelColumn("Name", FieldType::Text, 50)});
    for (const char* row : rows) {
        set.column(0).appendText(row);
        set.finishRow();
    }
    return set;
}

// One unnamed number.
inline RowSet numberRow(std::int64_t value) {
    RowSet set({{.name = "", .type = FieldType::BigInt}});
    set.column(0).appendInt(value);
    set.finishRow();
    return set;
}

inline TableInfo levelTable() {
    return {.name = "CostLevel", .columns = levelColumns(), .key = {"CostType", "Code"}};
}

}  // namespace basalt
