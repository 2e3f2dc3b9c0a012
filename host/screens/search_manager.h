// Re-runs a list's statement, narrowed by the conditions of its search frames.
//
// The narrowed statement is "SELECT * FROM (" + script + ") AS T WHERE " + conditions; without conditions it is the
// script. Its rows take the place of the list's, all of them (a filter on the list goes off), once they are there; when
// the search fails or is given up, the list stays what it was and is behind what the frames say. A list of more than
// 32 MB may be closed by then instead (ado/rows_beside.h): it has no rows until the next search that succeeds.
#pragma once

#include <functional>
#include <set>
#include <string>
#include <vector>

#include "package/screens/controls.h"

namespace basalt::host {

class SearchManager final : public TVaroSearchManager {
public:
    void SetDataSource(TDataSource* source) override { source_ = source; }
    void SetSQLScript(const std::string& sql) override;
    void AddFrame(TSearchFrame* frame) override;
    void ExecuteFilter_DataSet() override;

    // Runs a search that waits for a pause in the typing, so that what is done next is done to its rows. False when it
    // failed, which the user was shown.
    [[nodiscard]] bool finishTyping();
    // A search waits for a pause in the typing.
    [[nodiscard]] bool isWaiting() const;
    // The list shows an earlier search, or nothing, because the one that the frames ask for has failed.
    [[nodiscard]] bool isBehind() const { return failed_.contains(statement()); }
    std::function<void()> onSearched;  // also when it failed
    // The title of the tab that narrows the list; empty where there are no tabs.
    [[nodiscard]] QString tabTitle() const;
    // What the other frames narrow the list to, in words, as of the rows that it shows; empty when they do not.
    [[nodiscard]] QString narrowing() const { return narrowing_; }

private:
    [[nodiscard]] std::string statement() const;
    [[nodiscard]] QString askedNarrowing() const;
    [[nodiscard]] bool isField(const std::string& name) const;

    TDataSource* source_ = nullptr;
    std::string script_;
    std::vector<TSearchFrame*> frames_;
    QString narrowing_;
    std::set<std::string> failed_;  // statements, since the last one that brought its rows
};

}  // namespace basalt::host
