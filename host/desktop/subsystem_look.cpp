#include "host/desktop/subsystem_look.h"

#include <array>
#include <string_view>
#include <utility>

namespace basalt::host {
namespace {

constexpr std::array<std::pair<std::string_view, const char*>, 7> kTitles{{
    {"costlevel", "سطوح قیمت و تخفیف"},
    {"category", "گروه‌بندی"},
    {"tags", "برچسب‌ها"},
    {"selectedlist", "فهرست‌های انتخابی"},
    {"goods", "کالا و بارکد"},
    {"gooddetail", "ریز مشخصات کالا"},
    {"persons", "اشخاص و اسناد"},
}};

constexpr std::array<std::pair<std::string_view, const char*>, 4> kHints{{
    {"Open_CostLevel_List", "نام و توضیح سطح‌های قیمت"},
    {"Open_DiscountLevel_List", "نام و توضیح سطح‌های تخفیف"},
    {"Open_CostReport", "قیمت همهٔ کالاها کنار هم"},
    {"Open_PriceEditor", "همهٔ قیمت‌های یک کالا"},
}};

}  // namespace

QString entryHint(const EntryPoint& entry) {
    for (const auto& [name, hint] : kHints)
        if (name == entry.name) return QString::fromUtf8(hint);
    return subsystemTitle(entry.subsystem);
}

QString subsystemTitle(const std::string& subsystem) {
    for (const auto& [name, title] : kTitles)
        if (name == subsystem) return QString::fromUtf8(title);
    return QString::fromStdString(subsystem);
}

LineIcon partIcon(TSoftwarePart part) {
    switch (part) {
        case spPriceLevels:
            return LineIcon::PriceTag;
        case spDiscountLevels:
            return LineIcon::Percent;
        case spPriceReport:
            return LineIcon::Report;
        case spCategories:
            return LineIcon::Tree;
        case spTags:
            return LineIcon::PriceTag;
        case spSelectedLists:
            return LineIcon::Selection;
        case spPersons:
            return LineIcon::User;
        case spGoods:
            return LineIcon::Window;
    }
    return LineIcon::Window;
}

}  // namespace basalt::host
