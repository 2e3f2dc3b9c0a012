// What becomes of the rows that a data set shows while others are read to take their place.
//
//   const RowsBeside beside(*this);
//   RowSet rows = fetch();                 // the data set may be closed from here on
//
// Until all the new rows are there the old ones stay, so that a request that fails or is given up leaves a list as it
// was. Both together would take twice the memory of a list, which is too much of a long one: once they hold more than
// 32 MB (some 200,000 rows of a price list) and the new ones are more than a quarter of the old, the data set is closed
// and lets its rows go. What narrows a long list to less than that, and whatever is given up early, still leaves the
// old rows where they are.
#pragma once

#include "ado/rows_arriving.h"

namespace basalt {

class TDataSet;

class RowsBeside {
public:
    explicit RowsBeside(TDataSet& shown);

private:
    RowsArriving arriving_;
};

// Bytes of new rows beside so many of old ones.
[[nodiscard]] constexpr std::size_t roomBeside(std::size_t shown) {
    constexpr std::size_t kBoth = std::size_t{32} << 20;
    const std::size_t quarter = shown / 4;
    return shown + quarter > kBoth ? quarter : kBoth - shown;
}

}  // namespace basalt
