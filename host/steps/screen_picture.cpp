#include "host/steps/screen_picture.h"

#include <QApplication>
#include <QBuffer>
#include <QPainter>
#include <QPixmap>
#include <algorithm>
#include <filesystem>
#include <fstream>
#include <system_error>
#include <vector>

#include "host/services/draft_file.h"
#include "host/services/path_text.h"
#include "host/steps/step_failure.h"

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

void writePicture(const QImage& picture, const std::string& file) {
    // Encoded before it meets the disk, of whose faults the encoder would speak in lines of its own.
    QByteArray bytes;
    QBuffer buffer(&bytes);
    picture.save(&buffer, "PNG");
    const std::filesystem::path place = pathFromText(file);
    std::error_code ignored;
    std::filesystem::create_directories(place.parent_path(), ignored);
    try {
        const DraftFile draft(place);
        std::ofstream out(draft.path(), std::ios::binary);
        out.write(bytes.constData(), bytes.size());
        out.close();
        if (!out) draft.fail();
        draft.replace();
    } catch (const DraftError& error) {
        throw StepFailure("to write the picture " + file, error.reason().message());
    }
}

}  // namespace basalt::host
