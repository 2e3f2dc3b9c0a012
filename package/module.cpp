#include "package/module.h"

#include "costlevel/registration.h"
#include "goods/getboxweight_frm.h"
#include "goods/registration.h"
#include "package/basalt_interface_unt.h"
#include "package/services.h"

namespace basalt {

namespace {

class LoadedModule final : public Module {
public:
    LoadedModule() {
        registerCostLevel(registry_);
        registerGoods(registry_);
        registerEntryPoints(registry_);
        registerGoodsScreens(registry_);
    }

    [[nodiscard]] int version() const override { return kModuleVersion; }
    void attach(Host& host) override { attachHost(&host); }
    void detach() override { attachHost(nullptr); }
    [[nodiscard]] const Registry& registry() const override { return registry_; }

private:
    Registry registry_;
};

}  // namespace

}  // namespace basalt

extern "C" BASALT_EXPORT basalt::Module* Basalt_Module() {
    static basalt::LoadedModule module;
    return &module;
}
