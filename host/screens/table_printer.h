// Tables on paper: right to left, titles on every page, page numbers.
//
// The font is the largest in which numbers are whole and texts have lines of some length. Texts that are longer go on
// on further lines, and their row is as high as they ask, up to a page. Where there is no such font, texts make room
// for numbers, then words are broken, and where that is not enough the columns go on on further pages, each of which
// begins with the first column.
//
//   checkPrintable(table);
//   TableDocument document(table, footer);
//   writePdf(document, document.suitablePaper(), path);
#pragma once

#include <QFont>
#include <QFontMetricsF>
#include <QRectF>
#include <QStringList>
#include <memory>
#include <vector>

#include "host/screens/cell_lines.h"
#include "host/screens/print_document.h"
#include "host/screens/table_content.h"

namespace basalt::host {

// OutputError when the table has more rows than a print can sensibly hold.
void checkPrintable(const TableContent& table);

// The table is lent. `footer` stands beside the page number, `company` above the title of the first page; none when it
// is empty.
class TableDocument final : public PrintDocument {
public:
    TableDocument(const TableContent& table, QString footer, QString company = {});

    [[nodiscard]] QString title() const override { return table_.title(); }
    int layOut(const QPageLayout& paper) override;
    void paintPage(QPainter& painter, int page) const override;
    // The usual paper upright, or across when the table is too wide for it. Lays the table out anew.
    [[nodiscard]] QPageLayout suitablePaper();

private:
    struct Sheet {
        std::vector<std::size_t> columns;
        std::vector<qreal> widths;
    };
    using Widths = std::vector<qreal>;
    // Of each column, in a font. Numbers want the same at every step.
    struct Room {
        Widths needed;    // what it cannot do without
        Widths unbroken;  // what leaves words whole
        Widths wanted;    // for lines of some length
        Widths whole;     // for one line
    };

    void setFonts(int halfPoints);
    void fitColumns();
    void spreadColumns(const Room& room);
    [[nodiscard]] Room columnRoom() const;
    // Each between those two widths of its own, the greater ones cut first where the page does not hold all.
    [[nodiscard]] Widths shared(const std::vector<std::size_t>& columns, const Widths& least, const Widths& most) const;
    void addSheet(std::vector<std::size_t> columns, const Widths& least, const Room& room);
    void divideRows();
    [[nodiscard]] int linesOf(int row) const;
    [[nodiscard]] qreal heightOf(int row) const;
    [[nodiscard]] const std::vector<QStringList>& longestTexts() const;
    [[nodiscard]] qreal headHeight(int page) const;
    [[nodiscard]] qreal columnTitleHeight() const;
    [[nodiscard]] QStringList titleLines(std::size_t column, qreal width) const;
    [[nodiscard]] qreal roomForRows(int band) const;
    qreal paintHead(QPainter& painter) const;
    qreal paintTitles(QPainter& painter, const Sheet& sheet, qreal y) const;
    void paintRow(QPainter& painter, const Sheet& sheet, int row, const QRectF& place) const;
    void paintFooter(QPainter& painter, int page) const;
    template <typename Paint>
    void eachColumn(const Sheet& sheet, Paint paintColumn) const;

    const TableContent& table_;
    QString footer_;
    QString company_;
    std::vector<QString> lines_;                     // above the table
    std::vector<QString> titles_;                    // of the columns
    mutable std::vector<QStringList> longestTexts_;  // of each column; empty: not looked for yet
    // What the paper makes of it.
    QRectF page_;
    int pages_ = 1;
    QStringList title_;
    std::vector<QString> head_;
    std::vector<Sheet> sheets_;   // pages side by side that hold the columns
    std::vector<int> firstRows_;  // of each band of such pages
    std::unique_ptr<CellLines> cellLines_;
    bool roomy_ = true;  // every column whole, in a font that reads easily
    QFont font_;
    QFont titleFont_;
    QFont columnFont_;
    qreal padding_ = 0;
    qreal rowHeight_ = 0;   // of one line
    qreal lineHeight_ = 0;  // of each further one
    int mostLines_ = 1;
    qreal columnTitleHeight_ = 0;
    qreal footerHeight_ = 0;
};

// The lines above a printed table as rows of that width: three lines or fewer a row each, more of them side by side.
[[nodiscard]] std::vector<QString> headRows(const std::vector<QString>& lines, const QFontMetricsF& metrics,
                                            qreal width);

}  // namespace basalt::host
