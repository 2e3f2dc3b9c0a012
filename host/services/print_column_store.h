// Which columns of a report print, for everybody: one row of PrintsSettings a column.
//
//   PrintColumnStore columns(session);
//   columns.keep("CostReport", {"F3", "همکار", true});
#pragma once

#include <map>
#include <string>

#include "ado/session.h"

namespace basalt::host {

struct PrintColumnRow {
    std::string settingName;  // 50 characters
    std::string title;        // 100 characters; longer ones are cut
    bool visible = true;
};

class PrintColumnStore {
public:
    explicit PrintColumnStore(Session& session) : session_(session) {}

    // By setting name; columns that were never kept, or whose row has been deleted since, are not there.
    [[nodiscard]] std::map<std::string, bool> visible(const std::string& report);
    void keep(const std::string& report, const PrintColumnRow& column);

private:
    Session& session_;
};

}  // namespace basalt::host
