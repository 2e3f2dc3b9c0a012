// The dialog of the box weights: its keys, its checks, its history.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QClipboard>
#include <QComboBox>
#include <QDropEvent>
#include <QGroupBox>
#include <QGuiApplication>
#include <QLabel>
#include <QLineEdit>
#include <QMimeData>
#include <QSignalSpy>
#include <QTest>

#include "goods/getboxweight_frm.h"
#include "package/registry.h"
#include "package/services.h"
#include "tests/support/fake_host.h"
#include "tests/support/fake_screens.h"
#include "tests/support/scripted_session.h"

namespace basalt {
namespace {

using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::Not;

const char* const kHistory = "TGetBoxWeight_FRM.Weight_CMB";

class BoxWeight : public ::testing::Test {
protected:
    BoxWeight() { host.screens = &screens; }

    // Shows the dialog and has the test act on it while it is shown.
    bool ask(double& weight, int& count, const std::function<void()>& act) {
        screens.onList = [&](TBaseDock_FRM& shown) {
            dialog = &shown;
            shown.show();  // for the focus; the stand-in for the base does not run a loop
            act();
        };
        return Get_BoxesWeight(weight, count);
    }
    template <class Control>
    Control& control(const char* name) {
        auto* found = dynamic_cast<Control*>(dialog->findChild<QWidget*>(QString::fromLatin1(name)));
        if (found == nullptr) throw std::logic_error(std::string("there is no ") + name);
        return *found;
    }
    QComboBox& weightBox() { return control<QComboBox>("Weight_CMB"); }
    QLineEdit& countEdit() { return control<QLineEdit>("Count_EDT"); }
    void enter(const char* weight, const char* count) {
        weightBox().setEditText(QString::fromUtf8(weight));
        countEdit().setText(QString::fromUtf8(count));
    }
    void submit() { control<FakeButton>("Submit_BTN").Click(); }

