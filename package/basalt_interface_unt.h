// The entry points: functions with plain names that show one screen each.
//
// An entry point asks the host for the user's permission first and returns at once when it is refused (the host has
// told the user). Otherwise it shows its screen modally and frees it. Errors pass to the caller after the screen has
// been freed.
//
//   auto select = reinterpret_cast<int (*)()>(library.resolve("Select_CostLevel_List"));
//   int level = select();   // 0: nothing picked
#pragma once

#include "package/export.h"

extern "C" {

// The code of the price level that the user picks; 0 when the screen is closed without a pick. When the permission is
// refused the value means nothing.
BASALT_EXPORT int Select_CostLevel_List();
// The price levels, for browsing and maintenance.
BASALT_EXPORT void Open_CostLevel_List();
// The discount levels, for browsing and maintenance.
BASALT_EXPORT void Open_DiscountLevel_List();
// The price report: all goods with their prices by level.
BASALT_EXPORT void Open_CostReport();

}  // extern "C"

namespace basalt {

class Registry;

// Lists the entry points. In the registry an entry point whose permission is refused leaves its result unset (null).
void registerEntryPoints(Registry& registry);

}  // namespace basalt
