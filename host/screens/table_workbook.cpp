#include "host/screens/table_workbook.h"

#include <xlsxwriter.h>

#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>
#include <algorithm>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "host/services/output_error.h"

namespace basalt::host {
namespace {

constexpr int kSheetRows = 1'048'576;
constexpr int kExactDigits = 15;  // of a double
constexpr double kPixelsPerCharacter = 7.0;
constexpr std::size_t kLongestText = 32'767;  // of a cell

// The workbook, closed and its temporary file removed however writing ends.
class Workbook {
public:
    explicit Workbook(const QByteArray& path) {
        lxw_workbook_options options{};
        options.constant_memory = LXW_TRUE;
        book_ = workbook_new_opt(path.constData(), &options);
        if (!book_) throw OutputError("برای ساختن کارپوشه حافظه‌ی کافی نیست.");
    }
    ~Workbook() {
        if (book_) workbook_close(book_);
    }
    Workbook(const Workbook&) = delete;
    Workbook& operator=(const Workbook&) = delete;

    [[nodiscard]] lxw_workbook* get() const { return book_; }
    [[nodiscard]] lxw_error close() { return workbook_close(std::exchange(book_, nullptr)); }

private:
    lxw_workbook* book_ = nullptr;
};

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

std::string formatOf(const TableColumn& column) {
    if (!column.displayFormat.empty()) return column.displayFormat;
    if (column.type == FieldType::Date) return "yyyy-mm-dd";
    if (column.type == FieldType::DateTime) return "yyyy-mm-dd hh:mm:ss";
    return {};
}

class SheetWriter {
public:
    SheetWriter(lxw_workbook* book, const TableContent& table) : book_(book), table_(table) {
        title_ = workbook_add_format(book);
        format_set_bold(title_);
        format_set_bg_color(title_, 0xE3F0F4);
        format_set_bottom(title_, LXW_BORDER_THIN);
        format_set_align(title_, LXW_ALIGN_CENTER);
        // One format for all columns that look alike: of two that are equal the library would search for the one anew
        // at each cell of the other.
        std::map<std::string, lxw_format*> known = {{std::string(), nullptr}};
        for (const TableColumn& column : table.columns()) {
            const auto [found, isNew] = known.try_emplace(formatOf(column), nullptr);
            if (isNew) {
                found->second = workbook_add_format(book);
                format_set_num_format(found->second, found->first.c_str());
            }
            formats_.push_back(found->second);
        }
    }

    // Writes rows from `first` on; returns the row after the last one written.
    int writeSheet(int first) {
        lxw_worksheet* sheet = workbook_add_worksheet(book_, nullptr);
        worksheet_right_to_left(sheet);
        worksheet_freeze_panes(sheet, 1, 0);
        const auto& columns = table_.columns();
        for (std::size_t i = 0; i < columns.size(); ++i) {
            const auto column = static_cast<lxw_col_t>(i);
            worksheet_set_column(sheet, column, column, std::clamp(columns[i].width / kPixelsPerCharacter, 8.0, 80.0),
                                 nullptr);
            worksheet_write_string(sheet, 0, column, columns[i].title.toUtf8().constData(), title_);
        }
        const int last = std::min(table_.rowCount(), first + kSheetRows - 1);
        for (int row = first; row < last; ++row) {
            for (std::size_t i = 0; i < columns.size(); ++i)
                write(sheet, static_cast<lxw_row_t>(row - first + 1), static_cast<lxw_col_t>(i), row);
        }
        return last;
    }

private:
    void write(lxw_worksheet* sheet, lxw_row_t at, lxw_col_t column, int row) const {
        const Value value = table_.value(row, column);
        lxw_format* format = formats_[column];
        if (isNull(value)) return;
        if (const auto* decimal = std::get_if<Decimal>(&value)) {
            const Decimal number = decimal->digits() <= kExactDigits ? *decimal : shortened(*decimal);
            if (number.digits() <= kExactDigits) {
                worksheet_write_number(sheet, at, column, number.toDouble(), format);
            } else {
                worksheet_write_string(sheet, at, column, number.toString().c_str(), nullptr);
            }
        } else if (const auto* integer = std::get_if<std::int64_t>(&value);
                   integer && Decimal(*integer, 0).digits() <= kExactDigits) {
            worksheet_write_number(sheet, at, column, static_cast<double>(*integer), format);
        } else if (const auto* number = std::get_if<double>(&value)) {
            worksheet_write_number(sheet, at, column, *number, format);
        } else if (const auto* flag = std::get_if<bool>(&value)) {
            worksheet_write_boolean(sheet, at, column, *flag ? 1 : 0, format);
        } else if (const auto* moment = std::get_if<DateTime>(&value); moment && toCivil(*moment).year >= 1900) {
            const CivilDateTime civil = toCivil(*moment);
            lxw_datetime date{civil.year, civil.month,  civil.day,
                              civil.hour, civil.minute, static_cast<double>(civil.second)};
            worksheet_write_datetime(sheet, at, column, &date, format);
        } else if (const auto* words = std::get_if<std::string>(&value); words && words->size() <= kLongestText) {
            worksheet_write_string(sheet, at, column, words->c_str(), nullptr);
        } else {
            const QString text = QString::fromStdString(toText(value)).left(static_cast<qsizetype>(kLongestText));
            worksheet_write_string(sheet, at, column, text.toUtf8().constData(), nullptr);
        }
    }

    lxw_workbook* book_;
    const TableContent& table_;
    lxw_format* title_;
    std::vector<lxw_format*> formats_;
};

}  // namespace

void writeWorkbook(const TableContent& table, const QString& path) {
    const auto fail = [&](const QString& reason) {
        throw OutputError(
            QStringLiteral("پرونده‌ی «%1» نوشته نشد: %2").arg(path, reason).toStdString());
    };
    // Made beside its final place and moved there when it is whole.
    QTemporaryDir folder(QFileInfo(path).absolutePath() + QStringLiteral("/.workbook-XXXXXX"));
    if (!folder.isValid()) fail(folder.errorString());
    const QString made = folder.filePath(QStringLiteral("table.xlsx"));
    {
        Workbook book(QFile::encodeName(made));
        SheetWriter writer(book.get(), table);
        int next = 0;
        do {
            next = writer.writeSheet(next);
        } while (next < table.rowCount());
        if (const lxw_error error = book.close(); error != LXW_NO_ERROR) fail(QString::fromUtf8(lxw_strerror(error)));
    }
    if (QFile::exists(path) && !QFile::remove(path))
        fail(QStringLiteral("پرونده‌ی پیشین جای خود را نمی‌دهد."));
    if (!QFile::rename(made, path)) fail(QStringLiteral("جابه‌جایی به جای پایانی نشد."));
}

}  // namespace basalt::host
