// Errors of the data layer.
//
// Two unrelated types, because they call for different reactions:
//   DatabaseError  the database refused or failed; the user can be told, the work can be repeated
//   UsageError     the program used the data layer wrongly; a defect of the caller
//
//   try { query.Open(); }
//   catch (const DatabaseError& e) { show(e.what(), e.statement()); }
#pragma once

#include <memory>
#include <stdexcept>
#include <string>
#include <utility>

namespace basalt {

struct BatchResult;  // ado/session.h

// What kind of trouble a DatabaseError reports, so that callers need not know SQLSTATEs.
enum class ErrorCategory {
    Other,
    Syntax,      // the statement is not understood (102, 156, ...)
    NotFound,    // table, column, procedure or database object does not exist (207, 208, 2812)
    Constraint,  // a key, foreign key, check or NOT NULL rule refused the change (515, 547, 2601, 2627)
    Conversion,  // a value cannot be converted or is out of range (220, 241, 245, 8114, 8115, 8134)
    Truncation,  // a text or binary value is longer than its column (8152, 2628)
    Busy,        // another client holds a lock for too long; the same request may succeed later
    Conflict,    // the row was changed or deleted by another client since it was read
    Connection,  // the database cannot be reached, opened or has been lost
    Corrupt,     // the database file is damaged or is not a database
    DiskFull,    // no room to write; nothing of the request was kept
    Version,     // the database was made by a newer program
    Limit,       // the statement is too long, too deep or too large
};

class DatabaseError : public std::runtime_error {
public:
    // A NUL in the message, which may quote any text, is shown by its symbol, because what() would end there.
    DatabaseError(ErrorCategory category, std::string sqlState, int nativeCode, const std::string& message,
                  std::string statement = {})
        : std::runtime_error(withoutNuls(message)),
          category_(category),
          sqlState_(std::move(sqlState)),
          nativeCode_(nativeCode),
          statement_(std::move(statement)) {}

    [[nodiscard]] ErrorCategory category() const noexcept { return category_; }
    // Five characters, for instance "23000".
    [[nodiscard]] const std::string& sqlState() const noexcept { return sqlState_; }
    // The server's own error number (SQL Server numbering on both engines), 0 when there is none.
    [[nodiscard]] int nativeCode() const noexcept { return nativeCode_; }
    // The statement that failed, as it was sent; empty when the failure belongs to no statement.
    [[nodiscard]] const std::string& statement() const noexcept { return statement_; }
    // What the other statements of the batch brought, which a server delivers all the same; null when they brought
    // nothing.
    [[nodiscard]] const std::shared_ptr<const BatchResult>& results() const noexcept { return results_; }
    void setResults(std::shared_ptr<const BatchResult> results) noexcept { results_ = std::move(results); }

private:
    static std::string withoutNuls(std::string message) {
        for (std::size_t at = 0; (at = message.find('\0', at)) != std::string::npos;)
            message.replace(at, 1, "␀");
        return message;
    }

    ErrorCategory category_;
    std::string sqlState_;
    int nativeCode_;
    std::string statement_;
    std::shared_ptr<const BatchResult> results_;
};

// A text or binary value that its field cannot hold.
class ValueTooLong : public DatabaseError {
public:
    // Lengths in UTF-16 units, of binary values in bytes.
    ValueTooLong(std::string field, std::size_t length, std::size_t limit, const std::string& message)
        : DatabaseError(ErrorCategory::Truncation, "22001", 8152, message),
          field_(std::move(field)),
          length_(length),
          limit_(limit) {}

    [[nodiscard]] const std::string& field() const noexcept { return field_; }
    [[nodiscard]] std::size_t length() const noexcept { return length_; }
    [[nodiscard]] std::size_t limit() const noexcept { return limit_; }

private:
    std::string field_;
    std::size_t length_;
    std::size_t limit_;
};

class UsageError : public std::logic_error {
public:
    using std::logic_error::logic_error;
};

}  // namespace basalt
