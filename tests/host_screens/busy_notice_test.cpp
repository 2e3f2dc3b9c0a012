// The notice of a long request: when it comes, what its button does, and that it goes.
#include "host/screens/busy_notice.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QLineEdit>
#include <QPointer>
#include <QPushButton>
#include <QtTest>

#include "engines/embedded/embedded_session.h"
#include "tests/host_screens/when_busy.h"

namespace basalt::host {
namespace {

// Some seconds of work when nobody gives it up.
const char* const kLongStatement =
    "SELECT COUNT(*) FROM N AS A CROSS JOIN N AS B CROSS JOIN N AS C WHERE A.X + B.X * C.X = -1";

QWidget* notice() {
    for (QWidget* window : QApplication::topLevelWidgets())
        if (window->objectName() == QStringLiteral("Busy_FRM") && window->isVisible()) return window;
    return nullptr;
}

class Busy : public ::testing::Test {
protected:
    Busy() {
        session->run("CREATE TABLE N (X int)");
        session->run("INSERT INTO N VALUES (1), (2), (3), (4), (5), (6), (7), (8), (9), (10)");
        session->run("INSERT INTO N SELECT A.X + 10 * B.X FROM N AS A CROSS JOIN N AS B");
        session->run("INSERT INTO N SELECT A.X + 200 * B.X FROM N AS A CROSS JOIN N AS B WHERE B.X <= 3");
        notice_.setPatience(20);
    }

    std::unique_ptr<embedded::EmbeddedSession> session =
        embedded::EmbeddedSession::open(":memory:", {.createIfMissing = true});
    BusyNotice notice_{*session};
};

TEST_F(Busy, aShortRequestShowsNothing) {
    WhenBusy shown([](QWidget&) {});
    session->run("SELECT COUNT(*) FROM N");
    QApplication::processEvents();
    EXPECT_EQ(shown.times, 0);
    EXPECT_EQ(notice(), nullptr);
}

TEST_F(Busy, aLongRequestCanBeGivenUp) {
    WhenBusy shown([](QWidget& window) { window.findChild<QPushButton*>("BusyCancel_BTN")->click(); });
    try {
        session->run(kLongStatement);
        FAIL() << "the request was not given up";
    } catch (const DatabaseError& error) {
        EXPECT_TRUE(isCancelled(error));
        EXPECT_EQ(error.statement(), kLongStatement);
    }
    EXPECT_GT(shown.times, 0);
    QTRY_VERIFY_WITH_TIMEOUT(notice() == nullptr, 2000);
    // The session works on, and the next request is not given up.
    EXPECT_EQ(session->run("SELECT COUNT(*) FROM N WHERE X = 1").results.size(), 1U);
}

TEST_F(Busy, itIsGoneBeforeTheKeysThatWerePressedMeanwhile) {
    QLineEdit behind;
    behind.show();
    behind.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&behind));
    WhenBusy shown([](QWidget&) {});
    session->run("SELECT COUNT(*) FROM N AS A CROSS JOIN N AS B CROSS JOIN (SELECT TOP 30 X FROM N) AS C");
    EXPECT_GT(shown.times, 0);
    EXPECT_NE(notice(), nullptr);
    QCoreApplication::sendPostedEvents();
    EXPECT_EQ(notice(), nullptr);
    EXPECT_EQ(QApplication::activeModalWidget(), nullptr);
}

TEST_F(Busy, whatIsWrittenOffersNoCancel) {
    bool offered = false;
    int seen = 0;
    WhenBusy shown([&](QWidget& window) {
        ++seen;
        offered = offered || window.findChild<QPushButton*>("BusyCancel_BTN")->isVisible();
        QTest::keyClick(&window, Qt::Key_Escape);
    });
    session->begin();
    session->run(
        "UPDATE N SET X = X WHERE X IN (SELECT A.X + B.X * C.X FROM N AS A CROSS JOIN N AS B CROSS JOIN "
        "(SELECT TOP 40 X FROM N) AS C)");
    session->commit();
    EXPECT_FALSE(offered);
    EXPECT_GT(seen, 0);
    QTRY_VERIFY_WITH_TIMEOUT(notice() == nullptr, 2000);
}

TEST_F(Busy, aSessionThatCannotBeInterruptedIsLeftAlone) {
    // A request that asks after the notice has gone finds nobody to ask.
    { const BusyNotice other(*session); }
    WhenBusy shown([](QWidget&) {});
    session->run("SELECT COUNT(*) FROM N AS A CROSS JOIN N AS B");
    EXPECT_EQ(shown.times, 0);
}

}  // namespace
}  // namespace basalt::host
