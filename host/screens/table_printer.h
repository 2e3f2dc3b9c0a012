// Tables on paper: right to left, titles on every page, page numbers.
//
//   checkPrintable(table);
//   TableDocument document(table, footer);
//   writePdf(document, pageLayout(), path);
#pragma once

#include <QFont>
#include <QFontMetricsF>
#include <QRectF>
#include <vector>

#include "host/screens/print_document.h"
#include "host/screens/table_content.h"

namespace basalt::host {

// OutputError when the table has more rows than a print can sensibly hold.
void checkPrintable(const TableContent& table);

// The table is lent. `footer` stands beside the page number.
class TableDocument final : public PrintDocument {
public:
    TableDocument(const TableContent& table, QString footer);

    [[nodiscard]] QString title() const override { return table_.title(); }
    int layOut(const QPageLayout& paper) override;
    void paintPage(QPainter& painter, int page) const override;

private:
    void fitColumns();
    [[nodiscard]] qreal headHeight(int page) const;
    [[nodiscard]] qreal columnTitleHeight() const;
    [[nodiscard]] int rowsOn(int page) const;
    [[nodiscard]] int firstRowOf(int page) const;
    qreal paintHead(QPainter& painter) const;
    qreal paintTitles(QPainter& painter, qreal y) const;
    void paintRow(QPainter& painter, int row, qreal y) const;
    void paintFooter(QPainter& painter, int page) const;
    template <typename Paint>
    void eachColumn(Paint paintColumn) const;

    const TableContent& table_;
    QString footer_;
    std::vector<QString> lines_;
    // What the paper makes of it.
    QRectF page_;
    int pages_ = 1;
    std::vector<QString> head_;
    std::vector<qreal> widths_;
    qreal fontSize_ = 0;
    QFont font_;
    QFont titleFont_;
    QFont columnFont_;
    qreal padding_ = 0;
    qreal rowHeight_ = 0;
    qreal columnTitleHeight_ = 0;
    qreal footerHeight_ = 0;
};

// The lines above a printed table as rows of that width: three lines or fewer a row each, more of them side by side.
[[nodiscard]] std::vector<QString> headRows(const std::vector<QString>& lines, const QFontMetricsF& metrics,
                                            qreal width);

}  // namespace basalt::host
