#include "package/part_title.h"

#include "package/services.h"

namespace basalt {

std::string partCaption(TSoftwarePart part) {
    switch (part) {
        case spPriceLevels:
            return "سطوح قیمت";
        case spDiscountLevels:
            return "سطوح تخفیف";
        case spPriceReport:
            return "گزارش قیمت کالاها";
        default:
            return {};
    }
}

std::string partTitle(TSoftwarePart part) {
    const std::string title = toText(ScalerQuery("SoftwarePart", "Title", "Code", std::to_string(part)));
    return title.find_first_not_of(' ') == std::string::npos ? partCaption(part) : title;
}

}  // namespace basalt
