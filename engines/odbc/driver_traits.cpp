#include "engines/odbc/driver_traits.h"

#include <algorithm>
#include <array>

#include "engines/odbc/utf16.h"

namespace basalt::odbc {

namespace {

std::string textInfo(SQLHDBC connection, SQLUSMALLINT what) {
    std::array<char16_t, 256> text{};
    SQLSMALLINT bytes = 0;
    const SQLRETURN rc = SQLGetInfoW(connection, what, text.data(), sizeof(text), &bytes);
    if (!SQL_SUCCEEDED(rc)) return {};
    text.back() = u'\0';
    return toUtf8(text.data());
}

bool isSourceLabel(std::string_view label) {
    constexpr std::array<std::string_view, 9> kLabels = {
        "unixODBC",    "Driver Manager",         "Microsoft", "FreeTDS", "SQL Server",
        "ODBC Driver", "ODBC SQL Server Driver", "SQLite",    "DBNETLIB"};
    return std::any_of(kLabels.begin(), kLabels.end(),
                       [&](std::string_view known) { return label.starts_with(known); });
}

}  // namespace

DriverTraits DriverTraits::of(SQLHDBC connection) {
    DriverTraits traits;
    const std::string server = textInfo(connection, SQL_DBMS_NAME);
    traits.speaksTransactSql = server != "SQLite" && server != "PostgreSQL";
    const bool isFreeTds = textInfo(connection, SQL_DRIVER_NAME).find("tdsodbc") != std::string::npos;
    traits.fetchPassesEmptyResults = isFreeTds;
    traits.maxParametersAreLong = isFreeTds;
    if (isFreeTds) traits.callsBehindFailure = ResultCalls::ofDriver(connection);
    SQLUINTEGER extensions = 0;
    if (SQL_SUCCEEDED(SQLGetInfoW(connection, SQL_GETDATA_EXTENSIONS, &extensions, sizeof(extensions), nullptr))) {
        traits.readsAnyColumn = (extensions & SQL_GD_ANY_COLUMN) != 0;
    }
    return traits;
}

std::string_view withoutSource(std::string_view message) {
    while (message.starts_with('[')) {
        const std::size_t end = message.find(']');
        if (end == std::string_view::npos || !isSourceLabel(message.substr(1, end - 1))) break;
        message.remove_prefix(end + 1);
    }
    return message;
}

}  // namespace basalt::odbc
