// Messages as the user sees and answers them.
#include "host/screens/message_box.h"

#include <QDialog>
#include <QLabel>
#include <QPushButton>
#include <QScrollArea>
#include <QScrollBar>
#include <QToolButton>

#include "host/screens/qt_message_service.h"
#include "host/screens/theme.h"
#include "host/screens/toast.h"
#include "tests/ado/named_case.h"
#include "tests/host_screens/screen_test.h"

namespace basalt::host {
namespace {

class Messages : public ScreenTest {
protected:
    // Acts on the message box when it is open; fails when none opens.
    static void onBox(std::function<void(MessageBox&)> act) {
        whenShown([act = std::move(act)] {
            auto* box = dynamic_cast<MessageBox*>(QApplication::activeModalWidget());
            ASSERT_NE(box, nullptr);
            act(*box);
        });
    }
    static QPushButton& button(QDialog& box, const char* name) { return *control<QPushButton>(box, name); }

    static MessageRequest question(TMessageButtons buttons, TMessageButton standard) {
        MessageRequest request;
        request.operation = "MsgDeleteRow";
        request.buttons = std::move(buttons);
        request.defaultButton = standard;
        return request;
    }

    QtMessageService service{host.catalogue()};
};

struct AnswerCase {
    const char* name;
    const char* buttonName;
    const char* text;
    int answer;
};
class Answers : public Messages, public ::testing::WithParamInterface<AnswerCase> {};

TEST_P(Answers, areTheButtonPressed) {
    onBox([](MessageBox& box) {
        EXPECT_EQ(button(box, GetParam().buttonName).text().toStdString(), GetParam().text);
        QTest::mouseClick(&button(box, GetParam().buttonName), Qt::LeftButton);
    });
    EXPECT_EQ(
        service.show(question({TMessageButton::Ok, TMessageButton::Yes, TMessageButton::No, TMessageButton::Cancel},
                              TMessageButton::No)),
        GetParam().answer);
}

INSTANTIATE_TEST_SUITE_P(All, Answers,
                         ::testing::Values(AnswerCase{"ok", "Ok_BTN", "تأیید", mrOk},
                                           AnswerCase{"cancel", "Cancel_BTN", "انصراف", mrCancel},
                                           AnswerCase{"yes", "Yes_BTN", "بله", mrYes},
                                           AnswerCase{"no", "No_BTN", "خیر", mrNo}),
                         NameOfCase());

TEST_F(Messages, aQuestionShowsItsTextRightToLeft) {
    onBox([](MessageBox& box) {
        EXPECT_EQ(box.objectName().toStdString(), "MessageBox");
        EXPECT_EQ(box.layoutDirection(), Qt::RightToLeft);
        EXPECT_EQ(control<QLabel>(box, "MessageText_LBL")->text().toStdString(), "آیا از حذف این سطر مطمئن هستید؟");
        box.reject();
    });
    service.show(question({TMessageButton::Yes, TMessageButton::No}, TMessageButton::No));
}

TEST_F(Messages, enterGivesTheDefaultAndEscapeRefuses) {
    onBox([](MessageBox& box) { QTest::keyClick(&box, Qt::Key_Return); });
    EXPECT_EQ(service.show(question({TMessageButton::Yes, TMessageButton::No}, TMessageButton::No)), mrNo);
    onBox([](MessageBox& box) { QTest::keyClick(&box, Qt::Key_Return); });
    EXPECT_EQ(service.show(question({TMessageButton::Yes, TMessageButton::No}, TMessageButton::Yes)), mrYes);
    onBox([](MessageBox& box) { QTest::keyClick(&box, Qt::Key_Escape); });
    EXPECT_EQ(service.show(question({TMessageButton::Yes, TMessageButton::No}, TMessageButton::Yes)), mrNo);
    escapeClock.pass(401);
    onBox([](MessageBox& box) { QTest::keyClick(&box, Qt::Key_Escape); });
    EXPECT_EQ(
        service.show(question({TMessageButton::Yes, TMessageButton::No, TMessageButton::Cancel}, TMessageButton::Yes)),
        mrCancel);
}

// Pressed twice by who wants to be rid of the message.
TEST_F(Messages, escapeLeavesTheScreenBeneathOpen) {
    QDialog screen;
    screen.show();
    const auto answer = [&](std::function<void(MessageBox&)> act) {
        onBox(std::move(act));
        service.show(question({TMessageButton::Yes, TMessageButton::No}, TMessageButton::Yes));
        QTest::keyClick(&screen, Qt::Key_Escape);
    };
    answer([](MessageBox& box) { QTest::keyClick(box.focusWidget(), Qt::Key_Escape); });
    EXPECT_TRUE(screen.isVisible());
    escapeClock.pass(400);
    QTest::keyClick(&screen, Qt::Key_Escape);
    EXPECT_TRUE(screen.isVisible());
    escapeClock.pass(1);
    QTest::keyClick(&screen, Qt::Key_Escape);
    EXPECT_FALSE(screen.isVisible());

    // An answer by another key, or by none, is no reason to keep Escape from the screen.
    screen.show();
    answer([](MessageBox& box) { QTest::keyClick(box.focusWidget(), Qt::Key_Return); });
    EXPECT_FALSE(screen.isVisible());
    screen.show();
    answer([](MessageBox& box) { box.close(); });
    EXPECT_FALSE(screen.isVisible());
}

TEST_F(Messages, whatAScannerTypesAnswersNothing) {
    onBox([](MessageBox& box) {
        QTest::keyClicks(box.focusWidget(), QStringLiteral("6267311001001"));
        QTest::keyClick(box.focusWidget(), Qt::Key_Return);
        EXPECT_TRUE(box.isVisible());
        QTest::keyClicks(&box, QStringLiteral("A 1"));
        QTest::keyClick(&box, Qt::Key_Enter);
        EXPECT_TRUE(box.isVisible());
        QTest::qWait(400);
        QTest::keyClick(box.focusWidget(), Qt::Key_Return);
    });
    EXPECT_EQ(service.show(question({TMessageButton::Yes, TMessageButton::No}, TMessageButton::Yes)), mrYes);
}

TEST_F(Messages, aNoteHasOneButtonAndNoAnswer) {
    MessageRequest request;
    request.operation = "MsgRequiredField";
    request.arguments = {"نام"};
    onBox([](MessageBox& box) {
        EXPECT_EQ(box.findChildren<QPushButton*>().size(), 1);
        QTest::mouseClick(&button(box, "Ok_BTN"), Qt::LeftButton);
    });
    EXPECT_EQ(service.show(request), mrNone);
}

TEST_F(Messages, anErrorKeepsItsDetailForThoseWhoAsk) {
    const DatabaseError error(ErrorCategory::NotFound, "42S02", 208, "Invalid object name 'CostLevel'.");
    onBox([](MessageBox& box) {
        auto* detail = control<QPlainTextEdit>(box, "MessageDetail_EDT");
        EXPECT_EQ(detail->toPlainText().toStdString(), "Invalid object name 'CostLevel'.");
        EXPECT_FALSE(detail->isVisible());
        QTest::mouseClick(control<QToolButton>(box, "Detail_BTN"), Qt::LeftButton);
        EXPECT_TRUE(detail->isVisible());
        box.reject();
    });
    service.show(host.catalogue().errorRequest(error));
}

TEST_F(Messages, markupInAnArgumentIsShownAsText) {
    MessageRequest request;
    request.operation = "NotEditable";
    request.arguments = {"<b>x</b>"};
    onBox([](MessageBox& box) {
        EXPECT_EQ(control<QLabel>(box, "MessageText_LBL")->textFormat(), Qt::PlainText);
        EXPECT_TRUE(control<QLabel>(box, "MessageText_LBL")->text().contains(QStringLiteral("<b>x</b>")));
        box.reject();
    });
    service.show(request);
}

TEST_F(Messages, aTextThatTheScreenDoesNotHoldIsScrolledAboveItsButtons) {
    QStringList names;
    for (int good = 0; good < 600; ++good)
        names << QStringLiteral("موز درجه یک");
    MessageRequest request;
    for (const bool asks : {false, true}) {
        request.operation = "ShowSmartMessage";
        request.kind = asks ? MessageKind::Confirmation : MessageKind::Error;
        request.number = asks ? 20091 : 30055;
        request.arguments = {names.join(QStringLiteral("، ")).toStdString()};
        request.buttons =
            asks ? TMessageButtons{TMessageButton::Yes, TMessageButton::No} : TMessageButtons{TMessageButton::Ok};
        onBox([asks](MessageBox& box) {
            const QSize room = themeScreenRoom(box);
            EXPECT_LE(box.height(), room.height());
            EXPECT_LE(box.width(), room.width());
            const QPushButton& seen = button(box, asks ? "No_BTN" : "Ok_BTN");
            EXPECT_TRUE(box.rect().contains(QRect(seen.mapTo(&box, QPoint(0, 0)), seen.size())));
            auto* scroll = control<QScrollArea>(box, "MessageText_SCR");
            auto* text = control<QLabel>(box, "MessageText_LBL");
            EXPECT_EQ(text->width(), scroll->viewport()->width());
            EXPECT_EQ(text->height(), text->heightForWidth(text->width()));
            EXPECT_GT(text->height(), scroll->height());
            // By keyboard, too.
            scroll->setFocus();
            for (int page = 0; page < 100; ++page)
                QTest::keyClick(scroll, Qt::Key_PageDown);
            EXPECT_EQ(scroll->verticalScrollBar()->value(), scroll->verticalScrollBar()->maximum());
            EXPECT_EQ(text->visibleRegion().boundingRect().bottom(), text->height() - 1);
            box.reject();
        });
        service.show(request);
    }
}

TEST_F(Messages, aShortTextIsNotScrolled) {
    onBox([](MessageBox& box) {
        EXPECT_EQ(box.findChild<QScrollArea*>(QStringLiteral("MessageText_SCR")), nullptr);
        box.reject();
    });
    service.show(question({TMessageButton::Yes, TMessageButton::No}, TMessageButton::No));
}

TEST_F(Messages, flashMessagesWaitForNobody) {
    QWidget window;
    window.resize(400, 300);
    window.show();
    MessageRequest request;
    request.operation = "ShowFlashMessage";
    request.arguments = {"بارکد شناخته شد"};
    request.form = &window;
    EXPECT_EQ(service.show(request), mrNone);
    auto* toast = control<QFrame>(window, "Toast");
    EXPECT_TRUE(toast->isVisible());
    EXPECT_EQ(control<QLabel>(*toast, "ToastText_LBL")->text().toStdString(), "بارکد شناخته شد");
    // A second note takes the place of the first and the last one goes away by itself.
    Toast::show(&window, QStringLiteral("دوم"), 30);
    EXPECT_EQ(window.findChildren<QFrame*>(QStringLiteral("Toast")).size(), 1);
    EXPECT_TRUE(QTest::qWaitFor([&] { return window.findChildren<QFrame*>(QStringLiteral("Toast")).isEmpty(); }))
        << "the note stays";
}

TEST_F(Messages, flashMessagesCoverNoButton) {
    QWidget window;
    window.resize(600, 400);
    QPushButton upper(QStringLiteral("حذف سطر F7"), &window);
    upper.setGeometry(250, 270, 120, 36);
    QPushButton lower(QStringLiteral("وزن ظرف F8"), &window);
    lower.setGeometry(250, 310, 120, 36);
    window.show();
    Toast::show(&window, QStringLiteral("جمع برابر نیست"), 30'000);
    const QRect toast = control<QFrame>(window, "Toast")->geometry();
    EXPECT_FALSE(toast.intersects(upper.geometry()));
    EXPECT_FALSE(toast.intersects(lower.geometry()));
    EXPECT_TRUE(window.rect().contains(toast));
    EXPECT_LT(upper.y() - toast.bottom(), 20) << "no higher than it has to be";
}

class Balloons : public Messages {
protected:
    Balloons() {
        window.resize(400, 300);
        control.setGeometry(50, 50, 200, 100);
        window.show();
    }
    void warn(const std::string& text, int milliseconds = 0) {
        MessageRequest request;
        request.operation = "ShowTooltipMessage";
        request.arguments = {text};
        request.controlHandle = static_cast<std::uintptr_t>(control.winId());
        request.displayMilliseconds = milliseconds;
        EXPECT_EQ(service.show(request), mrNone);
    }
    [[nodiscard]] QList<QLabel*> shown() const { return window.findChildren<QLabel*>(QStringLiteral("Balloon")); }

    QWidget window;
    QWidget control{&window};
};

TEST_F(Balloons, outliveADialogThatOpens) {
    warn("بیش از 9 سطح");
    ASSERT_EQ(shown().size(), 1);
    EXPECT_TRUE(shown()[0]->isVisible());
    EXPECT_EQ(shown()[0]->text().toStdString(), "بیش از ۹ سطح");
    const QRect below(control.mapToGlobal(QPoint(0, control.height())), QSize(control.width(), 40));
    EXPECT_TRUE(below.contains(shown()[0]->geometry().topLeft() + QPoint(shown()[0]->width() / 2, 0)));
    QDialog dialog(&window);
    QTimer::singleShot(0, &dialog, [&] {
        ASSERT_TRUE(QTest::qWaitForWindowActive(&dialog));
        EXPECT_EQ(QApplication::activeModalWidget(), &dialog);
        EXPECT_EQ(shown().size(), 1);
        QTest::keyClick(&dialog, Qt::Key_Tab);
        QTest::mouseClick(&dialog, Qt::LeftButton);
        EXPECT_EQ(shown().size(), 1);
        dialog.reject();
    });
    dialog.exec();
    QTest::mouseClick(shown()[0], Qt::LeftButton);
    EXPECT_TRUE(QTest::qWaitFor([&] { return shown().isEmpty(); })) << "a click takes it away";
}

TEST_F(Balloons, goByThemselvesAndWithTheirControl) {
    warn("نخست");
    warn("دوم", 30);
    ASSERT_EQ(shown().size(), 1) << "the second takes the place of the first";
    EXPECT_EQ(shown()[0]->text().toStdString(), "دوم");
    EXPECT_TRUE(QTest::qWaitFor([&] { return shown().isEmpty(); })) << "the balloon stays";
    warn("سوم");
    window.hide();
    EXPECT_TRUE(QTest::qWaitFor([&] { return shown().isEmpty(); })) << "the balloon stays without its window";
}

}  // namespace
}  // namespace basalt::host
