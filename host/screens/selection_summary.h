// The line below a list: how many rows there are, and of selected rows the sum and the average of the current column
// when it holds amounts; a sum of codes says nothing.
//
//   auto* summary = new SelectionSummary(grid, panel);
#pragma once

#include <QLabel>
#include <optional>

#include "host/screens/smart_grid.h"

namespace basalt::host {

// Of the numbers of one column in some rows; nulls are left out.
struct ColumnTotal {
    int count = 0;
    Decimal sum;
    Decimal average;  // rounded half away from zero; of whole numbers to two digits after the point
};

// nullopt when no row has a number there, and when the sum is beyond 38 digits.
[[nodiscard]] std::optional<ColumnTotal> columnTotal(const GridModel& model, const QItemSelection& rows, int column);

class SelectionSummary final : public QLabel {
public:
    SelectionSummary(SmartGrid& grid, QWidget* parent);

    // What is to be known of the list's rows before everything else, and what to do about it; empty: nothing.
    void setNote(const QString& note, const QString& advice);
    // Whether it says what to do. While a request runs nothing of it can be done.
    void setAdvising(bool advising);

private:
    void refresh();
    [[nodiscard]] QString described() const;
    [[nodiscard]] QString advised(const QString& fact, const QString& advice) const;

    SmartGrid& grid_;
    QString note_;
    QString advice_;  // on the note
    bool advising_ = true;
};

}  // namespace basalt::host
