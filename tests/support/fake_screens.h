// Screen services for tests of the module's screens: plain controls that note what is done to them, bases that drive
// the hooks in their order and, instead of waiting for a user, run what the test gives them.
//
//   FakeScreens screens(host.calls);
//   host.screens = &screens;
//   screens.onList = [](TBaseDock_FRM& list) { list.Select_BTNClick(); };
//   const int code = Select_CostLevel_List();
#pragma once

#include <QListView>
#include <QPushButton>
#include <functional>
#include <memory>
#include <numeric>
#include <string>
#include <utility>
#include <vector>

#include "ado/query.h"
#include "package/screens/screen_services.h"

namespace basalt {

using Trace = std::vector<std::string>;

class FakeButton final : public TSmartButton_VRO {
public:
    using TSmartButton_VRO::TSmartButton_VRO;
    void SetCaption(const std::string& caption) override { caption_ = caption; }
    [[nodiscard]] std::string Caption() const override { return caption_; }
    void Click() override {
        if (isEnabled() && OnClick) OnClick();
    }
    void SetSaveMode(int mode) override { saveMode = mode; }

    int saveMode = -1;

private:
    std::string caption_;
};

class FakeGrid final : public TSmartDBGrid_VRO {
public:
    using TSmartDBGrid_VRO::TSmartDBGrid_VRO;
    void SetDataSource(TDataSource* shown) override { source = shown; }
    int AddColumn(const TGridColumn& column) override {
        columns.push_back(column);
        return ColumnCount() - 1;
    }
    void SetColumn(int index, const TGridColumn& column) override {
        columns.at(static_cast<std::size_t>(index)) = column;
    }
    [[nodiscard]] TGridColumn Column(int index) const override { return columns.at(static_cast<std::size_t>(index)); }
    [[nodiscard]] int ColumnCount() const override { return static_cast<int>(columns.size()); }
    void RemoveColumn(int index) override { columns.erase(columns.begin() + index); }
    [[nodiscard]] std::vector<int> ColumnOrder() const override {
        if (!order.empty()) return order;
        std::vector<int> all(columns.size());
        std::iota(all.begin(), all.end(), 0);
        return all;
    }
    void SetMultiSelect(bool on) override { multiSelect = on; }
    void SetTitleLines(int lines) override { titleLines = lines; }
    [[nodiscard]] int CurrentRow() const override {
        const TDataSet* rows = source != nullptr ? source->DataSet() : nullptr;
        return rows != nullptr ? rows->RecNo() - 1 : -1;
    }
    [[nodiscard]] std::vector<int> SelectedRows() const override { return {CurrentRow()}; }
    [[nodiscard]] QAbstractItemView* View() override { return &view_; }
    void GoToLastRow() override {
        if (source != nullptr && source->DataSet() != nullptr) source->DataSet()->Last();
    }
    void CheckPrintable() const override {
        if (onCheckPrintable) onCheckPrintable();
    }
    void PrintPreview(const TPrintSetting& setting) override { printed.push_back(setting); }

    TDataSource* source = nullptr;
    std::vector<TGridColumn> columns;
    std::vector<int> order;  // as the user has it; empty: as they are
    std::function<void()> onCheckPrintable;
    std::vector<TPrintSetting> printed;
    bool multiSelect = false;
    int titleLines = 1;

private:
    QListView view_;
};

class FakeSearch final : public TGeneral_Search_Frame {
public:
    FakeSearch(Trace& trace, QWidget* parent) : TGeneral_Search_Frame(parent), trace_(trace) {}
    void init() override { trace_.emplace_back("search init"); }
    [[nodiscard]] std::string Filter() const override { return {}; }
    void Clear() override {}
    void FocusFirst() override { trace_.emplace_back("search FocusFirst"); }
    void AddItem(const TSearchItem& item) override { items.push_back(item); }
    void SetItemIndex(int index) override { itemIndex = index; }
    [[nodiscard]] int ItemIndex() const override { return itemIndex; }

