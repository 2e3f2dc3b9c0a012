#include "host/steps/user_input.h"

#include <QAbstractItemView>
#include <QAbstractSpinBox>
#include <QApplication>
#include <QComboBox>
#include <QLineEdit>
#include <QMenu>
#include <QPlainTextEdit>
#include <QPointer>
#include <QTabBar>
#include <QTextEdit>
#include <QtTest>
#include <stdexcept>

#include "host/screens/escape_rest.h"
#include "host/steps/screen_finder.h"
#include "host/steps/screen_reader.h"
#include "host/steps/step_failure.h"
#include "package/screens/controls.h"
#include "package/screens/exact_text.h"

namespace basalt::host {

namespace {

QWidget& requireUsable(const std::string& name) {
    QWidget& widget = requireObject(name);
    if (!widget.isVisible()) throw StepFailure(name + " to be visible", "it hidden");
    if (!widget.isEnabled()) throw StepFailure(name + " to be enabled", "it disabled");
    return widget;
}

// Short cuts and focus need the active window; a window that has just been shown becomes it a moment later.
void requireActive(QWidget& widget) {
    QWidget* window = widget.window();
    // Behind a menu that has closed no window may have the keyboard, although the screen counts as active.
    const bool active = window->isActiveWindow();
    if (!active || !QGuiApplication::focusWindow()) window->activateWindow();
    if (active) return;
    throw StepFailure("the screen " + window->objectName().toStdString() + " to be active", "it inactive");
}

// The control inside a composed one that takes the mouse at its middle.
QWidget& underMouse(QWidget& widget, QPoint& position) {
    QWidget* target = &widget;
    while (QWidget* child = target->childAt(position)) {
        position = child->mapFrom(target, position);
        target = child;
    }
    return *target;
}

bool takesText(const QWidget* widget) {
    return qobject_cast<const QLineEdit*>(widget) || qobject_cast<const QAbstractSpinBox*>(widget) ||
           qobject_cast<const QPlainTextEdit*>(widget) || qobject_cast<const QTextEdit*>(widget);
}

// The first part of a composed control that text can be typed into; null when there is none.
QWidget* textPart(const QWidget& widget) {
    for (QWidget* part : widget.findChildren<QWidget*>()) {
        if (takesText(part) && part->isVisible() && part->isEnabled()) return part;
    }
    return nullptr;
}

// The control that takes key presses meant for `widget`.
QWidget& keyTarget(QWidget& widget) {
    if (widget.isWindow()) {
        QWidget* focused = focusOn(widget);
        return focused && focused->window() == &widget ? *focused : widget;
    }
    if (auto* grid = dynamic_cast<TSmartDBGrid_VRO*>(&widget)) return *grid->View();
    QWidget* focused = QApplication::focusWidget();
    if (focused && widget.isAncestorOf(focused)) return *focused;
    if (widget.focusPolicy() != Qt::NoFocus && !widget.focusProxy()) return widget;
    if (QWidget* proxy = widget.focusProxy()) return keyTarget(*proxy);
    if (QWidget* part = textPart(widget)) return *part;
    for (QWidget* part : widget.findChildren<QWidget*>()) {
        if (part->focusPolicy() != Qt::NoFocus && part->isVisible() && part->isEnabled()) return *part;
    }
    return widget;
}

QWidget& requireTextPart(const std::string& object) {
    QWidget& outer = requireUsable(object);
    requireActive(outer);
    QWidget& target = keyTarget(outer);
    const auto* combo = qobject_cast<const QComboBox*>(&target);
    if (takesText(&target) || (combo && combo->isEditable())) return target;
    // Of a frame with a choice and an input the choice may have the focus.
    QWidget* part = outer.isWindow() || qobject_cast<QAbstractItemView*>(&target) ? nullptr : textPart(outer);
    if (!part) throw StepFailure(object + " to take text", "another kind of control");
    return *part;
}

QWidget& requireTextTarget(const std::string& object) {
    QWidget& part = requireTextPart(object);
    // Edits of every kind, boxes of numbers too, have it under this name.
    if (part.property("readOnly").toBool()) throw StepFailure(object + " to take text", "it read-only");
    return part;
}

void focus(QWidget& widget) {
    if (!widget.hasFocus()) widget.setFocus(Qt::OtherFocusReason);
}

void pressOn(QWidget& widget, QKeyCombination key) {
    QString text;
    if (key.keyboardModifiers() == Qt::NoModifier && key.key() == Qt::Key_Space) text = " ";
    QTest::sendKeyEvent(QTest::Click, &widget, key.key(), text, key.keyboardModifiers());
}

// What has the keyboard while the menu or list is open.
QWidget& popupTarget(QWidget& popup) {
    QWidget* focused = popup.focusWidget();
    return focused ? *focused : popup;
}

// The list of a combo box is a part of it, though a window of its own.
bool isPartOf(const QWidget& popup, const QWidget& widget) {
    const QWidget* part = &popup;
    while (part && part != &widget)
        part = part->parentWidget();
    return part;
}

void typeCharacter(QWidget& widget, const QString& character) {
    const char32_t code = character.toUcs4().front();
    // Letters of the keyboard have their key's code, as in QKeyEvent; of other scripts the letter itself is the code.
    const Qt::Key key = code < 0x10000 ? static_cast<Qt::Key>(character.toUpper().front().unicode()) : Qt::Key_unknown;
    const bool shifted = code < 0x80 && character.front().isUpper();
    QTest::sendKeyEvent(QTest::Click, &widget, key, character, shifted ? Qt::ShiftModifier : Qt::NoModifier);
}

UserAction clickItem(QMenu& menu, QAction& item) {
    if (!item.isEnabled()) throw StepFailure(item.objectName().toStdString() + " to be enabled", "it disabled");
    return [&menu, &item] { QTest::mouseClick(&menu, Qt::LeftButton, {}, menu.actionGeometry(&item).center()); };
}

}  // namespace

UserAction click(const std::string& object) {
    if (QMenu* menu = openMenu())
        // A name that is not on the screen either is meant for the menu, whose items the failure then lists.
        if (menuItem(*menu, object) || !findObject(object)) return clickItem(*menu, requireItem(*menu, object));
    QWidget& widget = requireUsable(object);
    QPoint position = widget.rect().center();
    QWidget& target = underMouse(widget, position);
    if (!target.isEnabled()) throw StepFailure(object + " to be enabled", "it disabled");
    return [&target, position] { QTest::mouseClick(&target, Qt::LeftButton, {}, position); };
}

UserAction doubleClick(const std::string& object) {
    QWidget& widget = requireUsable(object);
    QWidget* target = nullptr;
    QPoint position = widget.rect().center();
    if (dynamic_cast<TSmartDBGrid_VRO*>(&widget) || qobject_cast<QAbstractItemView*>(&widget)) {
        QAbstractItemView& table = requireTable(object);
        const QModelIndex current = table.currentIndex();
        if (!current.isValid()) throw StepFailure("a current row in " + object, "none");
        table.scrollTo(current);
        target = table.viewport();
        position = table.visualRect(current).center();
    } else {
        target = &underMouse(widget, position);
    }
    return [target = QPointer<QWidget>(target), position] {
        QTest::mouseClick(target, Qt::LeftButton, {}, position);
        if (target) QTest::mouseDClick(target, Qt::LeftButton, {}, position);
    };
}

UserAction pressKey(const std::string& object, QKeyCombination key) {
    if (key.key() == Qt::Key_Escape && EscapeRest::ofApplication().isOn())
        throw StepFailure("Escape to be taken", "it resting behind one that has closed a message or a notice");
    QWidget* popup = QApplication::activePopupWidget();
    if (popup && object == "-") return [popup, key] { pressOn(popupTarget(*popup), key); };
    QWidget& widget = requireUsable(object);
    if (popup && isPartOf(*popup, widget)) return [popup, key] { pressOn(popupTarget(*popup), key); };
    requireActive(widget);
    QWidget& target = keyTarget(widget);
    return [&target, key] {
        focus(target);
        pressOn(target, key);
    };
}

UserAction typeText(const std::string& object, const std::string& text) {
    QWidget& target = requireTextTarget(object);
    return [&target, text] {
        focus(target);
        const QPointer<QWidget> alive = &target;
        for (const char32_t code : exactText(text).toUcs4()) {
            if (!alive) return;
            typeCharacter(target, QString::fromUcs4(&code, 1));
        }
    };
}

UserAction clearText(const std::string& object) {
    QWidget& target = requireTextTarget(object);
    return [&target] {
        focus(target);
        pressOn(target, Qt::CTRL | Qt::Key_A);
        pressOn(target, Qt::Key_Delete);
    };
}

UserAction clickRow(const std::string& grid, int row) {
    (void)requireUsable(grid);
    QAbstractItemView& table = requireTable(grid);
    const QModelIndex index = requireRow(table, row);
    return [&table, index = QPersistentModelIndex(index)] {
        table.scrollTo(index);
        QTest::mouseClick(table.viewport(), Qt::LeftButton, {}, table.visualRect(index).center());
    };
}

UserAction clickTab(const std::string& object, int tab) {
    QWidget& widget = requireUsable(object);
    auto* bar = qobject_cast<QTabBar*>(&widget);
    if (!bar) bar = widget.findChild<QTabBar*>();
    if (!bar) throw StepFailure(object + " to have tabs", "another kind of control");
    if (tab >= bar->count()) throw StepFailure("tab " + std::to_string(tab), std::to_string(bar->count()) + " tabs");
    if (!bar->isTabEnabled(tab)) throw StepFailure("tab " + std::to_string(tab) + " to be enabled", "it disabled");
    return [bar, tab] { QTest::mouseClick(bar, Qt::LeftButton, {}, bar->tabRect(tab).center()); };
}

UserAction chooseItem(const std::string& name, int item) {
    QWidget& widget = requireUsable(name);
    requireActive(widget);
    auto* combo = qobject_cast<QComboBox*>(&widget);
    if (!combo) combo = widget.findChild<QComboBox*>();
    if (!combo) throw StepFailure(name + " to be a combo box", "another kind of control");
    if (item >= combo->count())
        throw StepFailure("item " + std::to_string(item), std::to_string(combo->count()) + " items");
    return [combo, item] {
        focus(*combo);
        // An arrow key moves by one item, so the way there is as many presses long.
        while (combo->currentIndex() != item) {
            const int before = combo->currentIndex();
            pressOn(*combo, before < item ? Qt::Key_Down : Qt::Key_Up);
            if (combo->currentIndex() == before)
                throw std::runtime_error("item " + std::to_string(item) + " cannot be chosen");
        }
    };
}

}  // namespace basalt::host
