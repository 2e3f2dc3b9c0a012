#include "costlevel/cost_report_frm.h"

#include <QFontMetrics>
#include <QHBoxLayout>
#include <QLabel>
#include <QScopedValueRollback>
#include <algorithm>
#include <set>
#include <utility>

#include "ado/names.h"
#include "package/messages.h"
#include "package/part_title.h"
#include "package/screens/attached_screens.h"
#include "package/screens/place.h"
#include "package/services.h"

namespace basalt {

namespace {

constexpr int kWidth = 1160;
constexpr int kHeight = 680;

constexpr const char* kReportName = "CostReport";
constexpr const char* kConsumerPrice = "ConsumerPrice";
// Under this name the consumer price is kept with the price columns' print settings.
constexpr const char* kConsumerPriceSetting = "F11";

constexpr int kFixedColumns = 3;
constexpr int kSaleTab = 1;
constexpr int kTitleLines = 2;
// A good with many barcodes must not push the prices off the screen: as many as these have room.
constexpr const char* kShownBarcodes = "(0000000000000)(0000000000000";
constexpr int kCellPadding = 26;
constexpr int kBetweenFrames = 16;
// More would not fit across a page. The warning names one fewer; both are what users of long standing know.
constexpr int kMostPrintColumns = 10;

bool isPrice(const std::string& field) {
    return field.find('F') != std::string::npos;
}

std::string levelField(int code) {
    return "F" + std::to_string(code);
}

// Side by side in one line of the panel.
QHBoxLayout* addLine(QWidget& panel) {
    auto* line = new QWidget(&panel);
    auto* row = new QHBoxLayout(line);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(kBetweenFrames);
    place(panel, *line);
    return row;
}

// The host may show digits of either kind.
int barcodeWidth(const QFontMetrics& metrics) {
    const QString latin = QLatin1String(kShownBarcodes);
    QString persian = latin;
    persian.replace(QLatin1Char('0'), QChar(0x06F0));
    return std::max(metrics.horizontalAdvance(latin), metrics.horizontalAdvance(persian)) + kCellPadding;
}

bool isConsumerPrice(const std::string& field) {
    return sameName(field, kConsumerPrice);
}

}  // namespace

TCost_Report_FRM::TCost_Report_FRM(TFormMode mode, Value param, std::string text)
    : TBaseDock_FRM(mode, std::move(param), std::move(text)) {
    setObjectName("TCost_Report_FRM");
    resize(kWidth, kHeight);
}

TCost_Report_FRM::~TCost_Report_FRM() = default;

void TCost_Report_FRM::CreateControls() {
    QWidget* panel = base().SearchPanel();
    QHBoxLayout* first = addLine(*panel);
    tabs_ = attachedScreens().createTabSearch("TTab_Search_Frame1", panel);
    tabs_->SetFieldName("Status");
    tabs_->AddTab("&خرید  ", "1");
    tabs_->AddTab("&فروش  ", "2");
    first->addWidget(tabs_);
    search_ = attachedScreens().createGeneralSearch("TGeneral_Search_Frame1", panel);
    search_->AddItem({.FieldName = "Code", .Title = "کد", .DataType = TSearchDataType::Digits});
    search_->AddItem({.FieldName = "Name", .Title = "عنوان", .DataType = TSearchDataType::Text});
    search_->AddItem({.FieldName = "AbbName", .Title = "بارکد کالا", .DataType = TSearchDataType::Text});
    search_->SetItemIndex(1);
    first->addWidget(search_, 1);

    QHBoxLayout* second = addLine(*panel);
    codes_ = attachedScreens().createDigitRangeSearch("TRange_Digit_Search_Frame1", panel);
    codes_->AddItem({.FieldName = "Code", .Title = "کد", .DataType = TSearchDataType::Digits});
    second->addWidget(codes_, 2);
    prices_ = attachedScreens().createCostRangeSearch("TRange_Cost_Search_Frame1", panel);
    second->addWidget(prices_, 3);

    auto* groupTitle = new QLabel(QStringLiteral(" لیست قیمت ها "), base().ListPanel());
    groupTitle->setObjectName("CostReport_LBL");
    place(*base().ListPanel(), *groupTitle);
    grid_ = attachedScreens().createGrid("CostReport_List_GRD", base().ListPanel());
    for (int i = 0; i < kFixedColumns; ++i)
        grid_->AddColumn({});
    for (int level = 1; level <= kPriceLevels; ++level) {
        const std::string field = levelField(level);
        grid_->AddColumn({.FieldName = field, .Title = QString::fromStdString(field)});
    }
    grid_->SetMultiSelect(true);
    grid_->SetTitleLines(kTitleLines);
    place(*base().ListPanel(), *grid_);

    print_ = base().AddButton("PrintList_BTN", "پیش نمایش ليست F9", TListButton::Print);
    print_->OnClick = [this] { PrintList_BTNClick(); };
    base().AddButton("EXit_BTN", "خروج Esc", TListButton::Exit);

    searchManager_ = attachedScreens().createSearchManager();
    for (TSearchFrame* frame : std::initializer_list<TSearchFrame*>{tabs_, search_, codes_, prices_}) {
        searchManager_->AddFrame(frame);
        frame->OnChange = [this] { search(); };
    }
    tabs_->OnTabChange = [this] { TTab_Search_Frame1Search_TBCChange(); };
    searchManager_->AfterSearch = [this] { base().EnableButtons(); };
    base().SetGrid(grid_);
    base().SetSearchManager(searchManager_.get());
    base().SetFirstSearch(search_);
}

void TCost_Report_FRM::FormCreate(QObject* sender) {
    TBaseDock_FRM::FormCreate(sender);
    base().SetTitle(partTitle(spPriceReport));
}

void TCost_Report_FRM::SetComponents() {
    levels_ = std::make_unique<TCostLevel_DM>();
    grid_->SetDataSource(&levels_->CostReport_DS);
    searchManager_->SetDataSource(&levels_->CostReport_DS);
}

void TCost_Report_FRM::Open() {
    levels_->CostReport_Get();
}

void TCost_Report_FRM::InitSearch(const std::string& /*text*/) {
    searchManager_->SetDataSource(&levels_->CostReport_DS);
    searchManager_->SetSQLScript(levels_->CostReport_QUR.SQL.Text());
    search_->init();
    codes_->init();
    tabs_->init();
    MakeGrid();
    // All rows are here already; the tab's half of them need not be asked for again.
    levels_->CostReport_QUR.Filter(tabs_->TabIndex() == kSaleTab ? "Status = 2" : "Status = 1");
    levels_->CostReport_QUR.Filtered(true);
}

void TCost_Report_FRM::RefreshList() {
    ResetDataset(levels_->CostReport_QUR);
    base().EnableButtons();
}

void TCost_Report_FRM::FormShow(QObject* sender) {
    TBaseDock_FRM::FormShow(sender);
    base().SetShortCut();
    base().SetPopMenu();
    grid_->GoToLastRow();
    search_->FocusFirst();
}

std::string TCost_Report_FRM::GetCurrencyPrecisionCount() const {
    const int decimals = SettingRecord().CurrencyDecimals;
    return decimals > 0 ? "." + std::string(static_cast<std::size_t>(decimals), '#') : std::string();
}

std::string TCost_Report_FRM::priceFormat() const {
    const std::string precision = GetCurrencyPrecisionCount();
    return "#,#0" + precision + ";-#,#0" + precision + ";0";
}

std::vector<TCost_Report_FRM::Level> TCost_Report_FRM::levelsWithColumns() const {
    TADOQuery& names = levels_->Temp_Q7777UR;
    names.SQL = " SELECT Name, Code FROM costlevel WHERE Code > 0  AND CostType = 1 order by code";
    names.Open();
    std::vector<Level> levels;
    for (; levels.size() < kPriceLevels && !names.Eof(); names.Next())
        levels.push_back({levelField(static_cast<int>(names.FieldByName("Code").AsInteger())),
                          names.FieldByName("Name").AsString()});
    names.Close();
    return levels;
}

void TCost_Report_FRM::MakeGrid() {
    grid_->SetColumn(0, {.FieldName = "Code", .Title = QStringLiteral("کد کالا")});
    grid_->SetColumn(
        1,
        {.FieldName = "AbbName", .Title = QStringLiteral("بارکد کالا"), .Width = barcodeWidth(grid_->fontMetrics())});
    grid_->SetColumn(2, {.FieldName = "Name", .Title = QStringLiteral("نام کالا")});
    for (int i = kFixedColumns; i < grid_->ColumnCount(); ++i) {
        TGridColumn column = grid_->Column(i);
        column.Visible = false;
        column.VisibleForCustomization = false;
        grid_->SetColumn(i, column);
    }

    const std::vector<Level> levels = levelsWithColumns();
    std::set<std::string> taken;
    int next = kFixedColumns;
    for (const auto& [field, name] : levels) {
        // A level of a code that no price has gets its column too; its cells are empty.
        taken.insert(field);
        grid_->SetColumn(next++,
                         {.FieldName = field, .Title = QString::fromStdString(name), .DisplayFormat = priceFormat()});
        prices_->AddItem({.FieldName = field, .Title = name, .DataType = TSearchDataType::Amount});
    }
    // The hidden columns take the fields that are left, so that a field stands for one column only.
    for (int code = 1; code <= kPriceLevels && next < kFixedColumns + kPriceLevels; ++code) {
        if (taken.contains(levelField(code))) continue;
        TGridColumn column = grid_->Column(next);
        column.FieldName = levelField(code);
        column.Title = QString::fromStdString(column.FieldName);
        grid_->SetColumn(next++, column);
    }
    prices_->AddItem({.FieldName = kConsumerPrice, .Title = "فی مصرف کننده", .DataType = TSearchDataType::Amount});
    prices_->init();
}

int TCost_Report_FRM::consumerColumn() const {
    for (int i = 0; i < grid_->ColumnCount(); ++i)
        if (isConsumerPrice(grid_->Column(i).FieldName)) return i;
    return -1;
}

void TCost_Report_FRM::TTab_Search_Frame1Search_TBCChange() {
    const TSearchRange range = prices_->Range();
    // The rows are asked for once, when grid and ranges are those of the tab.
    searching_ = Searching::Later;
    tabs_->Search_TBCChange();
    const bool wanted = std::exchange(searching_, Searching::AtOnce) == Searching::Wanted;
    const bool sale = tabs_->TabIndex() == kSaleTab;
    TADOQuery& report = levels_->CostReport_QUR;
    const Value good = report.Active() && !report.IsEmpty() ? report.FieldByName("Code").AsValue() : Value();
    adaptTo(sale);
    if (!wanted) return;
    try {
        search();
        // Its other prices stand where the eye is.
        if (!isNull(good)) report.Locate("Code", good);
    } catch (...) {
        // The tab that was left comes back, and so does what belongs to it.
        adaptTo(!sale);
        prices_->SetRange(range);
        throw;
    }
}

void TCost_Report_FRM::adaptTo(bool sale) {
    const int column = consumerColumn();
    if (!sale) {
        const int item = prices_->ItemCount() - 1;
        if (item >= 0 && isConsumerPrice(prices_->Item(item).FieldName)) prices_->DeleteItem(item);
        if (column >= 0) grid_->RemoveColumn(column);
        return;
    }
    if (column >= 0) return;
    grid_->AddColumn(
        {.FieldName = kConsumerPrice, .Title = QStringLiteral("قیمت مصرف کننده"), .DisplayFormat = priceFormat()});
    prices_->AddItem({.FieldName = kConsumerPrice, .Title = "قیمت مصرف کننده", .DataType = TSearchDataType::Amount});
}

void TCost_Report_FRM::search() {
    if (searching_ != Searching::AtOnce) {
        searching_ = Searching::Wanted;
        return;
    }
    searchManager_->ExecuteFilter_DataSet();
    // From now on the statement itself says which half of the rows is wanted.
    levels_->CostReport_QUR.Filtered(false);
}

void TCost_Report_FRM::registerPrintColumns() const {
    ClearPrintColumns(kReportName);
    const std::vector<int> order = grid_->ColumnOrder();
    const auto placeOf = [&](int index) {
        return static_cast<int>(std::find(order.begin(), order.end(), index) - order.begin());
    };
    for (const int i : pricesInOrder()) {
        const TGridColumn column = grid_->Column(i);
        TPrintColumn print{
            .FieldName = column.FieldName, .Title = column.Title.toStdString(), .Visible = column.Visible};
        print.Place = placeOf(i);
        if (isConsumerPrice(column.FieldName)) {
            print.SettingName = kConsumerPriceSetting;
            print.Index = std::to_string(print.Place);
        } else {
            // A column without a level is nobody's to print.
            print.Offered = column.VisibleForCustomization;
        }
        RegisterPrintColumn(kReportName, print);
    }
}

std::vector<int> TCost_Report_FRM::pricesInOrder() const {
    std::vector<int> columns = grid_->ColumnOrder();
    std::erase_if(columns, [this](int i) { return !isPrice(grid_->Column(i).FieldName); });
    if (const int consumer = consumerColumn(); consumer >= 0) columns.push_back(consumer);
    return columns;
}

std::vector<std::string> TCost_Report_FRM::visibleTitles() const {
    std::vector<std::string> titles;
    const auto add = [&](const std::string& field, const std::string& title, bool visible) {
        if (visible && (isPrice(field) || isConsumerPrice(field))) titles.push_back(title);
    };
    if (printing_) {
        for (const TPrintColumn& column : printing_->Columns)
            add(column.FieldName, column.Title, column.Visible);
        return titles;
    }
    for (const int i : pricesInOrder()) {
        const TGridColumn column = grid_->Column(i);
        add(column.FieldName, column.Title.toStdString(), column.Visible);
    }
    return titles;
}

std::vector<std::string> TCost_Report_FRM::GetMasterReport_Description() {
    if (!printing_) registerPrintColumns();
    std::vector<std::string> description = visibleTitles();
    const auto count = static_cast<int>(description.size());
    description.push_back(std::to_string(count));
    if (!printing_ && count > kMostPrintColumns)
        ShowTooltipMessage(static_cast<std::uintptr_t>(grid_->winId()),
                           "تعداد سطوح انتخابي نمي تواند بيشتر از 9 سطح باشد");
    return description;
}

void TCost_Report_FRM::PrintList_BTNClick() {
    grid_->CheckPrintable();
    static_cast<void>(GetMasterReport_Description());
    TPrintSetting setting;
    if (!PrintSetting({.ReportName = kReportName, .Title = windowTitle().toStdString(), .Form = this}, setting)) return;
    // What names the good stands before its prices.
    std::vector<TPrintColumn> columns;
    for (const int i : grid_->ColumnOrder()) {
        if (i >= kFixedColumns) continue;
        const TGridColumn column = grid_->Column(i);
        columns.push_back(
            {.FieldName = column.FieldName, .Title = column.Title.toStdString(), .Visible = column.Visible});
    }
    setting.Columns.insert(setting.Columns.begin(), columns.begin(), columns.end());
    const QScopedValueRollback<std::optional<TPrintSetting>> printing(printing_, setting);
    grid_->PrintPreview(setting);
}

}  // namespace basalt
