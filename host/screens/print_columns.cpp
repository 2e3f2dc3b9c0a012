#include "host/screens/print_columns.h"

#include <QFontMetricsF>
#include <algorithm>
#include <cmath>
#include <numeric>
#include <utility>

#include "host/screens/cell_lines.h"
#include "host/screens/number_room.h"
#include "host/screens/persian_digits.h"
#include "host/screens/print_document.h"
#include "host/screens/theme.h"
#include "host/screens/wrapped_text.h"

namespace basalt::host {
namespace {

// Fonts of the table, in half points.
constexpr int kLargestFont = 19;
constexpr int kEasyFont = 15;  // read without effort
constexpr int kUsualSmallestFont = 12;
constexpr int kSmallestFont = 10;          // for the sake of whole numbers
constexpr int kSpreadFont = 14;            // of columns that go on on further pages anyway
constexpr qreal kLeastTextCharacters = 8;  // that a column of texts keeps
constexpr qreal kMostTextCharacters = 48;  // that its lines want of a page
constexpr std::size_t kMeasuredTexts = 64;
constexpr qreal kScreenDpi = 96;

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

PrintColumns::PrintColumns(const TableContent& table) : table_(table) {
    for (const TableColumn& column : table.columns())
        titles_.push_back(screenText(column.title));
}

void PrintColumns::setFonts(int halfPoints) {
    const qreal points = halfPoints / 2.0;
    font_ = pageFont(points);
    titleFont_ = pageFont(points, QFont::Bold);
    padding_ = QFontMetricsF(font_).averageCharWidth() * 0.6;
}

const std::vector<QStringList>& PrintColumns::longestTexts() const {
    if (!longestTexts_.empty()) return longestTexts_;
    for (const TableColumn& column : table_.columns()) {
        const auto index = static_cast<int>(longestTexts_.size());
        longestTexts_.push_back(isNumber(column.type) ? table_.numberShapes(index) : longestOf(table_, index));
    }
    return longestTexts_;
}

// Numbers are whole or nothing; texts have lines, and at the worst lines of a few letters.
PrintColumns::Room PrintColumns::roomOfColumns() const {
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
            title = std::max(title, widthForOneLine(word, titleFont_));
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

void PrintColumns::fit(qreal pageWidth) {
    pageWidth_ = pageWidth;
    // Columns grow on the screen with its font, which is nothing to the paper.
    const qreal scale = kPageDpi / kScreenDpi / themeSize(1);
    sheets_.clear();
    std::vector<std::size_t> all(table_.columns().size());
    std::iota(all.begin(), all.end(), std::size_t{0});
    for (int size = kLargestFont; size >= kUsualSmallestFont; --size) {
        setFonts(size);
        const Room room = roomOfColumns();
        if (sum(room.wanted) > pageWidth_) continue;
        roomy_ = size >= kEasyFont;
        addSheet(std::move(all), room.unbroken, room);
        return;
    }
    roomy_ = false;
    qreal onScreen = 0;
    for (const TableColumn& column : table_.columns())
        onScreen += column.width * scale;
    const qreal fit = onScreen > 0 ? pageWidth_ / onScreen : 1;
    const int largest =
        std::clamp(static_cast<int>(kLargestFont * std::min(1.0, fit)), kUsualSmallestFont, kLargestFont);
    for (const Widths Room::*step : {&Room::unbroken, &Room::needed}) {
        for (int size = largest; size >= kSmallestFont; --size) {
            setFonts(size);
            const Room room = roomOfColumns();
            if (sum(room.*step) > pageWidth_) continue;
            addSheet(std::move(all), room.*step, room);
            return;
        }
    }
    setFonts(kSpreadFont);
    spread(roomOfColumns());
}

void PrintColumns::spread(const Room& room) {
    const Widths& needed = room.unbroken;
    std::vector<std::size_t> columns;
    qreal used = 0;
    for (std::size_t i = 0; i < needed.size(); ++i) {
        if (!columns.empty() && used + needed[i] > pageWidth_) {
            addSheet(std::exchange(columns, {}), needed, room);
            used = 0;
            // The first column tells whose numbers these are, unless it leaves them no room.
            if (i > 0 && needed[0] + needed[i] <= pageWidth_) {
                columns.push_back(0);
                used = needed[0];
            }
        }
        columns.push_back(i);
        used += needed[i];
    }
    addSheet(std::move(columns), needed, room);
}

PrintColumns::Widths PrintColumns::shared(const std::vector<std::size_t>& columns, const Widths& least,
                                          const Widths& most) const {
    const auto upTo = [&](qreal limit) {
        Widths widths;
        widths.reserve(columns.size());
        for (const std::size_t column : columns)
            widths.push_back(std::max(least[column], std::min(most[column], limit)));
        return widths;
    };
    qreal low = 0;
    qreal high = pageWidth_;
    if (sum(upTo(high)) <= pageWidth_) return upTo(high);
    while (high - low > 0.5) {
        const qreal middle = (low + high) / 2;
        (sum(upTo(middle)) <= pageWidth_ ? low : high) = middle;
    }
    return upTo(low);
}

// What is there beyond the least goes to the columns that lack most, and once all are whole they share the page as they
// do the screen.
void PrintColumns::addSheet(std::vector<std::size_t> columns, const Widths& least, const Room& room) {
    qreal onScreen = 0;
    for (const std::size_t column : columns)
        onScreen += table_.columns()[column].width;
    qreal wanted = 0;
    for (const std::size_t column : columns)
        wanted += room.wanted[column];
    const Widths floors =
        wanted <= pageWidth_ ? shared(columns, room.wanted, room.whole) : shared(columns, least, room.wanted);
    PrintSheet sheet{std::move(columns), {}};
    qreal spare = 0;  // beyond the floors
    for (std::size_t i = 0; i < floors.size(); ++i) {
        const qreal share = onScreen > 0 ? pageWidth_ * table_.columns()[sheet.columns[i]].width / onScreen : floors[i];
        sheet.widths.push_back(std::max(share, floors[i]));
        spare += sheet.widths.back() - floors[i];
    }
    const qreal used = sum(sheet.widths);
    const qreal excess = used - pageWidth_;
    for (std::size_t i = 0; i < sheet.widths.size() && excess > 0; ++i) {
        qreal& width = sheet.widths[i];
        // A single column may need more than there is.
        width = spare >= excess ? width - excess * (width - floors[i]) / spare : width * pageWidth_ / used;
    }
    sheets_.push_back(std::move(sheet));
}

}  // namespace basalt::host
