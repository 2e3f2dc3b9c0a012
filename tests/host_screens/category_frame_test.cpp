// The category picker over the demo company's categories.
#include "package/screens/category_frame.h"

#include <gmock/gmock.h>

#include <QAbstractItemView>
#include <QClipboard>
#include <QMenu>
#include <QTextDocument>
#include <QToolButton>
#include <QVBoxLayout>

#include "ado/error.h"
#include "tests/host_screens/demo_screens.h"

namespace basalt::host {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class CategoryFrames : public DemoScreens {
protected:
    CategoryFrames() {
        window.setLayoutDirection(Qt::RightToLeft);
        window.resize(620, 70);
        (new QVBoxLayout(&window))->addWidget(frame);
        frame->OnChange = [this] { ++changes; };
        frame->open(true);
        window.show();
        frame->setFocus();
    }
    void SetUp() override { ASSERT_TRUE(QTest::qWaitForWindowActive(&window)); }

    [[nodiscard]] std::vector<int> chips() const {
        std::vector<int> all;
        for (const TCategoryBubble& each : frame->Bubbles())
            all.push_back(each.Code);
        return all;
    }
    [[nodiscard]] QAbstractButton* chip(int index) {
        return control<QAbstractButton>(*frame, ("TCategory_frame1_Chip" + std::to_string(index)).c_str());
    }
    // What it offers when it is dropped down.
    [[nodiscard]] QStringList menu() {
        auto* menu = control<QMenu>(*frame, "TCategory_frame1_Menu");
        emit menu->aboutToShow();
        QStringList titles;
        for (const QAction* action : menu->actions())
            if (!action->isSeparator()) titles << action->text();
        return titles;
    }
    [[nodiscard]] QAction* item(int category) {
        static_cast<void>(menu());
        auto* action = frame->findChild<QAction*>(QStringLiteral("Category_%1_ACT").arg(category));
        if (!action) ADD_FAILURE() << "no item for " << category;
        return action;
    }
    [[nodiscard]] QAbstractItemView* names() {
        return qobject_cast<QAbstractItemView*>(QApplication::activePopupWidget());
    }
    [[nodiscard]] QStringList offered() {
        QStringList texts;
        const QAbstractItemView* open = names();
        for (int row = 0; open && row < open->model()->rowCount(); ++row)
            texts << open->model()->index(row, 0).data().toString();
        return texts;
    }
    void typed(const QString& text) { type(frame->Editor(), text); }
    void press(Qt::Key key) { QTest::keyClick(frame->Editor(), key); }

