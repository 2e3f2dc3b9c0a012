// The size that a user gave a window.
#include "host/screens/window_size.h"

#include <gtest/gtest.h>

#include <QLabel>
#include <QVBoxLayout>

#include "host/screens/theme.h"

namespace basalt::host {
namespace {

class WindowSizes : public ::testing::Test {
protected:
    ~WindowSizes() override { setThemeFontSize(10); }
    [[nodiscard]] QSize restored(const QJsonObject& layout) {
        window.resize(500, 400);
        restoreWindowSize(window, layout);
        return window.size();
    }

    QWidget window;
};

TEST_F(WindowSizes, comeBack) {
    QJsonObject layout;
    window.resize(640, 480);
    keepWindowSize(layout, window);
    EXPECT_EQ(layout, (QJsonObject{{"width", 640}, {"height", 480}}));
    EXPECT_EQ(restored(layout), QSize(640, 480));
}

TEST_F(WindowSizes, growWithTheFont) {
    QJsonObject layout;
    window.resize(640, 480);
    keepWindowSize(layout, window);
    setThemeFontSize(16);
    EXPECT_EQ(restored(layout), QSize(1024, 768));
    QJsonObject again;
    keepWindowSize(again, window);
    EXPECT_EQ(again, layout);
}

TEST_F(WindowSizes, thatNobodyHasChangedAreKeptAsTheyWere) {
    const QJsonObject wide{{"width", 1400}, {"height", 900}};
    setThemeFontSize(16);
    EXPECT_EQ(restored(wide), QSize(1904, 1032)) << "all that the screen has";
    QJsonObject again;
    keepWindowSize(again, window);
    EXPECT_EQ(again, wide);
    window.resize(800, 640);
    keepWindowSize(again, window);
    EXPECT_EQ(again, (QJsonObject{{"width", 500}, {"height", 400}}));
}

TEST_F(WindowSizes, thatNobodyHasGivenAreNotKept) {
    restoreWindowSize(window, {});
    QJsonObject layout;
    keepWindowSize(layout, window);
    EXPECT_EQ(layout, QJsonObject());
    // Its contents give a window its size when it is shown.
    QWidget form;
    form.setLayout(new QVBoxLayout);
    form.layout()->addWidget(new QLabel(QStringLiteral("نام")));
    const QSize before = form.size();
    restoreWindowSize(form, {});
    form.show();
    ASSERT_NE(form.size(), before);
    keepWindowSize(layout, form);
    EXPECT_EQ(layout, QJsonObject());
    form.resize(before);
    keepWindowSize(layout, form);
    EXPECT_EQ(layout, (QJsonObject{{"width", before.width()}, {"height", before.height()}}));
}

TEST_F(WindowSizes, leaveRoomOnTheScreenForTheFrame) {
    EXPECT_EQ(restored({{"width", 1920}, {"height", 1080}}), QSize(1904, 1032));
    EXPECT_EQ(restored({{"width", 5000000}, {"height", 700}}), QSize(1904, 700));
}

TEST_F(WindowSizes, ofALayoutWithoutOneStayAsTheyAre) {
    EXPECT_EQ(restored({}), QSize(500, 400));
    EXPECT_EQ(restored({{"width", 640}}), QSize(500, 400));
    EXPECT_EQ(restored({{"width", -5}, {"height", "high"}}), QSize(500, 400));
}

// The room of the tests' screen is that of 1920x1080.
TEST_F(WindowSizes, areAsWideAsTheContentsWantAndHigherByAsMuch) {
    window.resize(1160, 680);
    widenWindow(window, 1450);
    EXPECT_EQ(window.size(), QSize(1450, 850));
    widenWindow(window, 900);
    EXPECT_EQ(window.size(), QSize(1450, 850));
    widenWindow(window, 5000);
    EXPECT_EQ(window.size(), QSize(1728, 972));
}

TEST_F(WindowSizes, areNoLargerThanTheScreen) {
    window.resize(3000, 2000);
    widenWindow(window, 100);
    EXPECT_EQ(window.size(), QSize(1904, 1032));
}

}  // namespace
}  // namespace basalt::host
