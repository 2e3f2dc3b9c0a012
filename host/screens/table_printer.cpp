#include "host/screens/table_printer.h"

#include <algorithm>
#include <cmath>
#include <numeric>
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
constexpr int kMostTitleLines = 4;
constexpr qreal kTitleLine = 1.5;  // of the font's height
constexpr qreal kHeadLine = 1.3;
// Fonts of the table, in half points.
constexpr int kLargestFont = 19;
constexpr int kEasyFont = 15;  // read without effort
constexpr int kUsualSmallestFont = 12;
constexpr int kSmallestFont = 10;  // for the sake of whole numbers
constexpr int kSpreadFont = 14;    // of columns that go on on further pages anyway
constexpr qreal kTitleFont = 14;
constexpr qreal kTitleSpacing = 1.25;      // of the lines of a column's title, with the room around them
constexpr qreal kLeastTextCharacters = 8;  // that a column of texts keeps
constexpr qreal kMostTextCharacters = 48;  // that it may want of a page
constexpr std::size_t kMeasuredTexts = 64;
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

// The longest texts of a column, by their letters: measuring all of them takes as long as a second for a long list.
QStringList longestOf(const TableContent& table, int column) {
    const auto longer = [](const QString& one, const QString& other) { return one.size() > other.size(); };
    std::vector<QString> texts;
    for (int row = 0; row < table.rowCount(); ++row) {
        QString text = table.shown(row, column);
        if (texts.size() < kMeasuredTexts) {
            texts.push_back(std::move(text));
            std::push_heap(texts.begin(), texts.end(), longer);
        } else if (longer(text, texts.front())) {
            std::pop_heap(texts.begin(), texts.end(), longer);
            texts.back() = std::move(text);
            std::push_heap(texts.begin(), texts.end(), longer);
        }
    }
    return {texts.begin(), texts.end()};
}

qreal widest(const QStringList& texts, const QFontMetricsF& metrics) {
    qreal width = 0;
    for (const QString& text : texts)
        width = std::max(width, metrics.horizontalAdvance(text));
    return std::ceil(width);
}

qreal sum(const std::vector<qreal>& widths) {
    return std::accumulate(widths.begin(), widths.end(), qreal{0});
}

}  // namespace

TableDocument::TableDocument(const TableContent& table, QString footer, QString company)
    : table_(table), footer_(std::move(footer)), company_(std::move(company)), lines_(table.headerLines()) {
    for (QString& line : lines_)
        line = screenText(line);
    for (const TableColumn& column : table.columns())
        titles_.push_back(screenText(column.title));
}

int TableDocument::layOut(const QPageLayout& paper) {
    page_ = paper.paintRectPixels(kPageDpi);
    page_.moveTo(0, 0);
    fitColumns();
    titleFont_ = pageFont(kTitleFont, QFont::Bold);
    title_ = wrappedLines(screenText(table_.title()), titleFont_, page_.width(), kMostTitleLines);
    const QFontMetricsF metrics(font_);
    head_ = headRows(lines_, metrics, page_.width());
    rowHeight_ = metrics.height() * 1.35;
    footerHeight_ = metrics.height() * 1.8;
    columnTitleHeight_ = columnTitleHeight();
    const int rest = std::max(0, table_.rowCount() - rowsOn(0));
    pages_ = (1 + (rest + rowsOn(1) - 1) / rowsOn(1)) * static_cast<int>(sheets_.size());
    return pages_;
}

void TableDocument::paintPage(QPainter& painter, int page) const {
    painter.setLayoutDirection(Qt::RightToLeft);
    const auto sheetCount = static_cast<int>(sheets_.size());
    const Sheet& sheet = sheets_[static_cast<std::size_t>(page % sheetCount)];
    const int band = page / sheetCount;
    qreal y = 0;
    if (band == 0) y = paintHead(painter);
    y = paintTitles(painter, sheet, y);
    painter.setFont(font_);
    const int first = firstRowOf(band);
    const int end = std::min(table_.rowCount(), first + rowsOn(band));
    // All stripes come before the lines, or each would cover half of the line above it.
    for (int row = first + (first % 2 == 0 ? 1 : 0); row < end; row += 2)
        painter.fillRect(QRectF(0, y + (row - first) * rowHeight_, page_.width(), rowHeight_), themeColors().alternate);
    for (int row = first; row < end; ++row) {
        paintRow(painter, sheet, row, y);
        y += rowHeight_;
    }
    paintFooter(painter, page);
}

QPageLayout TableDocument::suitablePaper() {
    QPageLayout paper = pageLayout();
    layOut(paper);
    if (!roomy_) paper.setOrientation(QPageLayout::Landscape);
    return paper;
}

void TableDocument::setFonts(int halfPoints) {
    const qreal points = halfPoints / 2.0;
    font_ = pageFont(points);
    columnFont_ = pageFont(points, QFont::Bold);
    padding_ = QFontMetricsF(font_).averageCharWidth() * 0.6;
}

