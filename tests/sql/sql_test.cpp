// Runs the cases of the *.test files beside this file.
#include <gmock/gmock.h>

#include "case_file.h"
#include "engines/embedded/embedded_session.h"

namespace basalt::test {
namespace {

std::string shown(const Column& column, std::size_t row) {
    if (column.isNull(row)) return "NULL";
    const std::string text = toText(column.valueAt(row));
    if (column.info().type == FieldType::Text) return "'" + text + "'";
    if (column.info().type == FieldType::Boolean) return text == "True" ? "1" : "0";
    return text;
}

std::vector<std::string> shownRows(const RowSet& rows) {
    std::vector<std::string> lines;
    for (std::size_t r = 0; r < rows.rowCount(); ++r) {
        std::string line;
        for (std::size_t c = 0; c < rows.columnCount(); ++c)
            line += (c == 0 ? "" : " | ") + shown(rows.column(c), r);
        lines.push_back(line);
    }
    return lines;
}

std::string typeOf(const ColumnInfo& info) {
    std::string name = info.typeName;
    if (info.typeName == "decimal") {
        name += "(" + std::to_string(info.precision) + "," + std::to_string(info.scale) + ")";
    } else if ((info.type == FieldType::Text && info.typeName != "uniqueidentifier") ||
               info.type == FieldType::Binary) {
        name += info.size == 0 ? "(max)" : "(" + std::to_string(info.size) + ")";
    }
    return name;
}

template <typename Text>
std::string joined(const RowSet& rows, Text text) {
    std::string line;
    for (std::size_t c = 0; c < rows.columnCount(); ++c)
        line += (c == 0 ? "" : ", ") + text(rows.column(c).info());
    return line;
}

const RowSet* lastRows(const BatchResult& result) {
    for (auto each = result.results.rbegin(); each != result.results.rend(); ++each) {
        if (each->rows) return &*each->rows;
    }
    return nullptr;
}

bool hasLine(const std::string& text, const std::string& line) {
    return ("\n" + text + "\n").find("\n" + line + "\n") != std::string::npos;
}

class SqlCases : public testing::TestWithParam<SqlCase> {};

TEST_P(SqlCases, behavesAsPinned) {
    const SqlCase& pinned = GetParam();
    SCOPED_TRACE(pinned.file + ": " + pinned.name);
    const auto session =
        embedded::EmbeddedSession::open(":memory:", {.clock = [] {
                                            return fromCivil({2024, 3, 20, 10, 30, 15, 123'000'000}).ticks;
                                        }});
    for (const CaseStep& step : pinned.steps) {
        SCOPED_TRACE(pinned.file + ":" + std::to_string(step.line) + "\n" + step.sql);
        try {
            const BatchResult result = session->run(step.sql);
            ASSERT_FALSE(step.error) << "no error";
            if (step.changed) {
                ASSERT_FALSE(result.results.empty());
                EXPECT_EQ(result.results.back().affectedRows, *step.changed);
            }
            const RowSet* rows = lastRows(result);
            if (step.rows || step.types || step.columns) {
                ASSERT_NE(rows, nullptr) << "no result set";
            }
            if (step.rows) {
                EXPECT_EQ(shownRows(*rows), *step.rows);
            }
            if (step.types) {
                EXPECT_EQ(joined(*rows, typeOf), *step.types);
            }
            if (step.columns) {
                EXPECT_EQ(joined(*rows, [](const ColumnInfo& info) { return info.name; }), *step.columns);
            }
        } catch (const DatabaseError& error) {
            ASSERT_TRUE(step.error) << error.nativeCode() << ": " << error.what();
            EXPECT_EQ(error.nativeCode(), *step.error) << error.what();
            if (step.message) {
                EXPECT_PRED2(hasLine, std::string(error.what()), *step.message);
            }
        }
    }
}

std::string testName(const testing::TestParamInfo<SqlCase>& info) {
    std::string name;
    for (const char c : info.param.file.substr(0, info.param.file.rfind('.')) + "_" + info.param.name) {
        const bool plain = (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9');
        if (plain) {
            name += c;
        } else if (!name.empty() && name.back() != '_') {
            name += '_';
        }
    }
    return name + "_" + std::to_string(info.index);
}

INSTANTIATE_TEST_SUITE_P(Files, SqlCases, testing::ValuesIn(readCases(BASALT_SOURCE_DIR "/tests/sql")), testName);

}  // namespace
}  // namespace basalt::test
