// What a host that shows screens provides: the bases and the controls.
#pragma once

#include <memory>
#include <string>

#include "package/screens/base_dock_frm.h"
#include "package/screens/base_get_frm.h"
#include "package/screens/category_frame.h"
#include "package/screens/controls.h"
#include "package/screens/print_setting.h"

namespace basalt {

class ScreenServices {
public:
    virtual ~ScreenServices() = default;

    [[nodiscard]] virtual std::unique_ptr<DockBase> createDockBase(TBaseDock_FRM& screen) = 0;
    [[nodiscard]] virtual std::unique_ptr<GetBase> createGetBase(TBaseGet_FRM& editor) = 0;

    // Controls are owned by their parent and bear the object name given.
    [[nodiscard]] virtual TSmartDBGrid_VRO* createGrid(const char* objectName, QWidget* parent) = 0;
    [[nodiscard]] virtual TGeneral_Search_Frame* createGeneralSearch(const char* objectName, QWidget* parent) = 0;
    [[nodiscard]] virtual TRange_Digit_Search_Frame* createDigitRangeSearch(const char* objectName,
                                                                            QWidget* parent) = 0;
    [[nodiscard]] virtual TRange_Cost_Search_Frame* createCostRangeSearch(const char* objectName, QWidget* parent) = 0;
    [[nodiscard]] virtual TTab_Search_Frame* createTabSearch(const char* objectName, QWidget* parent) = 0;
    [[nodiscard]] virtual TCategory_frame* createCategoryFrame(const char* objectName, QWidget* parent) = 0;
    [[nodiscard]] virtual std::unique_ptr<TVaroSearchManager> createSearchManager() = 0;

    // Makes a control right to left.
    virtual void SetWinControlRightAlign(QWidget& control) = 0;

    // As the free functions of these names; reports and columns have a name.
    virtual void RegisterPrintColumn(const std::string& reportName, const TPrintColumn& column) = 0;
    virtual void ClearPrintColumns(const std::string& reportName) = 0;
    [[nodiscard]] virtual bool PrintSetting(const TPrintSettingRequest& request, TPrintSetting& setting) = 0;
};

}  // namespace basalt
