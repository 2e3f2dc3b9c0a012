// The screen services of the attached host, for screens while they make their controls.
//
//   grid_ = attachedScreens().createGrid("GroupList_GRD", base().ListPanel());
#pragma once

#include "ado/error.h"
#include "package/screens/screen_services.h"
#include "package/services.h"

namespace basalt {

// UsageError when the host shows no screens.
[[nodiscard]] inline ScreenServices& attachedScreens() {
    ScreenServices* screens = attachedHost().Screens();
    if (screens == nullptr) throw UsageError("the attached host shows no screens");
    return *screens;
}

}  // namespace basalt
