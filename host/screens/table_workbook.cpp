#include "host/screens/table_workbook.h"

#include <xlsxwriter.h>

#include <QFile>
#include <QFileInfo>
#include <algorithm>
#include <cstdio>
#include <map>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "host/screens/display_format.h"
#include "host/screens/output_file.h"
#include "host/screens/workbook_text.h"
#include "host/services/output_error.h"

namespace basalt::host {
namespace {

constexpr int kRowsBetweenQuestions = 128;
constexpr int kLongestSheetName = 31;
constexpr int kExactDigits = 15;  // of a double
constexpr double kPixelsPerCharacter = 7.0;

// The workbook, closed and its temporary files removed however writing ends. They lie beside it: what cannot hold them
// cannot hold it either, and nobody else looks into them.
class Workbook {
public:
    explicit Workbook(const QString& path)
        : path_(QFile::encodeName(path)), folder_(QFile::encodeName(QFileInfo(path).path())) {
        lxw_workbook_options options{};
        options.constant_memory = LXW_TRUE;
        options.tmpdir = folder_.data();
        book_ = workbook_new_opt(path_.constData(), &options);
        if (!book_) throw OutputError("برای ساختن کارپوشه حافظهٔ کافی نیست.");
    }
    ~Workbook() {
        if (book_) workbook_close(book_);
    }
    Workbook(const Workbook&) = delete;
    Workbook& operator=(const Workbook&) = delete;

