#include "package/basalt_interface_unt.h"

#include <optional>

#include "costlevel/cost_report_frm.h"
#include "costlevel/costlevel_list_frm.h"
#include "package/part_title.h"
#include "package/registry.h"
#include "package/services.h"

namespace basalt {

namespace {

bool mayEnter(TSoftwarePart part, TPermission permission) {
    return HavePermission(UserInfo(), part, permission, true, true, "");
}

std::optional<int> selectCostLevel() {
    if (!mayEnter(spPriceLevels, prOpen)) return std::nullopt;
    const auto screen = CreateScreen<TCostLevel_List_FRM>(fmSelect, Value{std::int64_t{spPriceLevels}}, "");
    screen->ShowModal();
    return screen->SelectedCode();
}

void openLevels(TSoftwarePart part, TComponentSoftwarePart component) {
    if (!mayEnter(part, prOpen)) return;
    const auto screen = CreateScreen<TCostLevel_List_FRM>(fmBrowse, Value{std::int64_t{part}}, "");
    screen->FormOption().SetSoftwarePart(component);
    screen->ShowModal();
}

void openCostReport() {
    if (!mayEnter(spPriceReport, prOpen)) return;
    const auto screen = CreateScreen<TCost_Report_FRM>(fmBrowse, Value{}, "");
    screen->FormOption().SetSoftwarePart(csPriceReport);
    screen->ShowModal();
}

}  // namespace

void registerEntryPoints(Registry& registry) {
    registry.add(EntryPoint{.name = "Select_CostLevel_List",
                            .subsystem = "costlevel",
                            .title = "انتخاب سطح قیمت",
                            .summary = "Lets the user pick a price level and gives its code, 0 when none was picked.",
                            .part = spPriceLevels,
                            .permission = prOpen,
                            .parameters = {},
                            .result = "integer",
                            .run = [](FunctionCall& call) {
                                if (const auto code = selectCostLevel()) call.result(*code);
                            }});
    registry.add(EntryPoint{.name = "Open_CostLevel_List",
                            .subsystem = "costlevel",
                            .title = partCaption(spPriceLevels),
                            .summary = "Shows the price levels, to rename and describe them.",
                            .part = spPriceLevels,
                            .permission = prOpen,
                            .parameters = {},
                            .result = "",
                            .run = [](FunctionCall&) { Open_CostLevel_List(); }});
    registry.add(EntryPoint{.name = "Open_DiscountLevel_List",
                            .subsystem = "costlevel",
                            .title = partCaption(spDiscountLevels),
                            .summary = "Shows the discount levels, to rename and describe them.",
                            .part = spDiscountLevels,
                            .permission = prOpen,
                            .parameters = {},
                            .result = "",
                            .run = [](FunctionCall&) { Open_DiscountLevel_List(); }});
    registry.add(EntryPoint{.name = "Open_CostReport",
                            .subsystem = "costlevel",
                            .title = partCaption(spPriceReport),
                            .summary = "Shows the prices of all goods, to look through and to print.",
                            .part = spPriceReport,
                            .permission = prOpen,
                            .parameters = {},
                            .result = "",
                            .run = [](FunctionCall&) { Open_CostReport(); }});
}

}  // namespace basalt

int Select_CostLevel_List() {
    return basalt::selectCostLevel().value_or(0);
}

void Open_CostLevel_List() {
    basalt::openLevels(basalt::spPriceLevels, basalt::csPriceLevels);
}

void Open_DiscountLevel_List() {
    basalt::openLevels(basalt::spDiscountLevels, basalt::csDiscountLevels);
}

void Open_CostReport() {
    basalt::openCostReport();
}
