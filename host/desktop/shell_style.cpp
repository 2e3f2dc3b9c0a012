#include "host/desktop/shell_style.h"

#include "host/screens/page_style.h"
#include "host/screens/theme.h"

namespace basalt::host {
namespace {

constexpr int kTileHeight = 70;

constexpr const char* kSheet = R"(
#SignIn_FRM, #DatabaseProblem_FRM { background: @surface@; }
QLabel[kind="notice"] {
    background: @accentSoft@; color: @accentDark@; border-radius: 6px; padding: 8px 10px;
}

#MainShell_FRM, #Pages_PNL, #Pages_PNL > QWidget { background: @window@; }
#Header_PNL { background: @surface@; border-bottom: 1px solid @border@; }
#Company_LBL[kind="brand"] { font-size: 13pt; font-weight: 700; color: @text@; }
#Status_PNL { background: @surface@; border-top: 1px solid @border@; }
#Status_PNL QLabel { color: @muted@; font-size: 9.5pt; }

#Navigation_PNL, #NavigationContent_PNL { background: @surface@; }
#Navigation_PNL { border-left: 1px solid @border@; }
QLabel[kind="navigationHeading"] { color: @muted@; font-size: 9.5pt; font-weight: 500; padding: 2px 10px 4px 10px; }
QPushButton[kind="navigation"] {
    background: transparent; border: 2px solid transparent; border-radius: 8px; color: @text@;
    padding: 6px 8px; text-align: left; min-height: 26px;
}
QPushButton[kind="navigation"]:hover { background: @window@; }
QPushButton[kind="navigation"]:focus { border: 2px solid @accent@; padding: 6px 8px; }
QPushButton[kind="navigation"]:pressed { background: @selection@; }
QPushButton[kind="navigation"][locked="true"] { color: @muted@; }
QPushButton[kind="navigation"][current="true"] { background: @accentSoft@; color: @accentDark@; font-weight: 700; }

QPushButton[kind="tile"] {
    background: @surface@; border: 1px solid @border@; border-radius: 12px; padding: 0; min-height: @tileHeight@px;
}
QPushButton[kind="tile"]:hover { border-color: @accent@; background: @raised@; }
QPushButton[kind="tile"]:pressed { background: @accentSoft@; }
QPushButton[kind="tile"]:focus { border: 2px solid @accent@; padding: 0; }
QPushButton[kind="tile"] QLabel[kind="tileTitle"] { font-size: 11.5pt; font-weight: 700; color: @text@; }
QPushButton[kind="tile"] QLabel[kind="tileHint"] { color: @muted@; font-size: 9.5pt; }

QPushButton[kind="tile"][locked="true"] { background: @raised@; }
QPushButton[kind="tile"][locked="true"] QLabel[kind="tileTitle"] { color: @muted@; }

QFrame[kind="panel"] { background: @surface@; border: 1px solid @border@; border-radius: 10px; }
QLabel[kind="code"], QPlainTextEdit[kind="code"], QTableWidget[kind="code"] { font-family: "Vazirmatn", monospace; }
#Rights_GRD QHeaderView::section:vertical {
    background: @surface@; color: @text@; border-bottom: 1px solid @window@; font-weight: 400;
}
QTableView[fixed="true"]::indicator:checked { background: @disabled@; border-color: @disabled@; }
QTableView[fixed="true"]::indicator:unchecked { background: @raised@; border-color: @border@; }
#Result_TAB QTabBar::tab { padding: 7px 10px; }
QLineEdit[wrong="true"] { border: 1px solid @danger@; background: @dangerSoft@; }
QLabel[kind="success"] { color: @success@; font-weight: 500; }
)";

}  // namespace

QString shellStyleSheet() {
    QString sheet = pageStyleSheet() + withThemeColors(QString::fromUtf8(kSheet));
    return sheet.replace(QLatin1String("@tileHeight@"), QString::number(themePixels(kTileHeight)));
}

}  // namespace basalt::host
