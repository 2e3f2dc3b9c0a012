// Price and discount levels with everything in place: store, screens, the reference host and a database with the demo
// company. What other users do meanwhile is written straight into the database.
#include <gmock/gmock.h>

#include <QComboBox>
#include <QLineEdit>
#include <QSpinBox>

#include "costlevel/costlevel_dm.h"
#include "costlevel/costlevel_get_frm.h"
#include "costlevel/costlevel_list_frm.h"
#include "host/screens/smart_grid.h"
#include "host/services/sql_access.h"
#include "tests/host_screens/demo_screens.h"

namespace basalt::host {
namespace {

using ::testing::ElementsAre;

class LevelsOnDemo : public DemoScreens {
protected:
    using DemoScreens::run;

    std::unique_ptr<TCostLevel_Get_FRM> edit(int code, TSoftwarePart part = spPriceLevels) {
        return CreateEditor<TCostLevel_Get_FRM>(part, Value{std::int64_t{code}}, fmEdit);
    }
    static void rename(TCostLevel_Get_FRM& editor, const QString& name) {
        auto* input = control<QLineEdit>(editor, "Name_EDT");
        input->selectAll();
        type(input, name);
    }
    // Saving meets what another user has done.
    void saveIntoConflict(TCostLevel_Get_FRM& editor) {
        messages.expect("DatabaseError");
        editor.BaseSaveANDClose_Click();
        EXPECT_EQ(messages.shown.back().arguments.at(0), host.catalogue().errorText(ErrorCategory::Conflict));
        EXPECT_TRUE(editor.isVisible());
    }
    void run(const std::string& sql) { execute(*session, sql); }
    [[nodiscard]] std::string events(int permission) {
        return one("SELECT COUNT(*) FROM HostUserLog WHERE SoftwarePart = 114 AND Permission = " +
                   std::to_string(permission));
    }
};

// The editor and other users

TEST_F(LevelsOnDemo, aLevelChangedMeanwhileIsAConflictHoweverOftenItIsSaved) {
    auto editor = edit(5);
    run(*editor, [&] {
        run("UPDATE CostLevel SET Name = N'از دیگری' WHERE CostType = 1 AND Code = 5");
        rename(*editor, QStringLiteral("از من"));
        saveIntoConflict(*editor);
        saveIntoConflict(*editor);
    });
    EXPECT_EQ(nameOf(5), "از دیگری");
}

// Texts that the database takes for equal, and that another user has corrected all the same.
TEST_F(LevelsOnDemo, aCorrectionThatOnlyAReaderSeesIsAChange) {
    const std::pair<const char*, const char*> corrections[] = {
        {"level abc", "level ABC"}, {"level abc", "level abc  "}, {"میشود", "می\u200cشود"}};
    for (const auto& [before, after] : corrections) {
        run(std::string("UPDATE CostLevel SET Name = N'") + before + "' WHERE CostType = 1 AND Code = 5");
        auto editor = edit(5);
        run(*editor, [&] {
            run(std::string("UPDATE CostLevel SET Name = N'") + after + "' WHERE CostType = 1 AND Code = 5");
            rename(*editor, QStringLiteral("از من"));
            saveIntoConflict(*editor);
        });
        EXPECT_EQ(nameOf(5), after);
    }
}

TEST_F(LevelsOnDemo, aNameThatWasTooLongDoesNotHideTheOthersChange) {
    auto editor = edit(5);
    run(*editor, [&] {
        rename(*editor, QString(200, QChar(0x628)));
        messages.expect("MsgTooLong");
        editor->BaseSaveANDClose_Click();
        // The formatter would cut the sentence to pieces.
        // clang-format off
        EXPECT_EQ(messages.shown.back().arguments.at(0), "«عنوان» حداکثر 50 نویسه می‌پذیرد؛ متن شما 200 نویسه دارد و چیزی ذخیره نشد. آن را کوتاه‌تر کنید.");
        // clang-format on
        run("UPDATE CostLevel SET Name = N'از دیگری' WHERE CostType = 1 AND Code = 5");
        rename(*editor, QStringLiteral("کوتاه"));
        saveIntoConflict(*editor);
    });
    EXPECT_EQ(nameOf(5), "از دیگری");
}

TEST_F(LevelsOnDemo, aLevelDeletedMeanwhileIsAConflictHoweverOftenItIsSaved) {
    auto editor = edit(5);
    run(*editor, [&] {
        run("DELETE FROM CostLevel WHERE CostType = 1 AND Code = 5");
        rename(*editor, QStringLiteral("از من"));
        saveIntoConflict(*editor);
        saveIntoConflict(*editor);
    });
    EXPECT_EQ(nameOf(5), "no row");
}

TEST_F(LevelsOnDemo, aSaveThatTheLogRefusedDoesNotHideTheOthersChange) {
    auto editor = edit(5);
    run(*editor, [&] {
        run("ALTER TABLE HostUserLog ADD CONSTRAINT CK_NoLog CHECK (ID <= " + one("SELECT MAX(ID) FROM HostUserLog") +
            ")");
        rename(*editor, QStringLiteral("از من"));
        messages.expect("DatabaseError");
        editor->BaseSaveANDClose_Click();
        EXPECT_EQ(nameOf(5), "فروشگاه‌های زنجیره‌ای") << "what was written is rolled back";
        run("ALTER TABLE HostUserLog DROP CONSTRAINT CK_NoLog");
        run("UPDATE CostLevel SET Comment = N'از دیگری' WHERE CostType = 1 AND Code = 5");
        saveIntoConflict(*editor);
        saveIntoConflict(*editor);
    });
    EXPECT_EQ(nameOf(5), "فروشگاه‌های زنجیره‌ای");
    EXPECT_EQ(one("SELECT Comment FROM CostLevel WHERE CostType = 1 AND Code = 5"), "از دیگری");
}

TEST_F(LevelsOnDemo, twoClientsDoNotGiveTheSameName) {
    auto first = edit(5);
    auto second = edit(6);
    run(*first, [&] {
        rename(*first, QStringLiteral("یکتا"));
        first->BaseSaveANDClose_Click();
    });
    run(*second, [&] {
        rename(*second, QStringLiteral("یکتا"));
        messages.expect("MsgRepeatedField");
        second->BaseSaveANDClose_Click();
        EXPECT_TRUE(second->isVisible());
    });
    EXPECT_EQ(nameOf(5), "یکتا");
    EXPECT_EQ(nameOf(6), "سازمانی");
}

TEST_F(LevelsOnDemo, saveAndNewAddsLevelsOneAfterTheOther) {
    auto editor = CreateEditor<TCostLevel_Get_FRM>(spPriceLevels, Value{std::int64_t{0}}, fmNew);
    run(*editor, [&] {
        EXPECT_EQ(control<QSpinBox>(*editor, "Code_EDT")->value(), 11);
        rename(*editor, QStringLiteral("یازدهم"));
        type(control<QLineEdit>(*editor, "Comment_EDT"), QStringLiteral("توضیح"));
        editor->BaseSaveANDNew_Click();
        EXPECT_EQ(control<QSpinBox>(*editor, "Code_EDT")->value(), 12);
        EXPECT_EQ(control<QLineEdit>(*editor, "Name_EDT")->text(), "");
        EXPECT_EQ(control<QLineEdit>(*editor, "Comment_EDT")->text(), "");
        EXPECT_TRUE(control<QLineEdit>(*editor, "Name_EDT")->hasFocus());
        EXPECT_TRUE(editor->base().IsSaved());
        rename(*editor, QStringLiteral("دوازدهم"));
        editor->BaseSaveANDNew_Click();
    });
    EXPECT_EQ(nameOf(11), "یازدهم");
    EXPECT_EQ(nameOf(12), "دوازدهم");
    EXPECT_EQ(one("SELECT COUNT(*) FROM CostLevel WHERE CostType = 1 AND Code > 12"), "0");
}

TEST_F(LevelsOnDemo, theOldKindOfDiscountOpensTheLevelOfTheSameCode) {
    run("INSERT INTO CostLevel (Code, Name, CostType) VALUES (2, N'قدیمی', 4)");
    EXPECT_EQ(control<QLineEdit>(*edit(2, spDiscountLevels), "Name_EDT")->text().toStdString(), nameOf(2, 3));
    messages.expect("MsgRecordGone");
    EXPECT_TRUE(edit(5, spDiscountLevels)->ClosedOnCreate()) << "there is a level 5 of the old kind only";
}

TEST_F(LevelsOnDemo, theListStartsOnTheLastRowThatItShows) {
    // The user had sorted by name, downwards.
    const auto shownLast = [&](const std::function<void(TCostLevel_List_FRM&)>& act) {
        const auto list = CreateScreen<TCostLevel_List_FRM>(fmSelect, Value{std::int64_t{spPriceLevels}}, "");
        QTimer::singleShot(0, list.get(), [&] {
            ASSERT_TRUE(QTest::qWaitForWindowActive(list.get()));
            act(*list);
            list->accept();
        });
        list->ShowModal();
    };
    shownLast([](TCostLevel_List_FRM& list) {
        dynamic_cast<SmartGrid&>(*control<TSmartDBGrid_VRO>(list, "GroupList_GRD")).sortBy(1, true);
    });
    shownLast([](TCostLevel_List_FRM& list) {
        auto* grid = control<TSmartDBGrid_VRO>(list, "GroupList_GRD");
        EXPECT_EQ(grid->View()->currentIndex().row(), grid->View()->model()->rowCount() - 1);
        EXPECT_NE(grid->CurrentRow(), grid->View()->model()->rowCount() - 1) << "the sort changes the order";
    });
}

TEST_F(LevelsOnDemo, aLayoutThatCannotBeKeptIsNoMatterToTellOf) {
    run("ALTER TABLE HostFormOptions ADD CONSTRAINT CK_NoOptions CHECK (UserCode < 0)");
    const auto list = CreateScreen<TCostLevel_List_FRM>(fmBrowse, Value{std::int64_t{spPriceLevels}}, "");
    QTimer::singleShot(0, list.get(), [&] {
        ASSERT_TRUE(QTest::qWaitForWindowActive(list.get()));
        list->resize(800, 640);
        list->reject();
    });
    EXPECT_EQ(list->ShowModal(), mrCancel);
    auto editor = edit(5);
    run(*editor, [&] { editor->resize(700, 500); });
    EXPECT_EQ(one("SELECT COUNT(*) FROM CodeLock_TBL"), "0") << "the code is let go all the same";
    EXPECT_TRUE(messages.shown.empty());
}

TEST_F(LevelsOnDemo, keysOfHiddenButtonsDoNothing) {
    const auto list = CreateScreen<TCostLevel_List_FRM>(fmBrowse, Value{std::int64_t{spPriceLevels}}, "");
    QTimer::singleShot(0, list.get(), [&] {
        ASSERT_TRUE(QTest::qWaitForWindowActive(list.get()));
        QTest::keyClick(list->focusWidget(), Qt::Key_F4);
        QTest::keyClick(list->focusWidget(), Qt::Key_F7);
        EXPECT_EQ(QApplication::activeModalWidget(), list.get());
        list->reject();
    });
    list->ShowModal();
    EXPECT_EQ(one("SELECT COUNT(*) FROM CostLevel WHERE CostType = 1 AND Code > 0"), "10");
    EXPECT_TRUE(messages.shown.empty());
}

// Deleting

class LevelDeletion : public LevelsOnDemo {
protected:
    LevelDeletion() { before_ = state(); }
    // What a delete that fails must leave as it was.
    [[nodiscard]] std::string state() {
        return one("SELECT COUNT(*) FROM CostLevel") + "|" +
               one("SELECT COUNT(*) FROM PrintsSettings WHERE PartName = 'CostReport' AND Comment = 'F4'") + "|" +
               events(prDelete);
    }
    void failsAndChangesNothing() {
        messages.expect("MsgDeleteRow", mrYes);
        messages.expect("MsgHasSubRecords");
        EXPECT_FALSE(levels.CostLevel_Delete(4, ctPriceLevel));
        EXPECT_EQ(messages.shown.back().arguments, std::vector<std::string>{"سطر"});
        EXPECT_FALSE(session->inTransaction());
        EXPECT_EQ(state(), before_);
    }

