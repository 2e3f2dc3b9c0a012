#include "package/screens/base_get_frm.h"

#include "package/screens/attached_screens.h"

namespace basalt {

TBaseGet_FRM::TBaseGet_FRM(TSoftwarePart part, Value code, TFormMode mode, Value param, bool flag1, bool flag2)
    : part_(part),
      code_(std::move(code)),
      mode_(mode),
      param_(std::move(param)),
      flag1_(flag1),
      flag2_(flag2),
      base_(attachedScreens().createGetBase(*this)) {}

TBaseGet_FRM::~TBaseGet_FRM() = default;

void TBaseGet_FRM::FormShow(QObject* /*sender*/) {
    base().FormShow();
}

void TBaseGet_FRM::reject() {
    if (base().MayClose()) QDialog::reject();
}

}  // namespace basalt
