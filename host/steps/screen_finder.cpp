#include "host/steps/screen_finder.h"

#include <QAction>
#include <QApplication>

#include "host/steps/step_failure.h"

namespace basalt::host {

namespace {

bool isScreen(const QWidget* window) {
    const Qt::WindowType type = window->windowType();
    return window->isVisible() && (type == Qt::Window || type == Qt::Dialog || type == Qt::Sheet);
}

constexpr int kNamesTold = 20;

// The names to choose from, those that can be seen first. Qt's own parts of its controls have names of their kind.
std::string namesOn(const QWidget& screen) {
    QStringList names;
    for (const bool visible : {true, false}) {
        for (const QWidget* object : screen.findChildren<QWidget*>()) {
            const QString name = object->objectName();
            const bool own = !name.isEmpty() && !name.startsWith("qt_") && !name.startsWith("Scroll");
            if (own && object->isVisible() == visible && !names.contains(name)) names.append(name);
        }
    }
    if (names.isEmpty()) return {};
    const int more = static_cast<int>(names.size()) - kNamesTold;
    QString text = "; there are " + QStringList(names.mid(0, kNamesTold)).join(", ");
    if (more > 0) text += QStringLiteral(" and %1 more").arg(more);
    return text.toStdString();
}

}  // namespace

QWidget* topScreen() {
    if (QWidget* modal = QApplication::activeModalWidget()) return modal;
    if (QWidget* active = QApplication::activeWindow(); active && isScreen(active)) return active;
    QWidget* last = nullptr;
    for (QWidget* window : QApplication::topLevelWidgets()) {
        if (isScreen(window)) last = window;
    }
    return last;
}

QWidget* focusOn(const QWidget& screen) {
    QWidget* focused = QApplication::focusWidget();
    return focused ? focused : screen.focusWidget();
}

QMenu* openMenu() {
    return qobject_cast<QMenu*>(QApplication::activePopupWidget());
}

QAction* menuItem(const QMenu& menu, const std::string& name) {
    for (QAction* action : menu.actions())
        if (action->isVisible() && action->objectName() == QString::fromStdString(name)) return action;
    return nullptr;
}

QWidget& requireTopScreen() {
    QWidget* screen = topScreen();
    if (!screen) throw StepFailure("a screen", "none open");
    return *screen;
}

QWidget& requireObject(const std::string& name) {
    QWidget& screen = requireTopScreen();
    const QString wanted = QString::fromStdString(name);
    if (name == "-" || screen.objectName() == wanted) return screen;
    QWidget* found = nullptr;
    for (QWidget* candidate : screen.findChildren<QWidget*>(wanted)) {
        if (!found || (candidate->isVisible() && !found->isVisible())) found = candidate;
    }
    if (!found)
        throw StepFailure("an object " + name + " on " + screen.objectName().toStdString(),
                          "none of that name" + namesOn(screen));
    return *found;
}

}  // namespace basalt::host
