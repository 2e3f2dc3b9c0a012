#include "host/screens/page_style.h"

#include "host/screens/theme.h"

namespace basalt::host {

QString pageStyleSheet() {
    return withThemeColors(
        QStringLiteral("QLabel[kind=\"pageTitle\"] { font-size: 17pt; font-weight: 700; color: @text@; }"
                       "QLabel[kind=\"sectionTitle\"] { font-size: 11.5pt; font-weight: 700; color: @text@; }"
                       "QLabel[kind=\"field\"] { color: @muted@; font-weight: 500; }"
                       "QLabel[kind=\"problem\"] { color: @danger@; font-size: 9.5pt; }"
                       "QTableWidget::item { padding: 4px 8px; border-bottom: 1px solid @window@; }"));
}

}  // namespace basalt::host
