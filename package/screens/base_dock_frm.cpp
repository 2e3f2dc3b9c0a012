#include "package/screens/base_dock_frm.h"

#include "ado/error.h"
#include "package/screens/attached_screens.h"
#include "package/screens/screen_services.h"

namespace basalt {

TBaseDock_FRM::TBaseDock_FRM(TFormMode mode, Value param, std::string text)
    : mode_(mode), text_(std::move(text)), base_(attachedScreens().createDockBase(*this)) {
    params_.push_back(std::move(param));
}

TBaseDock_FRM::~TBaseDock_FRM() = default;

const Value& TBaseDock_FRM::CustomParam(int index) const {
    if (index < 0 || static_cast<std::size_t>(index) >= params_.size()) {
        throw UsageError("the screen has no parameter " + std::to_string(index));
    }
    return params_[static_cast<std::size_t>(index)];
}

void TBaseDock_FRM::FormCreate(QObject* /*sender*/) {
    base().FormCreate();
}

void TBaseDock_FRM::FormShow(QObject* /*sender*/) {
    base().FormShow();
}

}  // namespace basalt
