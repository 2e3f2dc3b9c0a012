#include "host/screens/window_size.h"

#include <algorithm>

#include "host/screens/theme.h"

namespace basalt::host {
namespace {

constexpr int kMost = 8000;  // of what was kept by whatever mistake

int usual(int length) {
    return qRound(length / themeSize(1));
}

}  // namespace

void keepWindowSize(QJsonObject& layout, const QWidget& window) {
    layout.insert(QStringLiteral("width"), usual(window.width()));
    layout.insert(QStringLiteral("height"), usual(window.height()));
}

void restoreWindowSize(QWidget& window, const QJsonObject& layout) {
    const int width = layout.value(QStringLiteral("width")).toInt();
    const int height = layout.value(QStringLiteral("height")).toInt();
    if (width <= 0 || height <= 0) return;
    window.resize(themeWindowSize(QSize(std::min(width, kMost), std::min(height, kMost)), window));
}

}  // namespace basalt::host