    std::vector<TSearchItem> items;
    int itemIndex = 0;

private:
    Trace& trace_;
};

class FakeRange final : public TRange_Search_Frame {
public:
    using TRange_Search_Frame::TRange_Search_Frame;
    void init() override { ++inits; }
    [[nodiscard]] std::string Filter() const override { return filter; }
    void Clear() override { filter.clear(); }
    void FocusFirst() override {}
    void AddItem(const TSearchItem& item) override { items.push_back(item); }
    void DeleteItem(int index) override {
        if (index == narrowing) filter.clear();
        items.erase(items.begin() + index);
    }
    [[nodiscard]] int ItemCount() const override { return static_cast<int>(items.size()); }
    [[nodiscard]] TSearchItem Item(int index) const override { return items.at(static_cast<std::size_t>(index)); }
    // The range is the whole filter here, given as its lower bound.
    [[nodiscard]] TSearchRange Range() const override { return {.Item = narrowing, .From = filter, .To = {}}; }
    void SetRange(const TSearchRange& range) override {
        narrowing = range.Item;
        filter = range.From;
    }

    std::vector<TSearchItem> items;
    int inits = 0;
    std::string filter;  // as if entered
    int narrowing = -1;  // for which item
};

// A change of tab goes the same way as on a screen: to the screen's reaction, or else to the frame's own.
class FakeTabs final : public TTab_Search_Frame {
public:
    FakeTabs(Trace& trace, QWidget* parent) : TTab_Search_Frame(parent), trace_(trace) {}
    void init() override {
        index_ = 0;
        ++inits;
    }
    [[nodiscard]] std::string Filter() const override { return {}; }
    void Clear() override {}
    void FocusFirst() override {}
    void SetFieldName(const std::string& field) override { fieldName = field; }
    void AddTab(const std::string& title, const std::string& value) override { tabs.emplace_back(title, value); }
    void SetTabIndex(int index) override {
        index_ = index;
        if (OnTabChange) {
            OnTabChange();
        } else {
            Search_TBCChange();
        }
    }
    [[nodiscard]] int TabIndex() const override { return index_; }
    void Search_TBCChange() override {
        trace_.emplace_back("Search_TBCChange");
        if (OnChange) OnChange();
    }

    std::string fieldName;
    std::vector<std::pair<std::string, std::string>> tabs;  // title and value
    int inits = 0;

private:
    Trace& trace_;
    int index_ = 0;
};

// The chips of a kind are what is told of them: kind 1 the category, kind 2 nothing that is known here.
class FakeCategories final : public TCategory_frame {
public:
    FakeCategories(Trace& trace, QWidget* parent)
        : TCategory_frame(parent), trace_(trace), editor_(this), select_(this) {}
    void open(bool anew) override {
        trace_.push_back(std::string("categories open ") + (anew ? "true" : "false"));
        if (anew) bubbles.clear();
    }
    void create_bubble(int category, int kind) override {
        trace_.push_back("create_bubble " + std::to_string(category) + ' ' + std::to_string(kind));
        if (kind == 1) bubbles = {{.Code = category, .Name = std::to_string(category)}};
    }
    void createmenuItemByCode(int category) override {
        trace_.push_back("createmenuItemByCode " + std::to_string(category));
    }
    void Fill_allPop() override { trace_.emplace_back("Fill_allPop"); }
    void Fill_allPopname() override { trace_.emplace_back("Fill_allPopname"); }
    [[nodiscard]] std::vector<TCategoryBubble> Bubbles() const override { return bubbles; }
    void ClearBubbles() override { bubbles.clear(); }
    void SelectLastBubble() override { trace_.emplace_back("SelectLastBubble"); }
    [[nodiscard]] int CurrentCode() const override { return bubbles.empty() ? 0 : bubbles.back().Code; }
    [[nodiscard]] int BubbleLimit() const override { return 3; }
    [[nodiscard]] QLineEdit* Editor() override { return &editor_; }
    [[nodiscard]] QAbstractButton* SelectButton() override { return &select_; }
    void EditorKeyUp(int key) override { trace_.push_back("EditorKeyUp " + std::to_string(key)); }
    void EditorValueEditDone(int category) override { create_bubble(category, 1); }