    [[nodiscard]] lxw_workbook* get() const { return book_; }
    [[nodiscard]] lxw_error close() { return workbook_close(std::exchange(book_, nullptr)); }

private:
    QByteArray path_;
    QByteArray folder_;
    lxw_workbook* book_ = nullptr;
};

// The rows wait in a temporary file, and the library does not notice when that is cut.
bool holdsAllRows(lxw_worksheet* sheet) {
    lxw_worksheet_write_single_row(sheet);  // the last one, which waits for another
    return std::fflush(sheet->file) == 0 && std::ferror(sheet->file) == 0;
}

// Without the zeros that a column's scale puts behind every number, so that they do not count as digits.
template <class Integer>
Decimal shortened(Integer coefficient, int scale) {
    for (; scale >= 4 && coefficient % 10'000 == 0; scale -= 4)
        coefficient /= 10'000;
    for (; scale > 0 && coefficient % 10 == 0; --scale)
        coefficient /= 10;
    return {coefficient, scale};
}

Decimal shortened(const Decimal& value) {
    // Prices fit into 64 bits, whose divisions cost a tenth.
    const auto narrow = static_cast<std::int64_t>(value.coefficient());
    return narrow == value.coefficient() ? shortened(narrow, value.scale())
                                         : shortened(value.coefficient(), value.scale());
}

// Digits after the point that the number has.
int decimalsOf(const Decimal& value) {
    return shortened(value).scale();
}

bool isQuote(char character) {
    return character == '"' || character == '\'';
}

bool isPlace(char character) {
    return character == '#' || character == '0';
}

// A display format as spreadsheets understand it, for numbers with that many digits after the point. A spreadsheet
// shows the point of "0.##" after whole numbers too, so the places after it are those of the number.
std::string spreadsheetFormat(const std::string& pattern, int decimals) {
    std::string format;
    char quote = 0;
    for (std::size_t i = 0; i < pattern.size(); ++i) {
        const char character = pattern[i];
        if (quote != 0 || isQuote(character)) {
            quote = quote == 0 ? character : quote == character ? '\0' : quote;
            format += isQuote(character) ? '"' : character;
        } else if (pattern.compare(i, 4, "#,#0") == 0) {
            format += "#,##0";
            i += 3;
        } else if (character == '.' && i + 1 < pattern.size() && isPlace(pattern[i + 1])) {
            int most = 0;
            int least = 0;
            for (; i + 1 < pattern.size() && isPlace(pattern[i + 1]); ++i) {
                ++most;
                if (pattern[i + 1] == '0') least = most;
            }
            const int places = std::clamp(decimals, least, most);
            if (places > 0) format += "." + std::string(static_cast<std::size_t>(places), '0');
        } else {
            format += character;
        }
    }
    return format;
}

// Of the n-th sheet: the title without the characters that names of sheets may not have, no longer than they may be.
std::string sheetName(const QString& title, int number) {
    QString name = title;
    for (QChar& character : name)
        if (QStringLiteral("[]:*?/\\'").contains(character)) character = QLatin1Char(' ');
    const QString suffix = number > 1 ? QStringLiteral(" (%1)").arg(number) : QString();
    name = name.simplified().left(kLongestSheetName - suffix.size()).trimmed();
    if (name.isEmpty()) name = QStringLiteral("فهرست");
    return (name + suffix).toStdString();
}

class SheetWriter {
public:
    SheetWriter(lxw_workbook* book, const TableContent& table, const OutputProgress& progress, int sheetRows)
        : book_(book), table_(table), progress_(progress), sheetRows_(sheetRows) {
        title_ = workbook_add_format(book);
        format_set_bold(title_);
        format_set_bg_color(title_, 0xE3F0F4);
        format_set_bottom(title_, LXW_BORDER_THIN);
        format_set_align(title_, LXW_ALIGN_CENTER);
        for (const TableColumn& column : table.columns())
            places_.push_back(column.displayFormat.empty() ? 0 : DisplayFormat(column.displayFormat).decimals());
        formats_.resize(table.columns().size());
    }

    // Writes rows from `first` on; returns the row after the last one written, or nothing when there was no room.
    std::optional<int> writeSheet(int first) {
        lxw_worksheet* sheet = workbook_add_worksheet(book_, sheetName(table_.title(), ++sheets_).c_str());
        worksheet_right_to_left(sheet);
        worksheet_freeze_panes(sheet, 1, 0);
        const auto& columns = table_.columns();
        for (std::size_t i = 0; i < columns.size(); ++i) {
            const auto column = static_cast<lxw_col_t>(i);
            worksheet_set_column(sheet, column, column, std::clamp(columns[i].width / kPixelsPerCharacter, 8.0, 80.0),
                                 nullptr);
            worksheet_write_string(sheet, 0, column, workbookText(columns[i].title.toStdString()).c_str(), title_);
        }
        const int last = std::min(table_.rowCount(), first + sheetRows_ - 1);
        for (int row = first; row < last; ++row) {
            if (row % kRowsBetweenQuestions == 0) askToGoOn(progress_, row, table_.rowCount());
            for (std::size_t i = 0; i < columns.size(); ++i)
                write(sheet, static_cast<lxw_row_t>(row - first + 1), static_cast<lxw_col_t>(i), row);
        }
        if (!holdsAllRows(sheet)) return std::nullopt;
        return last;
    }

private:
    // One format for all cells that look alike: of two that are equal the library would search for the one anew at each
    // cell of the other.
    lxw_format* shared(const std::string& text) {
        const auto [found, isNew] = known_.try_emplace(text, nullptr);
        if (isNew) {
            found->second = workbook_add_format(book_);
            format_set_num_format(found->second, text.c_str());
        }
        return found->second;
    }

    lxw_format* numberFormat(std::size_t column, int decimals) {
        const TableColumn& entry = table_.columns()[column];
        if (entry.displayFormat.empty()) return nullptr;
        std::vector<lxw_format*>& formats = formats_[column];
        if (formats.empty()) formats.resize(static_cast<std::size_t>(places_[column]) + 1);
        const int places = std::min(decimals, places_[column]);
        lxw_format*& format = formats[static_cast<std::size_t>(places)];
        if (!format) format = shared(spreadsheetFormat(entry.displayFormat, places));
        return format;
    }

    // A spreadsheet chooses by the sign before it rounds, and would show a "-0".
    lxw_format* roundedAwayFormat(std::size_t column) {
        const std::string& pattern = table_.columns()[column].displayFormat;
        const std::size_t zero = pattern.rfind(';');
        if (std::count(pattern.begin(), pattern.end(), ';') != 2) return numberFormat(column, 0);
        const std::string shown = spreadsheetFormat(pattern.substr(zero + 1), 0);
        return shared(shown + ";" + shown + ";" + shown);
    }

    lxw_format* numberFormat(std::size_t column, const Decimal& number) {
        if (number.coefficient() < 0 && number.scale() > places_[column] &&
            number.rescaled(places_[column]).coefficient() == 0)
            return roundedAwayFormat(column);
        if (places_[column] == 0) return numberFormat(column, 0);
        const Decimal rounded = number.scale() > places_[column] ? number.rescaled(places_[column]) : number;
        return numberFormat(column, decimalsOf(rounded));
    }

    lxw_format* numberFormat(std::size_t column, double number) {
        const auto rounded = Decimal::fromExtended(number, places_[column]);
        return numberFormat(column, rounded ? decimalsOf(*rounded) : 0);
    }

    lxw_format* dateFormat(std::size_t column) {
        const TableColumn& entry = table_.columns()[column];
        if (!entry.displayFormat.empty()) return shared(entry.displayFormat);
        return shared(entry.type == FieldType::Date ? "yyyy-mm-dd" : "yyyy-mm-dd hh:mm:ss");
    }

    void write(lxw_worksheet* sheet, lxw_row_t at, lxw_col_t column, int row) {
        const Value value = table_.value(row, column);
        if (isNull(value)) return;
        if (const auto* decimal = std::get_if<Decimal>(&value)) {
            const Decimal number = decimal->digits() <= kExactDigits ? *decimal : shortened(*decimal);
            if (number.digits() <= kExactDigits) {
                worksheet_write_number(sheet, at, column, number.toDouble(), numberFormat(column, number));
            } else {
                worksheet_write_string(sheet, at, column, number.toString().c_str(), nullptr);
            }
        } else if (const auto* integer = std::get_if<std::int64_t>(&value);
                   integer && Decimal(*integer, 0).digits() <= kExactDigits) {
            worksheet_write_number(sheet, at, column, static_cast<double>(*integer), numberFormat(column, 0));
        } else if (const auto* number = std::get_if<double>(&value)) {
            worksheet_write_number(sheet, at, column, *number, numberFormat(column, *number));
        } else if (const auto* flag = std::get_if<bool>(&value)) {
            worksheet_write_boolean(sheet, at, column, *flag ? 1 : 0, nullptr);
        } else if (const auto* moment = std::get_if<DateTime>(&value); moment && toCivil(*moment).year >= 1900) {
            const CivilDateTime civil = toCivil(*moment);
            lxw_datetime date{civil.year, civil.month,  civil.day,
                              civil.hour, civil.minute, static_cast<double>(civil.second)};
            worksheet_write_datetime(sheet, at, column, &date, dateFormat(column));
        } else {
            worksheet_write_string(sheet, at, column, workbookText(toText(value)).c_str(), nullptr);
        }
    }

    lxw_workbook* book_;
    const TableContent& table_;
    const OutputProgress& progress_;
    int sheetRows_;
    int sheets_ = 0;
    lxw_format* title_;
    std::vector<int> places_;                        // after the point, the most that a column shows
    std::vector<std::vector<lxw_format*>> formats_;  // of a column, by digits after the point
    std::map<std::string, lxw_format*> known_;
};

}  // namespace

void writeWorkbook(const TableContent& table, const QString& path, const OutputProgress& progress, int sheetRows) {
    writeOutputFile(path, [&](const QString& draft) {
        Workbook book(draft);
        SheetWriter writer(book.get(), table, progress, sheetRows);
        int next = 0;
        do {
            const std::optional<int> written = writer.writeSheet(next);
            if (!written) return false;
            next = *written;
        } while (next < table.rowCount());
        askToGoOn(progress, next, next);
        return book.close() == LXW_NO_ERROR;
    });
}

}  // namespace basalt::host
