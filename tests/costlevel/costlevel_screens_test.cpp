// The list and the editor of levels, handler by handler, and the entry points that show them. What the host, the
// database and the bases were asked is one list of lines.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPointer>
#include <QSpinBox>

#include "ado/error.h"
#include "costlevel/costlevel_get_frm.h"
#include "costlevel/costlevel_list_frm.h"
#include "package/basalt_interface_unt.h"
#include "package/registry.h"
#include "package/services.h"
#include "tests/costlevel/level_rows.h"
#include "tests/support/fake_host.h"
#include "tests/support/fake_screens.h"
#include "tests/support/scripted_session.h"
#include "tests/support/tracing_session.h"

namespace basalt {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

const char* const kPriceList = "select Code,Name,Comment from CostLevel\n WHERE code > 0 AND CostType IN(1)";
const char* const kDiscountList = "select Code,Name,Comment from CostLevel\n WHERE code > 0 AND CostType IN(3, 4)";

class CostLevelScreens : public ::testing::Test {
protected:
    CostLevelScreens() { host.screens = &screens; }

    // The price levels 3 and 4, as the list shows them.
    static RowSet twoLevels() { return levelRows({{3, "همکار", "صنف", 1}, {4, "نمایندگی", nullptr, 1}}); }

    std::unique_ptr<TCostLevel_List_FRM> openList(TFormMode mode, RowSet rows) {
        script.expect(kPriceList, std::move(rows));
        auto list = CreateScreen<TCostLevel_List_FRM>(mode, Value{std::int64_t{spPriceLevels}}, "");
        list->ShowModal();
        host.calls.clear();
        return list;
    }

    template <class Control>
    static Control& control(const QWidget& screen, const char* name) {
        auto* found = dynamic_cast<Control*>(screen.findChild<QWidget*>(QString::fromLatin1(name)));
        if (found == nullptr) throw std::logic_error(std::string("there is no ") + name);
        return *found;
    }