    std::vector<TCategoryBubble> bubbles;

private:
    Trace& trace_;
    QLineEdit editor_;
    QPushButton select_;
};

class FakeSearchManager final : public TVaroSearchManager {
public:
    explicit FakeSearchManager(Trace& trace) : trace_(trace) {}
    void SetDataSource(TDataSource* shown) override {
        trace_.emplace_back("search SetDataSource");
        source = shown;
    }
    void SetSQLScript(const std::string& sql) override { trace_.push_back("SetSQLScript " + sql); }
    void AddFrame(TSearchFrame* /*frame*/) override {}
    void ExecuteFilter_DataSet() override {
        trace_.emplace_back("ExecuteFilter_DataSet");
        if (onSearch) onSearch();
        if (AfterSearch) AfterSearch();
    }

    TDataSource* source = nullptr;
    std::function<void()> onSearch;

private:
    Trace& trace_;
};

class FakeFormOption final : public TFormOption {
public:
    explicit FakeFormOption(Trace& trace) : trace_(trace) {}
    void SetSoftwarePart(TComponentSoftwarePart part) override {
        trace_.push_back("SetSoftwarePart " + std::to_string(part));
    }

private:
    Trace& trace_;
};

class FakeDockBase final : public DockBase {
public:
    using WhileShown = std::function<void(TBaseDock_FRM&)>;

    FakeDockBase(TBaseDock_FRM& screen, Trace& trace, const WhileShown& whileShown)
        : screen_(screen), trace_(trace), whileShown_(whileShown), option_(trace) {}

    [[nodiscard]] QWidget* SearchPanel() override { return panel("Search_PNL"); }
    [[nodiscard]] QWidget* ListPanel() override { return panel("List_PNL"); }
    [[nodiscard]] QWidget* DetailPanel() override { return panel("Detail_PNL"); }
    TSmartButton_VRO* AddButton(const std::string& objectName, const std::string& caption, TListButton role) override {
        auto* button = new FakeButton(&screen_);
        button->setObjectName(QString::fromStdString(objectName));
        button->SetCaption(caption);
        button->OnClick = handler(role);
        if (role == TListButton::Select && screen_.Mode() != fmSelect) button->hide();
        return button;
    }
    void SetGrid(TSmartDBGrid_VRO* /*grid*/) override {}
    void SetSearchManager(TVaroSearchManager* /*manager*/) override {}
    void SetFirstSearch(TSearchFrame* /*frame*/) override {}
    void FormCreate() override { trace_.emplace_back("base FormCreate"); }
    void FormShow() override { trace_.emplace_back("base FormShow"); }
    void EnableButtons() override { trace_.emplace_back("EnableButtons"); }
    void SetTitle(const std::string& title) override { trace_.push_back("SetTitle " + title); }
    void SetShortCut() override { trace_.emplace_back("SetShortCut"); }
    void SetPopMenu() override { trace_.emplace_back("SetPopMenu"); }
    [[nodiscard]] TFormOption& FormOption() override { return option_; }
    int ShowModal() override {
        screen_.Open();
        screen_.InitSearch(screen_.CustomText());
        if (screen_.Mode() == fmSelect) screen_.InitSelect();
        screen_.FormShow(&screen_);
        trace_.emplace_back("list shown");
        if (whileShown_) whileShown_(screen_);
        return screen_.result() == QDialog::Accepted ? mrOk : mrCancel;
    }
    bool ShowEditor(std::unique_ptr<TBaseGet_FRM> editor) override {
        if (editor->ClosedOnCreate()) return false;
        editor->ShowModal();
        return true;
    }

private:
    QWidget* panel(const char* name) {
        if (auto* there = screen_.findChild<QWidget*>(QString::fromLatin1(name))) return there;
        auto* made = new QWidget(&screen_);
        made->setObjectName(QString::fromLatin1(name));
        return made;
    }
    std::function<void()> handler(TListButton role) {
        switch (role) {
            case TListButton::New:
                return [this] { screen_.New_BTNClick(); };
            case TListButton::Edit:
                return [this] { screen_.Edit_BTNClick(); };
            case TListButton::Delete:
                return [this] { screen_.Delete_BTNClick(); };
            case TListButton::Select:
                return [this] { screen_.Select_BTNClick(); };
            case TListButton::Exit:
                return [this] { screen_.Exit_BTNClick(); };
            default:
                return {};
        }
    }

