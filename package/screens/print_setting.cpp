#include "package/screens/print_setting.h"

#include "package/screens/attached_screens.h"

namespace basalt {

bool PrintSetting(const TPrintSettingRequest& request, TPrintSetting& setting) {
    if (request.ReportName.empty()) throw UsageError("PrintSetting: the report has no name");
    if (request.Columns.empty()) throw UsageError("PrintSetting: " + request.ReportName + " has no columns");
    return attachedScreens().PrintSetting(request, setting);
}

}  // namespace basalt
