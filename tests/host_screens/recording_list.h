// A list screen that records its hooks and handlers.
#pragma once

#include <string>
#include <vector>

#include "package/screens/attached_screens.h"
#include "package/screens/base_dock_frm.h"

namespace basalt::host {

class RecordingList final : public TBaseDock_FRM {
public:
    RecordingList(std::vector<std::string>& calls, TDataSource& source, TFormMode mode, std::string text = {})
        : TBaseDock_FRM(mode, Value{std::int64_t{114}}, std::move(text)), calls_(calls), source_(source) {
        setObjectName("RecordingList_FRM");
    }

    void CreateControls() override {
        calls_.push_back("CreateControls");
        search = attachedScreens().createGeneralSearch("TGeneral_Search_Frame1", base().SearchPanel());
        search->AddItem({"Code", "کد", TSearchDataType::Digits});
        search->AddItem({"Name", "عنوان", TSearchDataType::Text});
        search->SetItemIndex(1);
        grid = attachedScreens().createGrid("List_GRD", base().ListPanel());
        TGridColumn code;
        code.FieldName = "Code";
        code.Title = QStringLiteral("کد");
        TGridColumn name;
        name.FieldName = "Name";
        name.Title = QStringLiteral("عنوان");
        TGridColumn price;
        price.FieldName = "Price";
        price.Title = QStringLiteral("قیمت فروش");
        price.DisplayFormat = "#,#0.##;-#,#0.##;0";
        grid->AddColumn(code);
        grid->AddColumn(name);
        grid->AddColumn(price);
        grid->OnDblClick = [this] { calls_.push_back("double click"); };
        base().AddButton("New_BTN", "جدید F4", TListButton::New);
        base().AddButton("Edit_BTN", "ویرایش F5", TListButton::Edit);
        base().AddButton("Delete_BTN", "حذف F7", TListButton::Delete);
        base().AddButton("Select_BTN", "انتخاب Enter", TListButton::Select);
        base().AddButton("Exit_BTN", "خروج Esc", TListButton::Exit);
        manager = attachedScreens().createSearchManager();
        manager->AddFrame(search);
        base().SetGrid(grid);
        base().SetSearchManager(manager.get());
        base().SetFirstSearch(search);
    }
    void FormCreate(QObject* sender) override {
        calls_.push_back("FormCreate");
        TBaseDock_FRM::FormCreate(sender);
        base().SetTitle("سطوح قیمت");
    }
    void SetComponents() override {
        calls_.push_back("SetComponents");
        grid->SetDataSource(&source_);
        manager->SetDataSource(&source_);
    }
    void Open() override {
        calls_.push_back("Open");
        if (onOpen) onOpen();
    }
    void InitSearch(const std::string& text) override {
        calls_.push_back("InitSearch " + text);
        if (source_.DataSet()) manager->SetSQLScript(source_.DataSet()->statementText());
        search->init();
    }
    void InitSelect() override { calls_.push_back("InitSelect"); }
    void RefreshList() override {
        calls_.push_back("RefreshList");
        if (onRefresh) onRefresh();
    }
    void FormShow(QObject* sender) override {
        calls_.push_back("FormShow");
        TBaseDock_FRM::FormShow(sender);
        base().SetShortCut();
        base().SetPopMenu();
    }
    std::vector<std::string> GetMasterReport_Description() override {
        if (!masterDescription.empty()) calls_.push_back("master description");
        return masterDescription;
    }
    std::vector<std::string> GetDetailReport_Description(const Value& key) override {
        if (!detailDescription.empty()) calls_.push_back("detail description " + toText(key));
        return detailDescription;
    }
    void New_BTNClick() override { handled("New"); }
    void Edit_BTNClick() override { handled("Edit"); }
    void Delete_BTNClick() override { handled("Delete"); }
    void Select_BTNClick() override {
        handled("Select");
        accept();
    }

    TGeneral_Search_Frame* search = nullptr;
    TSmartDBGrid_VRO* grid = nullptr;
    std::unique_ptr<TVaroSearchManager> manager;
    std::vector<std::string> masterDescription;
    std::vector<std::string> detailDescription;
    std::function<void()> onOpen;
    std::function<void()> onRefresh;
    std::function<void()> onHandler;

private:
    void handled(const char* handler) {
        calls_.push_back(handler);
        if (onHandler) onHandler();
    }

    std::vector<std::string>& calls_;
    TDataSource& source_;
};

}  // namespace basalt::host
