// What the windows and pages of the desktop work with. Everything is lent and outlives them.
#pragma once

#include "host/screens/screen_context.h"
#include "host/services/reference_host.h"
#include "package/registry.h"
#include "package/screens/screen_services.h"

namespace basalt::host {

struct DesktopContext {
    ReferenceHost& host;
    const Registry& registry;
    ScreenServices& screens;
    ScreenContext& handlers;  // guards event handlers: an error is shown and the program lives on
};

}  // namespace basalt::host
