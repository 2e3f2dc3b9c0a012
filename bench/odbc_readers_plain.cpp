#include <sql.h>
#include <sqlext.h>

#include <stdexcept>
#include <vector>

#include "bench/odbc_readers.h"

namespace basalt::bench {

namespace {

constexpr std::size_t kBlock = 256;

struct PlainColumn {
    SQLSMALLINT type = SQL_C_WCHAR;
    std::size_t cell = 0;
    std::vector<char> block;
    std::vector<SQLLEN> lengths;
    // What is kept.
    std::vector<std::int64_t> integers;
    std::vector<double> reals;
    std::vector<SQL_TIMESTAMP_STRUCT> times;
    std::u16string characters;
    std::vector<std::size_t> ends;
    std::vector<bool> nulls;

    void describe(SQLSMALLINT sqlType, SQLULEN size) {
        switch (sqlType) {
            case SQL_BIT:
            case SQL_TINYINT:
            case SQL_SMALLINT:
            case SQL_INTEGER:
            case SQL_BIGINT:
                type = SQL_C_SBIGINT;
                cell = sizeof(std::int64_t);
                break;
            case SQL_DOUBLE:
            case SQL_FLOAT:
                type = SQL_C_DOUBLE;
                cell = sizeof(double);
                break;
            case SQL_TYPE_DATE:
            case SQL_TYPE_TIMESTAMP:
                type = SQL_C_TYPE_TIMESTAMP;
                cell = sizeof(SQL_TIMESTAMP_STRUCT);
                break;
            default:
                cell = (size + 1) * sizeof(char16_t);
        }
        block.resize(cell * kBlock);
        lengths.resize(kBlock);
    }

    void take(std::size_t row) {
        const char* data = block.data() + row * cell;
        const bool null = lengths[row] == SQL_NULL_DATA;
        nulls.push_back(null);
        switch (type) {
            case SQL_C_SBIGINT:
                integers.push_back(null ? 0 : *reinterpret_cast<const std::int64_t*>(data));
                break;
            case SQL_C_DOUBLE:
                reals.push_back(null ? 0 : *reinterpret_cast<const double*>(data));
                break;
            case SQL_C_TYPE_TIMESTAMP:
                times.push_back(null ? SQL_TIMESTAMP_STRUCT{} : *reinterpret_cast<const SQL_TIMESTAMP_STRUCT*>(data));
                break;
            default:
                if (!null) {
                    characters.append(reinterpret_cast<const char16_t*>(data),
                                      static_cast<std::size_t>(lengths[row]) / sizeof(char16_t));
                }
                ends.push_back(characters.size());
        }
    }
};

void require(SQLRETURN rc) {
    if (!SQL_SUCCEEDED(rc)) throw std::runtime_error("an ODBC call fails");
}

SQLPOINTER attribute(SQLULEN value) {
    return reinterpret_cast<SQLPOINTER>(value);
}

}  // namespace

struct PlainOdbcReader::Connection {
    SQLHENV environment = nullptr;
    SQLHDBC connection = nullptr;
};

PlainOdbcReader::PlainOdbcReader(const std::string& connectionString) : connection_(std::make_unique<Connection>()) {
    SQLAllocHandle(SQL_HANDLE_ENV, nullptr, &connection_->environment);
    SQLSetEnvAttr(connection_->environment, SQL_ATTR_ODBC_VERSION, attribute(SQL_OV_ODBC3), 0);
    SQLAllocHandle(SQL_HANDLE_DBC, connection_->environment, &connection_->connection);
    std::string text = connectionString;
    require(SQLDriverConnect(connection_->connection, nullptr, reinterpret_cast<SQLCHAR*>(text.data()), SQL_NTS,
                             nullptr, 0, nullptr, SQL_DRIVER_NOPROMPT));
}

PlainOdbcReader::~PlainOdbcReader() {
    SQLDisconnect(connection_->connection);
    SQLFreeHandle(SQL_HANDLE_DBC, connection_->connection);
    SQLFreeHandle(SQL_HANDLE_ENV, connection_->environment);
}

std::size_t PlainOdbcReader::readAll(const std::string& statement) {
    SQLHSTMT handle = nullptr;
    SQLAllocHandle(SQL_HANDLE_STMT, connection_->connection, &handle);
    std::string text = statement;
    require(SQLExecDirect(handle, reinterpret_cast<SQLCHAR*>(text.data()), SQL_NTS));
    SQLSMALLINT count = 0;
    require(SQLNumResultCols(handle, &count));
    std::vector<PlainColumn> columns(static_cast<std::size_t>(count));
    SQLULEN fetched = 0;
    SQLSetStmtAttr(handle, SQL_ATTR_ROW_ARRAY_SIZE, attribute(kBlock), 0);
    SQLSetStmtAttr(handle, SQL_ATTR_ROWS_FETCHED_PTR, &fetched, 0);
    for (SQLUSMALLINT i = 1; i <= count; ++i) {
        SQLSMALLINT length = 0, type = 0, digits = 0, nullable = 0;
        SQLULEN size = 0;
        require(SQLDescribeCol(handle, i, nullptr, 0, &length, &type, &size, &digits, &nullable));
        PlainColumn& column = columns[i - 1U];
        column.describe(type, size);
        require(SQLBindCol(handle, i, column.type, column.block.data(), static_cast<SQLLEN>(column.cell),
                           column.lengths.data()));
    }
    std::size_t rows = 0;
    while (SQL_SUCCEEDED(SQLFetch(handle))) {
        for (PlainColumn& column : columns) {
            for (std::size_t row = 0; row < fetched; ++row)
                column.take(row);
        }
        rows += fetched;
    }
    SQLFreeHandle(SQL_HANDLE_STMT, handle);
    return rows;
}

}  // namespace basalt::bench
