#include "cli/result_writer.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <limits>
#include <string>
#include <vector>

#include "cli/text_table.h"
#include "package/datum.h"

namespace basalt::cli {

namespace {

std::string csvField(const std::string& text) {
    // An empty text in quotes is told from NULL, which is nothing at all.
    if (!text.empty() && text.find_first_of(",\"\r\n") == std::string::npos) return text;
    std::string quoted = "\"";
    for (const char c : text) {
        if (c == '"') quoted += '"';
        quoted += c;
    }
    return quoted + "\"";
}

bool isNumber(FieldType type) {
    return (isIntegral(type) && type != FieldType::Boolean) || type == FieldType::Float || type == FieldType::Decimal;
}

// A column without a name bears its number.
std::string titleOf(const RowSet& rows, std::size_t column) {
    const std::string& name = rows.column(column).info().name;
    return name.empty() ? "COLUMN" + std::to_string(column + 1) : name;
}

// A real comes in a double, which would show digits that the real does not have. The double of its own shortest text
// shows just that text.
Value shownValue(const Column& column, std::size_t row) {
    Value value = column.valueAt(row);
    auto* number = std::get_if<double>(&value);
    if (number == nullptr || column.info().typeName != "real") return value;
    std::array<char, 40> buffer{};
    const auto end = std::to_chars(buffer.data(), buffer.data() + buffer.size(), static_cast<float>(*number)).ptr;
    std::from_chars(buffer.data(), end, *number);
    return value;
}

// A float with all that it holds; an amount of the module's would be cut to nine decimals.
std::string jsonOf(const Value& value) {
    const double* number = std::get_if<double>(&value);
    if (!number) return Datum::from(value).toJson();
    std::array<char, 40> buffer{};
    const auto end = std::to_chars(buffer.data(), buffer.data() + buffer.size(), *number).ptr;
    return {buffer.data(), end};
}

}  // namespace

void ResultWriter::write(const BatchResult& batch) {
    std::size_t told = 0;
    const auto tell = [&](std::size_t results) {
        for (; told < batch.messages.size() && batch.placeOf(told) <= results; ++told)
            (format_ == ResultFormat::Table ? out_ : notes_) << batch.messages[told] << '\n';
    };
    for (std::size_t i = 0; i < batch.results.size(); ++i) {
        tell(i);
        const StatementResult& result = batch.results[i];
        if (result.rows) {
            if (format_ == ResultFormat::Table) writeTable(*result.rows);
            if (format_ == ResultFormat::Csv) writeCsv(*result.rows);
            if (format_ == ResultFormat::Json) writeJson(*result.rows);
        } else if (result.affectedRows >= 0) {
            if (format_ == ResultFormat::Table) {
                out_ << "(" << result.affectedRows << (result.affectedRows == 1 ? " row" : " rows") << " affected)\n";
            }
            if (format_ == ResultFormat::Json) {
                out_ << Datum::record({{"affectedRows", result.affectedRows}}).toJson() << '\n';
            }
        }
    }
    tell(std::numeric_limits<std::size_t>::max());
    out_.flush();
}

void ResultWriter::write(const DatabaseError& error) {
    if (format_ != ResultFormat::Json) return;
    const Datum description =
        Datum::record({{"type", "DatabaseError"}, {"number", error.nativeCode()}, {"message", error.what()}});
    out_ << Datum::record({{"error", description}}).toJson() << std::endl;
}

void ResultWriter::writeTable(const RowSet& rows) {
    std::vector<TextTable::Title> titles;
    for (std::size_t c = 0; c < rows.columnCount(); ++c)
        titles.push_back({titleOf(rows, c), isNumber(rows.column(c).info().type)});
    TextTable table(std::move(titles));
    for (std::size_t r = 0; r < rows.rowCount(); ++r) {
        std::vector<std::string> cells;
        for (std::size_t c = 0; c < rows.columnCount(); ++c) {
            const Column& column = rows.column(c);
            cells.push_back(column.isNull(r) ? "NULL" : toText(shownValue(column, r)));
        }
        table.add(std::move(cells));
    }
    if (terminalColumns_ > 0 && table.width() > terminalColumns_) {
        table.writeBlocks(out_);
    } else {
        table.write(out_, terminalColumns_ > 0);
    }
    out_ << "(" << rows.rowCount() << (rows.rowCount() == 1 ? " row)\n" : " rows)\n");
}

void ResultWriter::writeCsv(const RowSet& rows) {
    if (written_) out_ << "\r\n";
    written_ = true;
    const auto separator = [&](std::size_t column) { return column + 1 < rows.columnCount() ? "," : "\r\n"; };
    for (std::size_t c = 0; c < rows.columnCount(); ++c)
        out_ << csvField(titleOf(rows, c)) << separator(c);
    for (std::size_t r = 0; r < rows.rowCount(); ++r) {
        for (std::size_t c = 0; c < rows.columnCount(); ++c) {
            const Column& column = rows.column(c);
            if (!column.isNull(r)) out_ << csvField(toText(shownValue(column, r)));
            out_ << separator(c);
        }
    }
}

void ResultWriter::writeJson(const RowSet& rows) {
    // Programs that read a record keep one field of a name.
    std::vector<std::string> names;
    for (std::size_t c = 0; c < rows.columnCount(); ++c) {
        const std::string title = titleOf(rows, c);
        std::string name = title;
        for (int n = 2; std::find(names.begin(), names.end(), name) != names.end(); ++n)
            name = title + "_" + std::to_string(n);
        names.push_back(std::move(name));
    }
    std::vector<std::string> keys;
    keys.reserve(names.size());
    for (const std::string& name : names)
        keys.push_back(Datum(name).toJson() + ":");
    out_ << '[';
    for (std::size_t r = 0; r < rows.rowCount(); ++r) {
        out_ << (r == 0 ? "{" : ",{");
        for (std::size_t c = 0; c < rows.columnCount(); ++c)
            out_ << (c == 0 ? "" : ",") << keys[c] << jsonOf(shownValue(rows.column(c), r));
        out_ << '}';
    }
    out_ << "]\n";
}

}  // namespace basalt::cli
