#include "host/screens/record_memory.h"

namespace basalt::host {
namespace {

std::vector<std::pair<std::string, Value>> valuesOf(TDataSet& dataSet) {
    std::vector<std::pair<std::string, Value>> values;
    if (!dataSet.Active() || dataSet.IsEmpty()) return values;
    for (int index = 0; index < dataSet.FieldCount(); ++index)
        values.emplace_back(dataSet.fieldInfo(index).name, dataSet.Fields(index).AsValue());
    return values;
}

}  // namespace

void RecordMemory::take(TDataSet& dataSet) {
    values_ = valuesOf(dataSet);
}

bool RecordMemory::matches(TDataSet& dataSet) const {
    return values_ == valuesOf(dataSet);
}

}  // namespace basalt::host
