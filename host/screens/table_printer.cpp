#include "host/screens/table_printer.h"

#include <algorithm>
#include <utility>

#include "host/screens/number_room.h"
#include "host/screens/persian_digits.h"
#include "host/screens/theme.h"
#include "host/screens/wrapped_text.h"
#include "host/services/output_error.h"

namespace basalt::host {
namespace {

constexpr int kMostRows = 100'000;
constexpr std::size_t kMostHeadRows = 3;
constexpr int kMostSubtitleLines = 4;
constexpr int kMostTitleLines = 4;
constexpr qreal kTitleLine = 1.5;  // of the font's height
constexpr qreal kHeadLine = 1.3;
constexpr qreal kTitleFont = 14;
constexpr qreal kTitleSpacing = 1.25;  // of the lines of a column's title, with the room around them
constexpr qreal kEdge = 1e-3;          // what adding up heights may lose
// Sides of the paper, whatever the direction of the text.
constexpr auto kRight = Qt::AlignRight | Qt::AlignAbsolute;
constexpr auto kLeft = Qt::AlignLeft | Qt::AlignAbsolute;

}  // namespace

TableDocument::TableDocument(const TableContent& table, QString footer, QString company)
    : table_(table),
      footer_(std::move(footer)),
      company_(std::move(company)),
      lines_(table.headerLines()),
      columns_(table) {
    for (QString& line : lines_)
        line = screenText(line);
}

int TableDocument::layOut(const QPageLayout& paper) {
    page_ = paper.paintRectPixels(kPageDpi);
    page_.moveTo(0, 0);
    columns_.fit(page_.width());
    titleFont_ = pageFont(kTitleFont, QFont::Bold);
    title_ = wrappedLines(screenText(table_.title()), titleFont_, page_.width(), kMostTitleLines);
    const QFontMetricsF metrics(columns_.font());
    subtitle_.clear();
    if (const QString subtitle = screenText(table_.subtitle()); !subtitle.isEmpty())
        subtitle_ = wrappedLines(subtitle, columns_.font(), page_.width(), kMostSubtitleLines);
    head_ = headRows(lines_, metrics, page_.width());
    rowHeight_ = metrics.height() * 1.35;
    lineHeight_ = metrics.lineSpacing();
    footerHeight_ = metrics.height() * 1.8;
    columnTitleHeight_ = columnTitleHeight();
    divideRows();
    pages_ = static_cast<int>(firstRows_.size() * columns_.sheets().size());
    return pages_;
}

void TableDocument::paintPage(QPainter& painter, int page) const {
    painter.setLayoutDirection(Qt::RightToLeft);
    const auto sheetCount = static_cast<int>(columns_.sheets().size());
    const PrintSheet& sheet = columns_.sheets()[static_cast<std::size_t>(page % sheetCount)];
    const int band = page / sheetCount;
    qreal y = 0;
    if (band == 0) y = paintHead(painter);
    y = paintTitles(painter, sheet, y);
    painter.setFont(columns_.font());
    const auto at = static_cast<std::size_t>(band);
    const int first = firstRows_[at];
    const int end = at + 1 < firstRows_.size() ? firstRows_[at + 1] : table_.rowCount();
    std::vector<QRectF> places;
    for (int row = first; row < end; ++row) {
        places.emplace_back(0, y, page_.width(), heightOf(row));
        y = places.back().bottom();
    }
    // All stripes come before the lines, or each would cover half of the line above it.
    for (int row = first; row < end; ++row)
        if (row % 2 != 0) painter.fillRect(places[static_cast<std::size_t>(row - first)], themeColors().alternate);
    for (int row = first; row < end; ++row)
        paintRow(painter, sheet, row, places[static_cast<std::size_t>(row - first)]);
    paintFooter(painter, page);
}

QPageLayout TableDocument::suitablePaper() {
    QPageLayout paper = pageLayout();
    layOut(paper);
    if (!columns_.roomy()) paper.setOrientation(QPageLayout::Landscape);
    return paper;
}

// A band of pages ends where the next row has no room; a row that is higher than a page is cut.
void TableDocument::divideRows() {
    cellLines_ = std::make_unique<CellLines>(columns_.font());
    mostLines_ = std::max(1, 1 + static_cast<int>((roomForRows(0) - rowHeight_) / lineHeight_));
    firstRows_ = {0};
    qreal room = roomForRows(0);
    for (int row = 0; row < table_.rowCount(); ++row) {
        const qreal height = heightOf(row);
        if (height > room + kEdge && row > firstRows_.back()) {
            firstRows_.push_back(row);
            room = roomForRows(1);
        }
        room -= height;
    }
}

int TableDocument::linesOf(int row) const {
    int lines = 1;
    for (const PrintSheet& sheet : columns_.sheets()) {
        for (std::size_t i = 0; i < sheet.columns.size() && lines < mostLines_; ++i) {
            const std::size_t column = sheet.columns[i];
            if (isNumber(table_.columns()[column].type)) continue;
            const QString text = table_.shown(row, static_cast<int>(column));
            lines = std::max(lines, cellLines_->count(text, sheet.widths[i] - 2 * columns_.padding()));
        }
    }
    return std::min(lines, mostLines_);
}

qreal TableDocument::heightOf(int row) const {
    return rowHeight_ + (linesOf(row) - 1) * lineHeight_;
}

qreal TableDocument::headHeight(int page) const {
    if (page > 0) return 0;
    const qreal lines =
        static_cast<qreal>(subtitle_.size()) + static_cast<qreal>(head_.size()) + (company_.isEmpty() ? 0 : 1);
    return QFontMetricsF(titleFont_).height() * kTitleLine * static_cast<qreal>(title_.size()) +
           QFontMetricsF(columns_.font()).height() * kHeadLine * lines;
}

// As many lines as a quarter of the page holds.
QStringList TableDocument::titleLines(std::size_t column, qreal width) const {
    const qreal line = QFontMetricsF(columns_.titleFont()).lineSpacing() * kTitleSpacing;
    const int most = std::max(1, static_cast<int>(page_.height() / 4 / line));
    return wrappedLines(columns_.title(column), columns_.titleFont(), width - 2 * columns_.padding(), most);
}

qreal TableDocument::columnTitleHeight() const {
    const QFontMetricsF metrics(columns_.titleFont());
    qreal highest = rowHeight_;
    for (const PrintSheet& sheet : columns_.sheets()) {
        for (std::size_t i = 0; i < sheet.columns.size(); ++i) {
            const auto lines = static_cast<qreal>(titleLines(sheet.columns[i], sheet.widths[i]).size());
            highest = std::max(highest, lines * metrics.lineSpacing() * kTitleSpacing);
        }
    }
    return highest;
}

qreal TableDocument::roomForRows(int band) const {
    return page_.height() - headHeight(band) - columnTitleHeight_ - footerHeight_;
}

// The first column is the rightmost.
template <typename Paint>
void TableDocument::eachColumn(const PrintSheet& sheet, Paint paintColumn) const {
    qreal right = page_.width();
    for (std::size_t i = 0; i < sheet.columns.size(); ++i) {
        right -= sheet.widths[i];
        paintColumn(sheet.columns[i], right, sheet.widths[i]);
    }
}

qreal TableDocument::paintHead(QPainter& painter) const {
    qreal y = 0;
    const qreal line = QFontMetricsF(columns_.font()).height() * kHeadLine;
    const qreal titleHeight = QFontMetricsF(titleFont_).height() * kTitleLine;
    painter.setPen(themeColors().text);
    if (!company_.isEmpty()) {
        painter.setFont(columns_.font());
        painter.drawText(QRectF(0, y, page_.width(), line), Qt::AlignCenter,
                         QFontMetricsF(columns_.font()).elidedText(company_, Qt::ElideRight, page_.width()));
        y += line;
    }
    painter.setFont(titleFont_);
    for (const QString& text : title_) {
        painter.drawText(QRectF(0, y, page_.width(), titleHeight), Qt::AlignCenter, text);
        y += titleHeight;
    }
    painter.setFont(columns_.font());
    for (const QString& text : subtitle_) {
        painter.drawText(QRectF(0, y, page_.width(), line), Qt::AlignCenter, text);
        y += line;
    }
    for (const QString& text : head_) {
        painter.drawText(QRectF(0, y, page_.width(), line), kRight | Qt::AlignVCenter, text);
        y += line;
    }
    return y;
}

qreal TableDocument::paintTitles(QPainter& painter, const PrintSheet& sheet, qreal y) const {
    const qreal height = columnTitleHeight_;
    painter.fillRect(QRectF(0, y, page_.width(), height), themeColors().accentSoft);
    painter.setPen(themeColors().text);
    painter.setFont(columns_.titleFont());
    const qreal spacing = QFontMetricsF(columns_.titleFont()).lineSpacing();
    eachColumn(sheet, [&](std::size_t column, qreal x, qreal width) {
        const QStringList lines = titleLines(column, width);
        QRectF line(x + columns_.padding(), y + (height - spacing * static_cast<qreal>(lines.size())) / 2,
                    width - 2 * columns_.padding(), spacing);
        for (const QString& words : lines) {
            painter.drawText(line, Qt::AlignCenter | Qt::TextSingleLine, words);
            line.translate(0, spacing);
        }
    });
    painter.setPen(QPen(themeColors().borderStrong, 0));
    painter.drawLine(QPointF(0, y + height), QPointF(page_.width(), y + height));
    return y + height;
}

void TableDocument::paintRow(QPainter& painter, const PrintSheet& sheet, int row, const QRectF& place) const {
    const QFontMetricsF metrics(columns_.font());
    painter.setPen(themeColors().text);
    eachColumn(sheet, [&](std::size_t column, qreal x, qreal width) {
        const qreal room = width - 2 * columns_.padding();
        const bool number = isNumber(table_.columns()[column].type);
        QString text = table_.shown(row, static_cast<int>(column));
        QStringList lines;
        if (number) {
            lines += fittingText(text, true, metrics, room + 1);
        } else {
            lines = cellLines_->broken(text, room, mostLines_);
        }
        // Isolated, so that a minus sign stays on the left of its number.
        if (lines.size() == 1 && (number || text.startsWith(QLatin1Char('-'))))
            lines[0] = QChar(0x2066) + lines[0] + QChar(0x2069);
        const qreal above = (place.height() - rowHeight_ - lineHeight_ * static_cast<qreal>(lines.size() - 1)) / 2;
        QRectF line(x + columns_.padding(), place.y() + above, room, rowHeight_);
        for (const QString& words : lines) {
            painter.drawText(line, kRight | Qt::AlignVCenter | Qt::TextSingleLine, words);
            line.translate(0, lineHeight_);
        }
    });
    painter.setPen(QPen(themeColors().border, 0));
    painter.drawLine(place.bottomLeft(), place.bottomRight());
}

void TableDocument::paintFooter(QPainter& painter, int page) const {
    const QRectF foot(0, page_.height() - footerHeight_, page_.width(), footerHeight_);
    painter.setFont(columns_.font());
    painter.setPen(themeColors().muted);
    const QString number = QStringLiteral("صفحهٔ %1 از %2").arg(page + 1).arg(pages_);
    painter.drawText(foot, kRight | Qt::AlignBottom, screenText(footer_));
    painter.drawText(foot, kLeft | Qt::AlignBottom, persianDigits(number));
}

std::vector<QString> headRows(const std::vector<QString>& lines, const QFontMetricsF& metrics, qreal width) {
    if (lines.size() <= kMostHeadRows) return lines;
    // With marks of direction: between two Latin words a dot alone would have them change places.
    const QString between = QStringLiteral("\u200F  ·  \u200F");
    std::vector<QString> rows;
    for (const QString& line : lines) {
        const QString longer = rows.empty() ? line : rows.back() + between + line;
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
