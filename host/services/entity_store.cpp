#include "host/services/entity_store.h"

#include "ado/error.h"
#include "host/services/sql_access.h"

namespace basalt::host {

namespace {

std::string_view sourceOf(TSoftwarePart part) {
    switch (part) {
        case spPersons:
            return "SELECT Code, FullName AS Name FROM dbo.PerInf";
        case spGoods:
            return "SELECT Code, Name FROM dbo.GoodInf";
        default:
            throw UsageError("software part " + std::to_string(part) + " has no list to pick from");
    }
}

}  // namespace

RowSet EntityStore::list(TSoftwarePart part, const std::string& condition) {
    std::string sql = "SELECT T.Code, T.Name FROM (" + std::string(sourceOf(part)) + ") AS T";
    if (!condition.empty()) sql += " WHERE " + condition;
    return rowsOf(session_, sql + " ORDER BY T.Code");
}

}  // namespace basalt::host
