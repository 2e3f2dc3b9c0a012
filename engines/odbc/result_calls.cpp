#include "engines/odbc/result_calls.h"

#ifdef __linux__
#include <dlfcn.h>
#include <link.h>

#include <array>
#include <memory>
#include <string>
#include <string_view>
#endif

namespace basalt::odbc {

#ifdef __linux__

namespace {

struct Search {
    std::string_view name;
    std::string path;
};

// The file that a library of this name was loaded from; empty when there is none.
std::string loadedFrom(std::string_view name) {
    Search search{name, {}};
    dl_iterate_phdr(
        [](dl_phdr_info* library, std::size_t, void* data) {
            auto& wanted = *static_cast<Search*>(data);
            const std::string_view path = library->dlpi_name;
            if (!path.ends_with(wanted.name)) return 0;
            const std::size_t folder = path.size() - wanted.name.size();
            if (folder > 0 && path[folder - 1] != '/') return 0;
            wanted.path = path;
            return 1;
        },
        &search);
    return search.path;
}

}  // namespace

std::optional<ResultCalls> ResultCalls::ofDriver(SQLHDBC connection) {
    std::array<char, 256> name{};
    SQLSMALLINT length = 0;
    if (!SQL_SUCCEEDED(SQLGetInfo(connection, SQL_DRIVER_NAME, name.data(), sizeof(name), &length))) return {};
    const std::string path = name[0] == '\0' ? std::string() : loadedFrom(name.data());
    if (path.empty()) return {};
    // The manager keeps the driver as long as the connection: this hold on it is one too many.
    const std::unique_ptr<void, int (*)(void*)> driver(dlopen(path.c_str(), RTLD_LAZY | RTLD_NOLOAD), &dlclose);
    if (driver == nullptr) return {};
    ResultCalls calls;
    bool whole = true;
    const auto find = [&](auto& call, const char* symbol) {
        call = reinterpret_cast<std::remove_reference_t<decltype(call)>>(dlsym(driver.get(), symbol));
        whole = whole && call != nullptr;
    };
    find(calls.moreResults, "SQLMoreResults");
    find(calls.columnCount, "SQLNumResultCols");
    find(calls.rowCount, "SQLRowCount");
    find(calls.describeColumn, "SQLDescribeColW");
    find(calls.columnAttribute, "SQLColAttributeW");
    find(calls.bindColumn, "SQLBindCol");
    find(calls.fetch, "SQLFetch");
    find(calls.getData, "SQLGetData");
    find(calls.diagnostic, "SQLGetDiagRecW");
    find(calls.freeStatement, "SQLFreeStmt");
    find(calls.setAttribute, "SQLSetStmtAttr");
    if (!whole) return {};
    return calls;
}

#else

std::optional<ResultCalls> ResultCalls::ofDriver(SQLHDBC) {
    return {};
}

#endif

}  // namespace basalt::odbc
