// A host with the real module and the real screens over the demo company, for the windows and pages of the desktop.
#pragma once

#include <gmock/gmock.h>

#include <QApplication>
#include <QLabel>
#include <QPushButton>
#include <QTest>
#include <algorithm>
#include <memory>
#include <string>

#include "host/desktop/desktop_context.h"
#include "host/module_loader/module_loader.h"
#include "host/screens/screen_services_impl.h"
#include "tests/host_screens/when_busy.h"
#include "tests/host_services/demo_database.h"
#include "tests/support/fake_host.h"

namespace basalt::host {

inline Module& testedModule() {
    static Module& module = loadModule(std::filesystem::path(BASALT_MODULE_FILE));
    return module;
}

class DesktopTest : public DemoDatabaseTest {
protected:
    DesktopTest() {
        host.setMessages(messages);
        host.setScreens(&screens);
        host.setClock(clock);
        neverBusy(screens);
    }

    [[nodiscard]] DesktopContext context() { return {host, testedModule().registry(), screens, screens.context()}; }
    // The messages so far, as messageLine writes them; they are forgotten then.
    [[nodiscard]] std::vector<std::string> takeMessages() {
        std::vector<std::string> lines;
        for (const MessageRequest& request : messages.shown)
            lines.push_back(messageLine(request));
        messages.shown.clear();
        return lines;
    }

    FixedClock clock{{.year = 2026, .month = 11, .day = 21, .hour = 9, .minute = 30}};
    ReferenceHost host{*session, workstation("دفتر آزمون")};
    QueuedMessages messages;
    HostScreenServices screens{host};
    AttachedModule attached{testedModule(), host};
};

template <class Control = QWidget>
Control& control(const QWidget& window, const char* objectName) {
    auto* found = window.findChild<Control*>(QString::fromLatin1(objectName));
    if (!found) throw std::logic_error(std::string("there is no ") + objectName);
    return *found;
}

// A click as a user makes it: only on what can be clicked.
inline void click(const QWidget& window, const char* objectName) {
    QWidget& button = control(window, objectName);
    ASSERT_TRUE(button.isVisible() && button.isEnabled()) << objectName;
    QTest::mouseClick(&button, Qt::LeftButton);
}

// Replaces what an edit holds, key by key.
inline void type(const QWidget& window, const char* objectName, const QString& text) {
    QWidget& outer = control(window, objectName);
    ASSERT_TRUE(outer.isVisible() && outer.isEnabled()) << objectName;
    outer.setFocus();
    QWidget& edit = outer.focusProxy() ? *outer.focusProxy() : outer;
    QTest::keyClick(&edit, Qt::Key_A, Qt::ControlModifier);
    QTest::keyClick(&edit, Qt::Key_Delete);
    // Letters of other scripts than the Latin one are their own key codes.
    for (const QChar letter : text)
        QTest::sendKeyEvent(QTest::Click, &edit, static_cast<Qt::Key>(letter.toUpper().unicode()), QString(letter), {});
}

inline std::string shown(const QWidget& window, const char* objectName) {
    const auto& label = control<QLabel>(window, objectName);
    return label.isVisible() ? label.text().toStdString() : "(hidden)";
}

inline void showActive(QWidget& window) {
    window.show();
    window.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
}

}  // namespace basalt::host
