#include "host/screens/table_printer.h"

#include <algorithm>
#include <utility>

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
constexpr qreal kPointsAnInch = 72;
// Sides of the paper, whatever the direction of the text.
constexpr auto kRight = Qt::AlignRight | Qt::AlignAbsolute;
constexpr auto kLeft = Qt::AlignLeft | Qt::AlignAbsolute;

// In the unit of pages, so that the device has no say in where lines and pages end.
QFont pageFont(qreal points, QFont::Weight weight = QFont::Normal) {
    QFont font = themeFont(points, weight);
    font.setPixelSize(static_cast<int>(points * kPageDpi / kPointsAnInch));
    font.setHintingPreference(QFont::PreferNoHinting);
    return font;
}

}  // namespace

TableDocument::TableDocument(const TableContent& table, QString footer)
    : table_(table), footer_(std::move(footer)), lines_(table.headerLines()) {}

int TableDocument::layOut(const QPageLayout& paper) {
    page_ = paper.paintRectPixels(kPageDpi);
    page_.moveTo(0, 0);
    fitColumns();
    font_ = pageFont(fontSize_);
    titleFont_ = pageFont(14, QFont::Bold);
    columnFont_ = pageFont(fontSize_, QFont::Bold);
    const QFontMetricsF metrics(font_);
    head_ = headRows(lines_, metrics, page_.width());
    padding_ = metrics.averageCharWidth() * 0.6;
    rowHeight_ = metrics.height() * 1.35;
    footerHeight_ = metrics.height() * 1.8;
    columnTitleHeight_ = columnTitleHeight();
    const int rest = std::max(0, table_.rowCount() - rowsOn(0));
    pages_ = 1 + (rest + rowsOn(1) - 1) / rowsOn(1);
    return pages_;
}

void TableDocument::paintPage(QPainter& painter, int page) const {
    painter.setLayoutDirection(Qt::RightToLeft);
    qreal y = 0;
    if (page == 0) y = paintHead(painter);
    y = paintTitles(painter, y);
    painter.setFont(font_);
    const int first = firstRowOf(page);
    const int end = std::min(table_.rowCount(), first + rowsOn(page));
    for (int row = first; row < end; ++row) {
        if (row % 2 == 1) painter.fillRect(QRectF(0, y, page_.width(), rowHeight_), themeColors().alternate);
        paintRow(painter, row, y);
        y += rowHeight_;
    }
    paintFooter(painter, page);
}

void TableDocument::fitColumns() {
    constexpr qreal scale = kPageDpi / kScreenDpi;
    widths_.clear();
    qreal wanted = 0;
    for (const TableColumn& column : table_.columns())
        wanted += column.width * scale;
    const qreal fit = wanted > 0 ? page_.width() / wanted : 1;
    fontSize_ = std::clamp(kLargestFont * std::min(1.0, fit), kSmallestFont, kLargestFont);
    for (const TableColumn& column : table_.columns())
        widths_.push_back(column.width * scale * fit);
}

qreal TableDocument::headHeight(int page) const {
    if (page > 0) return 0;
    const qreal line = QFontMetricsF(font_).height() * 1.3;
    return QFontMetricsF(titleFont_).height() * 1.5 + line * static_cast<qreal>(head_.size());
}

qreal TableDocument::columnTitleHeight() const {
    const QFontMetricsF metrics(columnFont_);
    qreal highest = rowHeight_;
    for (std::size_t i = 0; i < widths_.size(); ++i) {
        const QRectF room(0, 0, widths_[i] - 2 * padding_, page_.height());
        const QRectF needed = metrics.boundingRect(room, Qt::AlignCenter | Qt::TextWordWrap, table_.columns()[i].title);
        highest = std::max(highest, needed.height() * 1.25);
    }
    return std::min(highest, page_.height() / 4);
}

int TableDocument::rowsOn(int page) const {
    const qreal room = page_.height() - headHeight(page) - columnTitleHeight_ - footerHeight_;
    return std::max(1, static_cast<int>(room / rowHeight_));
}

int TableDocument::firstRowOf(int page) const {
    return page == 0 ? 0 : rowsOn(0) + (page - 1) * rowsOn(1);
}

// The first column is the rightmost.
template <typename Paint>
void TableDocument::eachColumn(Paint paintColumn) const {
    qreal right = page_.width();
    for (std::size_t i = 0; i < widths_.size(); ++i) {
        right -= widths_[i];
        paintColumn(i, right, widths_[i]);
    }
}

qreal TableDocument::paintHead(QPainter& painter) const {
    qreal y = 0;
    const qreal titleHeight = QFontMetricsF(titleFont_).height() * 1.5;
    painter.setPen(themeColors().text);
    painter.setFont(titleFont_);
    painter.drawText(QRectF(0, y, page_.width(), titleHeight), Qt::AlignCenter,
                     QFontMetricsF(titleFont_).elidedText(screenText(table_.title()), Qt::ElideRight, page_.width()));
    y += titleHeight;
    painter.setFont(font_);
    const qreal line = QFontMetricsF(font_).height() * 1.3;
    for (const QString& text : head_) {
        painter.drawText(QRectF(0, y, page_.width(), line), kRight | Qt::AlignVCenter, screenText(text));
        y += line;
    }
    return y;
}

qreal TableDocument::paintTitles(QPainter& painter, qreal y) const {
    const qreal height = columnTitleHeight_;
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

void TableDocument::paintRow(QPainter& painter, int row, qreal y) const {
    const QFontMetricsF metrics(font_);
    painter.setPen(themeColors().text);
    eachColumn([&](std::size_t column, qreal x, qreal width) {
        const QRectF cell(x + padding_, y, width - 2 * padding_, rowHeight_);
        QString text = metrics.elidedText(table_.shown(row, static_cast<int>(column)), Qt::ElideRight, cell.width());
        const bool number = isNumber(table_.columns()[column].type);
        // Isolated, so that a minus sign stays on the left of its number.
        if (number) text = QChar(0x2066) + text + QChar(0x2069);
        painter.drawText(
            cell, (number ? Qt::Alignment(Qt::AlignHCenter) : kRight) | Qt::AlignVCenter | Qt::TextSingleLine, text);
    });
    painter.setPen(QPen(themeColors().border, 0));
    painter.drawLine(QPointF(0, y + rowHeight_), QPointF(page_.width(), y + rowHeight_));
}

void TableDocument::paintFooter(QPainter& painter, int page) const {
    const QRectF foot(0, page_.height() - footerHeight_, page_.width(), footerHeight_);
    painter.setFont(font_);
    painter.setPen(themeColors().muted);
    const QString number = QStringLiteral("صفحه‌ی %1 از %2").arg(page + 1).arg(pages_);
    painter.drawText(foot, kRight | Qt::AlignBottom, screenText(footer_));
    painter.drawText(foot, kLeft | Qt::AlignBottom, persianDigits(number));
}

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

}  // namespace basalt::host
