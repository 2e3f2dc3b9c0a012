#include "host/steps/screen_finder.h"

#include <QAction>
#include <QApplication>
#include <algorithm>

#include "host/steps/object_list.h"
#include "host/steps/step_failure.h"

namespace basalt::host {

namespace {

bool isScreen(const QWidget* window) {
    const Qt::WindowType type = window->windowType();
    return window->isVisible() && (type == Qt::Window || type == Qt::Dialog || type == Qt::Sheet);
}

constexpr std::size_t kNamesTold = 20;

// The names to choose from.
std::string namesOn(const QWidget& screen) {
    const std::vector<std::string> names = objectNames(screen);
    std::string text;
    for (std::size_t i = 0; i < std::min(names.size(), kNamesTold); ++i)
        text += (i == 0 ? "; there are " : ", ") + names[i];
    if (names.size() > kNamesTold)
        text += " and " + std::to_string(names.size() - kNamesTold) + " more; the step names lists them all";
    return text;
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

QAction& requireItem(const QMenu& menu, const std::string& name) {
    if (QAction* item = menuItem(menu, name)) return *item;
    std::string names;
    for (const QAction* action : menu.actions())
        if (action->isVisible() && !action->objectName().isEmpty())
            names += (names.empty() ? "" : ", ") + action->objectName().toStdString();
    throw StepFailure("an item " + name + " of the open menu",
                      names.empty() ? "items without names" : "the items " + names);
}

QWidget& requireTopScreen() {
    QWidget* screen = topScreen();
    if (!screen) throw StepFailure("a screen", "none open");
    return *screen;
}

QWidget* findObject(const std::string& name) {
    QWidget& screen = requireTopScreen();
    const QString wanted = QString::fromStdString(name);
    if (name == "-" || screen.objectName() == wanted) return &screen;
    QWidget* found = nullptr;
    for (QWidget* candidate : screen.findChildren<QWidget*>(wanted)) {
        if (!found || (candidate->isVisible() && !found->isVisible())) found = candidate;
    }
    return found;
}

QWidget& requireObject(const std::string& name) {
    if (QWidget* found = findObject(name)) return *found;
    const QWidget& screen = requireTopScreen();
    throw StepFailure("an object " + name + " on " + screen.objectName().toStdString(),
                      "none of that name" + namesOn(screen));
}

}  // namespace basalt::host
