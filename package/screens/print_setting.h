// The host's print settings for a named report: which columns, in which order, on which paper.
//
//   ClearPrintColumns("CostReport");
//   RegisterPrintColumn("CostReport", {.FieldName = "F3", .Title = "همکار"});
//   TPrintSettingRequest request{.ReportName = "CostReport", .Title = "لیست قیمت ها"};
//   TPrintSetting setting;
//   if (!PrintSetting(request, setting)) return;      // the user thought better of it
//   grid->PrintPreview(setting);
//
// The host keeps each user's choices under the report's name and starts from them the next time. Whether a column
// prints is also kept for everybody in PrintsSettings, one row a column (PartName the report, Comment the column's
// setting name); when that row has been deleted the column starts again as the request has it.
#pragma once

#include <string>
#include <vector>

class QWidget;

namespace basalt {

enum class TPrintPaper { A3, A4, A5, Letter };
enum class TPrintOrientation { Portrait, Landscape };

struct TPrintColumn {
    std::string FieldName;
    std::string Title;
    bool Visible = true;
    std::string SettingName = {};  // under which the choice is kept, unique in the report; empty: the field's name
    // False for a column that the report has and the user may not print: it is neither shown nor kept.
    bool Offered = true;
    // The column's place in the report's grid, from 0, as text; empty where it does not matter.
    std::string Index = {};
    // Orders the columns as they are offered for as long as the user has not ordered them for printing. Of the same
    // place, columns without an index come first, and otherwise as they were registered.
    int Place = 0;
};

struct TPrintSettingRequest {
    std::string ReportName;                  // at most 50 characters
    std::string Title;                       // printed above the report, for as long as the user has not given another
    std::vector<TPrintColumn> Columns = {};  // empty: the registered ones
    TPrintPaper Paper = TPrintPaper::A4;
    TPrintOrientation Orientation = TPrintOrientation::Portrait;
    ::QWidget* Form = nullptr;  // over which the dialog opens
};

struct TPrintSetting {
    std::string Title;
    // All of the request's that were offered, in the user's order. At least one is visible, unless none was offered.
    std::vector<TPrintColumn> Columns = {};
    TPrintPaper Paper = TPrintPaper::A4;
    TPrintOrientation Orientation = TPrintOrientation::Portrait;
};

// What a report can print, told to the host column by column; a column of the same setting name takes the place of the
// one before. The columns stay registered, for as long as the host lives, until they are cleared. UsageError when the
// report or the column has no name, or the host shows no screens.
void RegisterPrintColumn(const std::string& reportName, const TPrintColumn& column);
void ClearPrintColumns(const std::string& reportName);

// Asks the user. False when the dialog is cancelled: `setting` is then unchanged and nothing is kept. UsageError when
// the request names no report, or the host shows no screens; DatabaseError when the choices cannot be read or kept.
[[nodiscard]] bool PrintSetting(const TPrintSettingRequest& request, TPrintSetting& setting);

}  // namespace basalt