    QWidget window;
    TCategory_frame* frame = screens.createCategoryFrame("TCategory_frame1", &window);
    int changes = 0;
};

TEST_F(CategoryFrames, opensWithTheWholeTree) {
    EXPECT_THAT(chips(), IsEmpty());
    EXPECT_EQ(frame->CurrentCode(), 0);
    EXPECT_EQ(frame->BubbleLimit(), 3);
    EXPECT_TRUE(menu().contains("مواد غذایی"));
    EXPECT_FALSE(menu().contains("برنج")) << "it is two menus deeper";
    EXPECT_EQ(item(101)->text().toStdString(), "برنج");
    EXPECT_EQ(frame->objectName(), "TCategory_frame1");
}

TEST_F(CategoryFrames, showsTheWayToACategoryAndToTheOneAboveIt) {
    frame->create_bubble(101, 1);
    EXPECT_THAT(chips(), ElementsAre(1, 10, 101));
    EXPECT_EQ(frame->CurrentCode(), 101);
    EXPECT_TRUE(chip(2)->isVisible());
    EXPECT_EQ(chip(2)->accessibleName().toStdString(), "برداشتن «برنج»");
    EXPECT_EQ(chip(1)->accessibleName().toStdString(), "برداشتن «خواربار» و آنچه زیر آن است");
    EXPECT_EQ(frame->Editor()->accessibleDescription().toStdString(), "دستهٔ کنونی: مواد غذایی › خواربار › برنج");
    frame->create_bubble(101, 2);
    EXPECT_THAT(chips(), ElementsAre(1, 10));
    EXPECT_FALSE(chip(2)->isVisible());
    EXPECT_EQ(frame->Bubbles().back().Name, "خواربار");
    frame->create_bubble(1, 2);
    EXPECT_THAT(chips(), IsEmpty());
    frame->create_bubble(10, 1);
    frame->create_bubble(9999, 1);
    EXPECT_THAT(chips(), IsEmpty());
    EXPECT_THROW(frame->create_bubble(1, 3), UsageError);
    EXPECT_EQ(changes, 0) << "only the user's own changes are told";
}

TEST_F(CategoryFrames, chipsStandFromRightToLeft) {
    frame->create_bubble(101, 1);
    QTRY_VERIFY_WITH_TIMEOUT(chip(1)->x() < chip(0)->x(), 2000);
    EXPECT_LT(chip(2)->x(), chip(1)->x());
    EXPECT_LT(frame->Editor()->x(), chip(2)->x());
    EXPECT_LT(frame->SelectButton()->x(), frame->Editor()->x());
}

TEST_F(CategoryFrames, aLongNameIsCutInItsChipOnly) {
    const std::string name =
        "دسته‌ای با نامی که از هیچ صفحه‌ای کوتاه‌تر نیست";
    session->run("INSERT INTO category (id, name, parent_code, [level]) VALUES (900, N'" + name + "', 0, 1)");
    frame->create_bubble(900, 1);
    EXPECT_EQ(frame->Bubbles().back().Name, name);
    EXPECT_TRUE(chip(0)->text().contains(u'…')) << chip(0)->text().toStdString();
    EXPECT_TRUE(chip(0)->toolTip().contains(QString::fromStdString(name)));
}

TEST_F(CategoryFrames, aNameThatLooksLikeMarkupIsShownAsItIs) {
    session->run("INSERT INTO category (id, name, parent_code, [level]) VALUES (900, N'<b>نان</b> & شیر', 0, 1)");
    frame->create_bubble(900, 1);
    QTextDocument tip;
    tip.setHtml(chip(0)->toolTip());
    EXPECT_EQ(tip.toPlainText().toStdString(), "برداشتن «<b>نان</b> & شیر»");
}

TEST_F(CategoryFrames, openingAgainKeepsTheChipsOrBeginsAnew) {
    frame->create_bubble(10, 1);
    frame->open(false);
    EXPECT_THAT(chips(), ElementsAre(1, 10));
    EXPECT_TRUE(menu().contains("برنج")) << "the menu goes on from the last chip";
    frame->open(true);
    EXPECT_THAT(chips(), IsEmpty());
    EXPECT_TRUE(menu().contains("مواد غذایی"));
}

TEST_F(CategoryFrames, theMenuOffersWhatLiesBelow) {
    frame->createmenuItemByCode(10);
    EXPECT_EQ(menu(), (QStringList{"آرد و ماکارونی", "برنج", "حبوبات", "قند و عسل"}));
    frame->createmenuItemByCode(101);
    EXPECT_TRUE(menu().contains("مواد غذایی")) << "nothing lies below";
    frame->createmenuItemByCode(0);
    EXPECT_TRUE(menu().contains("مواد غذایی"));
}

TEST_F(CategoryFrames, theMenuSaysThatThereIsNoCategory) {
    session->run("DELETE FROM category");
    frame->Fill_allPop();
    EXPECT_EQ(menu(), QStringList{"هنوز دسته‌ای تعریف نشده است."});
}

TEST_F(CategoryFrames, theMenuAndTheNameChoose) {
    item(101)->trigger();
    EXPECT_THAT(chips(), ElementsAre(1, 10, 101));
    EXPECT_EQ(changes, 1);
    typed("لبنيات");
    press(Qt::Key_Return);
    EXPECT_THAT(chips(), ElementsAre(1, 14));
    EXPECT_EQ(frame->Editor()->text(), "");
    EXPECT_FALSE(names());
    EXPECT_EQ(changes, 2);
    typed("هیچ‌کدام");
    press(Qt::Key_Return);
    EXPECT_THAT(chips(), ElementsAre(1, 14));
    EXPECT_EQ(changes, 2);
}

TEST_F(CategoryFrames, theWholeNameComesBeforeThoseThatHoldIt) {
    typed("شوينده");
    EXPECT_EQ(offered(), QStringList{"شوینده و بهداشتی › شوینده"});
    press(Qt::Key_Return);
    EXPECT_THAT(chips(), ElementsAre(2, 20));
}

TEST_F(CategoryFrames, severalOfOneNameAreLeftToTheUser) {
    session->run("INSERT INTO category (id, name, parent_code, [level]) VALUES (900, N'برنج', 6, 2)");
    frame->Fill_allPop();
    typed("برنج");
    press(Qt::Key_Return);
    EXPECT_THAT(chips(), IsEmpty());
    EXPECT_EQ(offered(), (QStringList{"مواد غذایی › خواربار › برنج", "مشتریان › برنج"}));
}

TEST_F(CategoryFrames, whatMeansSomethingToTheServerIsTypedLikeAnyOther) {
    session->run("INSERT INTO category (id, name, parent_code, [level]) VALUES (900, N'50% & ''نو''', 0, 1)");
    frame->Fill_allPop();
    typed("% & 'نو'");
    EXPECT_EQ(offered(), QStringList{"50% & 'نو'"});
    typed("%");
    EXPECT_FALSE(names());
}

TEST_F(CategoryFrames, typingOffersNamesWithTheWayToThem) {
    typed("ابزار");
    ASSERT_TRUE(names());
    EXPECT_EQ(offered(),
              (QStringList{"لوازم خانه › آشپزخانه › ابزار آشپزی", "نوشت‌افزار › ابزار نوشتن"}));
    QTest::keyClick(names(), Qt::Key_Down);
    QTest::keyClick(names(), Qt::Key_Return);
    EXPECT_THAT(chips(), ElementsAre(4, 41));
    EXPECT_FALSE(names());
    typed("هیچ");
    EXPECT_FALSE(names());
}

TEST_F(CategoryFrames, theNamesHangBelowTheEditorAndHaveTheRoomTheyNeed) {
    const auto rightOf = [](QWidget* widget) { return widget->mapToGlobal(widget->rect().topRight()).x(); };
    typed("ابزار آش");
    ASSERT_TRUE(names());
    EXPECT_EQ(rightOf(names()), rightOf(frame->Editor()));
    EXPECT_GE(names()->mapToGlobal(QPoint()).y(), frame->Editor()->mapToGlobal(QPoint()).y());
    names()->hide();
    frame->create_bubble(101, 1);
    window.resize(420, 70);
    QTRY_VERIFY_WITH_TIMEOUT(frame->Editor()->width() < 130, 2000);
    typed("پزی");
    ASSERT_TRUE(names());
    EXPECT_GT(names()->width(), frame->Editor()->width());
    EXPECT_EQ(rightOf(names()), rightOf(frame->Editor()));
}

// While it is open, the list gets the keys first.
TEST_F(CategoryFrames, keysThatTheOpenListGetsAreTheEditors) {
    frame->create_bubble(10, 1);
    typed("آب");
    ASSERT_TRUE(names());
    QTest::keyClick(names(), Qt::Key_Escape);
    EXPECT_FALSE(names()) << "and its release does not open it again";
    typed(" و");
    ASSERT_TRUE(names());
    type(names(), " ");
    EXPECT_EQ(frame->Editor()->text(), "آب و ");
    EXPECT_EQ(offered(), QStringList{"مواد غذایی › نوشیدنی › آب و نوشابه"});
    QTest::keyClick(names(), Qt::Key_Backspace);
    EXPECT_EQ(frame->Editor()->text(), "آب و");
    EXPECT_THAT(chips(), ElementsAre(1, 10));
    QTest::keyClick(names(), Qt::Key_Return);
    EXPECT_THAT(chips(), ElementsAre(1, 12, 110)) << "the first is taken";
}

TEST_F(CategoryFrames, theLastLetterTakesNoChipAlong) {
    frame->create_bubble(10, 1);
    // The letter goes down in the empty editor and comes up in the list that it has opened.
    typed("ش");
    ASSERT_TRUE(names());
    QTest::keyPress(names(), Qt::Key_Backspace);
    EXPECT_EQ(frame->Editor()->text(), "");
    EXPECT_FALSE(names());
    QTest::keyRelease(frame->Editor(), Qt::Key_Backspace);
    EXPECT_THAT(chips(), ElementsAre(1, 10));
}

TEST_F(CategoryFrames, aKeyThatWentDownElsewhereDoesNothing) {
    frame->create_bubble(10, 1);
    QTest::keyRelease(frame->Editor(), Qt::Key_Delete);
    EXPECT_THAT(chips(), ElementsAre(1, 10));
    frame->Editor()->setText("لبنیات");
    QTest::keyRelease(frame->Editor(), Qt::Key_Return);
    EXPECT_THAT(chips(), ElementsAre(1, 10));
}

TEST_F(CategoryFrames, pastedTextIsLookedUpWithoutAKey) {
    QApplication::clipboard()->setText("حبوبات");
    frame->Editor()->paste();
    EXPECT_EQ(offered(), QStringList{"مواد غذایی › خواربار › حبوبات"});
}

TEST_F(CategoryFrames, enterBehindANameIsNotTheScreens) {
    std::vector<int> climbed;
    class Listener final : public QObject {
    public:
        explicit Listener(std::vector<int>& keys) : keys_(keys) {}
        bool eventFilter(QObject*, QEvent* event) override {
            if (event->type() == QEvent::KeyPress) keys_.push_back(static_cast<QKeyEvent*>(event)->key());
            return false;
        }

    private:
        std::vector<int>& keys_;
    } listener(climbed);
    window.installEventFilter(&listener);
    frame->Editor()->setText("لبنیات");
    press(Qt::Key_Return);
    EXPECT_THAT(climbed, IsEmpty());
    EXPECT_THAT(chips(), ElementsAre(1, 14));
    press(Qt::Key_Return);
    EXPECT_THAT(climbed, ElementsAre(static_cast<int>(Qt::Key_Return)));
}

TEST_F(CategoryFrames, deleteAndBackspaceTakeTheLastChipOfAnEmptyEditor) {
    frame->create_bubble(101, 1);
    typed("x");
    press(Qt::Key_Backspace);
    EXPECT_THAT(chips(), ElementsAre(1, 10, 101)) << "it took the letter";
    press(Qt::Key_Backspace);
    EXPECT_THAT(chips(), ElementsAre(1, 10));
    press(Qt::Key_Delete);
    press(Qt::Key_Delete);
    EXPECT_THAT(chips(), IsEmpty());
    press(Qt::Key_Delete);
    EXPECT_EQ(changes, 3);
}

TEST_F(CategoryFrames, aChipGoesWithThoseBehindIt) {
    frame->create_bubble(101, 1);
    QTest::mouseClick(chip(1), Qt::LeftButton);
    EXPECT_THAT(chips(), ElementsAre(1));
    EXPECT_TRUE(menu().contains("خواربار")) << "the menu goes on from there";
    EXPECT_EQ(changes, 1);
}

TEST_F(CategoryFrames, chipsAreReachedAndTakenByKeyboard) {
    frame->create_bubble(101, 1);
    frame->SelectLastBubble();
    EXPECT_EQ(QApplication::focusWidget(), chip(2));
    QTest::keyClick(&window, Qt::Key_Backtab);
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Backtab);
    QTRY_COMPARE_WITH_TIMEOUT(QApplication::focusWidget(), static_cast<QWidget*>(chip(0)), 2000);
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
    EXPECT_EQ(QApplication::focusWidget(), chip(1));
    QTest::keyPress(chip(1), Qt::Key_Delete);
    EXPECT_EQ(QApplication::focusWidget(), frame->Editor());
    QTest::keyRelease(frame->Editor(), Qt::Key_Delete);
    EXPECT_THAT(chips(), ElementsAre(1)) << "one key, one chip and those below it";
    QTest::keyClick(frame->Editor(), Qt::Key_Tab);
    EXPECT_EQ(QApplication::focusWidget(), frame->SelectButton());
}

