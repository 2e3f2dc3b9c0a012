// The least that shows a list screen: panels one below the other, rows as lines of text, buttons, and no search.
#pragma once

#include <QDialog>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QTimer>
#include <QVBoxLayout>
#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "ado/error.h"
#include "package/screens/screen_services.h"

class SmallButton final : public basalt::TSmartButton_VRO {
public:
    explicit SmallButton(QWidget* parent) : TSmartButton_VRO(parent), button_(new QPushButton(this)) {
        (new QVBoxLayout(this))->addWidget(button_);
        QObject::connect(button_, &QPushButton::clicked, this, [this] {
            if (OnClick) OnClick();
        });
    }
    void SetCaption(const std::string& caption) override { button_->setText(QString::fromStdString(caption)); }
    [[nodiscard]] std::string Caption() const override { return button_->text().toStdString(); }
    void Click() override { button_->click(); }
    void SetSaveMode(int) override {}

private:
    QPushButton* button_;
};

class SmallGrid final : public basalt::TSmartDBGrid_VRO {
public:
    explicit SmallGrid(QWidget* parent) : TSmartDBGrid_VRO(parent), list_(new QListWidget(this)) {
        (new QVBoxLayout(this))->addWidget(list_);
        QObject::connect(list_, &QListWidget::currentRowChanged, this, [this](int row) {
            if (rows() && row >= 0) rows()->RecNo(row + 1);
        });
    }
    void fill() {
        if (!rows()) return;
        const int current = rows()->RecNo();
        list_->clear();
        for (int number = 1; number <= rows()->RecordCount(); ++number) {
            rows()->RecNo(number);
            QStringList texts;
            for (const basalt::TGridColumn& column : columns_)
                texts << QString::fromStdString(rows()->FieldByName(column.FieldName).AsString());
            list_->addItem(texts.join(QLatin1Char(' ')));
        }
        list_->setCurrentRow(current - 1);
    }
    [[nodiscard]] std::string lineAt(int row) const { return list_->item(row)->text().toStdString(); }

    void SetDataSource(basalt::TDataSource* source) override { source_ = source; }
    int AddColumn(const basalt::TGridColumn& column) override {
        columns_.push_back(column);
        return ColumnCount() - 1;
    }
    void SetColumn(int index, const basalt::TGridColumn& column) override {
        columns_.at(static_cast<std::size_t>(index)) = column;
    }
    [[nodiscard]] basalt::TGridColumn Column(int index) const override {
        return columns_.at(static_cast<std::size_t>(index));
    }
    [[nodiscard]] int ColumnCount() const override { return static_cast<int>(columns_.size()); }
    void RemoveColumn(int index) override { columns_.erase(columns_.begin() + index); }
    [[nodiscard]] std::vector<int> ColumnOrder() const override {
        std::vector<int> order;
        for (int index = 0; index < ColumnCount(); ++index)
            order.push_back(index);
        return order;
    }
    void CheckPrintable() const override {}
    void SetMultiSelect(bool) override {}
    void SetTitleLines(int) override {}
    [[nodiscard]] int CurrentRow() const override { return list_->currentRow(); }
    [[nodiscard]] std::vector<int> SelectedRows() const override { return {CurrentRow()}; }
    [[nodiscard]] QAbstractItemView* View() override { return list_; }
    void GoToLastRow() override {
        if (rows()) rows()->Last();
    }
    void PrintPreview(const basalt::TPrintSetting&) override {}

private:
    [[nodiscard]] basalt::TDataSet* rows() const { return source_ ? source_->DataSet() : nullptr; }

    QListWidget* list_;
    basalt::TDataSource* source_ = nullptr;
    std::vector<basalt::TGridColumn> columns_;
};

class SmallSearch final : public basalt::TGeneral_Search_Frame {
public:
    using TGeneral_Search_Frame::TGeneral_Search_Frame;
    void init() override {}
    [[nodiscard]] std::string Filter() const override { return {}; }
    void Clear() override {}
    void FocusFirst() override {}
    void AddItem(const basalt::TSearchItem&) override {}
    void SetItemIndex(int) override {}
    [[nodiscard]] int ItemIndex() const override { return 0; }
};

class SmallSearchManager final : public basalt::TVaroSearchManager {
public:
    void SetDataSource(basalt::TDataSource*) override {}
    void SetSQLScript(const std::string&) override {}
    void AddFrame(basalt::TSearchFrame*) override {}
    void ExecuteFilter_DataSet() override {}
};

class SmallOption final : public basalt::TFormOption {
public:
    void SetSoftwarePart(basalt::TComponentSoftwarePart) override {}
};

// What a user does while a list is shown.
using SmallUser = std::function<void(basalt::TBaseDock_FRM& screen, SmallGrid& grid)>;

