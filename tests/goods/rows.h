// Rows as a database gives them, for tests with a scripted session.
//
//   script.expect("SELECT Code, Name FROM ...", rows({{"Code", FieldType::Integer}, {"Name", FieldType::Text, 50}},
//                                                    {{std::int64_t{1}, std::string("تک‌فروشی")}}));
#pragma once

#include <string>
#include <vector>

#include "ado/session.h"

namespace basalt {

struct TestColumn {
    const char* name;
    FieldType type;
    int size = 0;
};

inline RowSet rows(const std::vector<TestColumn>& columns, const std::vector<std::vector<Value>>& values) {
    std::vector<ColumnInfo> infos;
    for (const TestColumn& column : columns)
        infos.push_back({.name = column.name,
                         .type = column.type,
                         .size = column.size,
                         .precision = column.type == FieldType::Decimal ? 23 : 0,
                         .scale = column.type == FieldType::Decimal ? 9 : 0});
    RowSet set(std::move(infos));
    for (const auto& row : values) {
        for (std::size_t i = 0; i < row.size(); ++i)
            set.column(i).appendValue(row[i]);
        set.finishRow();
    }
    return set;
}

inline Value number(std::int64_t value) {
    return value;
}
inline Value text(const char* value) {
    return std::string(value);
}

// The codes of goods; the column has the name that the statement asks for.
inline RowSet codeRows(const std::vector<std::int64_t>& codes) {
    std::vector<std::vector<Value>> values;
    for (const std::int64_t code : codes)
        values.push_back({code});
    return rows({{"Code", FieldType::Integer}}, values);
}

}  // namespace basalt
