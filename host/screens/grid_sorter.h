// The order of a data set's rows by one field: numbers by value, texts as Persian readers sort them.
//
//   std::vector<std::uint32_t> order = sortedRows(dataSet, field, false);   // order[0] is the row to show first
#pragma once

#include <cstdint>
#include <vector>

#include "ado/data_set.h"

namespace basalt::host {

// Rows and fields count from 0, rows in the data set's own order. Rows with equal values keep that order in both
// directions; nulls come before all values. Both spellings of yeh and kaf are the same letter, and numbers inside texts
// compare as numbers.
[[nodiscard]] std::vector<std::uint32_t> sortedRows(const TDataSet& dataSet, int field, bool descending);

}  // namespace basalt::host
