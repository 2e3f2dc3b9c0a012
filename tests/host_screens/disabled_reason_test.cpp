#include "host/screens/disabled_reason.h"

#include <gtest/gtest.h>

#include <QPushButton>

namespace basalt::host {
namespace {

TEST(DisabledReason, isToldByTheToolTipAsLongAsTheControlIsDisabled) {
    QPushButton button;
    button.setToolTip(QStringLiteral("حذف سطر"));
    button.setAccessibleDescription(QStringLiteral("سطر را حذف می‌کند"));
    enableUnless(button, nothingChosenReason());
    EXPECT_FALSE(button.isEnabled());
    EXPECT_EQ(button.toolTip(), "<p dir=\"auto\">نخست سطری را در فهرست برگزینید.</p>");
    EXPECT_EQ(button.accessibleDescription(), "نخست سطری را در فهرست برگزینید.");
    enableUnless(button, emptyListReason());
    EXPECT_EQ(button.accessibleDescription(), "فهرست خالی است.");
    enableUnless(button, {});
    EXPECT_TRUE(button.isEnabled());
    EXPECT_EQ(button.toolTip(), "حذف سطر");
    EXPECT_EQ(button.accessibleDescription(), "سطر را حذف می‌کند");
}

TEST(DisabledReason, aControlWithoutAToolTipHasNoneAgain) {
    QPushButton button;
    enableUnless(button, {});
    EXPECT_EQ(button.toolTip(), "");
    enableUnless(button, notPermittedReason());
    EXPECT_NE(button.toolTip(), "");
    enableUnless(button, {});
    EXPECT_EQ(button.toolTip(), "");
    button.setToolTip(QStringLiteral("تازه"));
    enableUnless(button, nothingChangedReason());
    enableUnless(button, {});
    EXPECT_EQ(button.toolTip(), "تازه") << "what was said of it meanwhile";
}

}  // namespace
}  // namespace basalt::host
