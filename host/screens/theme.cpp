#include "host/screens/theme.h"

#include <QFile>
#include <QFontDatabase>
#include <QFontMetrics>
#include <QPainter>
#include <QPalette>
#include <QProxyStyle>
#include <QRegularExpression>
#include <QScreen>
#include <QStyleFactory>
#include <array>
#include <utility>

#include "host/screens/cut_text.h"
#include "host/screens/number_typing.h"
#include "host/screens/persian_digits.h"
#include "host/screens/qt_texts.h"
#include "host/screens/wheel_guard.h"
#include "host/screens/wrapped_text.h"

// The resource lives in a static library, which registers nothing by itself. Q_INIT_RESOURCE must stand outside of any
// namespace.
static void initializeThemeResource() {
    Q_INIT_RESOURCE(host_screens);
}

namespace basalt::host {
namespace {

constexpr qreal kUsualFontSize = 10;
qreal fontScale = 1;

class ThemeStyle final : public QProxyStyle {
public:
    ThemeStyle() : QProxyStyle(QStyleFactory::create(QStringLiteral("Fusion"))) {}

    // Labels, buttons, combo boxes and titles of columns are drawn here; styles cut what has no room in mid-letter.
    void drawItemText(QPainter* painter, const QRect& room, int flags, const QPalette& palette, bool enabled,
                      const QString& text, QPalette::ColorRole role) const override {
        const bool wraps = (flags & Qt::TextWordWrap) != 0;
        const bool oneLine = !wraps && !text.contains(QLatin1Char('\n'));
        const QFontMetrics metrics = painter->fontMetrics();
        if (wraps && !room.contains(metrics.boundingRect(room, flags, text))) {
            const int most = std::max(1, room.height() / metrics.lineSpacing());
            const QStringList lines = wrappedLines(text, painter->font(), room.width(), most);
            QProxyStyle::drawItemText(painter, room, flags & ~Qt::TextWordWrap, palette, enabled,
                                      lines.join(QLatin1Char('\n')), role);
            return;
        }
        const bool cut = oneLine && metrics.size(flags, text).width() > room.width();
        QProxyStyle::drawItemText(painter, room, flags, palette, enabled,
                                  cut ? metrics.elidedText(text, Qt::ElideRight, room.width(), flags) : text, role);
    }

    int styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                  QStyleHintReturn* returned) const override {
        // An underlined letter is drawn apart from its word, which tears joined script. The keys work all the same.
        if (hint == SH_UnderlineShortcut) return 0;
        return QProxyStyle::styleHint(hint, option, widget, returned);
    }
};

void loadFonts() {
    for (const char* file : {"Regular", "Medium", "Bold"})
        QFontDatabase::addApplicationFont(QStringLiteral(":/basalt/fonts/Vazirmatn-%1.ttf").arg(QLatin1String(file)));
}

void loadResources() {
    static const bool loaded = [] {
        initializeThemeResource();
        loadFonts();
        return true;
    }();
    static_cast<void>(loaded);
}

QPalette themePalette() {
    const ThemeColors& colors = themeColors();
    QPalette palette;
    palette.setColor(QPalette::Window, colors.window);
    palette.setColor(QPalette::WindowText, colors.text);
    palette.setColor(QPalette::Base, colors.surface);
    palette.setColor(QPalette::AlternateBase, colors.alternate);
    palette.setColor(QPalette::Text, colors.text);
    palette.setColor(QPalette::PlaceholderText, colors.muted);
    palette.setColor(QPalette::Button, colors.surface);
    palette.setColor(QPalette::ButtonText, colors.text);
    palette.setColor(QPalette::ToolTipBase, colors.text);
    palette.setColor(QPalette::ToolTipText, colors.surface);
    palette.setColor(QPalette::Highlight, colors.selection);
    palette.setColor(QPalette::HighlightedText, colors.text);
    palette.setColor(QPalette::Link, colors.accent);
    for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText})
        palette.setColor(QPalette::Disabled, role, colors.disabled);
    return palette;
}