    TCostLevel_DM levels;
    std::string before_;
};

TEST_F(LevelDeletion, takesThePrintSettingsAndWritesTheLog) {
    ASSERT_EQ(one("SELECT COUNT(*) FROM PrintsSettings WHERE PartName = 'CostReport' AND Comment = 'F4'"), "1");
    const std::string others = one("SELECT COUNT(*) FROM PrintsSettings WHERE Comment <> 'F4'");
    const int logged = std::stoi(events(prDelete));
    messages.expect("MsgDeleteRow", mrYes);
    EXPECT_TRUE(levels.CostLevel_Delete(4, ctPriceLevel));
    EXPECT_EQ(nameOf(4), "no row");
    EXPECT_NE(nameOf(4, ctDiscountLevel), "no row") << "the discount level of that code stays";
    EXPECT_EQ(one("SELECT COUNT(*) FROM PrintsSettings WHERE Comment = 'F4'"), "0");
    EXPECT_EQ(one("SELECT COUNT(*) FROM PrintsSettings WHERE Comment <> 'F4'"), others);
    EXPECT_EQ(std::stoi(events(prDelete)), logged + 1);
    EXPECT_EQ(one("SELECT TOP 1 [Text] FROM HostUserLog ORDER BY ID DESC"), "4");
}

TEST_F(LevelDeletion, failsWithTheLog) {
    run("ALTER TABLE HostUserLog ADD CONSTRAINT CK_NoLog CHECK (Permission <> 3 OR SoftwarePart <> 114 OR ID < 0)");
    before_ = state();
    failsAndChangesNothing();
}

TEST_F(LevelDeletion, failsWithThePrintSettings) {
    run("CREATE TABLE Pages (SettingID int NOT NULL REFERENCES PrintsSettings (ID))");
    run("INSERT INTO Pages (SettingID) SELECT ID FROM PrintsSettings WHERE Comment = 'F4'");
    failsAndChangesNothing();
}

TEST_F(LevelDeletion, failsWithTheLevel) {
    run("CREATE TABLE Contracts (CostType int NOT NULL, Level int NOT NULL, CONSTRAINT FK_Contracts_Level FOREIGN KEY "
        "(CostType, Level) REFERENCES CostLevel (CostType, Code))");
    run("INSERT INTO Contracts (CostType, Level) VALUES (1, 4)");
    failsAndChangesNothing();
}

TEST_F(LevelDeletion, failsWithoutTheTableOfThePrintSettings) {
    run("DROP TABLE PrintsSettings");
    messages.expect("MsgDeleteRow", mrYes);
    messages.expect("MsgHasSubRecords");
    EXPECT_FALSE(levels.CostLevel_Delete(4, ctPriceLevel));
    EXPECT_FALSE(session->inTransaction());
    EXPECT_NE(nameOf(4), "no row");
}

TEST_F(LevelDeletion, spareALevelThatIsOpenElsewhere) {
    HostOptions options = testOptions();
    options.workstationName = "انبار";
    ReferenceHost other(*session, options);
    other.signInAs(2);
    const CodeLock lock = other.codeLocks().hold("4", spPriceLevels);
    messages.expect("MSGInUse");
    EXPECT_FALSE(levels.CostLevel_Delete(4, ctPriceLevel));
    EXPECT_EQ(messages.shown.back().arguments, std::vector<std::string>{"سطح قيمتي"});
    EXPECT_EQ(state(), before_);
}

TEST_F(LevelDeletion, spareALevelThatAnotherProgramHolds) {
    // Written in its own way, and without a client number.
    run("INSERT INTO CodeLock_TBL (Code, Status) VALUES (N' 04', 114)");
    messages.expect("MSGInUse");
    EXPECT_FALSE(levels.CostLevel_Delete(4, ctPriceLevel));
    EXPECT_EQ(state(), before_);
}

}  // namespace
}  // namespace basalt::host
