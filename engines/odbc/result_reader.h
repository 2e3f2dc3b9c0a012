// Reads the result set that a statement stands on, whole.
//
//   RowSet rows = ResultReader(results, traits, sql).read(messages);
//
// Bounded columns are bound in arrays of rows; what has no bound is read with SQLGetData, a row at a time. A value that
// does not fit its buffer, a decimal that does not fit its column and a failed fetch are DatabaseError: nothing is cut.
#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "ado/rowset.h"
#include "engines/odbc/driver_traits.h"
#include "engines/odbc/result_calls.h"

namespace basalt::odbc {

class ResultReader {
public:
    ResultReader(const ResultHandle& results, const DriverTraits& traits, std::string_view sql);
    ~ResultReader();
    ResultReader(const ResultReader&) = delete;
    ResultReader& operator=(const ResultReader&) = delete;

    // Warnings that come with the rows are appended to `messages`.
    [[nodiscard]] RowSet read(std::vector<std::string>& messages);

private:
    // How a column's cells come from the driver.
    enum class Form { Bit, Int, BigInt, Double, DecimalText, Timestamp, Wide, Bytes };

    struct Buffer {
        Form form = Form::Wide;
        bool bound = false;
        bool roundsToMilliseconds = false;
        SQLSMALLINT cType = SQL_C_WCHAR;
        std::size_t cell = 0;      // bytes of a cell
        std::size_t capacity = 0;  // bytes of the longest value; a terminator has room beyond
        std::unique_ptr<std::byte[]> cells;
        std::unique_ptr<SQLLEN[]> lengths;
    };

    void describe();
    [[nodiscard]] bool isKnownToBeEmpty() const;
    [[nodiscard]] ColumnInfo describeColumn(SQLUSMALLINT number) const;
    [[nodiscard]] std::string textAttribute(SQLUSMALLINT number, SQLUSMALLINT attribute) const;
    [[nodiscard]] static Buffer bufferFor(const ColumnInfo& column);
    void bind();
    [[nodiscard]] bool fetch(std::vector<std::string>& messages);
    void readUnbound(Column& column, Buffer& buffer, SQLUSMALLINT number);
    void readLong(Column& column, const Buffer& buffer, SQLUSMALLINT number);
    void append(Column& column, const Buffer& buffer, std::size_t row);
    void appendDecimal(Column& column, std::string_view text) const;
    [[noreturn]] void failCut(const ColumnInfo& column) const;
    [[noreturn]] void fail() const;
    void require(SQLRETURN rc) const;

    const ResultHandle& results_;
    const DriverTraits& traits_;
    std::string_view sql_;
    std::vector<ColumnInfo> columns_;
    std::vector<Buffer> buffers_;
    std::vector<SQLUSMALLINT> rowStatus_;
    SQLULEN rowsFetched_ = 0;
    bool atEnd_ = false;
    std::string text_;             // the cell being converted
    std::vector<std::byte> long_;  // a long value, gathered from its pieces
};

}  // namespace basalt::odbc
