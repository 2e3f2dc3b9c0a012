// Tables on paper: right to left, titles on every page, page numbers.
//
// Columns find their room as PrintColumns says. Texts that are longer than a line of it go on on further lines, and
// their row is as high as they ask, up to a page.
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
#include "host/screens/print_columns.h"
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
    void divideRows();
    [[nodiscard]] int linesOf(int row) const;
    [[nodiscard]] qreal heightOf(int row) const;
    [[nodiscard]] qreal headHeight(int page) const;
    [[nodiscard]] qreal columnTitleHeight() const;
    [[nodiscard]] QStringList titleLines(std::size_t column, qreal width) const;
    [[nodiscard]] qreal roomForRows(int band) const;
    qreal paintHead(QPainter& painter) const;
    qreal paintTitles(QPainter& painter, const PrintSheet& sheet, qreal y) const;
    void paintRow(QPainter& painter, const PrintSheet& sheet, int row, const QRectF& place) const;
    void paintFooter(QPainter& painter, int page) const;
    template <typename Paint>
    void eachColumn(const PrintSheet& sheet, Paint paintColumn) const;

    const TableContent& table_;
    QString footer_;
    QString company_;
    std::vector<QString> lines_;  // above the table
    PrintColumns columns_;
    // What the paper makes of it.
    QRectF page_;
    int pages_ = 1;
    QStringList title_;
    QStringList subtitle_;
    std::vector<QString> head_;
    std::vector<int> firstRows_;  // of each band of such pages
    std::unique_ptr<CellLines> cellLines_;
    QFont titleFont_;
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