const std::vector<QStringList>& TableDocument::longestTexts() const {
    if (!longestTexts_.empty()) return longestTexts_;
    for (const TableColumn& column : table_.columns()) {
        const auto index = static_cast<int>(longestTexts_.size());
        longestTexts_.push_back(isNumber(column.type) ? table_.numberShapes(index) : longestOf(table_, index));
    }
    return longestTexts_;
}

// Numbers and their titles' longest words are whole or nothing; texts can do with a few letters.
TableDocument::Room TableDocument::columnRoom() const {
    const QFontMetricsF metrics(font_);
    const qreal least = metrics.averageCharWidth() * kLeastTextCharacters;
    const qreal most = metrics.averageCharWidth() * kMostTextCharacters;
    const std::vector<QStringList>& texts = longestTexts();
    Room room;
    for (std::size_t i = 0; i < texts.size(); ++i) {
        const TableColumn& column = table_.columns()[i];
        qreal title = 0;
        for (const QString& word : titles_[i].split(QLatin1Char(' ')))
            title = std::max(title, widthForOneLine(word, columnFont_));
        const bool number = isNumber(column.type);
        const qreal content = number ? roomFor(texts[i], metrics) : std::min(widest(texts[i], metrics), most);
        room.needed.push_back(std::max(number ? content : std::min(content, least), std::min(title, least)) +
                              2 * padding_);
        room.wanted.push_back(std::max(content, std::min(title, most)) + 2 * padding_);
    }
    return room;
}

void TableDocument::fitColumns() {
    constexpr qreal scale = kPageDpi / kScreenDpi;
    sheets_.clear();
    std::vector<std::size_t> all(table_.columns().size());
    std::iota(all.begin(), all.end(), std::size_t{0});
    for (int size = kLargestFont; size >= kUsualSmallestFont; --size) {
        setFonts(size);
        const Room room = columnRoom();
        if (sum(room.wanted) > page_.width()) continue;
        roomy_ = size >= kEasyFont;
        addSheet(std::move(all), room);
        return;
    }
    roomy_ = false;
    qreal onScreen = 0;
    for (const TableColumn& column : table_.columns())
        onScreen += column.width * scale;
    const qreal fit = onScreen > 0 ? page_.width() / onScreen : 1;
    const int largest =
        std::clamp(static_cast<int>(kLargestFont * std::min(1.0, fit)), kUsualSmallestFont, kLargestFont);
    for (int size = largest; size >= kSmallestFont; --size) {
        setFonts(size);
        const Room room = columnRoom();
        if (sum(room.needed) > page_.width()) continue;
        addSheet(std::move(all), room);
        return;
    }
    setFonts(kSpreadFont);
    spreadColumns(columnRoom());
}

void TableDocument::spreadColumns(const Room& room) {
    const std::vector<qreal>& needed = room.needed;
    std::vector<std::size_t> columns;
    qreal used = 0;
    for (std::size_t i = 0; i < needed.size(); ++i) {
        if (!columns.empty() && used + needed[i] > page_.width()) {
            addSheet(std::exchange(columns, {}), room);
            used = 0;
            // The first column tells whose numbers these are, unless it leaves them no room.
            if (i > 0 && needed[0] + needed[i] <= page_.width()) {
                columns.push_back(0);
                used = needed[0];
            }
        }
        columns.push_back(i);
        used += needed[i];
    }
    addSheet(std::move(columns), room);
}

// What the columns of a sheet get at least: all that they want where the page has it, and otherwise a part of what is
// there, so that the longest texts are cut first.
std::vector<qreal> TableDocument::floors(const std::vector<std::size_t>& columns, const Room& room) const {
    const auto upTo = [&](qreal limit) {
        std::vector<qreal> widths;
        widths.reserve(columns.size());
        for (const std::size_t column : columns)
            widths.push_back(std::max(room.needed[column], std::min(room.wanted[column], limit)));
        return widths;
    };
    qreal low = 0;
    qreal high = page_.width();
    if (sum(upTo(high)) <= page_.width()) return upTo(high);
    while (high - low > 0.5) {
        const qreal middle = (low + high) / 2;
        (sum(upTo(middle)) <= page_.width() ? low : high) = middle;
    }
    return upTo(low);
}

// The columns share the page as they do the screen, as far as each has what it needs.
void TableDocument::addSheet(std::vector<std::size_t> columns, const Room& room) {
    qreal onScreen = 0;
    for (const std::size_t column : columns)
        onScreen += table_.columns()[column].width;
    const std::vector<qreal> least = floors(columns, room);
    Sheet sheet{std::move(columns), {}};
    qreal spare = 0;  // beyond the least
    for (std::size_t i = 0; i < least.size(); ++i) {
        const qreal share =
            onScreen > 0 ? page_.width() * table_.columns()[sheet.columns[i]].width / onScreen : least[i];
        sheet.widths.push_back(std::max(share, least[i]));
        spare += sheet.widths.back() - least[i];
    }
    const qreal used = sum(sheet.widths);
    const qreal excess = used - page_.width();
    for (std::size_t i = 0; i < sheet.widths.size() && excess > 0; ++i) {
        qreal& width = sheet.widths[i];
        // A single column may need more than there is.
        width = spare >= excess ? width - excess * (width - least[i]) / spare : width * page_.width() / used;
    }
    sheets_.push_back(std::move(sheet));
}

