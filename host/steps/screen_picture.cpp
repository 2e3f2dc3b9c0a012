#include "host/steps/screen_picture.h"

#include <QApplication>
#include <QPainter>
#include <QPixmap>
#include <algorithm>
#include <vector>

namespace basalt::host {

namespace {

// The one on top last.
std::vector<QWidget*> openPopups() {
    std::vector<QWidget*> popups;
    for (QWidget* window : QApplication::topLevelWidgets())
        if (window->isVisible() && window->windowType() == Qt::Popup) popups.push_back(window);
    std::stable_partition(popups.begin(), popups.end(),
                          [](const QWidget* popup) { return popup != QApplication::activePopupWidget(); });
    return popups;
}

void layOut(QWidget& window) {
    window.ensurePolished();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::LayoutRequest);
}

}  // namespace

QImage screenPicture(QWidget& screen) {
    layOut(screen);
    const std::vector<QWidget*> popups = openPopups();
    const QPoint origin = screen.mapToGlobal(QPoint(0, 0));
    const auto placeOf = [&](QWidget* popup) {
        return QRect(popup->mapToGlobal(QPoint(0, 0)) - origin, popup->size());
    };
    QRect area = screen.rect();
    for (QWidget* popup : popups)
        area = area.united(placeOf(popup));
    const QPixmap picture = screen.grab();
    if (popups.empty()) return picture.toImage();
    QImage whole(area.size() * picture.devicePixelRatio(), QImage::Format_RGB32);
    whole.setDevicePixelRatio(picture.devicePixelRatio());
    whole.fill(Qt::lightGray);
    QPainter painter(&whole);
    painter.drawPixmap(-area.topLeft(), picture);
    for (QWidget* popup : popups)
        painter.drawPixmap(placeOf(popup).topLeft() - area.topLeft(), popup->grab());
    return whole;
}

}  // namespace basalt::host
