// The host's print settings for a named report: which columns, in which order, on which paper.
//
//   TPrintSettingRequest request{.ReportName = "CostReport", .Title = "لیست قیمت ها"};
//   request.Columns.push_back({.FieldName = "F3", .Title = "همکار"});
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
};

struct TPrintSettingRequest {
    std::string ReportName;  // at most 50 characters
    std::string Title;       // printed above the report, for as long as the user has not given another
    std::vector<TPrintColumn> Columns = {};
    TPrintPaper Paper = TPrintPaper::A4;
    TPrintOrientation Orientation = TPrintOrientation::Portrait;
    ::QWidget* Form = nullptr;  // over which the dialog opens
};

struct TPrintSetting {
    std::string Title;
    std::vector<TPrintColumn> Columns = {};  // all of the request's, in the user's order; at least one is visible
    TPrintPaper Paper = TPrintPaper::A4;
    TPrintOrientation Orientation = TPrintOrientation::Portrait;
};

// Asks the user. False when the dialog is cancelled: `setting` is then unchanged and nothing is kept. UsageError when
// the request names no report or no column, or the host shows no screens; DatabaseError when the choices cannot be
// read or kept.
[[nodiscard]] bool PrintSetting(const TPrintSettingRequest& request, TPrintSetting& setting);

}  // namespace basalt
