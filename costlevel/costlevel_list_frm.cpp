#include "costlevel/costlevel_list_frm.h"

#include <QFrame>
#include <QHBoxLayout>
#include <QLabel>
#include <QVBoxLayout>

#include "costlevel/costlevel_get_frm.h"
#include "costlevel/costlevel_kind.h"
#include "package/messages.h"
#include "package/part_title.h"
#include "package/screens/attached_screens.h"
#include "package/screens/db_label.h"
#include "package/screens/place.h"
#include "package/services.h"

namespace basalt {

namespace {

// Small enough for the oldest of the customers' displays.
constexpr int kMinimumWidth = 563;
constexpr int kMinimumHeight = 409;

}  // namespace

TCostLevel_List_FRM::TCostLevel_List_FRM(TFormMode mode, Value param, std::string text)
    : TBaseDock_FRM(mode, std::move(param), std::move(text)) {
    setObjectName("TCostLevel_List_FRM");
    setMinimumSize(kMinimumWidth, kMinimumHeight);
}

void TCostLevel_List_FRM::CreateControls() {
    search_ = attachedScreens().createGeneralSearch("TGeneral_Search_Frame1", base().SearchPanel());
    search_->AddItem({.FieldName = "Code", .Title = "کد", .DataType = TSearchDataType::Digits});
    search_->AddItem({.FieldName = "Name", .Title = "عنوان", .DataType = TSearchDataType::Text});
    search_->SetItemIndex(1);
    place(*base().SearchPanel(), *search_);

    auto* groupTitle = new QLabel(QStringLiteral("نام گروه"), base().ListPanel());
    groupTitle->setObjectName("Group_LBL");
    place(*base().ListPanel(), *groupTitle);
    grid_ = attachedScreens().createGrid("GroupList_GRD", base().ListPanel());
    grid_->AddColumn({.FieldName = "Code", .Title = QStringLiteral("کد")});
    grid_->AddColumn({.FieldName = "Name", .Title = QStringLiteral("عنوان")});
    grid_->OnDblClick = [this] { GroupList_GRDDblClick(); };
    place(*base().ListPanel(), *grid_);

    auto* panel = new QFrame(base().DetailPanel());
    panel->setObjectName("Comment_CXGB");
    auto* title = new QLabel(QStringLiteral("توضیحات :"), panel);
    comment_ = new TDBText(panel);
    comment_->setObjectName("DBComment_LBL");
    comment_->setAccessibleName(title->text());
    auto* row = new QHBoxLayout(panel);
    row->addWidget(title, 0, Qt::AlignTop);
    row->addWidget(comment_, 1);
    place(*base().DetailPanel(), *panel);

    new_ = base().AddButton("New_BTN", "جدید F4", TListButton::New);
    edit_ = base().AddButton("Edit_BTN", "ویرایش F5", TListButton::Edit);
    delete_ = base().AddButton("Delete_BTN", "حذف F7", TListButton::Delete);
    select_ = base().AddButton("Select_BTN", "انتخاب Enter", TListButton::Select);
    base().AddButton("Exit_BTN", "خروج Esc", TListButton::Exit);

    searchManager_ = attachedScreens().createSearchManager();
    searchManager_->AddFrame(search_);
    searchManager_->AfterSearch = [this] { base().EnableButtons(); };
    search_->OnChange = [this] { searchManager_->ExecuteFilter_DataSet(); };
    base().SetGrid(grid_);
    base().SetSearchManager(searchManager_.get());
    base().SetFirstSearch(search_);
}

void TCostLevel_List_FRM::FormCreate(QObject* sender) {
    TBaseDock_FRM::FormCreate(sender);
    part_ = static_cast<TSoftwarePart>(toInt64(CustomParam(0)));
    base().SetTitle(partTitle(part_));
}

void TCostLevel_List_FRM::SetComponents() {
    levels_ = std::make_unique<TCostLevel_DM>();
    grid_->SetDataSource(&levels_->CostLevel_List_DS);
    comment_->SetDataSource(&levels_->CostLevel_List_DS);
    comment_->SetFieldName("Comment");
    searchManager_->SetDataSource(&levels_->CostLevel_List_DS);
    new_->hide();
    delete_->hide();
}

void TCostLevel_List_FRM::Open() {
    // Rows of kind 4 are kept with the discount levels.
    levels_->CostLevel_GetAll(costTypeOf(part_) == ctPriceLevel ? "code > 0 AND CostType IN(1)"
                                                                : "code > 0 AND CostType IN(3, 4)");
}

void TCostLevel_List_FRM::InitSearch(const std::string& /*text*/) {
    searchManager_->SetDataSource(&levels_->CostLevel_List_DS);
    searchManager_->SetSQLScript(levels_->CostLevel_List_QUR.SQL.Text());
    search_->init();
}

void TCostLevel_List_FRM::InitSelect() {
    selectedCode_ = 0;
    selectedName_.clear();
}

void TCostLevel_List_FRM::RefreshList() {
    ResetDataset(levels_->CostLevel_List_QUR);
    base().EnableButtons();
}

void TCostLevel_List_FRM::FormShow(QObject* sender) {
    TBaseDock_FRM::FormShow(sender);
    base().SetShortCut();
    base().SetPopMenu();
    grid_->GoToLastRow();
    search_->FocusFirst();
}

bool TCostLevel_List_FRM::hasCurrentRow() const {
    return levels_->CostLevel_List_QUR.Active() && !levels_->CostLevel_List_QUR.IsEmpty();
}

int TCostLevel_List_FRM::currentCode() const {
    return static_cast<int>(levels_->CostLevel_List_QUR.FieldByName("Code").AsInteger());
}

void TCostLevel_List_FRM::New_BTNClick() {
    if (!isEnabledOrVisible(new_)) return;
    if (!base().ShowEditor(CreateEditor<TCostLevel_Get_FRM>(part_, Value{std::int64_t{0}}, fmNew))) return;
    RefreshList();
    grid_->GoToLastRow();
}

void TCostLevel_List_FRM::Edit_BTNClick() {
    if (!hasCurrentRow()) return;
    const int code = currentCode();
    if (code == 0) {
        NotEditable("کليه گروه ها");
        return;
    }
    if (base().ShowEditor(CreateEditor<TCostLevel_Get_FRM>(part_, Value{std::int64_t{code}}, fmEdit))) RefreshList();
}

void TCostLevel_List_FRM::Delete_BTNClick() {
    if (!isEnabledOrVisible(delete_)) return;
    if (!HavePermission(UserInfo(), part_, prDelete, false, true, "")) return;
    if (!hasCurrentRow()) return;
    if (levels_->CostLevel_Delete(currentCode(), costTypeOf(part_))) RefreshList();
}

void TCostLevel_List_FRM::Select_BTNClick() {
    if (!hasCurrentRow()) return;
    selectedCode_ = currentCode();
    selectedName_ = levels_->CostLevel_List_QUR.FieldByName("Name").AsString();
    accept();
}

void TCostLevel_List_FRM::GroupList_GRDDblClick() {
    if (isUsable(select_)) {
        select_->Click();
    } else {
        edit_->Click();
    }
}

}  // namespace basalt
