#include "host/screens/search_change.h"

namespace basalt::host {

SearchChange::SearchChange(ScreenContext& context, TSearchFrame& frame)
    : pause_(context, frame, [this, &frame] {
          if (frame.OnChange) {
              frame.OnChange();
          } else if (search_) {
              search_();
          }
      }) {}

void SearchChange::typed() {
    if (!isMuted()) pause_.typed();
}

void SearchChange::changed() {
    if (!isMuted()) pause_.changed();
}

QString narrowingLine(QStringList parts) {
    parts.removeAll(QString());
    return parts.isEmpty() ? QString() : QStringLiteral("جستجو: ") + parts.join(QStringLiteral("، "));
}

}  // namespace basalt::host
