// When a search follows the typing.
#include "host/screens/typing_pause.h"

#include "tests/host_screens/screen_test.h"

namespace basalt::host {
namespace {

constexpr int kLongerThanAPause = 400;

class Pauses : public ScreenTest {
protected:
    ~Pauses() override { screens.context().setRequestRuns({}); }

    QWidget window;
    int searches = 0;
    int milliseconds = 0;  // that a search takes
    TypingPause pause{screens.context(), window, [this] {
                          ++searches;
                          QTest::qSleep(milliseconds);
                      }};
};

TEST_F(Pauses, aFastSearchFollowsEveryLetter) {
    pause.typed();
    pause.typed();
    EXPECT_EQ(searches, 2);
    EXPECT_FALSE(pause.isWaiting());
}

TEST_F(Pauses, aSlowOneWaitsForTheLastLetter) {
    milliseconds = 200;
    pause.typed();
    EXPECT_EQ(searches, 1);
    milliseconds = 0;
    pause.typed();
    pause.typed();
    EXPECT_EQ(searches, 1);
    EXPECT_TRUE(pause.isWaiting());
    QTRY_COMPARE(searches, 2);
    EXPECT_FALSE(pause.isWaiting());
    QTest::qWait(kLongerThanAPause);
    EXPECT_EQ(searches, 2);
}

// Where timers run while a request does, the end of the pause must not search within it.
TEST_F(Pauses, aSearchWaitsForTheRequestThatRuns) {
    milliseconds = 200;
    pause.typed();
    milliseconds = 0;
    bool runs = true;
    screens.context().setRequestRuns([&runs] { return runs; });
    pause.typed();
    QTest::qWait(kLongerThanAPause);
    EXPECT_EQ(searches, 1);
    EXPECT_TRUE(pause.isWaiting());
    runs = false;
    QTRY_COMPARE(searches, 2);
    EXPECT_FALSE(pause.isWaiting());
}

TEST_F(Pauses, whatStillWaitsIsSearchedForAtOnceWhenItIsNeeded) {
    milliseconds = 200;
    pause.typed();
    milliseconds = 0;
    pause.typed();
    EXPECT_TRUE(pause.finish());
    EXPECT_EQ(searches, 2);
    EXPECT_TRUE(pause.finish());
    EXPECT_EQ(searches, 2);
}

// While the notice of a request is up, that one runs; the time of the next belongs to nobody.
TEST_F(Pauses, theHostTellsOfItsRequests) {
    EXPECT_FALSE(screens.context().requestRuns());
    window.resize(600, 400);
    window.show();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
    screens.busyNotice().setPatience(0);
    bool ran = false;
    WhenBusy busy([&](QWidget&) { ran = screens.context().requestRuns(); });
    for (int row = 0; row < 5 && !ran; ++row) {
        QTest::qSleep(50);
        EXPECT_TRUE(screens.busyNotice().writes(row, 5));
    }
    EXPECT_TRUE(ran);
    EXPECT_FALSE(screens.context().requestRuns());
    neverBusy(screens);
    QCoreApplication::processEvents();
}

}  // namespace
}  // namespace basalt::host
