// What screens ask of the host besides controls.
#include <QLabel>
#include <QLineEdit>

#include "host/screens/screen_services_impl.h"
#include "tests/host_screens/screen_test.h"

namespace basalt::host {
namespace {

class ScreenServicesTest : public ScreenTest {};

TEST_F(ScreenServicesTest, aRightAlignedControlReadsFromTheRight) {
    QLineEdit input;
    input.setLayoutDirection(Qt::LeftToRight);
    input.setAlignment(Qt::AlignLeft);
    screens.SetWinControlRightAlign(input);
    EXPECT_EQ(input.layoutDirection(), Qt::RightToLeft);
    input.resize(300, 30);
    for (const QString& text : {QStringLiteral("abc"), QStringLiteral("نان")}) {
        input.setText(text);
        input.setCursorPosition(0);
        // The place of the cursor is that of the last painting. Words of either script stand at the right.
        static_cast<void>(input.grab());
        EXPECT_GT(input.inputMethodQuery(Qt::ImCursorRectangle).toRect().x(), 200) << text.toStdString();
    }
    QLabel label;
    label.setLayoutDirection(Qt::LeftToRight);
    screens.SetWinControlRightAlign(label);
    EXPECT_EQ(label.layoutDirection(), Qt::RightToLeft);
}

}  // namespace
}  // namespace basalt::host
