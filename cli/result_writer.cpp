#include "cli/result_writer.h"

#include <algorithm>
#include <string>
#include <vector>

#include "engines/embedded/lexer/error_context.h"
#include "package/datum.h"

namespace basalt::cli {

namespace {

// U+200E, a left-to-right mark: between two right-to-left cells it keeps a terminal from swapping them.
constexpr const char* leftToRight = "\u200E";

std::string csvField(const std::string& text) {
    if (text.find_first_of(",\"\r\n") == std::string::npos) return text;
    std::string quoted = "\"";
    for (const char c : text) {
        if (c == '"') quoted += '"';
        quoted += c;
    }
    return quoted + "\"";
}

// One line, whatever the text holds.
std::string oneLine(std::string text) {
    for (char& c : text) {
        if (static_cast<unsigned char>(c) < 0x20) c = ' ';
    }
    return text;
}

bool isNumber(FieldType type) {
    return (isIntegral(type) && type != FieldType::Boolean) || type == FieldType::Float || type == FieldType::Decimal;
}

// A column without a name bears its number.
std::string titleOf(const RowSet& rows, std::size_t column) {
    const std::string& name = rows.column(column).info().name;
    return name.empty() ? "COLUMN" + std::to_string(column + 1) : name;
}

}  // namespace

void ResultWriter::write(const BatchResult& batch) {
    if (format_ == ResultFormat::Table) {
        for (const std::string& message : batch.messages)
            out_ << message << '\n';
    }
    for (const StatementResult& result : batch.results) {
        if (result.rows) {
            if (format_ == ResultFormat::Table) writeTable(*result.rows);
            if (format_ == ResultFormat::Csv) writeCsv(*result.rows);
            if (format_ == ResultFormat::Json) writeJson(*result.rows);
        } else if (result.affectedRows >= 0) {
            if (format_ == ResultFormat::Table) out_ << "(" << result.affectedRows << " rows affected)\n";
            if (format_ == ResultFormat::Json) {
                out_ << Datum::record({{"affectedRows", result.affectedRows}}).toJson() << '\n';
            }
        }
    }
    out_.flush();
}

void ResultWriter::writeTable(const RowSet& rows) {
    const std::size_t columns = rows.columnCount();
    std::vector<std::vector<std::string>> lines(1);
    for (std::size_t c = 0; c < columns; ++c)
        lines[0].push_back(oneLine(titleOf(rows, c)));
    for (std::size_t r = 0; r < rows.rowCount(); ++r) {
        std::vector<std::string>& line = lines.emplace_back();
        for (std::size_t c = 0; c < columns; ++c) {
            const Column& column = rows.column(c);
            line.push_back(column.isNull(r) ? "NULL" : oneLine(toText(column.valueAt(r))));
        }
    }
    std::vector<std::size_t> widths(columns);
    for (const auto& line : lines) {
        for (std::size_t c = 0; c < columns; ++c)
            widths[c] = std::max(widths[c], embedded::displayWidth(line[c]));
    }
    for (std::size_t l = 0; l < lines.size(); ++l) {
        for (std::size_t c = 0; c < columns; ++c) {
            const std::string padding(widths[c] - embedded::displayWidth(lines[l][c]), ' ');
            const bool right = isNumber(rows.column(c).info().type);
            if (c > 0) out_ << " | ";
            out_ << (right ? padding : "") << lines[l][c];
            if (terminal_) out_ << leftToRight;
            if (!right && c + 1 < columns) out_ << padding;
        }
        out_ << '\n';
        if (l > 0) continue;
        for (std::size_t c = 0; c < columns; ++c)
            out_ << (c > 0 ? "-+-" : "") << std::string(widths[c], '-');
        out_ << '\n';
    }
    out_ << "(" << rows.rowCount() << (rows.rowCount() == 1 ? " row)\n" : " rows)\n");
}

void ResultWriter::writeCsv(const RowSet& rows) {
    const auto separator = [&](std::size_t column) { return column + 1 < rows.columnCount() ? "," : "\r\n"; };
    for (std::size_t c = 0; c < rows.columnCount(); ++c)
        out_ << csvField(titleOf(rows, c)) << separator(c);
    for (std::size_t r = 0; r < rows.rowCount(); ++r) {
        for (std::size_t c = 0; c < rows.columnCount(); ++c) {
            out_ << csvField(toText(rows.column(c).valueAt(r))) << separator(c);
        }
    }
}

void ResultWriter::writeJson(const RowSet& rows) {
    Datum::List list;
    for (std::size_t r = 0; r < rows.rowCount(); ++r) {
        Datum::Fields record;
        for (std::size_t c = 0; c < rows.columnCount(); ++c) {
            record.emplace_back(titleOf(rows, c), Datum::from(rows.column(c).valueAt(r)));
        }
        list.push_back(Datum::record(std::move(record)));
    }
    out_ << Datum::list(std::move(list)).toJson() << '\n';
}

}  // namespace basalt::cli
