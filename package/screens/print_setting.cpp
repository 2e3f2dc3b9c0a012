#include "package/screens/print_setting.h"

#include "package/screens/attached_screens.h"

namespace basalt {

namespace {

ScreenServices& screensFor(const std::string& reportName, const char* operation) {
    if (reportName.empty()) throw UsageError(std::string(operation) + ": the report has no name");
    return attachedScreens();
}

}  // namespace

void RegisterPrintColumn(const std::string& reportName, const TPrintColumn& column) {
    ScreenServices& screens = screensFor(reportName, "RegisterPrintColumn");
    if (column.FieldName.empty()) throw UsageError("RegisterPrintColumn: a column of " + reportName + " has no name");
    screens.RegisterPrintColumn(reportName, column);
}

void ClearPrintColumns(const std::string& reportName) {
    screensFor(reportName, "ClearPrintColumns").ClearPrintColumns(reportName);
}

bool PrintSetting(const TPrintSettingRequest& request, TPrintSetting& setting) {
    return screensFor(request.ReportName, "PrintSetting").PrintSetting(request, setting);
}

}  // namespace basalt
