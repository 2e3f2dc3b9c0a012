// Re-runs a list's statement, narrowed by the conditions of its search frames.
//
// The narrowed statement is "SELECT * FROM (" + script + ") AS T WHERE " + conditions; without conditions it is the
// script.
#pragma once

#include <functional>
#include <vector>

#include "package/screens/controls.h"

namespace basalt::host {

class SearchManager final : public TVaroSearchManager {
public:
    void SetDataSource(TDataSource* source) override { source_ = source; }
    void SetSQLScript(const std::string& sql) override { script_ = sql; }
    void AddFrame(TSearchFrame* frame) override;
    void ExecuteFilter_DataSet() override;

    // Runs a search that waits for a pause in the typing, so that what is done next is done to its rows. False when it
    // failed, which the user was shown.
    [[nodiscard]] bool finishTyping();
    // The title of the tab that narrows the list; empty where there are no tabs.
    [[nodiscard]] QString tabTitle() const;

private:
    [[nodiscard]] std::string statement() const;
    [[nodiscard]] bool isField(const std::string& name) const;

    TDataSource* source_ = nullptr;
    std::string script_;
    std::vector<TSearchFrame*> frames_;
};

}  // namespace basalt::host