class SmallDockBase final : public basalt::DockBase {
public:
    SmallDockBase(basalt::TBaseDock_FRM& screen, const SmallUser& user) : screen_(screen), user_(user) {
        auto* layout = new QVBoxLayout(&screen);
        for (QWidget*& panel : panels_)
            layout->addWidget(panel = new QWidget(&screen));
    }
    [[nodiscard]] QWidget* SearchPanel() override { return panels_[0]; }
    [[nodiscard]] QWidget* ListPanel() override { return panels_[1]; }
    [[nodiscard]] QWidget* DetailPanel() override { return panels_[2]; }
    basalt::TSmartButton_VRO* AddButton(const std::string& objectName, const std::string& caption,
                                        basalt::TListButton role) override {
        auto* button = new SmallButton(&screen_);
        button->setObjectName(QString::fromStdString(objectName));
        button->SetCaption(caption);
        if (role == basalt::TListButton::Select) button->OnClick = [this] { screen_.Select_BTNClick(); };
        if (role == basalt::TListButton::Exit) button->OnClick = [this] { screen_.Exit_BTNClick(); };
        screen_.layout()->addWidget(button);
        return button;
    }
    void SetGrid(basalt::TSmartDBGrid_VRO* grid) override { grid_ = dynamic_cast<SmallGrid*>(grid); }
    void SetSearchManager(basalt::TVaroSearchManager*) override {}
    void SetFirstSearch(basalt::TSearchFrame*) override {}
    void FormCreate() override {}
    void FormShow() override {}
    void EnableButtons() override {}
    void SetTitle(const std::string& title) override { screen_.setWindowTitle(QString::fromStdString(title)); }
    void SetShortCut() override {}
    void SetPopMenu() override {}
    [[nodiscard]] basalt::TFormOption& FormOption() override { return option_; }
    int ShowModal() override {
        screen_.Open();
        screen_.InitSearch(screen_.CustomText());
        if (screen_.Mode() == basalt::fmSelect) screen_.InitSelect();
        screen_.FormShow(&screen_);
        grid_->fill();
        QTimer::singleShot(0, &screen_, [this] { user_(screen_, *grid_); });
        return screen_.exec() == QDialog::Accepted ? basalt::mrOk : basalt::mrCancel;
    }
    bool ShowEditor(std::unique_ptr<basalt::TBaseGet_FRM>) override { return false; }

private:
    basalt::TBaseDock_FRM& screen_;
    const SmallUser& user_;
    SmallOption option_;
    SmallGrid* grid_ = nullptr;
    QWidget* panels_[3] = {};
};

class SmallScreens final : public basalt::ScreenServices {
public:
    explicit SmallScreens(SmallUser user) : user_(std::move(user)) {}

    [[nodiscard]] std::unique_ptr<basalt::DockBase> createDockBase(basalt::TBaseDock_FRM& screen) override {
        return std::make_unique<SmallDockBase>(screen, user_);
    }
    [[nodiscard]] std::unique_ptr<basalt::GetBase> createGetBase(basalt::TBaseGet_FRM&) override { fail(); }
    [[nodiscard]] basalt::TSmartDBGrid_VRO* createGrid(const char* objectName, QWidget* parent) override {
        return named(new SmallGrid(parent), objectName);
    }
    [[nodiscard]] basalt::TGeneral_Search_Frame* createGeneralSearch(const char* objectName, QWidget* parent) override {
        return named(new SmallSearch(parent), objectName);
    }
    [[nodiscard]] basalt::TRange_Digit_Search_Frame* createDigitRangeSearch(const char*, QWidget*) override { fail(); }
    [[nodiscard]] basalt::TRange_Cost_Search_Frame* createCostRangeSearch(const char*, QWidget*) override { fail(); }
    [[nodiscard]] basalt::TTab_Search_Frame* createTabSearch(const char*, QWidget*) override { fail(); }
    [[nodiscard]] basalt::TCategory_frame* createCategoryFrame(const char*, QWidget*) override { fail(); }
    [[nodiscard]] std::unique_ptr<basalt::TVaroSearchManager> createSearchManager() override {
        return std::make_unique<SmallSearchManager>();
    }
    void SetWinControlRightAlign(QWidget& control) override { control.setLayoutDirection(Qt::RightToLeft); }
    void RegisterPrintColumn(const std::string&, const basalt::TPrintColumn&) override {}
    void ClearPrintColumns(const std::string&) override {}
    [[nodiscard]] bool PrintSetting(const basalt::TPrintSettingRequest&, basalt::TPrintSetting&) override {
        return false;
    }

private:
    [[noreturn]] static void fail() { throw basalt::UsageError("this host shows lists only"); }
    template <class Control>
    static Control* named(Control* control, const char* objectName) {
        control->setObjectName(QString::fromUtf8(objectName));
        return control;
    }

    SmallUser user_;
};