    ScriptedSession script;
    FakeHost host{script};
    AttachedHost attached{host};
    FakeScreens screens{host.calls};
    TBaseDock_FRM* dialog = nullptr;
};

TEST_F(BoxWeight, hasItsControls) {
    double weight = 0;
    int count = 0;
    EXPECT_FALSE(ask(weight, count, [this] {
        EXPECT_EQ(dialog->objectName(), "TGetBoxWeight_FRM");
        EXPECT_EQ(dialog->findChild<QGroupBox*>()->title(), "مشخصات ظرف");
        EXPECT_TRUE(weightBox().isEditable());
        EXPECT_EQ(countEdit().maxLength(), 15);
        std::vector<std::string> labels;
        for (const auto* label : dialog->findChild<QGroupBox*>()->findChildren<QLabel*>())
            labels.push_back(label->text().toStdString());
        EXPECT_THAT(labels, ElementsAre("وزن هر &ظرف :", "&تعداد ظرف :"));
        EXPECT_EQ(control<FakeButton>("Submit_BTN").Caption(), "تـأیـیـد F3");
        EXPECT_EQ(control<FakeButton>("Cancel_BTN").Caption(), "انصراف Esc");
        control<FakeButton>("Cancel_BTN").Click();
    }));
}

TEST_F(BoxWeight, confirmedValuesComeBack) {
    double weight = 0;
    int count = 0;
    EXPECT_TRUE(ask(weight, count, [this] {
        enter("0.35", "12");
        submit();
    }));
    EXPECT_EQ(weight, 0.35);
    EXPECT_EQ(count, 12);
}

TEST_F(BoxWeight, cancelLeavesTheVariables) {
    double weight = 1.5;
    int count = 3;
    EXPECT_FALSE(ask(weight, count, [this] {
        enter("2", "4");
        control<FakeButton>("Cancel_BTN").Click();
    }));
    EXPECT_EQ(weight, 1.5);
    EXPECT_EQ(count, 3);
    EXPECT_TRUE(host.storedLists.empty());
}

TEST_F(BoxWeight, showsWhatItWasGiven) {
    double weight = 0.35;
    int count = 12;
    (void)ask(weight, count, [this] {
        EXPECT_EQ(weightBox().currentText(), "۰٫۳۵");
        EXPECT_EQ(countEdit().text(), "۱۲");
        EXPECT_EQ(dialog->focusWidget(), &countEdit());
    });
    weight = 0;
    count = -1;
    (void)ask(weight, count, [this] {
        EXPECT_EQ(weightBox().currentText(), "");
        EXPECT_EQ(countEdit().text(), "");
        EXPECT_EQ(dialog->focusWidget(), &weightBox());
    });
}

TEST_F(BoxWeight, numbersStandBesideTheirLabels) {
    double weight = 0.35;
    int count = 12;
    (void)ask(weight, count, [this] {
        for (QLineEdit* input : {weightBox().lineEdit(), &countEdit()}) {
            input->end(false);
            (void)input->grab();  // it takes its text to its side as it is drawn
            EXPECT_GT(input->inputMethodQuery(Qt::ImCursorRectangle).toRect().center().x(), input->width() / 2)
                << input->text().toStdString();
        }
    });
}

TEST_F(BoxWeight, showsAWeightThatIsLessThanAmountsShow) {
    const std::pair<double, const char*> cases[] = {
        {1e-9, "۰٫۰۰۰۰۰۰۰۰۱"}, {4e-10, "۰٫۰۰۰۰۰۰۰۰۰۴"}, {1.25e-12, "۰٫۰۰۰۰۰۰۰۰۰۰۰۱۲۵"}};
    for (const auto& [given, text] : cases) {
        double weight = given;
        int count = 2;
        EXPECT_TRUE(ask(weight, count, [this, text = text] {
            EXPECT_EQ(weightBox().currentText().toStdString(), text);
            EXPECT_EQ(dialog->focusWidget(), &countEdit());
            submit();
        }));
        EXPECT_EQ(weight, given);
    }
}

TEST_F(BoxWeight, typedZerosAreMeant) {
    double weight = 2;
    int count = 2;
    EXPECT_TRUE(ask(weight, count, [this] {
        enter("0", "0");
        submit();
    }));
    EXPECT_EQ(weight, 0);
    EXPECT_EQ(count, 0);
}

TEST_F(BoxWeight, eitherSideOfThePointMayBeLeftOut) {
    double weight = 0;
    int count = 0;
    EXPECT_TRUE(ask(weight, count, [this] {
        enter(".5", "1");
        submit();
    }));
    EXPECT_EQ(weight, 0.5);
    weight = 0;
    EXPECT_TRUE(ask(weight, count, [this] {
        QTest::keyClicks(&weightBox(), "5.");
        countEdit().setText("2");
        submit();
    }));
    EXPECT_EQ(weight, 5);
    EXPECT_FALSE(ask(weight, count, [this] {
        for (const char* text : {".", ".0", "0."}) {
            enter(text, "1");
            host.expectMessage("ShowSmartMessage(notification 10031, 'وزن هر ظرف', 'مقدار غیرعددی')");
            submit();
        }
    }));
}

TEST_F(BoxWeight, digitsOfAnyKindAreOneNumber) {
    double weight = 0;
    int count = 0;
    EXPECT_TRUE(ask(weight, count, [this] {
        enter("۰.۳۵", "٤");
        EXPECT_EQ(countEdit().text(), "۴");
        submit();
    }));
    EXPECT_EQ(weight, 0.35);
    EXPECT_EQ(count, 4);
    EXPECT_TRUE(ask(weight, count, [this] {
        enter("۰", "۰");
        submit();
    }));
    EXPECT_EQ(weight, 0);
    EXPECT_EQ(count, 0);
    EXPECT_THAT(host.storedLists[kHistory], ElementsAre("0.35", "0"));
}

TEST_F(BoxWeight, weightsThatComeToNothingAreRefused) {
    double weight = 0;
    int count = 0;
    EXPECT_FALSE(ask(weight, count, [this] {
        for (const char* text : {"", "0.0", "00", ".", "x", "-0"}) {
            enter(text, "1");
            countEdit().setFocus();
            host.expectMessage("ShowSmartMessage(notification 10031, 'وزن هر ظرف', 'مقدار غیرعددی')");
            submit();
            EXPECT_EQ(host.lastMessage.control, &weightBox()) << text;
            EXPECT_EQ(host.lastMessage.form, dialog) << text;
            EXPECT_EQ(dialog->focusWidget(), &weightBox()) << text;
        }
    }));
}

TEST_F(BoxWeight, aWeightOfMoreDigitsThanAnAmountHoldsIsNoWeight) {
    double weight = 0;
    int count = 0;
    EXPECT_FALSE(ask(weight, count, [this] {
        for (const int digits : {39, 320, 400, 5000}) {
            enter(std::string(static_cast<std::size_t>(digits), '9').c_str(), "1");
            host.expectMessage("ShowSmartMessage(notification 10031, 'وزن هر ظرف', 'مقدار غیرعددی')");
            submit();
            EXPECT_EQ(dialog->focusWidget(), &weightBox()) << digits;
        }
        enter(std::string(38, '9').c_str(), "1");  // as a double one digit more
        host.expectMessage("ShowSmartMessage(notification 10031, 'وزن هر ظرف', 'مقدار غیرعددی')");
        submit();
    }));
    EXPECT_TRUE(host.storedLists.empty());
    EXPECT_TRUE(ask(weight, count, [this] {
        enter(std::string(37, '9').c_str(), "1");
        submit();
    }));
    EXPECT_EQ(weight, 1e37);
}

TEST_F(BoxWeight, countsThatComeToNothingAreRefused) {
    double weight = 0;
    int count = 0;
    EXPECT_FALSE(ask(weight, count, [this] {
        for (const char* text : {"", "00", "1.5", "x", "2147483648", "99999999999"}) {
            enter("1", text);
            weightBox().setFocus();
            host.expectMessage("ShowSmartMessage(notification 10010, 'تعداد ظرف', 'مقدار غیرعددی')");
            submit();
            EXPECT_EQ(host.lastMessage.control, &countEdit()) << text;
            EXPECT_EQ(dialog->focusWidget(), &countEdit()) << text;
        }
    }));
}

TEST_F(BoxWeight, theWeightIsCheckedFirst) {
    double weight = 0;
    int count = 0;
    EXPECT_FALSE(ask(weight, count, [this] {
        enter("", "");
        host.expectMessage("ShowSmartMessage(notification 10031, 'وزن هر ظرف', 'مقدار غیرعددی')");
        submit();
    }));
}

TEST_F(BoxWeight, everyWeightIsKeptOnce) {
    double weight = 0;
    int count = 0;
    const auto confirm = [&](const char* text) {
        EXPECT_TRUE(ask(weight, count, [this, text] {
            enter(text, "1");
            submit();
        }));
    };
    confirm("0.35");
    confirm("0.350");
    confirm("0.35");
    EXPECT_THAT(host.storedLists[kHistory], ElementsAre("0.35", "0.350"));
    (void)ask(weight, count, [this] {
        ASSERT_EQ(weightBox().count(), 2);
        EXPECT_EQ(weightBox().itemText(0), "۰٫۳۵");
    });
}

TEST_F(BoxWeight, whatAnotherDialogKeptMeanwhileStays) {
    host.storedLists[kHistory] = {"1"};
    double weight = 0;
    int count = 0;
    EXPECT_TRUE(ask(weight, count, [this] {
        host.storedLists[kHistory] = {"1", "4.5", "3.5"};
        enter("3.5", "1");
        submit();
    }));
    EXPECT_THAT(host.storedLists[kHistory], ElementsAre("1", "4.5", "3.5"));
    EXPECT_TRUE(ask(weight, count, [this] {
        host.storedLists[kHistory] = {"1", "4.5", "3.5", "6"};
        enter("7", "1");
        submit();
    }));
    EXPECT_THAT(host.storedLists[kHistory], ElementsAre("1", "4.5", "3.5", "6", "7"));
}

TEST_F(BoxWeight, aRefusedWeightIsNotKept) {
    double weight = 0;
    int count = 0;
    (void)ask(weight, count, [this] {
        enter("0.5", "");
        host.expectMessage("ShowSmartMessage(notification 10010, 'تعداد ظرف', 'مقدار غیرعددی')");
        submit();
    });
    EXPECT_TRUE(host.storedLists.empty());
}

TEST_F(BoxWeight, theWeightTakesDigitsAndOnePoint) {
    double weight = 0;
    int count = 0;
    (void)ask(weight, count, [this] {
        QLineEdit& edit = *weightBox().lineEdit();
        QTest::keyClicks(&weightBox(), "1a2-,. 5.6");
        EXPECT_EQ(edit.text(), "۱۲٫۵۶");
        QTest::keyClick(&weightBox(), Qt::Key_Backspace);
        EXPECT_EQ(edit.text(), "۱۲٫۵");
        edit.setSelection(1, 2);  // with the point
        QTest::keyClicks(&weightBox(), ".");
        EXPECT_EQ(edit.text(), "۱٫۵");
        edit.setSelection(2, 1);  // without it
        QTest::keyClicks(&weightBox(), ".");
        EXPECT_EQ(edit.text(), "۱٫۵");
        edit.selectAll();
        QTest::keyClicks(&weightBox(), QString::fromUtf8("7"));
        EXPECT_EQ(edit.text(), "۷");
        QKeyEvent persian(QEvent::KeyPress, Qt::Key_unknown, Qt::NoModifier, QString::fromUtf8("۳"));
        QCoreApplication::sendEvent(&weightBox(), &persian);
        EXPECT_EQ(edit.text(), "۷۳");
        // Dropped, it would make two and a half twenty-five.
        for (const char* key : {"٫", "۵", "٫"}) {
            QKeyEvent typed(QEvent::KeyPress, Qt::Key_unknown, Qt::NoModifier, QString::fromUtf8(key));
            QCoreApplication::sendEvent(&weightBox(), &typed);
        }
        EXPECT_EQ(edit.text(), "۷۳٫۵");
    });
}

TEST_F(BoxWeight, theWeightRefusesWhatIsDroppedOrPastedAsItRefusesKeys) {
    double weight = 0;
    int count = 0;
    (void)ask(weight, count, [this] {
        QLineEdit& edit = *weightBox().lineEdit();
        const auto drop = [&edit](const char* text) {
            QMimeData data;
            data.setText(QString::fromUtf8(text));
            QDragEnterEvent entering(QPoint(edit.width() - 5, 5), Qt::CopyAction, &data, Qt::LeftButton,
                                     Qt::NoModifier);
            QCoreApplication::sendEvent(&edit, &entering);
            QDropEvent event(QPointF(edit.width() - 5, 5), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
            QCoreApplication::sendEvent(&edit, &event);
        };
        for (const char* text : {"x", "1x", "1,5", "-1", " 1", "1.2.3"}) {
            drop(text);
            EXPECT_EQ(edit.text(), "") << text;
            edit.insert(QString::fromUtf8(text));  // as the middle button does
            EXPECT_EQ(edit.text(), "") << text;
        }
        drop("1٫2");
        EXPECT_EQ(edit.text(), "۱٫۲");
        drop(".");
        EXPECT_EQ(edit.text(), "۱٫۲");
        QGuiApplication::clipboard()->setText("7");
        QTest::keySequence(&weightBox(), QKeySequence::Paste);
        EXPECT_EQ(edit.text(), "۱٫۲");
    });
}

TEST_F(BoxWeight, enterInTheCountConfirms) {
    double weight = 0;
    int count = 0;
    EXPECT_TRUE(ask(weight, count, [this] {
        enter("0.35", "4");
        QTest::keyClick(&countEdit(), Qt::Key_Return);
    }));
    EXPECT_EQ(count, 4);
    EXPECT_FALSE(ask(weight, count, [this] {
        enter("0.35", "");
        host.expectMessage("ShowSmartMessage(notification 10010, 'تعداد ظرف', 'مقدار غیرعددی')");
        QTest::keyClick(&countEdit(), Qt::Key_Enter);
    }));
}

TEST_F(BoxWeight, registryGivesBothValues) {
    Registry registry;
    registerGoodsScreens(registry);
    const EntryPoint* entry = registry.findEntryPoint("Get_BoxesWeight");
    ASSERT_NE(entry, nullptr);
    screens.onList = [this](TBaseDock_FRM& shown) {
        dialog = &shown;
        enter("0.35", "4");
        submit();
    };
    FunctionState functions;
    FunctionCall call(functions, {{"Weight", 0}, {"Count", 0}});
    entry->run(call);
    EXPECT_EQ(call.resultValue(), Datum(true));
    ASSERT_EQ(call.outputs().size(), 2U);
    EXPECT_EQ(call.outputs()[0].second.toJson(), "0.35");
    EXPECT_EQ(call.outputs()[1].second, Datum(4));
    EXPECT_THAT(host.calls, Not(Contains(::testing::HasSubstr("HavePermission"))));
}

}  // namespace
}  // namespace basalt
