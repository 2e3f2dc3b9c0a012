#include "host/desktop/line_icon.h"

#include <QPainter>
#include <QPainterPath>
#include <initializer_list>

namespace basalt::host {
namespace {

// Icons are drawn on a square of 24 by 24 units.
constexpr double kUnits = 24;

void polyline(QPainterPath& path, std::initializer_list<QPointF> points) {
    const QPointF* point = points.begin();
    path.moveTo(*point);
    while (++point != points.end())
        path.lineTo(*point);
}

QPainterPath outline(LineIcon icon) {
    QPainterPath path;
    switch (icon) {
        case LineIcon::Home:
            polyline(path, {{3, 11.5}, {12, 4}, {21, 11.5}});
            polyline(path, {{5.5, 9.5}, {5.5, 20}, {18.5, 20}, {18.5, 9.5}});
            polyline(path, {{10, 20}, {10, 14}, {14, 14}, {14, 20}});
            break;
        case LineIcon::PriceTag:
            polyline(path, {{3.5, 12}, {12, 3.5}, {20.5, 3.5}, {20.5, 12}, {12, 20.5}, {3.5, 12}});
            path.addEllipse(QPointF(16, 8), 1.6, 1.6);
            break;
        case LineIcon::Percent:
            polyline(path, {{18.5, 5.5}, {5.5, 18.5}});
            path.addEllipse(QPointF(7, 7), 2.8, 2.8);
            path.addEllipse(QPointF(17, 17), 2.8, 2.8);
            break;
        case LineIcon::Pencil:
            polyline(path, {{4, 20}, {5, 15.5}, {15.5, 5}, {19, 8.5}, {8.5, 19}, {4, 20}});
            polyline(path, {{13, 7.5}, {16.5, 11}});
            break;
        case LineIcon::Report:
            path.addRoundedRect(QRectF(4.5, 3.5, 15, 17), 2, 2);
            polyline(path, {{8.5, 16.5}, {8.5, 12.5}});
            polyline(path, {{12, 16.5}, {12, 8}});
            polyline(path, {{15.5, 16.5}, {15.5, 10.5}});
            break;
        case LineIcon::Tree:
            path.addRoundedRect(QRectF(13, 3.5, 7.5, 5), 1.2, 1.2);
            path.addRoundedRect(QRectF(3.5, 9.5, 7.5, 5), 1.2, 1.2);
            path.addRoundedRect(QRectF(3.5, 16.5, 7.5, 4), 1.2, 1.2);
            polyline(path, {{16.8, 8.5}, {16.8, 18.5}, {11, 18.5}});
            polyline(path, {{16.8, 12}, {11, 12}});
            break;
        case LineIcon::Selection:
            for (const double y : {6.0, 12.0, 18.0}) {
                polyline(path, {{4, y}, {14.5, y}});
                polyline(path, {{17, y}, {18.4, y + 1.5}, {21, y - 1.8}});
            }
            break;
        case LineIcon::Window:
            path.addRoundedRect(QRectF(3.5, 4.5, 17, 15), 2, 2);
            polyline(path, {{3.5, 9}, {20.5, 9}});
            break;
        case LineIcon::Console:
            path.addRoundedRect(QRectF(3, 4.5, 18, 15), 2, 2);
            polyline(path, {{7, 9}, {10.5, 12}, {7, 15}});
            polyline(path, {{12.5, 15}, {17, 15}});
            break;
        case LineIcon::Log:
            path.addEllipse(QPointF(12, 12), 8.5, 8.5);
            polyline(path, {{12, 6.8}, {12, 12.3}, {15.6, 14.4}});
            break;
        case LineIcon::Settings:
            polyline(path, {{3.5, 7}, {12.4, 7}});
            polyline(path, {{17.6, 7}, {20.5, 7}});
            path.addEllipse(QPointF(15, 7), 2.6, 2.6);
            polyline(path, {{3.5, 17}, {6.4, 17}});
            polyline(path, {{11.6, 17}, {20.5, 17}});
            path.addEllipse(QPointF(9, 17), 2.6, 2.6);
            break;
        case LineIcon::SignOut:
            polyline(path, {{10, 4}, {19.5, 4}, {19.5, 20}, {10, 20}});
            polyline(path, {{14.5, 12}, {4, 12}});
            polyline(path, {{8, 8}, {4, 12}, {8, 16}});
            break;
        case LineIcon::Lock:
            path.addRoundedRect(QRectF(5, 10.5, 14, 10), 2, 2);
            path.moveTo(8, 10.5);
            path.lineTo(8, 8);
            path.arcTo(QRectF(8, 4, 8, 8), 180, -180);
            path.lineTo(16, 10.5);
            break;
        case LineIcon::User:
            path.addEllipse(QPointF(12, 8), 4, 4);
            path.moveTo(4.5, 20.5);
            path.cubicTo(4.5, 12.5, 19.5, 12.5, 19.5, 20.5);
            break;
        case LineIcon::Database:
            path.addEllipse(QPointF(12, 6), 7.5, 2.8);
            polyline(path, {{4.5, 6}, {4.5, 18}});
            polyline(path, {{19.5, 6}, {19.5, 18}});
            for (const double y : {12.0, 18.0}) {
                path.moveTo(4.5, y);
                path.arcTo(QRectF(4.5, y - 2.8, 15, 5.6), 180, 180);
            }
            break;
        case LineIcon::Workstation:
            path.addRoundedRect(QRectF(3, 4.5, 18, 12), 2, 2);
            polyline(path, {{8.5, 20}, {15.5, 20}});
            polyline(path, {{12, 16.5}, {12, 20}});
            break;
        case LineIcon::Warning:
            polyline(path, {{12, 3.5}, {21.5, 20}, {2.5, 20}, {12, 3.5}});
            polyline(path, {{12, 10}, {12, 14.5}});
            polyline(path, {{12, 17}, {12, 17.3}});
            break;
    }
    return path;
}

}  // namespace

QPixmap linePixmap(LineIcon icon, const QColor& color, int size) {
    // Drawn at twice the size, so that it stays sharp on dense displays.
    constexpr int kDensity = 2;
    QPixmap pixmap(size * kDensity, size * kDensity);
    pixmap.setDevicePixelRatio(kDensity);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.scale(size / kUnits, size / kUnits);
    painter.setPen(QPen(color, 1.7, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.drawPath(outline(icon));
    return pixmap;
}

QIcon lineIcon(LineIcon icon, const QColor& color) {
    return QIcon(linePixmap(icon, color, 24));
}

}  // namespace basalt::host
