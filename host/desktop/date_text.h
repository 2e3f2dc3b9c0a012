// Dates as people read them.
#pragma once

#include <QString>

#include "ado/value.h"

namespace basalt::host {

// "شنبه ۳۰ آبان ۱۴۰۵"
[[nodiscard]] QString longDate(const CivilDateTime& moment);

}  // namespace basalt::host