    TBaseDock_FRM& screen_;
    Trace& trace_;
    const WhileShown& whileShown_;
    FakeFormOption option_;
};

class FakeGetBase final : public GetBase {
public:
    using WhileShown = std::function<void(TBaseGet_FRM&)>;

    FakeGetBase(TBaseGet_FRM& editor, Trace& trace, const WhileShown& whileShown, bool closesOnCreate)
        : editor_(editor),
          trace_(trace),
          whileShown_(whileShown),
          option_(trace),
          panel_(new QWidget(&editor)),
          closesOnCreate_(closesOnCreate) {}

    [[nodiscard]] QWidget* FormPanel() override { return panel_; }
    TSmartButton_VRO* AddButton(const std::string& objectName, const std::string& caption,
                                TEditorButton role) override {
        auto* button = new FakeButton(&editor_);
        button->setObjectName(QString::fromStdString(objectName));
        button->SetCaption(caption);
        if (role == TEditorButton::Save) button->OnClick = [this] { Save(TSaveKind::Save); };
        return button;
    }
    void SetCodeControl(QWidget* control) override {
        trace_.push_back("SetCodeControl " + control->objectName().toStdString());
    }
    void SetSaveControl(TSmartButton_VRO* button, int saveMode) override {
        trace_.push_back("SetSaveControl " + button->objectName().toStdString() + ' ' + std::to_string(saveMode));
    }
    void FormCreate() override {}
    void FormShow() override { trace_.emplace_back("base FormShow"); }
    void SetShortCut() override { trace_.emplace_back("SetShortCut"); }
    void SetTitle(const std::string& /*title*/) override {}
    void SetIsSaved(bool saved) override { saved_ = saved; }
    [[nodiscard]] bool IsSaved() const override { return saved_; }
    [[nodiscard]] TFormOption& FormOption() override { return option_; }
    void OpenRecord() override {
        if (closesOnCreate_) {
            editor_.CloseOnCreate();
            return;
        }
        if (editor_.IsNewRecordMode(editor_.Code()) || editor_.Mode() == fmNew) {
            editor_.SetCode(editor_.GetNewCode());
            editor_.Init(true);
            return;
        }
        editor_.PrepareQuery(editor_.Code());
        editor_.BeforeFill(editor_.Code());
        editor_.OnFill(editor_.Code());
        editor_.AfterFill(editor_.Code());
    }
    int ShowModal() override {
        editor_.FormShow(&editor_);
        trace_.emplace_back("editor shown");
        if (whileShown_) whileShown_(editor_);
        return mrOk;
    }
    void Save(TSaveKind /*kind*/) override {
        if (!editor_.IsValid()) return;
        editor_.BeforeSave();
        editor_.OnSave();
        editor_.AfterSave();
        saved_ = true;
    }
    [[nodiscard]] bool MayClose() override { return true; }

private:
    TBaseGet_FRM& editor_;
    Trace& trace_;
    const WhileShown& whileShown_;
    FakeFormOption option_;
    QWidget* panel_;
    bool closesOnCreate_;
    bool saved_ = false;
};

class FakeScreens final : public ScreenServices {
public:
    explicit FakeScreens(Trace& trace) : trace_(trace) {}

