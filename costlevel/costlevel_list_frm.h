// The list of price levels or of discount levels.
//
//   const auto screen = CreateScreen<TCostLevel_List_FRM>(fmSelect, Value{std::int64_t{spPriceLevels}}, "");
//   screen->ShowModal();
//   screen->SelectedCode()   // 0 when nothing was picked
//
// The parameter is the software part that the screen serves: the price levels' or the discount levels'. The set of
// levels is fixed by the columns of the goods' price matrix, so New and Delete are hidden.
#pragma once

#include <memory>
#include <string>

#include "costlevel/costlevel_dm.h"
#include "package/screens/base_dock_frm.h"

namespace basalt {

class TDBText;

class TCostLevel_List_FRM : public TBaseDock_FRM {
public:
    TCostLevel_List_FRM(TFormMode mode, Value param, std::string text);

    // What the user picked; 0 and the empty text when nothing.
    [[nodiscard]] int SelectedCode() const { return selectedCode_; }
    [[nodiscard]] const std::string& SelectedName() const { return selectedName_; }

    void CreateControls() override;
    void FormCreate(QObject* sender) override;
    void SetComponents() override;
    void Open() override;
    void InitSearch(const std::string& text) override;
    void InitSelect() override;
    void RefreshList() override;
    void FormShow(QObject* sender) override;

    void New_BTNClick() override;
    void Edit_BTNClick() override;
    void Delete_BTNClick() override;
    void Select_BTNClick() override;
    void GroupList_GRDDblClick();

private:
    [[nodiscard]] bool hasCurrentRow() const;
    [[nodiscard]] int currentCode() const;

    TSoftwarePart part_ = spPriceLevels;
    int selectedCode_ = 0;
    std::string selectedName_;

    TGeneral_Search_Frame* search_ = nullptr;
    TSmartDBGrid_VRO* grid_ = nullptr;
    TDBText* comment_ = nullptr;
    TSmartButton_VRO* new_ = nullptr;
    TSmartButton_VRO* edit_ = nullptr;
    TSmartButton_VRO* delete_ = nullptr;
    TSmartButton_VRO* select_ = nullptr;
    std::unique_ptr<TCostLevel_DM> levels_;
    std::unique_ptr<TVaroSearchManager> searchManager_;
};

}  // namespace basalt
