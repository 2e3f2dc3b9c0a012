#include "engines/odbc/connection.h"

#include <utility>

#include "engines/odbc/diagnostics.h"
#include "engines/odbc/result_reader.h"
#include "engines/odbc/utf16.h"

namespace basalt::odbc {

namespace {

// Walks over everything that one execution brings: result sets, counts, messages, errors.
class ResultWalk {
public:
    ResultWalk(SQLHSTMT statement, const Connection& connection, std::string_view sql)
        : results_{statement}, connection_(connection), sql_(sql) {}

    BatchResult walk(SQLRETURN executed) {
        SQLRETURN rc = executed;
        while (true) {
            listen(rc);
            // An update of no rows is told as "no data", which is a result all the same.
            if (SQL_SUCCEEDED(rc) || rc == SQL_NO_DATA) take();
            if (rc == SQL_ERROR) {
                if (++failures_ == kMostFailures || lost()) break;
                if (executed == SQL_ERROR && failures_ == 1) results_ = connection_.behindFailure(results_);
                takeBehindError();
            }
            rc = results_.calls.moreResults(results_.statement);
            if (rc == SQL_NO_DATA || rc == SQL_INVALID_HANDLE) break;
        }
        if (rc == SQL_NO_DATA) listen(rc);
        if (error_) throw withResults(*error_, std::move(result_));
        return std::move(result_);
    }

private:
    void listen(SQLRETURN rc) {
        if (rc == SQL_SUCCESS) return;
        const std::vector<Diagnostic> records = diagnosticsOf(results_);
        bool failed = rc == SQL_ERROR;
        for (const Diagnostic& record : records) {
            if (record.isMessage()) result_.say(record.message);
            failed = failed || !record.informs();
        }
        if (failed && !error_) error_ = errorOf(records, sql_);
    }

    void take() {
        SQLSMALLINT columns = 0;
        if (!SQL_SUCCEEDED(results_.calls.columnCount(results_.statement, &columns))) return listen(SQL_ERROR);
        if (columns > 0) return takeRows();
        SQLLEN count = -1;
        if (SQL_SUCCEEDED(results_.calls.rowCount(results_.statement, &count)) && count >= 0) {
            result_.results.push_back({.rows = std::nullopt, .affectedRows = count});
        }
    }

    // FreeTDS tells an error of a procedure when it has come to the result that follows.
    void takeBehindError() {
        SQLSMALLINT columns = 0;
        if (SQL_SUCCEEDED(results_.calls.columnCount(results_.statement, &columns)) && columns > 0) takeRows();
    }

    void takeRows() {
        std::vector<std::string> said;
        try {
            result_.results.push_back({.rows = ResultReader(results_, connection_.traits(), sql_).read(said)});
        } catch (const DatabaseError& error) {
            // What follows is still to be read off the connection.
            if (!error_) error_ = error;
        }
        for (std::string& message : said)
            result_.say(std::move(message));
    }

    // Then nothing more comes, and a driver may go on saying so for ever.
    [[nodiscard]] bool lost() const { return error_->category() == ErrorCategory::Connection || connection_.isDead(); }

    // A batch may fail at each of its statements; beyond this it is the driver that is stuck.
    static constexpr int kMostFailures = 10'000;

    ResultHandle results_;
    const Connection& connection_;
    std::string_view sql_;
    BatchResult result_;
    std::optional<DatabaseError> error_;
    int failures_ = 0;
};

}  // namespace

Connection::Connection(const ConnectionString& text, const OdbcOptions& options) : environment_(SQL_NULL_HANDLE) {
    SQLSetEnvAttr(environment_.get(), SQL_ATTR_ODBC_VERSION, attribute(SQL_OV_ODBC3), 0);
    connection_ = ConnectionHandle(environment_.get());
    if (connection_.get() == SQL_NULL_HANDLE) {
        throw DatabaseError(ErrorCategory::Connection, "HY001", 0, "the ODBC driver manager cannot be used");
    }
    SQLSetConnectAttrW(connection_.get(), SQL_ATTR_LOGIN_TIMEOUT,
                       attribute(static_cast<SQLULEN>(options.loginTimeoutSeconds)), 0);
    const std::u16string wideText = toUtf16(text.text());
    const SQLRETURN rc =
        SQLDriverConnectW(connection_.get(), nullptr, wide(wideText), static_cast<SQLSMALLINT>(wideText.size()),
                          nullptr, 0, nullptr, SQL_DRIVER_NOPROMPT);
    if (!SQL_SUCCEEDED(rc)) {
        const DatabaseError error = errorOf(diagnosticsOf(SQL_HANDLE_DBC, connection_.get()), {});
        // Of some strings nothing may be shown: they name a driver and secrets.
        const std::string place = text.publicParts().empty() ? "the server" : text.publicParts();
        throw DatabaseError(ErrorCategory::Connection, error.sqlState(), error.nativeCode(),
                            text.withoutSecrets("cannot connect to " + place + ": " + error.what()));
    }
    traits_ = DriverTraits::of(connection_.get());
}

Connection::~Connection() {
    // Answers with an error when the connection is lost or was never made, which is as well.
    SQLDisconnect(connection_.get());
}

BatchResult Connection::execute(std::string_view sql, Parameters& parameters, std::optional<int> timeLimit) {
    const StatementHandle statement(connection_.get());
    if (statement.get() == SQL_NULL_HANDLE) {
        throw errorOf(diagnosticsOf(SQL_HANDLE_DBC, connection_.get()), sql);
    }
    if (timeLimit) {
        SQLSetStmtAttrW(statement.get(), SQL_ATTR_QUERY_TIMEOUT, attribute(static_cast<SQLULEN>(*timeLimit)), 0);
    }
    parameters.bind(statement.get(), sql);
    const std::u16string text = toUtf16(sql);
    const SQLRETURN rc = SQLExecDirectW(statement.get(), wide(text), static_cast<SQLINTEGER>(text.size()));
    return ResultWalk(statement.get(), *this, sql).walk(rc);
}

ResultHandle Connection::behindFailure(const ResultHandle& results) const {
    if (!traits_.callsBehindFailure) return results;
    // The manager reads its own handle from where it writes the driver's.
    SQLHSTMT handle = results.statement;
    const SQLRETURN rc = SQLGetInfo(connection_.get(), SQL_DRIVER_HSTMT, &handle, sizeof(handle), nullptr);
    if (!SQL_SUCCEEDED(rc) || handle == results.statement) return results;
    return {handle, *traits_.callsBehindFailure};
}

bool Connection::isDead() const {
    SQLUINTEGER dead = SQL_CD_FALSE;
    const SQLRETURN rc = SQLGetConnectAttrW(connection_.get(), SQL_ATTR_CONNECTION_DEAD, &dead, sizeof(dead), nullptr);
    return SQL_SUCCEEDED(rc) && dead == SQL_CD_TRUE;
}

}  // namespace basalt::odbc
