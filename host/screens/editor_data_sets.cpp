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
    if (record_ == &dataSet) record_ = nullptr;
}

namespace {

bool isEntering(const TDataSet* dataSet) {
    return dataSet->State() == dsEdit || dataSet->State() == dsInsert;
}

}  // namespace

bool EditorDataSets::entering() const {
    return std::any_of(known_.begin(), known_.end(), isEntering);
}

void EditorDataSets::cancelEdits() {
    for (TDataSet* dataSet : known_)
        if (isEntering(dataSet)) dataSet->Cancel();
}

}  // namespace basalt::host
