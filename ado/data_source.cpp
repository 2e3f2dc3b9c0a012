#include "ado/data_source.h"

#include "ado/data_set.h"

namespace basalt {

TDataSource::TDataSource(TDataSet* dataSet) {
    SetDataSet(dataSet);
}

TDataSource::~TDataSource() {
    listeners_.notify([](DataSourceListener& listener) { listener.sourceGone(); });
    if (dataSet_ == nullptr) return;
    dataSet_->removeListener(*this);
    std::erase(dataSet_->sources_, this);
}

void TDataSource::SetDataSet(TDataSet* dataSet) {
    if (dataSet == dataSet_) return;
    if (dataSet_ != nullptr) {
        dataSet_->removeListener(*this);
        std::erase(dataSet_->sources_, this);
    }
    dataSet_ = dataSet;
    if (dataSet_ != nullptr) {
        dataSet_->addListener(*this);
        dataSet_->sources_.push_back(this);
    }
    activeChanged();
}

void TDataSource::activeChanged() {
    listeners_.notify([](DataSourceListener& listener) { listener.activeChanged(); });
}

void TDataSource::dataChanged() {
    listeners_.notify([](DataSourceListener& listener) { listener.dataChanged(); });
}

void TDataSource::rowChanged(std::int64_t row) {
    listeners_.notify([row](DataSourceListener& listener) { listener.rowChanged(row); });
}

void TDataSource::stateChanged() {
    listeners_.notify([](DataSourceListener& listener) { listener.stateChanged(); });
}

void TDataSource::cursorMoved() {
    listeners_.notify([](DataSourceListener& listener) { listener.cursorMoved(); });
}

}  // namespace basalt