    ScriptedSession script;
    TracingSession session{script, host.calls};
    FakeHost host{session};
    AttachedHost attached{host};
    FakeScreens screens{host.calls};
};

// The list

TEST_F(CostLevelScreens, listOpensInItsOrder) {
    script.expect(kPriceList, twoLevels());
    host.scaler = std::string("سطوح قیمت");
    const auto list = CreateScreen<TCostLevel_List_FRM>(fmBrowse, Value{std::int64_t{114}}, "");
    list->ShowModal();
    EXPECT_THAT(host.calls,
                ElementsAre("base FormCreate", "ScalerQuery('SoftwarePart', 'Title', 'Code', '114')",
                            "SetTitle سطوح قیمت", "search SetDataSource", kPriceList, "search SetDataSource",
                            std::string("SetSQLScript ") + kPriceList, "search init", "base FormShow", "SetShortCut",
                            "SetPopMenu", "search FocusFirst", "list shown"));
    EXPECT_EQ(control<FakeGrid>(*list, "GroupList_GRD").CurrentRow(), 1);  // the last row
}

TEST_F(CostLevelScreens, discountListShowsBothItsKinds) {
    script.expect(kDiscountList, levelRows({{1, "نقدی", "", 3}, {5, "پلکانی", "", 4}}));
    const auto list = CreateScreen<TCostLevel_List_FRM>(fmBrowse, Value{std::int64_t{134}}, "");
    list->ShowModal();
    EXPECT_EQ(host.calls.at(1), "ScalerQuery('SoftwarePart', 'Title', 'Code', '134')");
}

// A host whose table of parts lacks the list, or has a blank for it.
TEST_F(CostLevelScreens, listWithoutATitleBearsTheMenusCaption) {
    Registry registry;
    registerEntryPoints(registry);
    for (const auto& [part, entry, missing, caption] :
         {std::tuple{114, "Open_CostLevel_List", Value{}, "سطوح قیمت"},
          std::tuple{134, "Open_DiscountLevel_List", Value{}, "سطوح تخفیف"},
          std::tuple{134, "Open_DiscountLevel_List", Value{std::string("  ")}, "سطوح تخفیف"}}) {
        host.scaler = missing;
        host.calls.clear();
        const auto list = CreateScreen<TCostLevel_List_FRM>(fmBrowse, Value{std::int64_t{part}}, "");
        EXPECT_THAT(host.calls, ::testing::Contains(std::string("SetTitle ") + caption));
        EXPECT_EQ(registry.findEntryPoint(entry)->title, caption);
    }
}

TEST_F(CostLevelScreens, listHasItsControls) {
    const auto list = openList(fmBrowse, twoLevels());
    EXPECT_EQ(list->objectName(), "TCostLevel_List_FRM");
    EXPECT_GE(list->minimumWidth(), 563);
    EXPECT_GE(list->minimumHeight(), 409);

    const auto& grid = control<FakeGrid>(*list, "GroupList_GRD");
    ASSERT_EQ(grid.columns.size(), 2U);
    EXPECT_EQ(grid.columns[0].FieldName, "Code");
    EXPECT_EQ(grid.columns[0].Title, "کد");
    EXPECT_EQ(grid.columns[1].FieldName, "Name");
    EXPECT_EQ(grid.columns[1].Title, "عنوان");
    EXPECT_EQ(control<QLabel>(*list, "Group_LBL").text(), "نام گروه");
    EXPECT_EQ(control<QWidget>(*list, "Comment_CXGB").findChild<QLabel*>(QString(), Qt::FindDirectChildrenOnly)->text(),
              "توضیحات :");

    const auto& search = control<FakeSearch>(*list, "TGeneral_Search_Frame1");
    ASSERT_EQ(search.items.size(), 2U);
    EXPECT_EQ(search.items[0].FieldName, "Code");
    EXPECT_EQ(search.items[0].Title, "کد");
    EXPECT_EQ(search.items[0].DataType, TSearchDataType::Digits);
    EXPECT_EQ(search.items[1].FieldName, "Name");
    EXPECT_EQ(search.items[1].Title, "عنوان");
    EXPECT_EQ(search.items[1].DataType, TSearchDataType::Text);
    EXPECT_EQ(search.itemIndex, 1);

    EXPECT_EQ(control<FakeButton>(*list, "New_BTN").Caption(), "جدید F4");
    EXPECT_EQ(control<FakeButton>(*list, "Edit_BTN").Caption(), "ویرایش F5");
    EXPECT_EQ(control<FakeButton>(*list, "Delete_BTN").Caption(), "حذف F7");
    EXPECT_EQ(control<FakeButton>(*list, "Select_BTN").Caption(), "انتخاب Enter");
    EXPECT_EQ(control<FakeButton>(*list, "Exit_BTN").Caption(), "خروج Esc");
    EXPECT_FALSE(isUsable(&control<FakeButton>(*list, "New_BTN")));
    EXPECT_FALSE(isUsable(&control<FakeButton>(*list, "Delete_BTN")));
    EXPECT_TRUE(isUsable(&control<FakeButton>(*list, "Edit_BTN")));
}

TEST_F(CostLevelScreens, commentFollowsTheRow) {
    const auto list = openList(fmBrowse, twoLevels());
    const auto& comment = control<QLabel>(*list, "DBComment_LBL");
    TDataSet& rows = *control<FakeGrid>(*list, "GroupList_GRD").source->DataSet();
    EXPECT_EQ(comment.text(), "");
    rows.First();
    EXPECT_EQ(comment.text(), "صنف");
    rows.Close();
    EXPECT_EQ(comment.text(), "");
}

TEST_F(CostLevelScreens, searchRunsAndEnablesTheButtons) {
    const auto list = openList(fmBrowse, twoLevels());
    control<FakeSearch>(*list, "TGeneral_Search_Frame1").OnChange();
    EXPECT_THAT(host.calls, ElementsAre("ExecuteFilter_DataSet", "EnableButtons"));
}

TEST_F(CostLevelScreens, levelZeroIsNotEditable) {
    const auto list = openList(fmBrowse, levelRows({{0, "کلیه گروه ها", "", 1}}));
    host.expectMessage("NotEditable('کليه گروه ها')");
    list->Edit_BTNClick();
    EXPECT_THAT(host.calls, ElementsAre("NotEditable('کليه گروه ها')"));
}

TEST_F(CostLevelScreens, emptyListHasNothingToEditOrSelect) {
    const auto list = openList(fmSelect, levelRows({}));
    list->Edit_BTNClick();
    list->Select_BTNClick();
    EXPECT_THAT(host.calls, IsEmpty());
    EXPECT_EQ(list->result(), 0);
}

TEST_F(CostLevelScreens, editOpensTheEditorOnTheRowAndRefreshes) {
    const auto list = openList(fmBrowse, twoLevels());
    const char* const level = "SELECT * FROM CostLevel Where Code = 4 AND CostType = 1";
    script.expect(level, levelRows({{4, "نمایندگی", nullptr, 1}}));
    script.expect(level, levelRows({{4, "نمایندگی", nullptr, 1}}));
    script.expect(kPriceList, twoLevels());
    list->Edit_BTNClick();
    EXPECT_THAT(host.calls, ElementsAre("SetCodeControl Code_EDT", "SetSaveControl Save_BTN 2", level, level,
                                        "SetSoftwarePart 14", "base FormShow", "SetShortCut", "editor shown",
                                        "ResetDataset(CostLevel_List_QUR)", kPriceList, "EnableButtons"));
}

TEST_F(CostLevelScreens, editorThatClosedItselfIsNotShown) {
    const auto list = openList(fmBrowse, twoLevels());
    screens.editorsCloseOnCreate = true;
    list->Edit_BTNClick();
    EXPECT_THAT(host.calls, ElementsAre("SetCodeControl Code_EDT", "SetSaveControl Save_BTN 2"));
}

TEST_F(CostLevelScreens, newRecordThroughAShownButton) {
    const auto list = openList(fmBrowse, twoLevels());
    control<FakeButton>(*list, "New_BTN").show();
    script.setTable(levelTable());
    script.expect(
        "select isnull(Max(Code),0)+1 from (select isnull(Max(Code),0) as Code from CostLevel WHERE CostType = 1UNION "
        "ALL "
        "Select MAX(CAST(Code AS BIGINT)) as Code FROM CodeLock_TBL WHERE Status = 114) T1",
        numberRow(11));
    screens.onEditor = [this](TBaseGet_FRM& editor) {
        EXPECT_EQ(editor.Mode(), fmNew);
        EXPECT_EQ(editor.Code(), Value{std::int64_t{11}});
        EXPECT_TRUE(editor.base().IsSaved());
        EXPECT_EQ(control<QSpinBox>(editor, "Code_EDT").value(), 11);
        EXPECT_EQ(control<QComboBox>(editor, "Type_CMB").currentIndex(), 0);
        control<QLineEdit>(editor, "Name_EDT").setText("تازه");
        control<FakeButton>(editor, "Save_BTN").Click();
    };
    script.expect("select Name from CostLevel where Name = 'تازه' and Code <> 11  AND CostType = 1", nameRows({}));
    script.expect("SELECT * FROM CostLevel Where Code = 11 AND CostType = 1", levelRows({}));
    script.expectChange("INSERT INTO [CostLevel] ([Code], [Name], [Comment], [CostType]) VALUES (?, ?, ?, ?)",
                        {std::int64_t{11}, std::string("تازه"), std::string(), std::int64_t{1}}, 1);
    script.expect(kPriceList, levelRows({{3, "همکار", "صنف", 1}, {4, "نمایندگی", nullptr, 1}, {11, "تازه", "", 1}}));
    list->New_BTNClick();
    EXPECT_THAT(host.calls, ::testing::Contains("SetUserEvent(114, 1, '11', false, true)"));
    EXPECT_EQ(control<FakeGrid>(*list, "GroupList_GRD").CurrentRow(), 2);
}

TEST_F(CostLevelScreens, newLeavesTheListAloneWhenTheEditorClosedItself) {
    const auto list = openList(fmBrowse, twoLevels());
    screens.editorsCloseOnCreate = true;
    list->New_BTNClick();
    EXPECT_THAT(host.calls, ::testing::Not(::testing::Contains("editor shown")));
    EXPECT_THAT(host.calls, ::testing::Not(::testing::Contains("ResetDataset(CostLevel_List_QUR)")));
}

TEST_F(CostLevelScreens, newAndDeleteActUnlessTheirButtonIsHiddenAndDisabled) {
    const auto list = openList(fmBrowse, twoLevels());
    host.permitted = false;
    list->Delete_BTNClick();  // hidden, but enabled
    EXPECT_THAT(host.calls, ElementsAre("HavePermission(user 1, 114, 3, false, true, '')"));
    host.calls.clear();
    control<FakeButton>(*list, "Delete_BTN").setEnabled(false);
    control<FakeButton>(*list, "New_BTN").setEnabled(false);
    list->Delete_BTNClick();
    list->New_BTNClick();
    EXPECT_THAT(host.calls, IsEmpty());
    control<FakeButton>(*list, "Delete_BTN").show();
    list->Delete_BTNClick();  // shown, but disabled
    EXPECT_THAT(host.calls, ElementsAre("HavePermission(user 1, 114, 3, false, true, '')"));
}

TEST_F(CostLevelScreens, deleteAsksForThePermissionBeforeItLooksForARow) {
    const auto list = openList(fmBrowse, levelRows({}));
    list->Delete_BTNClick();
    EXPECT_THAT(host.calls, ElementsAre("HavePermission(user 1, 114, 3, false, true, '')"));
}

TEST_F(CostLevelScreens, deleteThroughAShownButtonAsksForThePermission) {
    const auto list = openList(fmBrowse, twoLevels());
    control<FakeButton>(*list, "Delete_BTN").show();
    host.permitted = false;
    list->Delete_BTNClick();
    EXPECT_THAT(host.calls, ElementsAre("HavePermission(user 1, 114, 3, false, true, '')"));
}

TEST_F(CostLevelScreens, deleteRefreshesWhenTheLevelIsGone) {
    const auto list = openList(fmBrowse, twoLevels());
    control<FakeButton>(*list, "Delete_BTN").show();
    host.expectMessage("MsgDeleteRow()", mrNo);
    list->Delete_BTNClick();
    EXPECT_EQ(host.calls.back(), "MsgDeleteRow()");

    host.expectMessage("MsgDeleteRow()", mrYes);
    script.expectChange("Delete from PrintsSettings where PartName='CostReport' and Comment='F4'", {}, 1);
    script.expectChange("Delete CostLevel where Code= 4 AND CostType = 1", {}, 1);
    script.expect(kPriceList, levelRows({{3, "همکار", "صنف", 1}}));
    list->Delete_BTNClick();
    EXPECT_EQ(control<FakeGrid>(*list, "GroupList_GRD").CurrentRow(), 0);
    EXPECT_EQ(host.calls.back(), "EnableButtons");
}

TEST_F(CostLevelScreens, deletingADiscountLevelIsOfItsKind) {
    script.expect(kDiscountList, levelRows({{1, "نقدی", "", 3}}));
    const auto list = CreateScreen<TCostLevel_List_FRM>(fmBrowse, Value{std::int64_t{134}}, "");
    list->ShowModal();
    host.calls.clear();
    control<FakeButton>(*list, "Delete_BTN").show();
    host.expectMessage("MsgDeleteRow()", mrNo);
    list->Delete_BTNClick();
    EXPECT_THAT(host.calls, ElementsAre("HavePermission(user 1, 134, 3, false, true, '')",
                                        "LocateLockCode_SoftwarePart('1', 134, 7, false)", "MsgDeleteRow()"));
}

TEST_F(CostLevelScreens, selectingBeginsWithNothingSelected) {
    const auto list = openList(fmSelect, twoLevels());
    list->Select_BTNClick();
    EXPECT_EQ(list->SelectedCode(), 4);
    EXPECT_EQ(list->SelectedName(), "نمایندگی");
    list->InitSelect();
    EXPECT_EQ(list->SelectedCode(), 0);
    EXPECT_EQ(list->SelectedName(), "");
}

TEST_F(CostLevelScreens, doubleClickSelectsWhereThereIsSomebodyToSelectFor) {
    const auto list = openList(fmSelect, twoLevels());
    control<FakeGrid>(*list, "GroupList_GRD").OnDblClick();
    EXPECT_EQ(list->SelectedCode(), 4);
    EXPECT_EQ(list->SelectedName(), "نمایندگی");
    EXPECT_EQ(list->result(), static_cast<int>(QDialog::Accepted));
}

TEST_F(CostLevelScreens, doubleClickEditsWhereTheSelectButtonIsShownButDisabled) {
    const auto list = openList(fmSelect, levelRows({{0, "کلیه گروه ها", "", 1}}));
    control<FakeButton>(*list, "Select_BTN").setEnabled(false);
    host.expectMessage("NotEditable('کليه گروه ها')");
    control<FakeGrid>(*list, "GroupList_GRD").OnDblClick();
    EXPECT_EQ(list->result(), 0);
}

TEST_F(CostLevelScreens, doubleClickEditsOtherwise) {
    const auto list = openList(fmBrowse, levelRows({{0, "کلیه گروه ها", "", 1}}));
    host.expectMessage("NotEditable('کليه گروه ها')");
    control<FakeGrid>(*list, "GroupList_GRD").OnDblClick();
    EXPECT_EQ(list->SelectedCode(), 0);
    EXPECT_EQ(list->result(), 0);
}

// The editor

class CostLevelEditor : public CostLevelScreens {
protected:
    std::unique_ptr<TCostLevel_Get_FRM> edit(TSoftwarePart part, const char* statement, const LevelRow& level) {
        script.setTable(levelTable());
        script.expect(statement, levelRows({level}));
        script.expect(statement, levelRows({level}));
        auto editor = CreateEditor<TCostLevel_Get_FRM>(part, Value{std::int64_t{level.code}}, fmEdit);
        host.calls.clear();
        return editor;
    }
    std::unique_ptr<TCostLevel_Get_FRM> editPriceLevel() {
        return edit(spPriceLevels, "SELECT * FROM CostLevel Where Code = 4 AND CostType = 1",
                    {4, "نمایندگی", "شهرستان", 1});
    }
    std::unique_ptr<TCostLevel_Get_FRM> editDiscountLevel() {
        return edit(spDiscountLevels, "SELECT * FROM CostLevel Where Code = 2 AND CostType = 3",
                    {2, "حجمی", nullptr, 3});
    }
};

TEST_F(CostLevelEditor, hasItsControls) {
    const auto editor = editPriceLevel();
    EXPECT_EQ(editor->objectName(), "TCostLevel_Get_FRM");
    EXPECT_EQ(control<QSpinBox>(*editor, "Code_EDT").findChild<QLineEdit*>()->maxLength(), 15);
    EXPECT_EQ(control<QWidget>(*editor, "Code_EDT").accessibleName(), "کد :");
    EXPECT_EQ(control<QWidget>(*editor, "Name_EDT").accessibleName(), "عنوان :");
    EXPECT_EQ(control<QWidget>(*editor, "Comment_EDT").accessibleName(), "توضیحات :");
    EXPECT_EQ(control<QWidget>(*editor, "Type_CMB").accessibleName(), "نوع :");
    QStringList titles;
    for (const QLabel* label : editor->findChildren<QLabel*>())
        titles.append(label->text());
    EXPECT_THAT(titles, ::testing::UnorderedElementsAre("کد :", "عنوان :", "توضیحات :", "نوع :"));
    const auto& types = control<QComboBox>(*editor, "Type_CMB");
    ASSERT_EQ(types.count(), 3);
    EXPECT_EQ(types.itemText(0), "خرید");
    EXPECT_EQ(types.itemText(1), "فروش");
    EXPECT_EQ(types.itemText(2), "خرید و فروش");
    EXPECT_FALSE(control<QWidget>(*editor, "UNITS_PNL").isVisibleTo(editor.get()));
    EXPECT_EQ(control<FakeButton>(*editor, "Save_BTN").Caption(), "ذخيره F3");
    EXPECT_EQ(control<FakeButton>(*editor, "Exit_BTN").Caption(), "خروج Esc");
}

TEST_F(CostLevelEditor, fillsFromTheRecord) {
    const auto editor = editPriceLevel();
    EXPECT_EQ(control<QSpinBox>(*editor, "Code_EDT").value(), 4);
    EXPECT_EQ(control<QLineEdit>(*editor, "Name_EDT").text(), "نمایندگی");
    EXPECT_EQ(control<QLineEdit>(*editor, "Comment_EDT").text(), "شهرستان");
    EXPECT_EQ(control<QComboBox>(*editor, "Type_CMB").currentIndex(), 1);
    EXPECT_TRUE(editor->base().IsSaved());
    EXPECT_FALSE(editor->IsNewRecordMode(Value{std::int64_t{0}}));
}

TEST_F(CostLevelEditor, fillingLeadsToTheName) {
    const auto editor = editPriceLevel();
    control<QLineEdit>(*editor, "Comment_EDT").setFocus();
    const char* const level = "SELECT * FROM CostLevel Where Code = 4 AND CostType = 1";
    script.expect(level, levelRows({{4, "نمایندگی", "شهرستان", 1}}));
    editor->OnFill(Value{std::int64_t{4}});
    EXPECT_EQ(editor->focusWidget(), &control<QLineEdit>(*editor, "Name_EDT"));
}

TEST_F(CostLevelEditor, aDiscountLevelHasNoTypeItem) {
    const auto editor = editDiscountLevel();
    EXPECT_EQ(control<QComboBox>(*editor, "Type_CMB").currentIndex(), -1);
}

TEST_F(CostLevelEditor, initEmptiesTheInputs) {
    const auto editor = editPriceLevel();
    control<QLineEdit>(*editor, "Comment_EDT").setFocus();
    editor->SetIsSaved(false);
    editor->SetCode(Value{std::int64_t{11}});
    editor->Init(false);
    EXPECT_EQ(control<QSpinBox>(*editor, "Code_EDT").value(), 11);
    EXPECT_EQ(control<QLineEdit>(*editor, "Name_EDT").text(), "");
    EXPECT_EQ(control<QLineEdit>(*editor, "Comment_EDT").text(), "");
    EXPECT_EQ(control<QComboBox>(*editor, "Type_CMB").currentIndex(), 0);
    EXPECT_EQ(editor->focusWidget(), &control<QLineEdit>(*editor, "Name_EDT"));
    EXPECT_TRUE(editor->base().IsSaved());
}

// The host sets the application's locale by what the user has chosen.
TEST_F(CostLevelEditor, codeReadsInTheDigitsOfTheApplication) {
    const QLocale before;
    QLocale::setDefault(QLocale(QLocale::Persian, QLocale::Iran));
    EXPECT_EQ(control<QSpinBox>(*editPriceLevel(), "Code_EDT").text(), "۴");
    QLocale::setDefault(QLocale::c());
    EXPECT_EQ(control<QSpinBox>(*editPriceLevel(), "Code_EDT").text(), "4");
    QLocale::setDefault(before);
}

TEST_F(CostLevelEditor, showingNamesItsFormOptions) {
    editPriceLevel()->FormShow(nullptr);
    EXPECT_THAT(host.calls, ElementsAre("SetSoftwarePart 14", "base FormShow", "SetShortCut"));
    const auto discount = editDiscountLevel();
    discount->FormShow(nullptr);
    EXPECT_THAT(host.calls, ElementsAre("SetSoftwarePart 27", "base FormShow", "SetShortCut"));
}

TEST_F(CostLevelEditor, showingEndsWithItsSettings) {
    class Editor final : public TCostLevel_Get_FRM {
    public:
        using TCostLevel_Get_FRM::TCostLevel_Get_FRM;
        void SetSetting() override { ++settings; }
        int settings = 0;
    };
    script.setTable(levelTable());
    for (int i = 0; i < 2; ++i)
        script.expect("SELECT * FROM CostLevel Where Code = 4 AND CostType = 1", levelRows({{4, "", "", 1}}));
    const auto editor = CreateEditor<Editor>(spPriceLevels, Value{std::int64_t{4}}, fmEdit);
    EXPECT_EQ(editor->settings, 1) << "of the construction";
    editor->FormShow(nullptr);
    EXPECT_EQ(editor->settings, 2);
}

TEST_F(CostLevelEditor, savesAPriceLevel) {
    const auto editor = editPriceLevel();
    control<QLineEdit>(*editor, "Name_EDT").setText("نمایندگان");
    const char* const lookup = "select Name from CostLevel where Name = 'نمایندگان' and Code <> 4  AND CostType = 1";
    script.expect(lookup, nameRows({}));
    script.expectChange(
        "UPDATE [CostLevel] SET [Name] = ? WHERE [CostType] = ? AND [Code] = ? AND CAST(CAST([Name] AS nvarchar(max)) "
        "AS varbinary(max)) = CAST(CAST(? AS nvarchar(max)) AS varbinary(max))",
        {std::string("نمایندگان"), std::int64_t{1}, std::int64_t{4}, std::string("نمایندگی")}, 1);
    control<FakeButton>(*editor, "Save_BTN").Click();
    EXPECT_THAT(
        host.calls,
        ElementsAre(lookup,
                    "UPDATE [CostLevel] SET [Name] = ? WHERE [CostType] = ? AND [Code] = ? AND CAST(CAST([Name] AS "
                    "nvarchar(max)) AS varbinary(max)) = CAST(CAST(? AS nvarchar(max)) AS varbinary(max)) | "
                    "نمایندگان | 1 | 4 | نمایندگی",
                    "SetUserEvent(114, 2, '4', false, true)"));
}

TEST_F(CostLevelEditor, savesOverTheRecordInEveryModeButNew) {
    script.setTable(levelTable());
    const char* const level = "SELECT * FROM CostLevel Where Code = 4 AND CostType = 1";
    for (int i = 0; i < 2; ++i)
        script.expect(level, levelRows({{4, "نمایندگی", "شهرستان", 1}}));
    const auto editor = CreateEditor<TCostLevel_Get_FRM>(spPriceLevels, Value{std::int64_t{4}}, fmBrowse);
    control<QLineEdit>(*editor, "Comment_EDT").setText("ده کارتن");
    script.expectChange(
        "UPDATE [CostLevel] SET [Comment] = ? WHERE [CostType] = ? AND [Code] = ? AND CAST(CAST([Comment] AS "
        "nvarchar(max)) AS varbinary(max)) = CAST(CAST(? AS nvarchar(max)) AS varbinary(max))",
        {std::string("ده کارتن"), std::int64_t{1}, std::int64_t{4}, std::string("شهرستان")}, 1);
    editor->OnSave();
    EXPECT_EQ(host.calls.back(), "SetUserEvent(114, 2, '4', false, true)");
}

TEST_F(CostLevelEditor, savesADiscountLevel) {
    const auto editor = editDiscountLevel();
    control<QLineEdit>(*editor, "Comment_EDT").setText("ده کارتن");
    const char* const lookup = "select Name from CostLevel where Name = 'حجمی' and Code <> 2  AND CostType = 3";
    script.expect(lookup, nameRows({}));
    script.expectChange(
        "UPDATE [CostLevel] SET [Comment] = ? WHERE [CostType] = ? AND [Code] = ? AND [Comment] IS NULL",
        {std::string("ده کارتن"), std::int64_t{3}, std::int64_t{2}}, 1);
    control<FakeButton>(*editor, "Save_BTN").Click();
    EXPECT_EQ(host.calls.back(), "SetUserEvent(134, 2, '2', false, true)");
}

TEST_F(CostLevelEditor, failedSaveIsNotLogged) {
    const auto editor = editPriceLevel();
    control<QLineEdit>(*editor, "Name_EDT").setText("نمایندگان");
    script.expect("select Name from CostLevel where Name = 'نمایندگان' and Code <> 4  AND CostType = 1", nameRows({}));
    script.expectChange(
        "UPDATE [CostLevel] SET [Name] = ? WHERE [CostType] = ? AND [Code] = ? AND CAST(CAST([Name] AS nvarchar(max)) "
        "AS varbinary(max)) = CAST(CAST(? AS nvarchar(max)) AS varbinary(max))",
        {std::string("نمایندگان"), std::int64_t{1}, std::int64_t{4}, std::string("نمایندگی")}, 0);
    EXPECT_THROW(control<FakeButton>(*editor, "Save_BTN").Click(), DatabaseError);
    EXPECT_THAT(host.calls, ::testing::Not(::testing::Contains("SetUserEvent(114, 2, '4', false, true)")));
}

TEST_F(CostLevelEditor, codeIsRequiredFirst) {
    const auto editor = editPriceLevel();
    control<QSpinBox>(*editor, "Code_EDT").findChild<QLineEdit*>()->clear();
    control<QLineEdit>(*editor, "Name_EDT").clear();
    host.expectMessage("MsgRequiredField('کد')");
    EXPECT_FALSE(editor->IsValid());
    EXPECT_EQ(host.lastMessage.control, &control<QSpinBox>(*editor, "Code_EDT"));
    EXPECT_EQ(host.lastMessage.form, editor.get());
    EXPECT_EQ(editor->focusWidget(), &control<QSpinBox>(*editor, "Code_EDT"));
}

TEST_F(CostLevelEditor, nameIsRequired) {
    const auto editor = editPriceLevel();
    control<QLineEdit>(*editor, "Name_EDT").clear();
    control<QLineEdit>(*editor, "Comment_EDT").setFocus();
    host.expectMessage("MsgRequiredField('نام')");
    EXPECT_FALSE(editor->IsValid());
    EXPECT_EQ(host.lastMessage.control, &control<QLineEdit>(*editor, "Name_EDT"));
    EXPECT_EQ(editor->focusWidget(), &control<QLineEdit>(*editor, "Name_EDT"));
    EXPECT_THAT(host.calls, ElementsAre("MsgRequiredField('نام')"));
}

TEST_F(CostLevelEditor, blanksAreNoName) {
    const auto editor = editPriceLevel();
    for (const QString& name : {QStringLiteral("   "), QStringLiteral(" \u200C"), QStringLiteral("\u200F\u00AD")}) {
        host.calls.clear();
        control<QLineEdit>(*editor, "Name_EDT").setText(name);
        host.expectMessage("MsgRequiredField('نام')");
        EXPECT_FALSE(editor->IsValid());
        EXPECT_THAT(host.calls, ElementsAre("MsgRequiredField('نام')"));
    }
}

TEST_F(CostLevelEditor, priceLevelsDoNotShareAName) {
    const auto editor = editPriceLevel();
    control<QLineEdit>(*editor, "Comment_EDT").setFocus();
    script.expect("select Name from CostLevel where Name = 'نمایندگی' and Code <> 4  AND CostType = 1",
                  nameRows({"نمایندگی"}));
    host.expectMessage("MsgRepeatedField('نام', 'سطح قیمتی')");
    EXPECT_FALSE(editor->IsValid());
    EXPECT_EQ(host.lastMessage.control, &control<QLineEdit>(*editor, "Name_EDT"));
    EXPECT_EQ(editor->focusWidget(), &control<QLineEdit>(*editor, "Name_EDT"));
}

TEST_F(CostLevelEditor, discountLevelsDoNotShareAName) {
    const auto editor = editDiscountLevel();
    script.expect("select Name from CostLevel where Name = 'حجمی' and Code <> 2  AND CostType = 3", nameRows({"حجمی"}));
    host.expectMessage("MsgRepeatedField('نام', 'سطح تخفیف')");
    EXPECT_FALSE(editor->IsValid());
}

TEST_F(CostLevelEditor, newDiscountLevelTakesItsCodeFromItsKind) {
    script.expect(
        "select isnull(Max(Code),0)+1 from (select isnull(Max(Code),0) as Code from CostLevel WHERE CostType = 3UNION "
        "ALL "
        "Select MAX(CAST(Code AS BIGINT)) as Code FROM CodeLock_TBL WHERE Status = 134) T1",
        numberRow(6));
    const auto editor = CreateEditor<TCostLevel_Get_FRM>(spDiscountLevels, Value{std::int64_t{0}}, fmNew);
    EXPECT_EQ(editor->Code(), Value{std::int64_t{6}});
    EXPECT_EQ(control<QLineEdit>(*editor, "Name_EDT").text(), "");
}

// The entry points

class CostLevelEntryPoints : public CostLevelScreens {
protected:
    CostLevelEntryPoints() { registerEntryPoints(registry); }

