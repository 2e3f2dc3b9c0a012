// The columns of a table on pages of some width: the font in which they find room, and the pages side by side that hold
// them.
//
//   PrintColumns columns(table);
//   columns.fit(page.width());
//   for (const PrintSheet& sheet : columns.sheets()) ...
//
// The font is the largest in which numbers are whole and texts have lines of some length. Where there is no such font,
// texts make room for numbers, then words are broken, and where that is not enough the columns go on on further sheets,
// each of which begins with the first column.
#pragma once

#include <QFont>
#include <QStringList>
#include <vector>

#include "host/screens/table_content.h"

namespace basalt::host {

// One page's width of columns, by their index, with the width of each in the unit of pages.
struct PrintSheet {
    std::vector<std::size_t> columns;
    std::vector<qreal> widths;
};

class PrintColumns {
public:
    // The table is lent.
    explicit PrintColumns(const TableContent& table);

    void fit(qreal pageWidth);

    // Of the latest fit.
    [[nodiscard]] const std::vector<PrintSheet>& sheets() const { return sheets_; }
    [[nodiscard]] const QFont& font() const { return font_; }
    [[nodiscard]] const QFont& titleFont() const { return titleFont_; }
    // Beside a text, on either side.
    [[nodiscard]] qreal padding() const { return padding_; }
    // Whether every column is whole, in a font that reads easily.
    [[nodiscard]] bool roomy() const { return roomy_; }

    // As it is printed.
    [[nodiscard]] const QString& title(std::size_t column) const { return titles_[column]; }

private:
    using Widths = std::vector<qreal>;
    // Of each column, in a font. Numbers want the same at every step.
    struct Room {
        Widths needed;    // what it cannot do without
        Widths unbroken;  // what leaves words whole
        Widths wanted;    // for lines of some length
        Widths whole;     // for one line
    };

    void setFonts(int halfPoints);
    void spread(const Room& room);
    [[nodiscard]] Room roomOfColumns() const;
    // Each between those two widths of its own, the greater ones cut first where the page does not hold all.
    [[nodiscard]] Widths shared(const std::vector<std::size_t>& columns, const Widths& least, const Widths& most) const;
    void addSheet(std::vector<std::size_t> columns, const Widths& least, const Room& room);
    [[nodiscard]] const std::vector<QStringList>& longestTexts() const;

    const TableContent& table_;
    std::vector<QString> titles_;
    mutable std::vector<QStringList> longestTexts_;  // of each column; empty: not looked for yet
    qreal pageWidth_ = 0;
    std::vector<PrintSheet> sheets_;
    bool roomy_ = true;
    QFont font_;
    QFont titleFont_;
    qreal padding_ = 0;
};

}  // namespace basalt::host
