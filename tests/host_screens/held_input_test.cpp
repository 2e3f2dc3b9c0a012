// Input that is held back while a window is only painted: what is kept, in which order it comes back, and to whom.
#include "host/screens/held_input.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QHBoxLayout>
#include <QInputMethodEvent>
#include <QKeyEvent>
#include <QLineEdit>
#include <QtTest>
#include <string>
#include <vector>

namespace basalt::host {
namespace {

using Lines = std::vector<std::string>;

// Notes what it is given: "key a", "commit سلام", "preedit سل".
class Notes final : public QWidget {
public:
    explicit Notes(QWidget* parent) : QWidget(parent) {
        setFocusPolicy(Qt::StrongFocus);
        setAttribute(Qt::WA_InputMethodEnabled);
    }
    Lines given;

protected:
    void keyPressEvent(QKeyEvent* event) override { given.push_back("key " + event->text().toStdString()); }
    void inputMethodEvent(QInputMethodEvent* event) override {
        if (!event->commitString().isEmpty()) given.push_back("commit " + event->commitString().toStdString());
        if (!event->preeditString().isEmpty()) given.push_back("preedit " + event->preeditString().toStdString());
        if (event->commitString().isEmpty() && event->preeditString().isEmpty()) given.emplace_back("no preedit");
        for (const QInputMethodEvent::Attribute& attribute : event->attributes())
            given.push_back("attribute at " + std::to_string(attribute.start));
        if (event->replacementLength() > 0) given.push_back("instead of " + std::to_string(event->replacementLength()));
    }
};

class HeldInputs : public ::testing::Test {
protected:
    HeldInputs() {
        auto* row = new QHBoxLayout(&window);
        row->addWidget(notes);
        row->addWidget(line);
        window.show();
        window.activateWindow();
        notes->setFocus();
        held.onEscape = [this] { ++escapes; };
        held.waitFor(&window);
    }
    // What comes while the window is only painted.
    template <typename Work>
    void during(Work work) {
        const HeldInput::Turn turn(held, nullptr);
        work();
    }
    static void key(QWidget* to, int code, const QString& text = {}) {
        QKeyEvent press(QEvent::KeyPress, code, Qt::NoModifier, text);
        QApplication::sendEvent(to, &press);
        QKeyEvent release(QEvent::KeyRelease, code, Qt::NoModifier, text);
        QApplication::sendEvent(to, &release);
    }
    static void preedit(QWidget* to, const char* text) {
        QInputMethodEvent event(QString::fromUtf8(text), {{QInputMethodEvent::Cursor, 2, 1, {}}});
        QApplication::sendEvent(to, &event);
    }
    static void commit(QWidget* to, const char* text, int replaced = 0) {
        QInputMethodEvent event;
        event.setCommitString(QString::fromUtf8(text), -replaced, replaced);
        QApplication::sendEvent(to, &event);
    }

    QWidget window;
    Notes* notes = new Notes(&window);
    QLineEdit* line = new QLineEdit(&window);
    HeldInput held;
    int escapes = 0;
};

TEST_F(HeldInputs, whatAnInputMethodWritesComesBackInItsPlaceAmongTheKeys) {
    ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
    during([this] {
        key(notes, Qt::Key_A, QStringLiteral("a"));
        preedit(notes, "سل");
        preedit(notes, "سلا");
        commit(notes, "سلام");
        key(notes, Qt::Key_B, QStringLiteral("b"));
        commit(notes, "ی", 1);
        EXPECT_EQ(notes->given, Lines{});
    });
    EXPECT_EQ(notes->given, Lines{}) << "before events come again";
    held.giveBack();
    EXPECT_EQ(notes->given, (Lines{"key a", "preedit سل", "attribute at 2", "preedit سلا", "attribute at 2",
                                   "commit سلام", "key b", "commit ی", "instead of 1"}));
    held.giveBack();
    EXPECT_EQ(notes->given.size(), 9U) << "given once";
}

TEST_F(HeldInputs, anInputHasTheTextThatWasWritten) {
    ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
    line->setFocus();
    during([this] {
        key(line, Qt::Key_1, QStringLiteral("1"));
        preedit(line, "ش");
        commit(line, "شیر");
        key(line, Qt::Key_2, QStringLiteral("2"));
        key(line, Qt::Key_Backspace);
        commit(line, "!");
        EXPECT_EQ(line->text().toStdString(), "");
    });
    held.giveBack();
    EXPECT_EQ(line->text().toStdString(), "1شیر!");
}

// A word that is still being composed is composed on where it stands.
TEST_F(HeldInputs, aPreeditGoesOnAfterwards) {
    ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
    line->setFocus();
    during([this] { preedit(line, "شی"); });
    held.giveBack();
    EXPECT_EQ(line->text().toStdString(), "");
    EXPECT_EQ(line->inputMethodQuery(Qt::ImCursorPosition).toInt(), 0);
    commit(line, "شیر");
    EXPECT_EQ(line->text().toStdString(), "شیر");
}

TEST_F(HeldInputs, afterGivingUpOnlyWhatWasBeingWrittenStays) {
    ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
    during([this] {
        commit(notes, "سلام");
        key(notes, Qt::Key_A, QStringLiteral("a"));
        preedit(notes, "بس");
        key(notes, Qt::Key_F9);
        commit(notes, "بسته");
        key(notes, Qt::Key_Escape);
    });
    EXPECT_EQ(escapes, 1);
    held.keepTypedText();
    held.giveBack();
    EXPECT_EQ(notes->given, (Lines{"commit سلام", "key a", "preedit بس", "attribute at 2"}));
}

TEST_F(HeldInputs, whatIsWrittenIsDroppedWithTheWindowThatWaited) {
    ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
    during([this] { commit(notes, "سلام"); });
    QWidget other;
    held.waitFor(&other);
    held.giveBack();
    EXPECT_EQ(notes->given, Lines{});

    held.waitFor(&window);
    during([this] { commit(notes, "سلام"); });
    window.hide();
    held.giveBack();
    window.show();
    held.giveBack();
    EXPECT_EQ(notes->given, Lines{});
}

TEST_F(HeldInputs, betweenTurnsNothingIsHeld) {
    commit(notes, "سلام");
    EXPECT_EQ(notes->given, Lines{"commit سلام"});
    key(notes, Qt::Key_Escape);
    EXPECT_EQ(escapes, 0);
}

}  // namespace
}  // namespace basalt::host