TEST_F(CategoryFrames, theScreenMayHandleTypingItself) {
    frame->create_bubble(101, 1);
    std::vector<int> keys;
    frame->OnEditorKeyUp = [&](int key) { keys.push_back(key); };
    press(Qt::Key_Delete);
    EXPECT_THAT(keys, ElementsAre(static_cast<int>(Qt::Key_Delete)));
    EXPECT_THAT(chips(), ElementsAre(1, 10, 101));
    int chosen = 0;
    frame->OnEditorValueEditDone = [&](int category) { chosen = category; };
    item(2)->trigger();
    EXPECT_EQ(chosen, 2);
    EXPECT_THAT(chips(), ElementsAre(1, 10, 101));
}

// A category cannot be put below itself, so an editor of categories forgets its own name when it is typed.
TEST_F(CategoryFrames, aNameMayBeClearedInsteadOfLookedUp) {
    frame->OnEditorKeyUp = [&](int key) {
        if (frame->Editor()->text() == "ش") {
            frame->Editor()->clear();
        } else {
            frame->EditorKeyUp(key);
        }
    };
    typed("ش");
    EXPECT_EQ(frame->Editor()->text(), "");
    EXPECT_FALSE(names());
    typed("شیر");
    EXPECT_EQ(frame->Editor()->text(), "یر") << "cleared once on the way";
}

