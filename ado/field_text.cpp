#include "ado/field_text.h"

namespace basalt {

std::string fieldText(const Value& value) {
    if (const auto* decimal = std::get_if<Decimal>(&value)) return decimal->toPlainString();
    return toText(value);
}

}  // namespace basalt
