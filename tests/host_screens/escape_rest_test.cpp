// Escape behind one that has closed a message: which presses are of it, and which are the user's next wish.
#include "host/screens/escape_rest.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QDialog>
#include <QLineEdit>
#include <QShortcut>
#include <QtTest>

#include "tests/host_screens/escape_clock.h"

namespace basalt::host {
namespace {

class Screen final : public QDialog {
public:
    int escapes = 0;
    int others = 0;

protected:
    void keyPressEvent(QKeyEvent* event) override { ++(event->key() == Qt::Key_Escape ? escapes : others); }
};

class EscapeRests : public ::testing::Test {
protected:
    EscapeRests() { screen.show(); }
    // How many of them have reached the screen.
    int press(bool repeated = false, quint64 stamp = 0, int key = Qt::Key_Escape) {
        const int before = screen.escapes + screen.others;
        QKeyEvent event(QEvent::KeyPress, key, Qt::NoModifier, {}, repeated);
        event.setTimestamp(stamp);
        QApplication::sendEvent(&screen, &event);
        return screen.escapes + screen.others - before;
    }

    EscapeClock clock;
    EscapeRest& rest = EscapeRest::ofApplication();
    Screen screen;
};

TEST_F(EscapeRests, isOverAfterFourTenthsOfASecond) {
    EXPECT_FALSE(rest.isOn());
    EXPECT_EQ(press(), 1);
    rest.begin();
    EXPECT_TRUE(rest.isOn());
    EXPECT_EQ(press(), 0);
    clock.pass(400);
    EXPECT_TRUE(rest.isOn());
    EXPECT_EQ(press(), 0);
    clock.pass(1);
    EXPECT_FALSE(rest.isOn());
    EXPECT_EQ(press(), 1);
    EXPECT_EQ(press(), 1);
    // As often as there is a reason.
    rest.begin();
    EXPECT_EQ(press(), 0);
}

TEST_F(EscapeRests, aKeyThatIsKeptDownStaysOfNoEffect) {
    rest.begin();
    for (int i = 0; i < 20; ++i) {
        clock.pass(100);
        EXPECT_EQ(press(true), 0) << i;
    }
    // Let go and pressed again, it may be kept down like any other.
    EXPECT_EQ(press(), 1);
    EXPECT_EQ(press(true), 1);
}

// The screen was busy behind the message, and hears of the second press later.
TEST_F(EscapeRests, theKeysOwnTimesCount) {
    rest.begin(10'000);
    clock.pass(3'000);
    EXPECT_EQ(press(false, 10'150), 0);
    EXPECT_EQ(press(false, 10'401), 1);
}

TEST_F(EscapeRests, otherKeysAreNotAffected) {
    rest.begin();
    EXPECT_EQ(press(false, 0, Qt::Key_Return), 1);
    EXPECT_EQ(press(), 0) << "the rest goes on";
}

TEST_F(EscapeRests, aShortCutOfThatKeyRestsToo) {
    ASSERT_TRUE(QTest::qWaitForWindowActive(&screen));
    int acted = 0;
    QShortcut key(Qt::Key_Escape, &screen);
    QObject::connect(&key, &QShortcut::activated, &screen, [&] { ++acted; });
    rest.begin();
    QTest::keyClick(&screen, Qt::Key_Escape);
    EXPECT_EQ(acted, 0);
    clock.pass(401);
    QTest::keyClick(&screen, Qt::Key_Escape);
    EXPECT_EQ(acted, 1);
    EXPECT_EQ(screen.escapes, 0);
}

}  // namespace
}  // namespace basalt::host
