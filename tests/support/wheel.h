// Turns of the mouse wheel over a widget, delivered as the window system does: to the window, at the widget's place.
#pragma once

#include <QtTest/qtestspontaneevent.h>

#include <QApplication>
#include <QWheelEvent>
#include <QWidget>
#include <QWindow>
#include <cstdlib>

namespace basalt {

// steps: of the wheel, negative ones towards the user. The widget is to be visible.
inline void turnWheel(QWidget& over, int steps = -1) {
    constexpr int kStep = 120;
    QWidget& window = *over.window();
    const QPoint place = over.mapTo(&window, over.rect().center());
    for (int i = 0; i < std::abs(steps); ++i) {
        QWheelEvent wheel(place, window.mapToGlobal(place), {}, {0, steps < 0 ? -kStep : kStep}, Qt::NoButton,
                          Qt::NoModifier, Qt::NoScrollPhase, false);
        // An event that is sent is not the window system's: it gives no focus and goes to nobody else.
        QSpontaneKeyEvent::setSpontaneous(&wheel);
        qApp->notify(window.windowHandle(), &wheel);
    }
}

}  // namespace basalt
