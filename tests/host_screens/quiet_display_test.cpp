// What Qt says on a display that lacks something, and what it says else.
#include "host/screens/quiet_display.h"

#include <gtest/gtest.h>

#include <QString>
#include <QStringList>

namespace basalt::host {
namespace {

QStringList told;

void keep(QtMsgType, const QMessageLogContext&, const QString& message) {
    told.append(message);
}

TEST(QuietDisplay, passesOnAllButWhatTheDisplayLacks) {
    const QtMessageHandler before = qInstallMessageHandler(keep);
    {
        const QuietDisplay quiet("basalt");
        qWarning("This plugin does not support propagateSizeHints()");
        qWarning("This plugin does not support raise()");
        qWarning("This plugin does not support grabbing the keyboard");
        qWarning("QLayout: this plugin does not support more");
    }
    qWarning("This plugin does not support raise()");
    qInstallMessageHandler(before);
    EXPECT_EQ(told,
              (QStringList{"QLayout: this plugin does not support more", "This plugin does not support raise()"}));
}

}  // namespace
}  // namespace basalt::host
