// What a user chose for a report's prints, found again the next time.
//
// Title, order, paper and orientation are the user's own. Whether a column prints is the user's own as long as the
// column has its row in PrintsSettings: whoever deletes that row (as the deletion of a price level does) makes
// everybody start anew.
#pragma once

#include <QJsonObject>
#include <string>

#include "host/services/reference_host.h"
#include "package/screens/print_setting.h"

namespace basalt::host {

// Under which a column's choice is kept.
[[nodiscard]] const std::string& printSettingName(const TPrintColumn& column);

class PrintSettingMemory {
public:
    PrintSettingMemory(ReferenceHost& host, std::string reportName) : host_(host), report_(std::move(reportName)) {}

    // The request as the user left it: columns that were not there then come last.
    [[nodiscard]] TPrintSetting recall(const TPrintSettingRequest& request);
    // Columns that are not in the setting keep the place and the tick that they had.
    void keep(const TPrintSetting& setting);

private:
    [[nodiscard]] QJsonObject own() const;
    [[nodiscard]] std::string key() const { return "Print." + report_; }

    ReferenceHost& host_;
    std::string report_;
    std::string requestTitle_;
};

}  // namespace basalt::host
