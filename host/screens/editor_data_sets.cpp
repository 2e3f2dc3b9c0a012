#include "host/screens/editor_data_sets.h"

#include <algorithm>

namespace basalt::host {

EditorDataSets::EditorDataSets(TADOConnection& connection) : connection_(connection) {
    connection_.addObserver(*this);
}

EditorDataSets::~EditorDataSets() {
    connection_.removeObserver(*this);
}

void EditorDataSets::touched(TDataSet& dataSet) {
    if (std::find(known_.begin(), known_.end(), &dataSet) == known_.end()) known_.push_back(&dataSet);
    if (dataSet.Active()) opened_ = &dataSet;
}

void EditorDataSets::leaving(TDataSet& dataSet) {
    std::erase(known_, &dataSet);
    if (opened_ == &dataSet) opened_ = nullptr;
}

void EditorDataSets::cancelEdits() {
    for (TDataSet* dataSet : known_)
        if (dataSet->State() == dsEdit || dataSet->State() == dsInsert) dataSet->Cancel();
}

}  // namespace basalt::host
