#include "host/services/print_column_store.h"

#include "host/services/cut_text.h"
#include "host/services/sql_access.h"

namespace basalt::host {

namespace {

constexpr std::size_t kTitleLength = 100;

}  // namespace

std::map<std::string, bool> PrintColumnStore::visible(const std::string& report) {
    const RowSet rows =
        rowsOf(session_, "SELECT Comment, Visible FROM dbo.PrintsSettings WHERE PartName = ? ORDER BY ID", {report});
    std::map<std::string, bool> visible;
    for (std::size_t row = 0; row < rows.rowCount(); ++row)
        visible[textAt(rows, 0, row)] = integerAt(rows, 1, row) != 0;
    return visible;
}

void PrintColumnStore::keep(const std::string& report, const PrintColumnRow& column) {
    const std::string title = cutText(column.title, kTitleLength);
    updateOrInsert(session_, "UPDATE dbo.PrintsSettings SET Title = ?, Visible = ? WHERE PartName = ? AND Comment = ?",
                   {title, column.visible, report, column.settingName},
                   "INSERT INTO dbo.PrintsSettings (PartName, Comment, Title, Visible) VALUES (?, ?, ?, ?)",
                   {report, column.settingName, title, column.visible});
}

}  // namespace basalt::host