    std::string resultOf(const char* name) {
        FunctionState state;
        FunctionCall call(state, {});
        registry.findEntryPoint(name)->run(call);
        return call.resultValue().toJson();
    }

    Registry registry;
};

TEST_F(CostLevelEntryPoints, areListed) {
    std::vector<std::string> lines;
    for (const EntryPoint& entry : registry.entryPoints()) {
        lines.push_back(entry.name + ' ' + std::to_string(entry.part) + ' ' + std::to_string(entry.permission) + ' ' +
                        entry.result);
        EXPECT_EQ(entry.subsystem, "costlevel");
        EXPECT_FALSE(entry.title.empty());
        EXPECT_FALSE(entry.summary.empty());
    }
    EXPECT_THAT(lines, ElementsAre("Select_CostLevel_List 114 6 integer", "Open_CostLevel_List 114 6 ",
                                   "Open_DiscountLevel_List 134 6 ", "Open_CostReport 519 6 "));
}

TEST_F(CostLevelEntryPoints, showNothingWithoutThePermission) {
    host.permitted = false;
    Open_CostLevel_List();
    Open_DiscountLevel_List();
    (void)Select_CostLevel_List();
    EXPECT_EQ(resultOf("Select_CostLevel_List"), "null");
    EXPECT_THAT(host.calls, ElementsAre("HavePermission(user 1, 114, 6, true, true, '')",
                                        "HavePermission(user 1, 134, 6, true, true, '')",
                                        "HavePermission(user 1, 114, 6, true, true, '')",
                                        "HavePermission(user 1, 114, 6, true, true, '')"));
}

TEST_F(CostLevelEntryPoints, openListsForMaintenance) {
    screens.onList = [](TBaseDock_FRM& list) {
        EXPECT_EQ(list.Mode(), fmBrowse);
        EXPECT_EQ(list.CustomText(), "");
    };
    // Between making the screen and showing it.
    const auto named = [this](const std::string& part, const char* firstOfShowing) {
        const auto at = std::find(host.calls.begin(), host.calls.end(), part);
        const auto shown = std::find(host.calls.begin(), host.calls.end(), firstOfShowing);
        return shown != host.calls.end() && at + 1 == shown;
    };
    script.expect(kPriceList, twoLevels());
    Open_CostLevel_List();
    EXPECT_EQ(host.calls.front(), "HavePermission(user 1, 114, 6, true, true, '')");
    EXPECT_TRUE(named("SetSoftwarePart 14", kPriceList));
    host.calls.clear();
    script.expect(kDiscountList, twoLevels());
    Open_DiscountLevel_List();
    EXPECT_EQ(host.calls.front(), "HavePermission(user 1, 134, 6, true, true, '')");
    EXPECT_TRUE(named("SetSoftwarePart 27", kDiscountList));
}

TEST_F(CostLevelEntryPoints, selectGivesThePickedCode) {
    screens.onList = [](TBaseDock_FRM& list) {
        EXPECT_EQ(list.Mode(), fmSelect);
        EXPECT_EQ(list.CustomText(), "");
        list.Select_BTNClick();
    };
    script.expect(kPriceList, twoLevels());
    EXPECT_EQ(Select_CostLevel_List(), 4);
    EXPECT_THAT(host.calls, ::testing::Not(::testing::Contains(::testing::StartsWith("SetSoftwarePart"))));
    script.expect(kPriceList, twoLevels());
    EXPECT_EQ(resultOf("Select_CostLevel_List"), "4");
}

TEST_F(CostLevelEntryPoints, selectWithoutAPickGivesZero) {
    screens.onList = [](TBaseDock_FRM& list) { list.Exit_BTNClick(); };
    script.expect(kPriceList, twoLevels());
    EXPECT_EQ(Select_CostLevel_List(), 0);
    script.expect(kPriceList, twoLevels());
    EXPECT_EQ(resultOf("Select_CostLevel_List"), "0");
}

struct EntryOfList {
    const char* name;
    void (*open)();
    const char* statement;
};

TEST_F(CostLevelEntryPoints, errorsPassAfterTheScreenIsGone) {
    const EntryOfList entries[]{
        {"Select_CostLevel_List", [] { static_cast<void>(Select_CostLevel_List()); }, kPriceList},
        {"Open_CostLevel_List", &Open_CostLevel_List, kPriceList},
        {"Open_DiscountLevel_List", &Open_DiscountLevel_List, kDiscountList}};
    for (const EntryOfList& entry : entries) {
        SCOPED_TRACE(entry.name);
        QPointer<QWidget> shown;
        screens.onList = [&shown](TBaseDock_FRM& list) {
            shown = &list;
            throw DatabaseError(ErrorCategory::Connection, "08S01", 0, "the connection is lost");
        };
        script.expect(entry.statement, twoLevels());
        EXPECT_THROW(entry.open(), DatabaseError);
        EXPECT_TRUE(shown.isNull());
        EXPECT_EQ(host.calls.back(), "list shown");
    }
}

TEST_F(CostLevelEntryPoints, needAHostThatShowsScreens) {
    host.screens = nullptr;
    EXPECT_THROW(Open_CostLevel_List(), UsageError);
}

}  // namespace
}  // namespace basalt
