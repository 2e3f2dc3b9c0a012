// The user activity log in the grid that all lists use, searchable by user, text, part and day.
#pragma once

#include <QBoxLayout>
#include <QLabel>

#include "ado/data_source.h"
#include "ado/query.h"
#include "host/desktop/desktop_context.h"
#include "host/desktop/log_filter.h"
#include "host/desktop/shell_page.h"

namespace basalt::host {

class LogPage final : public ShellPage {
public:
    explicit LogPage(DesktopContext context, QWidget* parent = nullptr);

    // Reads the log anew with what is searched for.
    void enter() override;

private:
    void makeSearch(QBoxLayout& layout);
    void makeGrid(QBoxLayout& layout);
    void fillParts();
    void refresh();

    DesktopContext context_;
    TADOQuery query_;
    TDataSource source_;
    TGeneral_Search_Frame* search_ = nullptr;
    LogFilter* filter_ = nullptr;
    TSmartDBGrid_VRO* grid_ = nullptr;
    QLabel* count_ = nullptr;
    QString narrowing_;  // of the rows that show
    bool partsKnown_ = false;
};

}  // namespace basalt::host
