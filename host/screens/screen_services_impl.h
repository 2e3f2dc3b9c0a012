// Screens for a reference host.
//
//   ReferenceHost host(session, options);
//   QtMessageService messages(host.catalogue());
//   HostScreenServices screens(host);
//   host.setMessages(messages);
//   host.setScreens(&screens);
//
// Needs a QApplication, which it dresses in the theme.
#pragma once

#include <map>
#include <memory>
#include <vector>

#include "host/screens/busy_notice.h"
#include "host/screens/lock_release.h"
#include "host/screens/output_services.h"
#include "host/screens/screen_context.h"
#include "package/screens/screen_services.h"

namespace basalt::host {

class HostScreenServices final : public ScreenServices, private EntityPicking {
public:
    explicit HostScreenServices(ReferenceHost& host);
    ~HostScreenServices() override;

    // Replaces file choosing and print preview, for tests and drivers. Must outlive the screens.
    void setOutput(OutputServices& output) { context_.setOutput(output); }
    [[nodiscard]] ScreenContext& context() { return context_; }
    [[nodiscard]] BusyNotice& busyNotice() { return *busy_; }

    [[nodiscard]] std::unique_ptr<DockBase> createDockBase(TBaseDock_FRM& screen) override;
    [[nodiscard]] std::unique_ptr<GetBase> createGetBase(TBaseGet_FRM& editor) override;
    [[nodiscard]] TSmartDBGrid_VRO* createGrid(const char* objectName, QWidget* parent) override;
    [[nodiscard]] TGeneral_Search_Frame* createGeneralSearch(const char* objectName, QWidget* parent) override;
    [[nodiscard]] TRange_Digit_Search_Frame* createDigitRangeSearch(const char* objectName, QWidget* parent) override;
    [[nodiscard]] TRange_Cost_Search_Frame* createCostRangeSearch(const char* objectName, QWidget* parent) override;
    [[nodiscard]] TTab_Search_Frame* createTabSearch(const char* objectName, QWidget* parent) override;
    [[nodiscard]] TCategory_frame* createCategoryFrame(const char* objectName, QWidget* parent) override;
    [[nodiscard]] std::unique_ptr<TVaroSearchManager> createSearchManager() override;
    void SetWinControlRightAlign(QWidget& control) override;
    void RegisterPrintColumn(const std::string& reportName, const TPrintColumn& column) override;
    void ClearPrintColumns(const std::string& reportName) override;
    [[nodiscard]] bool PrintSetting(const TPrintSettingRequest& request, TPrintSetting& setting) override;

private:
    [[nodiscard]] std::string pickEntities(TSoftwarePart part, const std::string& text) override;

    DialogOutputServices dialogs_;
    ScreenContext context_;
    std::unique_ptr<BusyNotice> busy_;
    std::unique_ptr<LockRelease> lockRelease_;
    std::map<std::string, std::vector<TPrintColumn>> printColumns_;  // by report, in the order of the telling
};

}  // namespace basalt::host
