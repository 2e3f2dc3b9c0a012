// The base of list screens.
//
// A list screen derives from TBaseDock_FRM and fills in hooks; the host's part of the base (DockBase) owns the window's
// layout, the keyboard, printing and the user's form options, and drives the hooks in this order:
//
//   CreateScreen<T>(mode, param, text):  CreateControls, FormCreate, SetComponents
//   ShowModal():                         Open, InitSearch, InitSelect (in fmSelect), FormShow, then the user works
//
// After each change of the data the screen's own handlers call RefreshList. An error that leaves a handler is shown by
// the base and the screen lives on; an error of a hook before the screen is shown passes to the caller.
#pragma once

#include <QDialog>
#include <memory>
#include <string>
#include <vector>

#include "ado/value.h"
#include "package/screens/controls.h"
#include "package/types.h"

namespace basalt {

class TBaseDock_FRM;
class TBaseGet_FRM;

// Under which identity the host keeps the screen's layout for the user.
class TFormOption {
public:
    virtual ~TFormOption() = default;
    virtual void SetSoftwarePart(TComponentSoftwarePart part) = 0;
};

// What a list's button is for; the base keeps New always usable and the others only while a row is current.
enum class TListButton { New, Edit, Delete, Select, Exit, Print, Other };

// The host's part of a list screen.
class DockBase {
public:
    virtual ~DockBase() = default;

    // Places for the screen's controls, from top to bottom.
    [[nodiscard]] virtual QWidget* SearchPanel() = 0;
    [[nodiscard]] virtual QWidget* ListPanel() = 0;
    [[nodiscard]] virtual QWidget* DetailPanel() = 0;
    // A button of the footer, in the order of the calls. Its click calls the matching handler of the screen.
    virtual TSmartButton_VRO* AddButton(const std::string& objectName, const std::string& caption,
                                        TListButton role) = 0;
    // The screen's main grid and search manager, for buttons, short cuts, printing and layout.
    virtual void SetGrid(TSmartDBGrid_VRO* grid) = 0;
    virtual void SetSearchManager(TVaroSearchManager* manager) = 0;
    virtual void SetFirstSearch(TSearchFrame* frame) = 0;

    virtual void FormCreate() = 0;
    virtual void FormShow() = 0;
    // Re-enables the buttons for the grid and its query.
    virtual void EnableButtons() = 0;
    virtual void SetTitle(const std::string& title) = 0;
    virtual void SetShortCut() = 0;
    virtual void SetPopMenu() = 0;
    [[nodiscard]] virtual TFormOption& FormOption() = 0;
    // Runs the showing part of the order above and returns the screen's result code.
    virtual int ShowModal() = 0;
    // Shows an editor that has been created, unless it closed itself meanwhile, and frees it. True when it was shown.
    virtual bool ShowEditor(std::unique_ptr<TBaseGet_FRM> editor) = 0;
};

class TBaseDock_FRM : public QDialog {
public:
    TBaseDock_FRM(TFormMode mode, Value param, std::string text);
    ~TBaseDock_FRM() override;

    [[nodiscard]] TFormMode Mode() const { return mode_; }
    // The constructor's parameters as a list; item 0 is the variant parameter.
    [[nodiscard]] const Value& CustomParam(int index) const;
    [[nodiscard]] const std::string& CustomText() const { return text_; }
    [[nodiscard]] TFormOption& FormOption() { return base().FormOption(); }
    // Shows the screen until it closes; a TModalResult.
    int ShowModal() { return base().ShowModal(); }
    [[nodiscard]] DockBase& base() const { return *base_; }

    // Hooks. FormCreate and FormShow are to call the base's first.
    virtual void CreateControls() = 0;
    virtual void FormCreate(QObject* sender);
    virtual void SetComponents() = 0;
    virtual void Open() = 0;
    virtual void InitSearch(const std::string& text) = 0;
    virtual void InitSelect() = 0;
    virtual void RefreshList() = 0;
    virtual void FormShow(QObject* sender);
    [[nodiscard]] virtual std::vector<std::string> GetMasterReport_Description() { return {}; }
    [[nodiscard]] virtual std::vector<std::string> GetDetailReport_Description(const Value& /*key*/) { return {}; }

    // Handlers of the standard buttons; a screen fills in those that it offers.
    virtual void New_BTNClick() {}
    virtual void Edit_BTNClick() {}
    virtual void Delete_BTNClick() {}
    virtual void Select_BTNClick() {}
    virtual void Exit_BTNClick() { reject(); }

private:
    TFormMode mode_;
    std::vector<Value> params_;
    std::string text_;
    std::unique_ptr<DockBase> base_;
};

// Makes a list screen and runs the creating part of its order.
template <class Screen, class... Arguments>
[[nodiscard]] std::unique_ptr<Screen> CreateScreen(Arguments&&... arguments) {
    auto screen = std::make_unique<Screen>(std::forward<Arguments>(arguments)...);
    screen->CreateControls();
    screen->FormCreate(screen.get());
    screen->SetComponents();
    return screen;
}

}  // namespace basalt
