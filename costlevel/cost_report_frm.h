// The price report: every good with its prices, a column a price level, to look through and to print.
//
//   const auto screen = CreateScreen<TCost_Report_FRM>(fmBrowse, Value{}, "");
//   screen->ShowModal();
//
// A tab chooses between purchase and sale prices; the consumer price shows with the sale prices only.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "costlevel/costlevel_dm.h"
#include "package/screens/base_dock_frm.h"
#include "package/screens/print_setting.h"

namespace basalt {

class TCost_Report_FRM : public TBaseDock_FRM {
public:
    TCost_Report_FRM(TFormMode mode, Value param, std::string text);
    ~TCost_Report_FRM() override;

    void CreateControls() override;
    void FormCreate(QObject* sender) override;
    void SetComponents() override;
    void Open() override;
    void InitSearch(const std::string& text) override;
    void InitSelect() override {}
    void RefreshList() override;
    void FormShow(QObject* sender) override;
    // Registers the grid's price columns, hidden ones too, for the print settings (report "CostReport"), and gives the
    // titles of those that the grid shows and their count: the levels as they stand on the screen, and the consumer
    // price behind them. Warns, at the grid, when it shows more than ten.
    //
    // The consumer price is kept as F11. A level of the code 11 that has a column bears that name too: both share one
    // print setting, and while both show the consumer price is the one on offer.
    //
    // While the pages of PrintList_BTN are made, gives the titles and the count of what was chosen for them, as that is
    // what stands below on the paper. Nothing is then registered, and nobody warned again.
    [[nodiscard]] std::vector<std::string> GetMasterReport_Description() override;

    // Gives the grid a column, and the range search an item, for each of the first ten price levels by code. The
    // columns that are left are hidden.
    void MakeGrid();
    // Nothing: prices are formatted by their columns, not by their fields.
    void MakeCurrencyField() {}
    // Adapts grid and range search to the tab, which has just been chosen.
    void TTab_Search_Frame1Search_TBCChange();
    // Describes the grid, asks for the print settings and shows the pages.
    void PrintList_BTNClick();
    // The digits after the point in number formats: ".##" for two, empty for none.
    [[nodiscard]] std::string GetCurrencyPrecisionCount() const;

private:
    struct Level {
        std::string field;
        std::string name;
    };

    [[nodiscard]] std::vector<Level> levelsWithColumns() const;  // by code
    [[nodiscard]] std::string priceFormat() const;
    [[nodiscard]] int consumerColumn() const;  // -1: not shown
    void registerPrintColumns() const;
    // The price columns as they stand on the screen, and behind them the consumer price's when it shows.
    [[nodiscard]] std::vector<int> pricesInOrder() const;
    [[nodiscard]] std::vector<std::string> visibleTitles() const;
    void adaptTo(bool sale);
    void search();

    // A search that is wanted while the screen is on its way to another tab waits until it has arrived.
    enum class Searching { AtOnce, Later, Wanted };

    TTab_Search_Frame* tabs_ = nullptr;
    TGeneral_Search_Frame* search_ = nullptr;
    TRange_Digit_Search_Frame* codes_ = nullptr;
    TRange_Cost_Search_Frame* prices_ = nullptr;
    TSmartDBGrid_VRO* grid_ = nullptr;
    TSmartButton_VRO* print_ = nullptr;
    std::optional<TPrintSetting> printing_;  // while pages are shown: what they show
    Searching searching_ = Searching::AtOnce;
    std::unique_ptr<TCostLevel_DM> levels_;
    std::unique_ptr<TVaroSearchManager> searchManager_;
};

}  // namespace basalt
