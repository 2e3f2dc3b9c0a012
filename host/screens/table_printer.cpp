#include "host/screens/table_printer.h"

#include <QFile>
#include <QFileInfo>
#include <QPainter>
#include <QTemporaryDir>
#include <algorithm>
#include <numeric>

#include "host/screens/persian_digits.h"
#include "host/screens/theme.h"
#include "host/services/output_error.h"

namespace basalt::host {
namespace {

constexpr int kMostRows = 100'000;
constexpr std::size_t kMostHeadRows = 3;
constexpr qreal kLargestFont = 9.5;
constexpr qreal kSmallestFont = 6;
constexpr qreal kScreenDpi = 96;
// Sides of the paper, whatever the direction of the text.
constexpr auto kRight = Qt::AlignRight | Qt::AlignAbsolute;
constexpr auto kLeft = Qt::AlignLeft | Qt::AlignAbsolute;

class TablePainter {
public:
    TablePainter(const TableContent& table, const QString& footer, QPrinter& printer)
        : table_(table),
          footer_(footer),
          printer_(printer),
          page_(printer.pageLayout().paintRectPixels(printer.resolution())) {
        page_.moveTo(0, 0);
        fitColumns();
        font_ = themeFont(fontSize_);
        titleFont_ = themeFont(14, QFont::Bold);
        columnFont_ = themeFont(fontSize_, QFont::Bold);
        const QFontMetricsF metrics(font_, &printer_);
        head_ = headRows(table.headerLines(), metrics, page_.width());
        padding_ = metrics.averageCharWidth() * 0.6;
        rowHeight_ = metrics.height() * 1.35;
        footerHeight_ = metrics.height() * 1.8;
    }

    void paint() {
        QPainter painter(&printer_);
        if (!painter.isActive()) throw OutputError("چاپگر آماده نیست.");
        painter.setLayoutDirection(Qt::RightToLeft);
        // The first pass finds out how many pages there are; the words at the foot of each page need the number.
        const int pages = pageCount(painter);
        int row = 0;
        for (int page = 0; page < pages; ++page) {
            if (page > 0) printer_.newPage();
            row = paintPage(painter, page, pages, row);
        }
    }

private:
    void fitColumns() {
        const qreal scale = printer_.resolution() / kScreenDpi;
        qreal wanted = 0;
        for (const TableColumn& column : table_.columns())
            wanted += column.width * scale;
        const qreal fit = wanted > 0 ? page_.width() / wanted : 1;
        fontSize_ = std::clamp(kLargestFont * std::min(1.0, fit), kSmallestFont, kLargestFont);
        for (const TableColumn& column : table_.columns())
            widths_.push_back(column.width * scale * fit);
    }

    [[nodiscard]] qreal headHeight(int page) const {
        if (page > 0) return 0;
        const qreal line = QFontMetricsF(font_, &printer_).height() * 1.3;
        return QFontMetricsF(titleFont_, &printer_).height() * 1.5 + line * static_cast<qreal>(head_.size());
    }

    [[nodiscard]] qreal columnTitleHeight() const {
        const QFontMetricsF metrics(columnFont_, &printer_);
        qreal highest = rowHeight_;
        for (std::size_t i = 0; i < widths_.size(); ++i) {
            const QRectF room(0, 0, widths_[i] - 2 * padding_, page_.height());
            const QRectF needed =
                metrics.boundingRect(room, Qt::AlignCenter | Qt::TextWordWrap, table_.columns()[i].title);
            highest = std::max(highest, needed.height() * 1.25);
        }
        return std::min(highest, page_.height() / 4);
    }

    [[nodiscard]] int rowsOn(int page) const {
        const qreal room = page_.height() - headHeight(page) - columnTitleHeight() - footerHeight_;
        return std::max(1, static_cast<int>(room / rowHeight_));
    }

    [[nodiscard]] int pageCount(QPainter&) const {
        const int first = rowsOn(0);
        const int others = rowsOn(1);
        const int rest = std::max(0, table_.rowCount() - first);
        return 1 + (rest + others - 1) / others;
    }

    int paintPage(QPainter& painter, int page, int pages, int row) {
        qreal y = 0;
        if (page == 0) y = paintHead(painter);
        y = paintTitles(painter, y);
        painter.setFont(font_);
        const int last = std::min(table_.rowCount(), row + rowsOn(page));
        for (; row < last; ++row) {
            if (row % 2 == 1) painter.fillRect(QRectF(0, y, page_.width(), rowHeight_), themeColors().alternate);
            paintRow(painter, row, y);
            y += rowHeight_;
        }
        paintFooter(painter, page, pages);
        return row;
    }

    qreal paintHead(QPainter& painter) const {
        qreal y = 0;
        const qreal titleHeight = QFontMetricsF(titleFont_, &printer_).height() * 1.5;
        painter.setPen(themeColors().text);
        painter.setFont(titleFont_);
        painter.drawText(QRectF(0, y, page_.width(), titleHeight), Qt::AlignCenter, table_.title());
        y += titleHeight;
        painter.setFont(font_);
        const qreal line = QFontMetricsF(font_, &printer_).height() * 1.3;
        for (const QString& text : head_) {
            painter.drawText(QRectF(0, y, page_.width(), line), kRight | Qt::AlignVCenter, persianDigits(text));
            y += line;
        }
        return y;
    }

