#include "host/screens/screen_services_impl.h"

#include <QApplication>
#include <QLineEdit>
#include <algorithm>

#include "host/screens/category_frame.h"
#include "host/screens/dock_base_impl.h"
#include "host/screens/entity_picker.h"
#include "host/screens/general_search_frame.h"
#include "host/screens/get_base_impl.h"
#include "host/screens/persian_digits.h"
#include "host/screens/print_setting_dialog.h"
#include "host/screens/print_setting_memory.h"
#include "host/screens/range_search_frame.h"
#include "host/screens/search_manager.h"
#include "host/screens/smart_grid.h"
#include "host/screens/tab_search_frame.h"
#include "host/screens/theme.h"

namespace basalt::host {

HostScreenServices::HostScreenServices(ReferenceHost& host) : context_(host, dialogs_) {
    applyTheme(*qApp);
    setThemeFontSize(host.optionFile().options().fontSize);
    showPersianDigits(host.optionFile().options().persianDigits);
    busy_ = std::make_unique<BusyNotice>(host.session());
    context_.setWriting([this](int done, int all) { return busy_->writes(done, all); });
    context_.setRequestRuns([this] { return busy_->requestRuns(); });
    busy_->onRuns = [this](bool runs) {
        context_.requestListeners().notify([runs](RequestListener& listener) { listener.requestRuns(runs); });
    };
    lockRelease_ = std::make_unique<LockRelease>(context_);
    host.setEntityPicking(this);
}

HostScreenServices::~HostScreenServices() {
    context_.host().setEntityPicking(nullptr);
}

std::unique_ptr<DockBase> HostScreenServices::createDockBase(TBaseDock_FRM& screen) {
    return std::make_unique<DockBaseImpl>(context_, screen);
}

std::unique_ptr<GetBase> HostScreenServices::createGetBase(TBaseGet_FRM& editor) {
    return std::make_unique<GetBaseImpl>(context_, editor);
}

TSmartDBGrid_VRO* HostScreenServices::createGrid(const char* objectName, QWidget* parent) {
    return new SmartGrid(context_, QString::fromUtf8(objectName), parent);
}

TGeneral_Search_Frame* HostScreenServices::createGeneralSearch(const char* objectName, QWidget* parent) {
    return new GeneralSearchFrame(context_, QString::fromUtf8(objectName), parent);
}

TRange_Digit_Search_Frame* HostScreenServices::createDigitRangeSearch(const char* objectName, QWidget* parent) {
    return new RangeSearchFrame(context_, QString::fromUtf8(objectName), parent);
}

TRange_Cost_Search_Frame* HostScreenServices::createCostRangeSearch(const char* objectName, QWidget* parent) {
    return new RangeSearchFrame(context_, QString::fromUtf8(objectName), parent);
}

TTab_Search_Frame* HostScreenServices::createTabSearch(const char* objectName, QWidget* parent) {
    return new TabSearchFrame(context_, QString::fromUtf8(objectName), parent);
}

TCategory_frame* HostScreenServices::createCategoryFrame(const char* objectName, QWidget* parent) {
    return new CategoryFrame(context_, QString::fromUtf8(objectName), parent);
}

std::unique_ptr<TVaroSearchManager> HostScreenServices::createSearchManager() {
    return std::make_unique<SearchManager>();
}

void HostScreenServices::SetWinControlRightAlign(QWidget& control) {
    control.setLayoutDirection(Qt::RightToLeft);
    if (auto* line = qobject_cast<QLineEdit*>(&control))
        line->setAlignment(Qt::AlignRight | Qt::AlignAbsolute | Qt::AlignVCenter);
}

void HostScreenServices::RegisterPrintColumn(const std::string& reportName, const TPrintColumn& column) {
    std::vector<TPrintColumn>& columns = printColumns_[reportName];
    const auto same = std::find_if(columns.begin(), columns.end(), [&](const TPrintColumn& other) {
        return printSettingName(other) == printSettingName(column);
    });
    if (same == columns.end()) {
        columns.push_back(column);
    } else {
        *same = column;
    }
}

void HostScreenServices::ClearPrintColumns(const std::string& reportName) {
    printColumns_.erase(reportName);
}

bool HostScreenServices::PrintSetting(const TPrintSettingRequest& request, TPrintSetting& setting) {
    TPrintSettingRequest offered = request;
    if (const auto registered = printColumns_.find(request.ReportName);
        offered.Columns.empty() && registered != printColumns_.end())
        offered.Columns = registered->second;
    std::erase_if(offered.Columns, [](const TPrintColumn& column) { return !column.Offered; });
    std::stable_sort(offered.Columns.begin(), offered.Columns.end(),
                     [](const TPrintColumn& one, const TPrintColumn& other) {
                         return std::pair(one.Place, !one.Index.empty()) < std::pair(other.Place, !other.Index.empty());
                     });
    return askPrintSetting(context_, offered, setting);
}

std::string HostScreenServices::pickEntities(TSoftwarePart part, const std::string& text) {
    EntityPicker picker(context_, part, QString::fromStdString(text));
    const int answer = picker.exec();
    context_.rethrowUnshown();
    return answer == QDialog::Accepted ? picker.codes() : std::string();
}

}  // namespace basalt::host
