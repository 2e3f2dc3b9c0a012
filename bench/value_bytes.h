// The measure for the memory that rows take: what their values take by themselves.
#pragma once

#include <cstddef>

#include "ado/rowset.h"

namespace basalt::bench {

// Numbers at the width of their type, texts their bytes.
[[nodiscard]] std::size_t valueBytes(const RowSet& rows);

}  // namespace basalt::bench
