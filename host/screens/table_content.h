// What a grid gives to copying, printing and exporting: its visible columns in the user's order, its rows in the user's
// sort order.
#pragma once

#include <QString>
#include <QStringList>
#include <string>
#include <vector>

#include "ado/rowset.h"
#include "ado/value.h"
#include "host/screens/number_room.h"

namespace basalt::host {

struct TableColumn {
    QString title;
    FieldType type = FieldType::Text;
    std::string displayFormat;
    int width = 100;  // pixels, for proportions
};

class TableContent {
public:
    virtual ~TableContent() = default;
    [[nodiscard]] virtual QString title() const = 0;
    [[nodiscard]] virtual QString subtitle() const { return {}; }  // what the rows are narrowed to; none: all of them
    [[nodiscard]] virtual std::vector<QString> headerLines() const = 0;  // above a printed table
    [[nodiscard]] virtual const std::vector<TableColumn>& columns() const = 0;
    [[nodiscard]] virtual int rowCount() const = 0;
    // Rows and columns count from 0.
    [[nodiscard]] virtual Value value(int row, int column) const = 0;
    [[nodiscard]] virtual QString shown(int row, int column) const = 0;  // with Persian digits
    // Of a column of numbers: texts of which one is as long as the longest of them, whatever its digits.
    [[nodiscard]] virtual QStringList numberShapes(int column) const { return shownShapes(*this, column); }
};

[[nodiscard]] inline bool isNumber(FieldType type) {
    return type != FieldType::Boolean && (isIntegral(type) || type == FieldType::Float || type == FieldType::Decimal);
}

}  // namespace basalt::host