qreal TableDocument::headHeight(int page) const {
    if (page > 0) return 0;
    const qreal lines = static_cast<qreal>(head_.size()) + (company_.isEmpty() ? 0 : 1);
    return QFontMetricsF(titleFont_).height() * kTitleLine * static_cast<qreal>(title_.size()) +
           QFontMetricsF(font_).height() * kHeadLine * lines;
}

// As many lines as a quarter of the page holds.
QStringList TableDocument::titleLines(std::size_t column, qreal width) const {
    const qreal line = QFontMetricsF(columnFont_).lineSpacing() * kTitleSpacing;
    const int most = std::max(1, static_cast<int>(page_.height() / 4 / line));
    return wrappedLines(titles_[column], columnFont_, width - 2 * padding_, most);
}

qreal TableDocument::columnTitleHeight() const {
    const QFontMetricsF metrics(columnFont_);
    qreal highest = rowHeight_;
    for (const Sheet& sheet : sheets_) {
        for (std::size_t i = 0; i < sheet.columns.size(); ++i) {
            const auto lines = static_cast<qreal>(titleLines(sheet.columns[i], sheet.widths[i]).size());
            highest = std::max(highest, lines * metrics.lineSpacing() * kTitleSpacing);
        }
    }
    return highest;
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
void TableDocument::eachColumn(const Sheet& sheet, Paint paintColumn) const {
    qreal right = page_.width();
    for (std::size_t i = 0; i < sheet.columns.size(); ++i) {
        right -= sheet.widths[i];
        paintColumn(sheet.columns[i], right, sheet.widths[i]);
    }
}

qreal TableDocument::paintHead(QPainter& painter) const {
    qreal y = 0;
    const qreal line = QFontMetricsF(font_).height() * kHeadLine;
    const qreal titleHeight = QFontMetricsF(titleFont_).height() * kTitleLine;
    painter.setPen(themeColors().text);
    if (!company_.isEmpty()) {
        painter.setFont(font_);
        painter.drawText(QRectF(0, y, page_.width(), line), Qt::AlignCenter,
                         QFontMetricsF(font_).elidedText(company_, Qt::ElideRight, page_.width()));
        y += line;
    }
    painter.setFont(titleFont_);
    for (const QString& text : title_) {
        painter.drawText(QRectF(0, y, page_.width(), titleHeight), Qt::AlignCenter, text);
        y += titleHeight;
    }
    painter.setFont(font_);
    for (const QString& text : head_) {
        painter.drawText(QRectF(0, y, page_.width(), line), kRight | Qt::AlignVCenter, text);
        y += line;
    }
    return y;
}

qreal TableDocument::paintTitles(QPainter& painter, const Sheet& sheet, qreal y) const {
    const qreal height = columnTitleHeight_;
    painter.fillRect(QRectF(0, y, page_.width(), height), themeColors().accentSoft);
    painter.setPen(themeColors().text);
    painter.setFont(columnFont_);
    const qreal spacing = QFontMetricsF(columnFont_).lineSpacing();
    eachColumn(sheet, [&](std::size_t column, qreal x, qreal width) {
        const QStringList lines = titleLines(column, width);
        QRectF line(x + padding_, y + (height - spacing * static_cast<qreal>(lines.size())) / 2, width - 2 * padding_,
                    spacing);
        for (const QString& words : lines) {
            painter.drawText(line, Qt::AlignCenter | Qt::TextSingleLine, words);
            line.translate(0, spacing);
        }
    });
    painter.setPen(QPen(themeColors().borderStrong, 0));
    painter.drawLine(QPointF(0, y + height), QPointF(page_.width(), y + height));
    return y + height;
}

void TableDocument::paintRow(QPainter& painter, const Sheet& sheet, int row, qreal y) const {
    const QFontMetricsF metrics(font_);
    painter.setPen(themeColors().text);
    eachColumn(sheet, [&](std::size_t column, qreal x, qreal width) {
        const QRectF cell(x + padding_, y, width - 2 * padding_, rowHeight_);
        const bool number = isNumber(table_.columns()[column].type);
        QString text = fittingText(table_.shown(row, static_cast<int>(column)), number, metrics, cell.width() + 1);
        // Isolated, so that a minus sign stays on the left of its number.
        if (number || text.startsWith(QLatin1Char('-'))) text = QChar(0x2066) + text + QChar(0x2069);
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
    const QString number = QStringLiteral("صفحهٔ %1 از %2").arg(page + 1).arg(pages_);
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