TEST_F(CategoryFrames, theScreenSeesKeysGoDown) {
    std::vector<int> keys;
    frame->OnEditorKeyDown = [&](int key) {
        keys.push_back(key);
        return key == Qt::Key_Home;
    };
    typed("ر");
    press(Qt::Key_Home);
    EXPECT_EQ(frame->Editor()->cursorPosition(), 1) << "the screen has taken it";
    EXPECT_EQ(keys.back(), static_cast<int>(Qt::Key_Home));
}

TEST_F(CategoryFrames, anErrorIsShownAndLeavesTheChips) {
    frame->create_bubble(10, 1);
    session->run("DROP TABLE dbo.category");
    messages.expect("DatabaseError");
    typed("ر");
    EXPECT_THROW(frame->create_bubble(101, 1), DatabaseError);
    EXPECT_THROW(frame->open(true), DatabaseError);
    EXPECT_THAT(chips(), ElementsAre(1, 10));
}

TEST_F(CategoryFrames, whatWasAddedOrRenamedMeanwhileIsThereAfterFilling) {
    frame->create_bubble(14, 1);
    session->run("INSERT INTO category (id, name, parent_code, [level]) VALUES (900, N'سوغات', 0, 1)");
    session->run("UPDATE category SET name = N'شیر' WHERE id = 14");
    EXPECT_FALSE(menu().contains("سوغات"));
    frame->createmenuItemByCode(0);
    frame->Fill_allPop();
    frame->Fill_allPopname();
    EXPECT_TRUE(menu().contains("سوغات"));
    EXPECT_EQ(frame->Bubbles().back().Name, "شیر");
    typed("سوغات");
    press(Qt::Key_Return);
    EXPECT_THAT(chips(), ElementsAre(900));
}

}  // namespace
}  // namespace basalt::host