QString themeStyleSheet() {
    QFile file(QStringLiteral(":/basalt/style/theme.qss"));
    if (!file.open(QIODevice::ReadOnly)) return {};
    return withThemeColors(QString::fromUtf8(file.readAll()));
}

}  // namespace

const ThemeColors& themeColors() {
    static const ThemeColors colors;
    return colors;
}

QString withThemeColors(QString sheet) {
    const ThemeColors& colors = themeColors();
    const std::array<std::pair<const char*, QColor>, 18> names{{
        {"@window@", colors.window},
        {"@surface@", colors.surface},
        {"@raised@", colors.raised},
        {"@border@", colors.border},
        {"@borderStrong@", colors.borderStrong},
        {"@text@", colors.text},
        {"@muted@", colors.muted},
        {"@disabled@", colors.disabled},
        {"@accent@", colors.accent},
        {"@accentDark@", colors.accentDark},
        {"@accentSoft@", colors.accentSoft},
        {"@selection@", colors.selection},
        {"@alternate@", colors.alternate},
        {"@danger@", colors.danger},
        {"@dangerSoft@", colors.dangerSoft},
        {"@warning@", colors.warning},
        {"@warningSoft@", colors.warningSoft},
        {"@success@", colors.success},
    }};
    for (const auto& [name, color] : names)
        sheet.replace(QLatin1String(name), color.name());
    if (fontScale == 1) return sheet;
    // The least heights too: what they are set for is squeezed down to them, whatever its font.
    static const QRegularExpression size(QStringLiteral("(?:font-size|min-height): ([0-9.]+)p[tx]"));
    for (auto match = size.match(sheet); match.hasMatch(); match = size.match(sheet, match.capturedEnd()))
        sheet.replace(match.capturedStart(1), match.capturedLength(1),
                      QString::number(themeSize(match.captured(1).toDouble()), 'f', 1));
    return sheet;
}

void setThemeFontSize(qreal points) {
    fontScale = points / kUsualFontSize;
    QApplication::setFont(themeFont(points));
    if (qApp->property("basaltTheme").toBool()) qApp->setStyleSheet(themeStyleSheet());
}

QSize themeScreenRoom(const QWidget& window) {
    constexpr QSize kUsualScreen(1920, 1080);
    return QGuiApplication::platformName() == QStringLiteral("offscreen") ? kUsualScreen
                                                                          : window.screen()->availableSize();
}

QSize themeRoomInside(const QSize& room) {
    constexpr QSize kAround(16, 48);  // the frame and the title of the window
    return room - kAround;
}

QSize themeWindowSize(const QSize& size, const QSize& room) {
    return (size * fontScale).boundedTo(themeRoomInside(room));
}

QSize themeWindowSize(const QSize& size, const QWidget& window) {
    return themeWindowSize(size, themeScreenRoom(window));
}

qreal themeSize(qreal size) {
    return size * fontScale;
}

QFont themeFont(qreal pointSize, QFont::Weight weight) {
    loadResources();
    QFont font(QStringLiteral("Vazirmatn"));
    font.setPointSizeF(pointSize);
    font.setWeight(weight);
    return font;
}

void applyTheme(QApplication& application) {
    if (application.property("basaltTheme").toBool()) return;
    application.setProperty("basaltTheme", true);
    QApplication::setStyle(new ThemeStyle);
    QApplication::setFont(themeFont());
    QApplication::setPalette(themePalette());
    QApplication::setLayoutDirection(Qt::RightToLeft);
    application.setStyleSheet(themeStyleSheet());
    showPersianDigits(showsPersianDigits());
    watchNumberTyping(application);
    guardInputsFromWheel(application);
    translateQtTexts(application);
    showCutTexts(application);
}

}  // namespace basalt::host
