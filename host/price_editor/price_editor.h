// The price editor as an entry of the reference host, next to those of the module.
//
//   const EntryPoint prices = priceEditorEntry(screens.context(), module.registry());
//   FunctionCall call(state, {{"GoodCode", 57}});
//   prices.run(call);
#pragma once

#include "host/screens/screen_context.h"
#include "package/registry.h"

namespace basalt::host {

// "Open_PriceEditor" with the code of a good; 0 lets the user pick one. The host must show screens (setScreens) while
// the entry runs; context and registry are lent.
[[nodiscard]] EntryPoint priceEditorEntry(ScreenContext& context, const Registry& registry);

// The same with nothing to run it on, for lists of what there is.
[[nodiscard]] EntryPoint priceEditorEntry();

}  // namespace basalt::host
