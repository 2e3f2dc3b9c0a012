// A form as a printable list of its inputs: one line an input, with its label and what it shows.
#pragma once

#include <QWidget>
#include <vector>

#include "host/screens/table_content.h"

namespace basalt::host {

inline constexpr const char* kHeadingProperty = "heading";

class RecordContent final : public TableContent {
public:
    // Takes the visible inputs that have a label (its buddy, or an accessible name). Labels with the property "heading"
    // tell what the record is of, and stand above it.
    RecordContent(QString title, const QWidget& form);

    [[nodiscard]] QString title() const override { return title_; }
    [[nodiscard]] std::vector<QString> headerLines() const override { return heading_; }
    [[nodiscard]] const std::vector<TableColumn>& columns() const override { return columns_; }
    [[nodiscard]] int rowCount() const override { return static_cast<int>(lines_.size()); }
    [[nodiscard]] Value value(int row, int column) const override;
    [[nodiscard]] QString shown(int row, int column) const override;

private:
    struct Line {
        QString label;
        QString text;
    };

    QString title_;
    std::vector<QString> heading_;
    std::vector<TableColumn> columns_;
    std::vector<Line> lines_;
};

}  // namespace basalt::host
