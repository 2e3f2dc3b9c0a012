// The notice of a long request: when it comes, what its button does, and that it goes.
#include "host/screens/busy_notice.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QDialog>
#include <QHBoxLayout>
#include <QLineEdit>
#include <QPointer>
#include <QPushButton>
#include <QShortcut>
#include <QtTest>

#include "engines/embedded/embedded_session.h"
#include "tests/host_screens/escape_clock.h"
#include "tests/host_screens/when_busy.h"

namespace basalt::host {
namespace {

// Some seconds of work when nobody gives it up.
const char* const kLongStatement =
    "SELECT COUNT(*) FROM N AS A CROSS JOIN N AS B CROSS JOIN N AS C WHERE A.X + B.X * C.X = -1";

QWidget* notice() {
    for (QWidget* widget : QApplication::allWidgets())
        if (widget->objectName() == QStringLiteral("Busy_FRM") && widget->isVisible()) return widget;
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

    EscapeClock escapeClock;
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

// A window with two inputs and a button, of which the first input has the focus.
struct Form : QDialog {
    Form() {
        auto* row = new QHBoxLayout(this);
        for (QWidget* widget : std::initializer_list<QWidget*>{&first, &second, &button})
            row->addWidget(widget);
        button.setAutoDefault(false);
        resize(700, 300);
        QObject::connect(&button, &QPushButton::clicked, this, [this] { ++clicks; });
        QObject::connect(&first, &QLineEdit::returnPressed, this, [this] { ++enters; });
        auto* key = new QShortcut(QKeySequence(Qt::Key_F9), this);
        QObject::connect(key, &QShortcut::activated, this, [this] { ++shortCuts; });
        show();
        activateWindow();
        first.setFocus();
    }
    void reject() override { ++escapes; }

    QLineEdit first;
    QLineEdit second;
    QPushButton button;
    int clicks = 0;
    int enters = 0;
    int shortCuts = 0;
    int escapes = 0;
};

// As they come from a keyboard: to the window that the window system gives them to.
void press(QWindow* window, int key, const QString& text = {}, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
    QTest::sendKeyEvent(QTest::Click, window, static_cast<Qt::Key>(key), text, modifiers);
}

void pressDigits(QWindow* window, const char* digits) {
    for (const char* digit = digits; *digit != '\0'; ++digit)
        press(window, *digit, QString(QLatin1Char(*digit)));
}

const char* const kMediumStatement =
    "SELECT COUNT(*) FROM N AS A CROSS JOIN N AS B CROSS JOIN (SELECT TOP 200 X FROM N) AS C";

TEST_F(Busy, itIsGoneBeforeTheKeysThatWerePressedMeanwhile) {
    Form form;
    ASSERT_TRUE(QTest::qWaitForWindowActive(&form));
    bool pressed = false;
    QString meanwhile;
    WhenBusy shown([&](QWidget& window) {
        if (std::exchange(pressed, true)) return;
        EXPECT_EQ(QApplication::focusWidget(), &form.first);
        EXPECT_EQ(QApplication::activeModalWidget(), nullptr);
        EXPECT_EQ(window.window(), &form);
        pressDigits(form.windowHandle(), "123");
        press(form.windowHandle(), Qt::Key_Space, QStringLiteral(" "));
        pressDigits(form.windowHandle(), "4");
        press(form.windowHandle(), Qt::Key_Return, QStringLiteral("\r"));
        press(form.windowHandle(), Qt::Key_F9);
        press(form.windowHandle(), Qt::Key_Tab, QStringLiteral("\t"));
        pressDigits(form.windowHandle(), "56");
        QTest::mouseClick(form.windowHandle(), Qt::LeftButton, {}, form.button.geometry().center());
        meanwhile = form.first.text() + form.second.text();
    });
    session->run(kMediumStatement);
    EXPECT_TRUE(pressed);
    EXPECT_EQ(meanwhile, QString());
    EXPECT_NE(notice(), nullptr);
    bool goneBefore = false;
    QObject::connect(&form.first, &QLineEdit::textChanged, &form, [&] { goneBefore = notice() == nullptr; });
    QCoreApplication::sendPostedEvents();
    EXPECT_TRUE(goneBefore);
    EXPECT_EQ(notice(), nullptr);
    EXPECT_EQ(form.first.text().toStdString(), "123 4");
    EXPECT_EQ(form.enters, 1);
    EXPECT_EQ(form.shortCuts, 1);
    EXPECT_EQ(form.second.text().toStdString(), "56");
    EXPECT_EQ(form.clicks, 0);
    EXPECT_EQ(form.escapes, 0);
}

TEST_F(Busy, escapeGivesUpAndOnlyTextStaysTyped) {
    Form form;
    ASSERT_TRUE(QTest::qWaitForWindowActive(&form));
    WhenBusy shown([&](QWidget&) {
        pressDigits(form.windowHandle(), "12");
        press(form.windowHandle(), Qt::Key_F9);
        press(form.windowHandle(), Qt::Key_Escape);
    });
    EXPECT_THROW(session->run(kLongStatement), DatabaseError);
    QCoreApplication::sendPostedEvents();
    EXPECT_EQ(form.first.text().toStdString(), "12");
    EXPECT_EQ(form.shortCuts, 0);
    EXPECT_EQ(form.escapes, 0);
    // Pressed twice by who wants to be rid of the notice; the next one is for the window again.
    press(form.windowHandle(), Qt::Key_Escape);
    EXPECT_EQ(form.escapes, 0);
    escapeClock.pass(401);
    press(form.windowHandle(), Qt::Key_Escape);
    EXPECT_EQ(form.escapes, 1);
}

TEST_F(Busy, aClickOnItsButtonGivesUpAndTakesNoFocus) {
    Form form;
    ASSERT_TRUE(QTest::qWaitForWindowActive(&form));
    WhenBusy shown([&](QWidget& window) {
        const auto* button = window.findChild<QPushButton*>("BusyCancel_BTN");
        QTest::mouseClick(form.windowHandle(), Qt::LeftButton, {}, button->mapTo(&form, button->rect().center()));
    });
    EXPECT_THROW(session->run(kLongStatement), DatabaseError);
    EXPECT_EQ(form.focusWidget(), &form.first);
    QCoreApplication::sendPostedEvents();
    press(form.windowHandle(), Qt::Key_Escape);
    EXPECT_EQ(form.escapes, 1) << "Escape was not used up";
}

TEST_F(Busy, keysAreNotGivenToAnotherWindow) {
    Form form;
    ASSERT_TRUE(QTest::qWaitForWindowActive(&form));
    bool pressed = false;
    WhenBusy shown([&](QWidget&) {
        if (!std::exchange(pressed, true)) pressDigits(form.windowHandle(), "12");
    });
    session->run(kMediumStatement);
    {
        Form other;
        other.setModal(true);
        other.hide();
        other.show();
        QCoreApplication::sendPostedEvents();
        EXPECT_EQ(other.first.text().toStdString(), "");
    }
    QCoreApplication::sendPostedEvents();
    EXPECT_EQ(form.first.text().toStdString(), "");
    EXPECT_TRUE(pressed);
}

// Enter opens a window, and the rest was pressed before that was there.
TEST_F(Busy, keysAfterOneThatOpensAWindowAreDropped) {
    Form form;
    ASSERT_TRUE(QTest::qWaitForWindowActive(&form));
    bool pressed = false;
    std::string inOther = "never opened";
    QObject::connect(&form.first, &QLineEdit::returnPressed, &form, [&] {
        Form other;
        QTimer::singleShot(50, &other, [&] {
            inOther = other.first.text().toStdString();
            other.done(0);
        });
        other.exec();
    });
    WhenBusy shown([&](QWidget&) {
        if (std::exchange(pressed, true)) return;
        press(form.windowHandle(), Qt::Key_Return, QStringLiteral("\r"));
        pressDigits(form.windowHandle(), "12");
    });
    session->run(kMediumStatement);
    QCoreApplication::sendPostedEvents();
    EXPECT_EQ(form.enters, 1);
    EXPECT_EQ(inOther, "");
    EXPECT_EQ(form.first.text().toStdString(), "");
}

TEST_F(Busy, aSmallWindowHasTheNoticeInFrontOfIt) {
    QLineEdit small;
    small.show();
    small.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&small));
    bool inFront = false;
    WhenBusy shown([&](QWidget& window) {
        inFront =
            window.isWindow() && window.parentWidget() == &small && window.testAttribute(Qt::WA_ShowWithoutActivating);
        if (small.text().isEmpty()) pressDigits(small.windowHandle(), "1");
    });
    session->run(kMediumStatement);
    QCoreApplication::sendPostedEvents();
    EXPECT_TRUE(inFront);
    EXPECT_EQ(small.text().left(1).toStdString(), "1");
    EXPECT_EQ(notice(), nullptr);
}

TEST_F(Busy, aWindowThatGoesTakesItsKeysAlong) {
    auto form = std::make_unique<Form>();
    ASSERT_TRUE(QTest::qWaitForWindowActive(form.get()));
    WhenBusy shown([&](QWidget&) { pressDigits(form->windowHandle(), "1"); });
    session->run(kMediumStatement);
    EXPECT_GT(shown.times, 0);
    form.reset();
    QCoreApplication::sendPostedEvents();
    EXPECT_EQ(notice(), nullptr);
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
    EXPECT_TRUE(EscapeRest::ofApplication().isOn()) << "it was pressed at the notice all the same";
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
