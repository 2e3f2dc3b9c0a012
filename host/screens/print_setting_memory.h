// What a user chose for a report's prints, found again the next time.
//
// Title, order, paper and orientation are the user's own. Whether a column prints is the user's own as long as the
// column has its row in PrintsSettings: whoever deletes that row (as the deletion of a price level does) makes
// everybody start anew.
#pragma once

#include <QJsonObject>
#include <string>
#include <vector>

#include "host/services/reference_host.h"
#include "package/screens/print_setting.h"

namespace basalt::host {

// Under which a column's choice is kept.
[[nodiscard]] const std::string& printSettingName(const TPrintColumn& column);

class PrintSettingMemory {
public:
    PrintSettingMemory(ReferenceHost& host, std::string reportName) : host_(host), report_(std::move(reportName)) {}

    // The request as the user left it: a column that was not there then comes behind the one before it in the request.
    // Its order is the request's until the user makes another.
    [[nodiscard]] TPrintSetting recall(const TPrintSettingRequest& request);
    // Columns that are not in the setting keep the place and the tick that they had.
    void keep(const TPrintSetting& setting);

private:
    [[nodiscard]] QJsonObject own() const;
    [[nodiscard]] std::string key() const { return "Print." + report_; }

    ReferenceHost& host_;
    std::string report_;
    std::string requestTitle_;
    // Of the columns, by their setting names: as asked for, and as recalled.
    std::vector<std::string> requestOrder_;
    std::vector<std::string> recalledOrder_;
    bool ordered_ = false;  // the user has made an order
};

}  // namespace basalt::host