    qreal paintTitles(QPainter& painter, qreal y) const {
        const qreal height = columnTitleHeight();
        painter.fillRect(QRectF(0, y, page_.width(), height), themeColors().accentSoft);
        painter.setPen(themeColors().text);
        painter.setFont(columnFont_);
        eachColumn([&](std::size_t column, qreal x, qreal width) {
            painter.drawText(QRectF(x + padding_, y, width - 2 * padding_, height), Qt::AlignCenter | Qt::TextWordWrap,
                             table_.columns()[column].title);
        });
        painter.setPen(QPen(themeColors().borderStrong, 0));
        painter.drawLine(QPointF(0, y + height), QPointF(page_.width(), y + height));
        return y + height;
    }

    void paintRow(QPainter& painter, int row, qreal y) const {
        const QFontMetricsF metrics(font_, &printer_);
        painter.setPen(themeColors().text);
        eachColumn([&](std::size_t column, qreal x, qreal width) {
            const QRectF cell(x + padding_, y, width - 2 * padding_, rowHeight_);
            QString text =
                metrics.elidedText(table_.shown(row, static_cast<int>(column)), Qt::ElideRight, cell.width());
            const bool number = isNumber(table_.columns()[column].type);
            // Isolated, so that a minus sign stays on the left of its number.
            if (number) text = QChar(0x2066) + text + QChar(0x2069);
            painter.drawText(
                cell, (number ? Qt::Alignment(Qt::AlignHCenter) : kRight) | Qt::AlignVCenter | Qt::TextSingleLine,
                text);
        });
        painter.setPen(QPen(themeColors().border, 0));
        painter.drawLine(QPointF(0, y + rowHeight_), QPointF(page_.width(), y + rowHeight_));
    }

    void paintFooter(QPainter& painter, int page, int pages) const {
        const QRectF foot(0, page_.height() - footerHeight_, page_.width(), footerHeight_);
        painter.setFont(font_);
        painter.setPen(themeColors().muted);
        const QString number = QStringLiteral("صفحه‌ی %1 از %2").arg(page + 1).arg(pages);
        painter.drawText(foot, kRight | Qt::AlignBottom, persianDigits(footer_));
        painter.drawText(foot, kLeft | Qt::AlignBottom, persianDigits(number));
    }

    // The first column is the rightmost.
    template <typename Paint>
    void eachColumn(Paint paintColumn) const {
        qreal right = page_.width();
        for (std::size_t i = 0; i < widths_.size(); ++i) {
            right -= widths_[i];
            paintColumn(i, right, widths_[i]);
        }
    }

    const TableContent& table_;
    QString footer_;
    QPrinter& printer_;
    QRectF page_;
    std::vector<QString> head_;
    std::vector<qreal> widths_;
    qreal fontSize_ = kLargestFont;
    QFont font_;
    QFont titleFont_;
    QFont columnFont_;
    qreal padding_ = 0;
    qreal rowHeight_ = 0;
    qreal footerHeight_ = 0;
};

}  // namespace

std::vector<QString> headRows(const std::vector<QString>& lines, const QFontMetricsF& metrics, qreal width) {
    if (lines.size() <= kMostHeadRows) return lines;
    std::vector<QString> rows;
    for (const QString& line : lines) {
        const QString longer = rows.empty() ? line : rows.back() + QStringLiteral("   |   ") + line;
        if (!rows.empty() && metrics.horizontalAdvance(longer) <= width) {
            rows.back() = longer;
        } else {
            rows.push_back(line);
        }
    }
    return rows;
}

void checkPrintable(const TableContent& table) {
    if (table.rowCount() > kMostRows)
        throw OutputError(
            persianDigits(QStringLiteral("فهرست %1 سطر دارد و برای چاپ بیش از اندازه بلند است. نخست با جستجو "
                                         "آن را محدود کنید یا خروجی اکسل بگیرید.")
                              .arg(table.rowCount()))
                .toStdString());
}

void paintTable(const TableContent& table, const QString& footer, QPrinter& printer) {
    TablePainter(table, footer, printer).paint();
}

void writePdf(const TableContent& table, const QString& footer, const QString& path) {
    checkPrintable(table);
    const auto fail = [&] {
        throw OutputError(QStringLiteral("پرونده‌ی «%1» نوشته نشد.").arg(path).toStdString());
    };
    QTemporaryDir folder(QFileInfo(path).absolutePath() + QStringLiteral("/.pages-XXXXXX"));
    if (!folder.isValid()) fail();
    const QString made = folder.filePath(QStringLiteral("table.pdf"));
    {
        QPrinter printer(QPrinter::HighResolution);
        printer.setOutputFormat(QPrinter::PdfFormat);
        printer.setOutputFileName(made);
        printer.setDocName(table.title());
        printer.setPageSize(QPageSize(QPageSize::A4));
        paintTable(table, footer, printer);
    }
    if (QFile::exists(path) && !QFile::remove(path)) fail();
    if (!QFile::rename(made, path)) fail();
}

}  // namespace basalt::host
