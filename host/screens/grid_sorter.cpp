#include "host/screens/grid_sorter.h"

#include <unicode/ucol.h>
#include <unicode/ustring.h>

#include <algorithm>
#include <cstring>
#include <memory>
#include <numeric>
#include <span>
#include <string>
#include <string_view>

namespace basalt::host {
namespace {

// Reads one field of all rows: straight from the stored columns where it can, through the data set for calculated
// fields.
class FieldReader {
public:
    FieldReader(const TDataSet& dataSet, int field)
        : dataSet_(dataSet),
          field_(field),
          column_(static_cast<std::size_t>(field) < dataSet.rowSet().columnCount() && dataSet.State() == dsBrowse
                      ? &dataSet.rowSet().column(static_cast<std::size_t>(field))
                      : nullptr) {}

    [[nodiscard]] bool isNull(std::uint32_t row) const {
        return column_ ? column_->isNull(dataSet_.rowOf(row)) : basalt::isNull(dataSet_.valueAt(row, field_));
    }
    [[nodiscard]] std::int64_t integer(std::uint32_t row) const {
        return column_ ? column_->intAt(dataSet_.rowOf(row)) : toInt64(dataSet_.valueAt(row, field_));
    }
    [[nodiscard]] double real(std::uint32_t row) const {
        return column_ ? column_->doubleAt(dataSet_.rowOf(row))
                       : static_cast<double>(toExtended(dataSet_.valueAt(row, field_)));
    }
    [[nodiscard]] Int128 coefficient(std::uint32_t row) const {
        if (column_) return column_->coefficientAt(dataSet_.rowOf(row));
        return toDecimal(dataSet_.valueAt(row, field_)).rescaled(dataSet_.fieldInfo(field_).scale).coefficient();
    }
    [[nodiscard]] std::int64_t ticks(std::uint32_t row) const {
        if (column_) return column_->dateTimeAt(dataSet_.rowOf(row)).ticks;
        const Value value = dataSet_.valueAt(row, field_);
        const auto* moment = std::get_if<DateTime>(&value);
        return moment ? moment->ticks : 0;
    }
    // Valid until the next call.
    [[nodiscard]] std::string_view text(std::uint32_t row) {
        if (column_ && column_->info().type == FieldType::Text) return column_->textAt(dataSet_.rowOf(row));
        held_ = dataSet_.textAt(row, field_);
        return held_;
    }

private:
    const TDataSet& dataSet_;
    int field_;
    const Column* column_;
    std::string held_;
};

template <typename Less>
void sortRows(std::vector<std::uint32_t>& rows, bool descending, Less less) {
    if (descending) {
        std::stable_sort(rows.begin(), rows.end(), [&](std::uint32_t a, std::uint32_t b) { return less(b, a); });
    } else {
        std::stable_sort(rows.begin(), rows.end(), less);
    }
}

template <typename Read>
void sortByValue(std::vector<std::uint32_t>& rows, bool descending, std::uint32_t rowCount, Read read) {
    using Key = decltype(read(0U));
    std::vector<Key> keys(rowCount);
    for (const std::uint32_t row : rows)
        keys[row] = read(row);
    sortRows(rows, descending, [&](std::uint32_t a, std::uint32_t b) { return keys[a] < keys[b]; });
}

struct CollatorCloser {
    void operator()(UCollator* collator) const { ucol_close(collator); }
};
using Collator = std::unique_ptr<UCollator, CollatorCloser>;

Collator persianCollator() {
    UErrorCode status = U_ZERO_ERROR;
    Collator collator(ucol_open("fa", &status));
    if (U_FAILURE(status)) return nullptr;
    ucol_setAttribute(collator.get(), UCOL_NUMERIC_COLLATION, UCOL_ON, &status);
    return U_FAILURE(status) ? nullptr : std::move(collator);
}

// Collation keys side by side in one piece of memory: comparing them is comparing bytes.
class CollationKeys {
public:
    explicit CollationKeys(std::size_t rows) : places_(rows) {}

