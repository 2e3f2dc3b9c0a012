#include "host/screens/window_size.h"

#include <QEvent>
#include <algorithm>

#include "host/screens/theme.h"

namespace basalt::host {
namespace {

constexpr qreal kPartOfScreen = 0.9;
constexpr int kMost = 8000;  // of what was kept by whatever mistake

int usual(int length) {
    return qRound(length / themeSize(1));
}

QSize keptSize(const QJsonObject& layout) {
    return QSize(layout.value(QStringLiteral("width")).toInt(), layout.value(QStringLiteral("height")).toInt())
        .boundedTo({kMost, kMost});
}

// Of the window: the size that it was opened with, and the one that was kept then.
constexpr const char* kOpened = "basaltOpenedSize";
constexpr const char* kKept = "basaltKeptSize";

// A window without a size of its own gets one only when it is shown.
class ShownSize final : public QObject {
public:
    explicit ShownSize(QWidget& window) : QObject(&window) { window.installEventFilter(this); }

    bool eventFilter(QObject* watched, QEvent* event) override {
        if (event->type() != QEvent::Show || event->spontaneous()) return false;
        watched->setProperty(kOpened, static_cast<QWidget*>(watched)->size());
        deleteLater();
        return false;
    }
};

}  // namespace

void keepWindowSize(QJsonObject& layout, const QWidget& window) {
    QSize size(usual(window.width()), usual(window.height()));
    if (window.property(kOpened).toSize() == window.size()) size = window.property(kKept).toSize();
    if (size.isEmpty()) return;
    layout.insert(QStringLiteral("width"), size.width());
    layout.insert(QStringLiteral("height"), size.height());
}

bool hasWindowSize(const QJsonObject& layout) {
    return !keptSize(layout).isEmpty();
}

void restoreWindowSize(QWidget& window, const QJsonObject& layout) {
    const QSize kept = keptSize(layout);
    if (!kept.isEmpty()) window.resize(themeWindowSize(kept, window));
    window.setProperty(kOpened, window.size());
    window.setProperty(kKept, kept);
    if (!window.isVisible()) new ShownSize(window);
}

void widenWindow(QWidget& window, int wantedWidth) {
    const QSize room = themeScreenRoom(window);
    const QSize most = room * kPartOfScreen;
    QSize size = window.size();
    if (wantedWidth > size.width() && size.width() < most.width()) {
        const int width = std::min(wantedWidth, most.width());
        const int height = static_cast<int>(static_cast<qint64>(size.height()) * width / size.width());
        size = {width, std::max(size.height(), std::min(height, most.height()))};
    }
    window.resize(size.boundedTo(themeRoomInside(room)));
}

}  // namespace basalt::host
