#include "host/screens/window_size.h"

#include "host/screens/theme.h"

namespace basalt::host {
namespace {

constexpr int kMost = 8000;  // of what was kept by whatever mistake

int usual(int length) {
    return qRound(length / themeSize(1));
}

// Of the window: the size that it was opened with, and the one that was kept then.
constexpr const char* kOpened = "basaltOpenedSize";
constexpr const char* kKept = "basaltKeptSize";

}  // namespace

void keepWindowSize(QJsonObject& layout, const QWidget& window) {
    QSize size(usual(window.width()), usual(window.height()));
    if (window.property(kOpened).toSize() == window.size()) size = window.property(kKept).toSize();
    if (size.isEmpty()) return;
    layout.insert(QStringLiteral("width"), size.width());
    layout.insert(QStringLiteral("height"), size.height());
}

void restoreWindowSize(QWidget& window, const QJsonObject& layout) {
    const QSize kept =
        QSize(layout.value(QStringLiteral("width")).toInt(), layout.value(QStringLiteral("height")).toInt())
            .boundedTo({kMost, kMost});
    if (!kept.isEmpty()) window.resize(themeWindowSize(kept, window));
    window.setProperty(kOpened, window.size());
    window.setProperty(kKept, kept);
}

}  // namespace basalt::host