    void add(std::uint32_t row, std::string_view text) {
        const std::string_view key = keyOf(text);
        places_[row] = {bytes_.size(), key.size()};
        bytes_.append(key);
    }
    [[nodiscard]] bool less(std::uint32_t a, std::uint32_t b) const { return at(a) < at(b); }

private:
    [[nodiscard]] std::string_view at(std::uint32_t row) const {
        return std::string_view(bytes_).substr(places_[row].first, places_[row].second);
    }

    std::string_view keyOf(std::string_view text) {
        if (!collator_) return text;
        UErrorCode status = U_ZERO_ERROR;
        int32_t length = 0;
        wide_.resize(text.size() + 1);
        u_strFromUTF8Lenient(wide_.data(), static_cast<int32_t>(wide_.size()), &length, text.data(),
                             static_cast<int32_t>(text.size()), &status);
        if (U_FAILURE(status)) return text;
        for (char16_t& character : std::span(wide_.data(), static_cast<std::size_t>(length))) {
            if (character == u'\u064A' || character == u'\u0649') character = u'\u06CC';
            if (character == u'\u0643') character = u'\u06A9';
        }
        const int32_t wanted =
            ucol_getSortKey(collator_.get(), wide_.data(), length, key_.data(), static_cast<int32_t>(key_.size()));
        if (static_cast<std::size_t>(wanted) > key_.size()) {
            key_.resize(static_cast<std::size_t>(wanted));
            ucol_getSortKey(collator_.get(), wide_.data(), length, key_.data(), wanted);
        }
        // Without the zero at the end of every key.
        return {reinterpret_cast<const char*>(key_.data()), static_cast<std::size_t>(std::max(wanted - 1, 0))};
    }

    Collator collator_ = persianCollator();
    std::vector<std::pair<std::size_t, std::size_t>> places_;
    std::string bytes_;
    std::vector<char16_t> wide_;
    std::vector<std::uint8_t> key_ = std::vector<std::uint8_t>(256);
};

void sortByText(std::vector<std::uint32_t>& rows, bool descending, FieldReader& reader, std::size_t rowCount) {
    CollationKeys keys(rowCount);
    for (const std::uint32_t row : rows)
        keys.add(row, reader.text(row));
    sortRows(rows, descending, [&](std::uint32_t a, std::uint32_t b) { return keys.less(a, b); });
}

}  // namespace

std::vector<std::uint32_t> sortedRows(const TDataSet& dataSet, int field, bool descending) {
    const auto rowCount = static_cast<std::uint32_t>(dataSet.RecordCount());
    std::vector<std::uint32_t> all(rowCount);
    std::iota(all.begin(), all.end(), 0U);
    FieldReader reader(dataSet, field);

    std::vector<std::uint32_t> nulls;
    std::vector<std::uint32_t> rows;
    rows.reserve(rowCount);
    for (const std::uint32_t row : all)
        (reader.isNull(row) ? nulls : rows).push_back(row);

    const FieldType type = dataSet.fieldInfo(field).type;
    if (isIntegral(type)) {
        sortByValue(rows, descending, rowCount, [&](std::uint32_t row) { return reader.integer(row); });
    } else if (type == FieldType::Float) {
        sortByValue(rows, descending, rowCount, [&](std::uint32_t row) { return reader.real(row); });
    } else if (type == FieldType::Decimal) {
        sortByValue(rows, descending, rowCount, [&](std::uint32_t row) { return reader.coefficient(row); });
    } else if (type == FieldType::Date || type == FieldType::DateTime) {
        sortByValue(rows, descending, rowCount, [&](std::uint32_t row) { return reader.ticks(row); });
    } else {
        sortByText(rows, descending, reader, rowCount);
    }
    if (descending) {
        rows.insert(rows.end(), nulls.begin(), nulls.end());
        return rows;
    }
    nulls.insert(nulls.end(), rows.begin(), rows.end());
    return nulls;
}

}  // namespace basalt::host
