#include "host/steps/object_list.h"

#include <QAction>
#include <algorithm>
#include <optional>

#include "host/steps/screen_finder.h"
#include "host/steps/screen_reader.h"

namespace basalt::host {

namespace {

constexpr int kLongestText = 60;

// Qt's own parts of its controls have names of their kind.
bool hasName(const QWidget& object) {
    const QString name = object.objectName();
    return !name.isEmpty() && !name.startsWith("qt_") && !name.startsWith("Scroll");
}

// In one line.
std::string shortened(const QString& text) {
    const QString line = text.simplified();
    return (line.size() > kLongestText ? line.left(kLongestText) + QChar(0x2026) : line).toStdString();
}

std::string line(const QString& name, bool visible, bool enabled, const QString& text) {
    std::string result = "  " + name.toStdString();
    if (!visible) result += " (hidden)";
    if (visible && !enabled) result += " (disabled)";
    if (!text.isEmpty()) result += " \"" + shortened(text) + "\"";
    return result + "\n";
}

}  // namespace

std::string nameFor(const QWidget& object) {
    const QWidget* named = &object;
    while (!hasName(*named) && named->parentWidget())
        named = named->parentWidget();
    return named->objectName().toStdString();
}

std::vector<std::string> objectNames(const QWidget& screen) {
    std::vector<std::string> names;
    for (const bool visible : {true, false}) {
        for (const QWidget* object : screen.findChildren<QWidget*>()) {
            if (!hasName(*object) || object->isVisible() != visible) continue;
            const std::string name = object->objectName().toStdString();
            if (std::find(names.begin(), names.end(), name) == names.end()) names.push_back(name);
        }
    }
    return names;
}

std::string objectList(const QWidget& screen) {
    std::string list;
    if (const QMenu* menu = openMenu()) {
        list += "menu\n";
        for (const QAction* item : menu->actions())
            if (!item->isSeparator() && item->isVisible())
                list += line(item->objectName(), true, item->isEnabled(), item->text());
    }
    list += screen.objectName().toStdString() + "\n";
    for (const std::string& name : objectNames(screen)) {
        const QWidget& object = requireObject(name);
        list += line(object.objectName(), object.isVisible(), object.isEnabled(), ownText(object).value_or(QString()));
    }
    return list;
}

}  // namespace basalt::host
