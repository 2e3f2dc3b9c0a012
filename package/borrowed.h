// A data set of the host that the module uses for one call: closed before, and closed again when the call is over, also
// when an error ends it. The host and the next caller find it closed.
//
//   const Borrowed<TADOQuery> levels(DM().SharedQuery);
//   levels->SQL = "SELECT Code, Name FROM CostLevel";
//   levels->Open();
#pragma once

namespace basalt {

template <class DataSet>
class Borrowed {
public:
    explicit Borrowed(DataSet& dataSet) : dataSet_(dataSet) { dataSet_.Close(); }
    ~Borrowed() { dataSet_.Close(); }
    Borrowed(const Borrowed&) = delete;
    Borrowed& operator=(const Borrowed&) = delete;

    DataSet& operator*() const { return dataSet_; }
    DataSet* operator->() const { return &dataSet_; }

private:
    DataSet& dataSet_;
};

}  // namespace basalt