    // What happens while a list or an editor is shown.
    FakeDockBase::WhileShown onList;
    FakeGetBase::WhileShown onEditor;
    // Editors find their record gone.
    bool editorsCloseOnCreate = false;
    // What else a search does, failing for instance.
    std::function<void()> onSearch;

    [[nodiscard]] std::unique_ptr<DockBase> createDockBase(TBaseDock_FRM& screen) override {
        return std::make_unique<FakeDockBase>(screen, trace_, onList);
    }
    [[nodiscard]] std::unique_ptr<GetBase> createGetBase(TBaseGet_FRM& editor) override {
        return std::make_unique<FakeGetBase>(editor, trace_, onEditor, editorsCloseOnCreate);
    }
    [[nodiscard]] TSmartDBGrid_VRO* createGrid(const char* objectName, QWidget* parent) override {
        return named(new FakeGrid(parent), objectName);
    }
    [[nodiscard]] TGeneral_Search_Frame* createGeneralSearch(const char* objectName, QWidget* parent) override {
        return named(new FakeSearch(trace_, parent), objectName);
    }
    [[nodiscard]] TRange_Digit_Search_Frame* createDigitRangeSearch(const char* objectName, QWidget* parent) override {
        return named(new FakeRange(parent), objectName);
    }
    [[nodiscard]] TRange_Cost_Search_Frame* createCostRangeSearch(const char* objectName, QWidget* parent) override {
        return named(new FakeRange(parent), objectName);
    }
    [[nodiscard]] TTab_Search_Frame* createTabSearch(const char* objectName, QWidget* parent) override {
        return named(new FakeTabs(trace_, parent), objectName);
    }
    [[nodiscard]] TCategory_frame* createCategoryFrame(const char* objectName, QWidget* parent) override {
        return named(new FakeCategories(trace_, parent), objectName);
    }
    [[nodiscard]] std::unique_ptr<TVaroSearchManager> createSearchManager() override {
        auto manager = std::make_unique<FakeSearchManager>(trace_);
        manager->onSearch = [this] {
            if (onSearch) onSearch();
        };
        return manager;
    }
    void SetWinControlRightAlign(QWidget& control) override { control.setLayoutDirection(Qt::RightToLeft); }
    // "F3 'همکار' hidden out of reach", "F11 on ConsumerPrice 'قیمت مصرف کننده' at 13"
    void RegisterPrintColumn(const std::string& reportName, const TPrintColumn& column) override {
        const bool own = !column.SettingName.empty();
        printColumns.push_back((own ? column.SettingName + " on " : "") + column.FieldName + " '" + column.Title +
                               '\'' + (column.Index.empty() ? "" : " at " + column.Index) +
                               (column.Visible ? "" : " hidden") + (column.Offered ? "" : " out of reach"));
        printPlaces.push_back(column.Place);
        printReport = reportName;
    }
    void ClearPrintColumns(const std::string& reportName) override {
        printColumns.clear();
        printPlaces.clear();
        printReport = reportName;
    }
    std::vector<std::string> printColumns;
    std::vector<int> printPlaces;  // of the same columns
    std::string printReport;       // whose columns were told last
    // What onPrintSetting answers; without it the dialog is cancelled.
    std::function<bool(const TPrintSettingRequest&, TPrintSetting&)> onPrintSetting;
    [[nodiscard]] bool PrintSetting(const TPrintSettingRequest& request, TPrintSetting& setting) override {
        trace_.push_back("PrintSetting " + request.ReportName);
        return onPrintSetting && onPrintSetting(request, setting);
    }

private:
    template <class Control>
    static Control* named(Control* control, const char* objectName) {
        control->setObjectName(QString::fromLatin1(objectName));
        return control;
    }

    Trace& trace_;
};

}  // namespace basalt
