// The host's part of list screens.
#pragma once

#include <QPointer>

#include "host/screens/form_option.h"
#include "host/screens/screen_frame.h"
#include "host/screens/search_manager.h"
#include "host/screens/selection_summary.h"
#include "host/screens/smart_grid.h"
#include "package/screens/base_dock_frm.h"

namespace basalt::host {

class DockBaseImpl final : public DockBase, private RequestListener {
public:
    DockBaseImpl(ScreenContext& context, TBaseDock_FRM& screen);
    ~DockBaseImpl() override;

    [[nodiscard]] QWidget* SearchPanel() override { return searchPanel_; }
    [[nodiscard]] QWidget* ListPanel() override { return listPanel_; }
    [[nodiscard]] QWidget* DetailPanel() override { return detailPanel_; }
    TSmartButton_VRO* AddButton(const std::string& objectName, const std::string& caption, TListButton role) override;
    void SetGrid(TSmartDBGrid_VRO* grid) override;
    void SetSearchManager(TVaroSearchManager* manager) override;
    void SetFirstSearch(TSearchFrame* frame) override { firstSearch_ = frame; }
    void FormCreate() override;
    void FormShow() override;
    void EnableButtons() override;
    void SetTitle(const std::string& title) override;
    void SetShortCut() override { frame_->activateShortCuts(); }
    void SetPopMenu() override;
    [[nodiscard]] TFormOption& FormOption() override { return option_; }
    int ShowModal() override;
    bool ShowEditor(std::unique_ptr<TBaseGet_FRM> editor) override;

private:
    struct Button {
        SmartButton* button;
        TListButton role;
    };

    [[nodiscard]] bool enterPressed();
    // The rows are those of what was typed last. False when they could not be had.
    [[nodiscard]] bool rowsAreFound();
    // The same, but for a row that was pointed at in the list, which is the one that is meant.
    [[nodiscard]] bool rowIsFound();
    [[nodiscard]] std::vector<QString> headerLines() const;
    void addGridTools();
    void readAnew();
    // The rows of the list went while others were read, and those have not come.
    [[nodiscard]] bool isUnread() const;
    void noteSearch();
    void requestRuns(bool runs) override;
    void restoreLayout();
    void keepLayout();

    ScreenContext& context_;
    TBaseDock_FRM& screen_;
    basalt::host::FormOption option_;
    ScreenFrame* frame_;
    QWidget* searchPanel_;
    QWidget* listPanel_;
    QWidget* summaryPanel_;
    QWidget* detailPanel_;
    std::vector<Button> buttons_;
    QPointer<SmartGrid> grid_;
    QPointer<SelectionSummary> summary_;
    TSearchFrame* firstSearch_ = nullptr;
    SearchManager* searches_ = nullptr;
};

}  // namespace basalt::host
