#include "host/services/category_store.h"

#include "host/services/sql_access.h"

namespace basalt::host {

namespace {

std::vector<Category> categoriesOf(Session& session, const std::string& sql) {
    const RowSet rows = rowsOf(session, sql);
    std::vector<Category> categories;
    for (std::size_t row = 0; row < rows.rowCount(); ++row)
        categories.push_back({.code = static_cast<int>(integerAt(rows, 0, row)),
                              .name = textAt(rows, 1, row),
                              .parent = static_cast<int>(integerAt(rows, 2, row))});
    return categories;
}

}  // namespace

std::vector<Category> CategoryStore::all() {
    return categoriesOf(session_, "SELECT id, name, parent_code FROM dbo.category ORDER BY name, id");
}

std::vector<Category> CategoryStore::some(const std::string& condition, int limit) {
    return categoriesOf(session_, "SELECT TOP " + std::to_string(limit) +
                                      " id, name, parent_code FROM dbo.category WHERE " + condition +
                                      " ORDER BY LEN(name), name, id");
}

}  // namespace basalt::host
