#include "host/screens/search_manager.h"

#include <algorithm>

#include "ado/error.h"
#include "host/screens/range_search_frame.h"
#include "host/screens/search_change.h"
#include "host/screens/search_condition.h"
#include "host/screens/tab_search_frame.h"

namespace basalt::host {

void SearchManager::AddFrame(TSearchFrame* frame) {
    frames_.push_back(frame);
    if (auto* link = dynamic_cast<SearchFrameLink*>(frame))
        link->change().setManager([this] { ExecuteFilter_DataSet(); });
    if (auto* range = dynamic_cast<RangeSearchFrame*>(frame))
        range->setFields([this](const std::string& field) { return isField(field); });
}

// The statement of a list that shows all of its rows.
void SearchManager::SetSQLScript(const std::string& sql) {
    script_ = sql;
    narrowing_.clear();
}

bool SearchManager::finishTyping() {
    return std::all_of(frames_.begin(), frames_.end(), [](TSearchFrame* frame) {
        auto* link = dynamic_cast<SearchFrameLink*>(frame);
        return !link || link->change().finish();
    });
}

bool SearchManager::isWaiting() const {
    return std::any_of(frames_.begin(), frames_.end(), [](TSearchFrame* frame) {
        auto* link = dynamic_cast<SearchFrameLink*>(frame);
        return link && link->change().isWaiting();
    });
}

// As far as is known: a list that is closed tells nothing of its fields.
bool SearchManager::isField(const std::string& name) const {
    TDataSet* list = source_ ? source_->DataSet() : nullptr;
    return !list || !list->Active() || list->FindField(name) != nullptr;
}

std::string SearchManager::statement() const {
    std::vector<std::string> conditions;
    for (const TSearchFrame* frame : frames_)
        conditions.push_back(frame->Filter());
    const std::string narrowing = joinedConditions(conditions);
    return narrowing.empty() ? script_ : "SELECT * FROM (" + script_ + ") AS T WHERE " + narrowing;
}

QString SearchManager::askedNarrowing() const {
    QStringList parts;
    for (TSearchFrame* frame : frames_)
        if (const auto* link = dynamic_cast<const SearchFrameLink*>(frame)) parts << link->narrowing();
    return narrowingLine(parts);
}

QString SearchManager::tabTitle() const {
    for (const TSearchFrame* frame : frames_)
        if (const auto* tabs = dynamic_cast<const TabSearchFrame*>(frame)) return tabs->tabTitle();
    return {};
}

void SearchManager::ExecuteFilter_DataSet() {
    auto* query = source_ ? dynamic_cast<TADOQuery*>(source_->DataSet()) : nullptr;
    if (!query) throw UsageError("ExecuteFilter_DataSet: the search manager has no query; call SetDataSource first");
    if (script_.empty())
        throw UsageError("ExecuteFilter_DataSet: the search manager has no statement; call SetSQLScript first");
    const std::string narrowed = statement();
    try {
        query->OpenInstead(narrowed);
    } catch (...) {
        failed_.insert(narrowed);
        if (onSearched) onSearched();
        throw;
    }
    narrowing_ = askedNarrowing();
    failed_.clear();
    if (onSearched) onSearched();
    if (AfterSearch) AfterSearch();
}

}  // namespace basalt::host
