// The word for each kind of column, in messages and in recordings.
//
//   kFieldTypeWords[static_cast<std::size_t>(FieldType::Integer)]     "int"
#pragma once

#include <array>
#include <string_view>

#include "ado/rowset.h"

namespace basalt {

// In the order of FieldType.
inline constexpr std::array<std::string_view, 11> kFieldTypeWords = {
    "bit", "tinyint", "smallint", "int", "bigint", "float", "decimal", "text", "binary", "date", "datetime"};
static_assert(kFieldTypeWords.size() == static_cast<std::size_t>(FieldType::DateTime) + 1);

}  // namespace basalt
