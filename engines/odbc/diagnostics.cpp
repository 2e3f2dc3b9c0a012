#include "engines/odbc/diagnostics.h"

#include <algorithm>
#include <array>
#include <utility>

#include "engines/odbc/driver_traits.h"
#include "engines/odbc/utf16.h"

namespace basalt::odbc {

namespace {

struct Numbered {
    int number;
    ErrorCategory category;
};

// The server's numbers whose SQLSTATE says too little: most errors of SQL Server are 42000.
constexpr std::array kNumbers = {
    Numbered{201, ErrorCategory::NotFound},      // a procedure expects a parameter that was not given
    Numbered{206, ErrorCategory::Conversion},    // types clash
    Numbered{207, ErrorCategory::NotFound},      // column
    Numbered{208, ErrorCategory::NotFound},      // table
    Numbered{220, ErrorCategory::Conversion},    // overflow
    Numbered{241, ErrorCategory::Conversion},    // text to date
    Numbered{242, ErrorCategory::Conversion},    // date out of range
    Numbered{245, ErrorCategory::Conversion},    // text to number
    Numbered{248, ErrorCategory::Conversion},    // overflow of an int
    Numbered{257, ErrorCategory::Conversion},    // no implicit conversion
    Numbered{515, ErrorCategory::Constraint},    // null into a column that wants a value
    Numbered{544, ErrorCategory::Constraint},    // explicit value for an identity column
    Numbered{547, ErrorCategory::Constraint},    // foreign key or check
    Numbered{911, ErrorCategory::NotFound},      // database
    Numbered{1101, ErrorCategory::DiskFull},     // no room in a file group
    Numbered{1105, ErrorCategory::DiskFull},     // the same
    Numbered{1204, ErrorCategory::Busy},         // no more locks
    Numbered{1205, ErrorCategory::Busy},         // deadlock victim
    Numbered{1222, ErrorCategory::Busy},         // lock timeout
    Numbered{1505, ErrorCategory::Constraint},   // duplicates under a new unique index
    Numbered{2601, ErrorCategory::Constraint},   // duplicate in a unique index
    Numbered{2627, ErrorCategory::Constraint},   // duplicate key
    Numbered{2628, ErrorCategory::Truncation},   // text too long, with its column
    Numbered{2812, ErrorCategory::NotFound},     // procedure
    Numbered{3701, ErrorCategory::NotFound},     // nothing to drop
    Numbered{4060, ErrorCategory::Connection},   // the database cannot be opened
    Numbered{4902, ErrorCategory::NotFound},     // nothing to alter
    Numbered{8114, ErrorCategory::Conversion},   // type to type
    Numbered{8115, ErrorCategory::Conversion},   // arithmetic overflow
    Numbered{8134, ErrorCategory::Conversion},   // division by zero
    Numbered{8152, ErrorCategory::Truncation},   // text too long
    Numbered{8169, ErrorCategory::Conversion},   // text to uniqueidentifier
    Numbered{8621, ErrorCategory::Limit},        // query too complex
    Numbered{8631, ErrorCategory::Limit},        // the same
    Numbered{823, ErrorCategory::Corrupt},       // damaged page on read
    Numbered{824, ErrorCategory::Corrupt},       // the same, by its checksum
    Numbered{9002, ErrorCategory::DiskFull},     // the transaction log is full
    Numbered{18456, ErrorCategory::Connection},  // login failed
};

struct State {
    std::string_view prefix;
    ErrorCategory category;
};

// In this order: the first prefix that fits.
constexpr std::array kStates = {
    State{"08", ErrorCategory::Connection},    State{"HYT01", ErrorCategory::Connection},
    State{"28", ErrorCategory::Connection},    State{"IM", ErrorCategory::Connection},
    State{"HYT00", ErrorCategory::Busy},       State{"S1T00", ErrorCategory::Busy},
    State{"40", ErrorCategory::Busy},          State{"23", ErrorCategory::Constraint},
    State{"22001", ErrorCategory::Truncation}, State{"22", ErrorCategory::Conversion},
    State{"42S02", ErrorCategory::NotFound},   State{"42S12", ErrorCategory::NotFound},
    State{"42S22", ErrorCategory::NotFound},   State{"42P01", ErrorCategory::NotFound},
    State{"42703", ErrorCategory::NotFound},   State{"42000", ErrorCategory::Syntax},
    State{"42601", ErrorCategory::Syntax},     State{"37000", ErrorCategory::Syntax},
    State{"HY001", ErrorCategory::Limit},      State{"53100", ErrorCategory::DiskFull},
    State{"57P", ErrorCategory::Connection},
};

// Errors raised by RAISERROR and THROW, and by the server about permissions and the like, are 42000 too and are no
// matter of syntax; the server's own syntax errors are below this number.
constexpr int kFirstNumberBeyondSyntax = 230;

}  // namespace

bool Diagnostic::isMessage() const {
    constexpr int kStatementTerminated = 3621;  // follows an error
    constexpr int kDatabaseChanged = 5701;
    constexpr int kLanguageChanged = 5703;
    // 01004, a value cut short, is found by the value's length and with its column's name.
    return informs() && sqlState != "01004" && nativeCode != kStatementTerminated && nativeCode != kDatabaseChanged &&
           nativeCode != kLanguageChanged;
}

std::vector<Diagnostic> diagnosticsOf(SQLSMALLINT handleType, SQLHANDLE handle, decltype(&::SQLGetDiagRecW) get) {
    std::vector<Diagnostic> records;
    std::u16string text(1024, u'\0');
    for (SQLSMALLINT number = 1;; ++number) {
        std::array<char16_t, 6> state{};
        SQLINTEGER native = 0;
        SQLSMALLINT length = 0;
        const auto read = [&] {
            return get(handleType, handle, number, wide(state.data()), &native, wide(text.data()),
                       static_cast<SQLSMALLINT>(text.size()), &length);
        };
        SQLRETURN rc = read();
        if (SQL_SUCCEEDED(rc) && static_cast<std::size_t>(length) >= text.size()) {
            text.resize(static_cast<std::size_t>(length) + 1);
            rc = read();
        }
        if (!SQL_SUCCEEDED(rc)) return records;
        const std::size_t units = std::min(static_cast<std::size_t>(std::max<SQLSMALLINT>(length, 0)), text.size());
        records.push_back({toUtf8(state.data()), static_cast<int>(native),
                           std::string(withoutSource(toUtf8(std::u16string_view(text).substr(0, units))))});
    }
}

std::vector<Diagnostic> diagnosticsOf(const ResultHandle& results) {
    return diagnosticsOf(SQL_HANDLE_STMT, results.statement, results.calls.diagnostic);
}

ErrorCategory categoryOf(std::string_view sqlState, int nativeCode) {
    const auto number =
        std::find_if(kNumbers.begin(), kNumbers.end(), [&](const Numbered& each) { return each.number == nativeCode; });
    if (number != kNumbers.end()) return number->category;
    const auto state = std::find_if(kStates.begin(), kStates.end(),
                                    [&](const State& each) { return sqlState.starts_with(each.prefix); });
    if (state == kStates.end()) return ErrorCategory::Other;
    if (state->category == ErrorCategory::Syntax && nativeCode >= kFirstNumberBeyondSyntax) return ErrorCategory::Other;
    return state->category;
}

DatabaseError errorOf(const std::vector<Diagnostic>& records, std::string_view statement) {
    const auto error =
        std::find_if(records.begin(), records.end(), [](const Diagnostic& record) { return !record.informs(); });
    if (error != records.end()) {
        return {categoryOf(error->sqlState, error->nativeCode), error->sqlState, error->nativeCode, error->message,
                std::string(statement)};
    }
    const std::string message = records.empty() ? "the driver failed and does not say why" : records.front().message;
    return {ErrorCategory::Other, "HY000", 0, message, std::string(statement)};
}

}  // namespace basalt::odbc
