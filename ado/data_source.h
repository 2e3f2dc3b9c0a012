// Between a data set and what shows it: controls listen to the data source, the data source to its data set, so that
// either side can be exchanged.
//
//   TDataSource source;
//   source.SetDataSet(&query);
//   source.addListener(grid);
#pragma once

#include <cstdint>
#include <string>

#include "ado/listener_list.h"

namespace basalt {

class TDataSet;

// What can happen to a data set. Rows count from 0, in the order and selection that the data set shows.
class DataSourceListener {
public:
    virtual ~DataSourceListener() = default;
    virtual void activeChanged() {}  // opened, closed, or another data set
    virtual void dataChanged() {}    // other rows than before
    // Other values in one row; -1 is the new record that is being entered.
    virtual void rowChanged(std::int64_t row) { static_cast<void>(row); }
    virtual void stateChanged() {}  // browse, edit, insert, inactive
    virtual void cursorMoved() {}   // another current record
    // The data source itself is going away; there is nothing to remove oneself from any more.
    virtual void sourceGone() {}
};

class TDataSource final : private DataSourceListener {
public:
    explicit TDataSource(TDataSet* dataSet = nullptr);
    ~TDataSource() override;
    TDataSource(const TDataSource&) = delete;
    TDataSource& operator=(const TDataSource&) = delete;

    // nullptr when there is none, also after the data set has gone away.
    [[nodiscard]] TDataSet* DataSet() const { return dataSet_; }
    void SetDataSet(TDataSet* dataSet);

    // Borrowed; to be removed before they go away. They may do so while they are being told.
    void addListener(DataSourceListener& listener) { listeners_.add(listener); }
    void removeListener(DataSourceListener& listener) { listeners_.remove(listener); }

private:
    friend class TDataSet;
    void activeChanged() override;
    void dataChanged() override;
    void rowChanged(std::int64_t row) override;
    void stateChanged() override;
    void cursorMoved() override;

    TDataSet* dataSet_ = nullptr;
    ListenerList<DataSourceListener> listeners_;
};

}  // namespace basalt
