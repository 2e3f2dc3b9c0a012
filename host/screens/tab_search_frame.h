// Tabs that each stand for one value of a field.
#pragma once

#include <QTabBar>
#include <vector>

#include "host/screens/search_change.h"

namespace basalt::host {

class TabSearchFrame final : public TTab_Search_Frame, public SearchFrameLink {
public:
    TabSearchFrame(ScreenContext& context, const QString& objectName, QWidget* parent);

    void init() override;
    [[nodiscard]] std::string Filter() const override;
    void Clear() override;  // back to the first tab
    void FocusFirst() override;
    void SetFieldName(const std::string& field) override { field_ = field; }
    void AddTab(const std::string& title, const std::string& value) override;
    void SetTabIndex(int index) override;
    [[nodiscard]] int TabIndex() const override { return tabs_->currentIndex(); }
    void Search_TBCChange() override { change_.tellNow(); }
    // Of the tab, as it is read.
    [[nodiscard]] QString tabTitle() const;
    [[nodiscard]] SearchChange& change() override { return change_; }

private:
    void changeTab();

    ScreenContext& context_;
    std::string field_;
    std::vector<std::string> values_;
    QTabBar* tabs_;
    int chosen_ = 0;  // the tab whose rows the list shows
    SearchChange change_;
};

}  // namespace basalt::host
