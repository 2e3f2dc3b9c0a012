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
constexpr qreal kMostTextCharacters = 48;  // that its lines want of a page
constexpr qreal kEdge = 1e-3;              // what adding up heights may lose
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
    lineHeight_ = metrics.lineSpacing();
    footerHeight_ = metrics.height() * 1.8;
    columnTitleHeight_ = columnTitleHeight();
    divideRows();
    pages_ = static_cast<int>(firstRows_.size() * sheets_.size());
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

// Numbers are whole or nothing; texts have lines, and at the worst lines of a few letters.
TableDocument::Room TableDocument::columnRoom() const {
    const QFontMetricsF metrics(font_);
    const qreal least = metrics.averageCharWidth() * kLeastTextCharacters;
    const qreal most = metrics.averageCharWidth() * kMostTextCharacters;
    const std::vector<QStringList>& texts = longestTexts();
    CellLines words(font_);
    Room room;
    for (std::size_t i = 0; i < texts.size(); ++i) {
        const TableColumn& column = table_.columns()[i];
        qreal title = 0;
        for (const QString& word : titles_[i].split(QLatin1Char(' ')))
            title = std::max(title, widthForOneLine(word, columnFont_));
        const bool number = isNumber(column.type);
        const qreal whole = number ? roomFor(texts[i], metrics) : widest(texts[i], metrics);
        const qreal content = number ? whole : std::min(whole, most);
        qreal word = number ? whole : 0;
        if (!number)
            for (const QString& text : texts[i])
                word = std::max(word, std::min(words.widestWord(text), most));
        const auto add = [&](Widths& widths, qreal width) { widths.push_back(width + 2 * padding_); };
        const qreal shortTitle = std::min(title, least);
        const qreal longTitle = std::min(title, most);
        add(room.needed, std::max(number ? whole : std::min(content, least), shortTitle));
        add(room.unbroken, std::max(std::max(word, std::min(content, least)), shortTitle));
        add(room.wanted, std::max(content, longTitle));
        add(room.whole, std::max(whole, longTitle));
    }
    return room;
}

void TableDocument::fitColumns() {
    // Columns grow on the screen with its font, which is nothing to the paper.
    const qreal scale = kPageDpi / kScreenDpi / themeSize(1);
    sheets_.clear();
    std::vector<std::size_t> all(table_.columns().size());
    std::iota(all.begin(), all.end(), std::size_t{0});
    for (int size = kLargestFont; size >= kUsualSmallestFont; --size) {
        setFonts(size);
        const Room room = columnRoom();
        if (sum(room.wanted) > page_.width()) continue;
        roomy_ = size >= kEasyFont;
        addSheet(std::move(all), room.unbroken, room);
        return;
    }
    roomy_ = false;
    qreal onScreen = 0;
    for (const TableColumn& column : table_.columns())
        onScreen += column.width * scale;
    const qreal fit = onScreen > 0 ? page_.width() / onScreen : 1;
    const int largest =
        std::clamp(static_cast<int>(kLargestFont * std::min(1.0, fit)), kUsualSmallestFont, kLargestFont);
    for (const Widths Room::*step : {&Room::unbroken, &Room::needed}) {
        for (int size = largest; size >= kSmallestFont; --size) {
            setFonts(size);
            const Room room = columnRoom();
            if (sum(room.*step) > page_.width()) continue;
            addSheet(std::move(all), room.*step, room);
            return;
        }
    }
    setFonts(kSpreadFont);
    spreadColumns(columnRoom());
}

void TableDocument::spreadColumns(const Room& room) {
    const Widths& needed = room.unbroken;
    std::vector<std::size_t> columns;
    qreal used = 0;
    for (std::size_t i = 0; i < needed.size(); ++i) {
        if (!columns.empty() && used + needed[i] > page_.width()) {
            addSheet(std::exchange(columns, {}), needed, room);
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
    addSheet(std::move(columns), needed, room);
}

TableDocument::Widths TableDocument::shared(const std::vector<std::size_t>& columns, const Widths& least,
                                            const Widths& most) const {
    const auto upTo = [&](qreal limit) {
        Widths widths;
        widths.reserve(columns.size());
        for (const std::size_t column : columns)
            widths.push_back(std::max(least[column], std::min(most[column], limit)));
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

// What is there beyond the least goes to the columns that lack most, and once all are whole they share the page as they
// do the screen.
void TableDocument::addSheet(std::vector<std::size_t> columns, const Widths& least, const Room& room) {
    qreal onScreen = 0;
    for (const std::size_t column : columns)
        onScreen += table_.columns()[column].width;
    qreal wanted = 0;
    for (const std::size_t column : columns)
        wanted += room.wanted[column];
    const Widths floors =
        wanted <= page_.width() ? shared(columns, room.wanted, room.whole) : shared(columns, least, room.wanted);
    Sheet sheet{std::move(columns), {}};
    qreal spare = 0;  // beyond the floors
    for (std::size_t i = 0; i < floors.size(); ++i) {
        const qreal share =
            onScreen > 0 ? page_.width() * table_.columns()[sheet.columns[i]].width / onScreen : floors[i];
        sheet.widths.push_back(std::max(share, floors[i]));
        spare += sheet.widths.back() - floors[i];
    }
    const qreal used = sum(sheet.widths);
    const qreal excess = used - page_.width();
    for (std::size_t i = 0; i < sheet.widths.size() && excess > 0; ++i) {
        qreal& width = sheet.widths[i];
        // A single column may need more than there is.
        width = spare >= excess ? width - excess * (width - floors[i]) / spare : width * page_.width() / used;
    }
    sheets_.push_back(std::move(sheet));
}

// A band of pages ends where the next row has no room; a row that is higher than a page is cut.
void TableDocument::divideRows() {
    cellLines_ = std::make_unique<CellLines>(font_);
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
    for (const Sheet& sheet : sheets_) {
        for (std::size_t i = 0; i < sheet.columns.size() && lines < mostLines_; ++i) {
            const std::size_t column = sheet.columns[i];
            if (isNumber(table_.columns()[column].type)) continue;
            const QString text = table_.shown(row, static_cast<int>(column));
            lines = std::max(lines, cellLines_->count(text, sheet.widths[i] - 2 * padding_));
        }
    }
    return std::min(lines, mostLines_);
}

qreal TableDocument::heightOf(int row) const {
    return rowHeight_ + (linesOf(row) - 1) * lineHeight_;
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

qreal TableDocument::roomForRows(int band) const {
    return page_.height() - headHeight(band) - columnTitleHeight_ - footerHeight_;
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

void TableDocument::paintRow(QPainter& painter, const Sheet& sheet, int row, const QRectF& place) const {
    const QFontMetricsF metrics(font_);
    painter.setPen(themeColors().text);
    eachColumn(sheet, [&](std::size_t column, qreal x, qreal width) {
        const qreal room = width - 2 * padding_;
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
        QRectF line(x + padding_, place.y() + above, room, rowHeight_);
        for (const QString& words : lines) {
            painter.drawText(
                line, (number ? Qt::Alignment(Qt::AlignHCenter) : kRight) | Qt::AlignVCenter | Qt::TextSingleLine,
                words);
            line.translate(0, lineHeight_);
        }
    });
    painter.setPen(QPen(themeColors().border, 0));
    painter.drawLine(place.bottomLeft(), place.bottomRight());
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
