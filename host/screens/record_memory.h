// The values of a record as an editor knows them, to tell later whether another user has changed it meanwhile.
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "ado/data_set.h"

namespace basalt::host {

class RecordMemory {
public:
    // The current record of the data set.
    void take(TDataSet& dataSet);
    void forget() { values_.clear(); }
    [[nodiscard]] bool empty() const { return values_.empty(); }
    // True when the data set holds a record with the same fields and values.
    [[nodiscard]] bool matches(TDataSet& dataSet) const;

private:
    std::vector<std::pair<std::string, Value>> values_;
};

}  // namespace basalt::host
