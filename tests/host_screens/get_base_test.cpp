// The host's part of editors on a real database: the order of the hooks, saving, unsaved changes and code locks.
#include <QLabel>
#include <QMenu>
#include <QToolButton>

#include "host/screens/form_option.h"
#include "host/screens/get_base_impl.h"
#include "host/services/sql_access.h"
#include "tests/host_screens/demo_screens.h"
#include "tests/host_screens/recording_editor.h"

namespace basalt::host {
namespace {

using Calls = std::vector<std::string>;

class GetBases : public DemoScreens {
protected:
    GetBases() : DemoScreens(true) { RecordingEditor::saveMode = 0; }

    std::unique_ptr<RecordingEditor> edit(int code) { return CreateEditor<RecordingEditor>(calls, code, fmEdit); }
    std::unique_ptr<RecordingEditor> create() { return CreateEditor<RecordingEditor>(calls, 0, fmNew); }

    // What was called after the first call of that name.
    [[nodiscard]] Calls after(const std::string& call) const {
        const auto found = std::find(calls.begin(), calls.end(), call);
        return found == calls.end() ? Calls{} : Calls(found + 1, calls.end());
    }
    [[nodiscard]] std::string events() { return one("SELECT COUNT(*) FROM dbo.HostUserLog WHERE SoftwarePart = 114"); }
    [[nodiscard]] std::string locks() { return one("SELECT COUNT(*) FROM CodeLock_TBL"); }
    // The user changes the name.
    static void retype(RecordingEditor& editor, const char* text) {
        editor.name->selectAll();
        type(editor.name, QString::fromUtf8(text));
    }

    Calls calls;
};

TEST_F(GetBases, openAnExistingRecordInTheirOrder) {
    auto editor = edit(3);
    EXPECT_EQ(calls, (Calls{"CreateControls", "SetComponents", "SetSetting", "IsNewRecordMode 3", "PrepareQuery 3",
                            "BeforeFill", "OnFill", "AfterFill"}));
    run(*editor, [] {});
    EXPECT_EQ(after("AfterFill"), Calls{"FormShow"});
}

TEST_F(GetBases, openANewRecordInTheirOrder) {
    auto editor = create();
    EXPECT_EQ(calls,
              (Calls{"CreateControls", "SetComponents", "SetSetting", "IsNewRecordMode 0", "GetNewCode", "Init"}));
    EXPECT_EQ(toText(editor->Code()), one("SELECT MAX(Code) + 1 FROM CostLevel WHERE CostType = 1"));
    EXPECT_EQ(editor->code->text().toStdString(), toText(editor->Code()));
}

TEST_F(GetBases, aRecordThatTheStoreCallsNewIsNewInAnyMode) {
    auto editor = CreateEditor<RecordingEditor>(calls, 0, fmEdit, true);
    EXPECT_EQ(editor->Mode(), fmNew);
    EXPECT_EQ(after("IsNewRecordMode 0"), (Calls{"GetNewCode", "Init"}));
}

TEST_F(GetBases, saveInTheirOrder) {
    auto editor = edit(3);
    run(*editor, [&] {
        retype(*editor, "نام تازه");
        QTest::keyClick(editor->name, Qt::Key_F3);
        EXPECT_TRUE(editor->isVisible());
        EXPECT_TRUE(editor->base().IsSaved());
    });
    EXPECT_EQ(after("FormShow"), (Calls{"IsValid", "BeforeSave", "OnSave", "AfterSave"}));
    EXPECT_EQ(nameOf(3), "نام تازه");
}

TEST_F(GetBases, keepWhatIsNotValid) {
    auto editor = edit(3);
    const std::string before = nameOf(3);
    editor->valid = false;
    run(*editor, [&] {
        retype(*editor, "نام تازه");
        editor->BaseSaveANDClose_Click();
        EXPECT_TRUE(editor->isVisible());
        EXPECT_FALSE(editor->base().IsSaved());
    });
    EXPECT_EQ(after("FormShow"), Calls{"IsValid"});
    EXPECT_EQ(nameOf(3), before);
}

TEST_F(GetBases, saveAndCloseIsOkAndLogged) {
    RecordingEditor::saveMode = 2;
    auto editor = edit(3);
    const int before = std::stoi(events());
    EXPECT_EQ(run(*editor,
                  [&] {
                      retype(*editor, "نام تازه");
                      editor->save->Click();
                      EXPECT_FALSE(editor->isVisible());
                  }),
              mrOk);
    EXPECT_EQ(std::stoi(events()), before + 1);
}

TEST_F(GetBases, aSaveThatFailsAtItsCommitIsMadeAgain) {
    for (const bool isNew : {false, true}) {
        auto editor = isNew ? create() : edit(3);
        const int code = static_cast<int>(toInt64(editor->Code()));
        const std::string name = isNew ? "یازدهم" : "نام تازه";
        int told = 0;
        dynamic_cast<GetBaseImpl&>(editor->base()).onWritten = [&] { ++told; };
        run(*editor, [&] {
            retype(*editor, name.c_str());
            failCommitOnce();
            messages.expect("DatabaseError");
            QTest::keyClick(editor->name, Qt::Key_F3);
            EXPECT_FALSE(editor->base().IsSaved());
            EXPECT_EQ(told, 0);
            EXPECT_NE(nameOf(code), name);
            QTest::keyClick(editor->name, Qt::Key_F3);
            EXPECT_TRUE(editor->base().IsSaved());
            EXPECT_EQ(told, 1);
        });
        EXPECT_EQ(nameOf(code), name);
        EXPECT_EQ(one("SELECT COUNT(*) FROM CostLevel WHERE CostType = 1 AND Name = N'" + name + "'"), "1");
    }
}

TEST_F(GetBases, saveAndNewOpensANewRecord) {
    auto editor = create();
    const std::string first = toText(editor->Code());
    run(*editor, [&] {
        retype(*editor, "یازدهم");
        control<QToolButton>(*editor, "Save_BTN_Variants")->menu()->actions().at(0)->trigger();
        EXPECT_NE(toText(editor->Code()), first);
        EXPECT_EQ(editor->name->text().toStdString(), "");
        EXPECT_TRUE(editor->base().IsSaved());
        retype(*editor, "دوازدهم");
        editor->BaseSaveANDNew_Click();
    });
    EXPECT_EQ(after("FormShow"),
              (Calls{"IsValid", "BeforeSave", "OnSave", "AfterSave", "IsNewRecordMode 0", "GetNewCode", "Init",
                     "IsValid", "BeforeSave", "OnSave", "AfterSave", "IsNewRecordMode 0", "GetNewCode", "Init"}));
    EXPECT_EQ(nameOf(std::stoi(first)), "یازدهم");
    EXPECT_EQ(nameOf(std::stoi(first) + 1), "دوازدهم");
    EXPECT_EQ(locks(), "0");
}

TEST_F(GetBases, aNewRecordSavedTwiceIsOneRecord) {
    auto editor = create();
    const int code = static_cast<int>(toInt64(editor->Code()));
    run(*editor, [&] {
        retype(*editor, "یازدهم");
        editor->BaseSave_Click();
        EXPECT_EQ(editor->Mode(), fmEdit);
        retype(*editor, "یازدهمی");
        editor->BaseSave_Click();
    });
    EXPECT_EQ(nameOf(code), "یازدهمی");
    EXPECT_EQ(one("SELECT COUNT(*) FROM CostLevel WHERE CostType = 1 AND Code = " + std::to_string(code)), "1");
}

TEST_F(GetBases, saveAndPrintShowsThePages) {
    auto editor = edit(3);
    run(*editor, [&] {
        retype(*editor, "نام تازه");
        editor->BaseSaveANDPrint_Click();
    });
    EXPECT_EQ(output.previews.size(), 1U);
    EXPECT_EQ(nameOf(3), "نام تازه");
}

TEST_F(GetBases, anErrorWhileSavingKeepsTheEditorAndWritesNothing) {
    auto editor = edit(3);
    const std::string before = nameOf(3);
    const std::string logged = events();
    // The record has been written when the failure comes.
    editor->afterPost = [] { throw DatabaseError(ErrorCategory::DiskFull, "HY000", 1105, "no room"); };
    run(*editor, [&] {
        retype(*editor, "نام تازه");
        messages.expect("DatabaseError");
        editor->BaseSaveANDClose_Click();
        EXPECT_TRUE(editor->isVisible());
        EXPECT_FALSE(editor->base().IsSaved());
        EXPECT_EQ(editor->name->text().toStdString(), "نام تازه");
        EXPECT_EQ(nameOf(3), before);
        EXPECT_EQ(events(), logged);
        // The next attempt writes all of it.
        editor->afterPost = {};
        editor->BaseSave_Click();
    });
    EXPECT_EQ(nameOf(3), "نام تازه");
    EXPECT_EQ(std::stoi(events()), std::stoi(logged) + 1);
}

TEST_F(GetBases, aNewRecordThatFailedIsAddedOnceInTheEnd) {
    auto editor = create();
    const int code = static_cast<int>(toInt64(editor->Code()));
    run(*editor, [&] {
        type(editor->name, QString(200, QLatin1Char('x')));
        messages.expect("MsgTooLong");
        editor->BaseSave_Click();
        EXPECT_EQ(nameOf(code), "no row");
        retype(*editor, "یازدهم");
        editor->BaseSave_Click();
    });
    EXPECT_EQ(one("SELECT COUNT(*) FROM CostLevel WHERE CostType = 1 AND Code >= " + std::to_string(code)), "1");
    EXPECT_EQ(nameOf(code), "یازدهم");
}

TEST_F(GetBases, aRecordChangedByAnotherUserIsNotOverwritten) {
    auto editor = edit(3);
    execute(*session, "UPDATE CostLevel SET Name = N'از دیگری' WHERE CostType = 1 AND Code = 3");
    run(*editor, [&] {
        retype(*editor, "از من");
        messages.expect("DatabaseError");
        editor->BaseSave_Click();
        // Trying again does not overwrite it either.
        messages.expect("DatabaseError");
        editor->BaseSave_Click();
    });
    EXPECT_EQ(nameOf(3), "از دیگری");
}

TEST_F(GetBases, aRecordChangedAfterASaveThatWasRolledBackIsNotOverwritten) {
    auto editor = edit(3);
    // The record is written, its entry in the log is not.
    editor->afterPost = [] { throw DatabaseError(ErrorCategory::DiskFull, "HY000", 1105, "no room"); };
    run(*editor, [&] {
        retype(*editor, "از من");
        messages.expect("DatabaseError");
        editor->BaseSave_Click();
        editor->afterPost = {};
        execute(*session, "UPDATE CostLevel SET Comment = N'از دیگری' WHERE CostType = 1 AND Code = 3");
        for (int attempt = 0; attempt < 2; ++attempt) {
            messages.expect("DatabaseError");
            editor->BaseSave_Click();
            EXPECT_EQ(messages.shown.back().arguments.at(0), host.catalogue().errorText(ErrorCategory::Conflict));
            EXPECT_FALSE(editor->base().IsSaved());
        }
    });
    EXPECT_EQ(one("SELECT Comment FROM CostLevel WHERE CostType = 1 AND Code = 3"), "از دیگری");
    EXPECT_NE(nameOf(3), "از من");
}

TEST_F(GetBases, aRecordDeletedAfterASaveThatWasRolledBackIsAConflict) {
    auto editor = edit(8);
    editor->afterPost = [] { throw DatabaseError(ErrorCategory::DiskFull, "HY000", 1105, "no room"); };
    run(*editor, [&] {
        retype(*editor, "از من");
        messages.expect("DatabaseError");
        editor->BaseSave_Click();
        editor->afterPost = {};
        execute(*session, "DELETE FROM CostLevel WHERE CostType = 1 AND Code = 8");
        for (int attempt = 0; attempt < 2; ++attempt) {
            messages.expect("DatabaseError");
            editor->BaseSave_Click();
            EXPECT_EQ(messages.shown.back().arguments.at(0), host.catalogue().errorText(ErrorCategory::Conflict));
        }
    });
    EXPECT_EQ(nameOf(8), "no row");
}

TEST_F(GetBases, whatWasSavedIsWhatALaterAttemptCompares) {
    auto editor = edit(3);
    run(*editor, [&] {
        retype(*editor, "نخست");
        editor->BaseSave_Click();
        editor->afterPost = [] { throw DatabaseError(ErrorCategory::DiskFull, "HY000", 1105, "no room"); };
        retype(*editor, "دوم");
        messages.expect("DatabaseError");
        editor->BaseSave_Click();
        EXPECT_EQ(nameOf(3), "نخست");
        editor->afterPost = {};
        editor->BaseSave_Click();
        EXPECT_EQ(nameOf(3), "دوم");
    });
}

TEST_F(GetBases, nobodyEditsWithoutTheRightTo) {
    host.permissions().allow(2, spPriceLevels, prOpen, true);
    host.signInAs(2);
    messages.expect("HavePermission");
    auto editor = edit(3);
    EXPECT_TRUE(editor->ClosedOnCreate());
    EXPECT_EQ(after("SetSetting"), Calls{"IsNewRecordMode 3"}) << "nothing was read";
    EXPECT_EQ(locks(), "0");
    EXPECT_EQ(editor->ShowModal(), mrCancel);

    host.permissions().allow(2, spPriceLevels, prEdit, true);
    EXPECT_FALSE(edit(3)->ClosedOnCreate());
    messages.expect("HavePermission");
    EXPECT_TRUE(create()->ClosedOnCreate()) << "to change is not to add";
    EXPECT_EQ(locks(), "0");
    host.permissions().allow(2, spPriceLevels, prInsert, true);
    EXPECT_FALSE(create()->ClosedOnCreate());
}

TEST_F(GetBases, saveAndNewWithoutTheRightToAddSavesOnly) {
    host.permissions().allow(2, spPriceLevels, prEdit, true);
    host.permissions().allow(2, spPriceLevels, prInsert, true);
    host.signInAs(2);
    auto editor = create();
    const int code = static_cast<int>(toInt64(editor->Code()));
    run(*editor, [&] {
        retype(*editor, "یازدهم");
        host.permissions().allow(2, spPriceLevels, prInsert, false);
        messages.expect("HavePermission");
        editor->BaseSaveANDNew_Click();
        EXPECT_EQ(toInt64(editor->Code()), code);
        EXPECT_EQ(editor->Mode(), fmEdit);
        EXPECT_TRUE(editor->base().IsSaved());
        retype(*editor, "یازدهمی");
        editor->BaseSave_Click();
    });
    EXPECT_EQ(nameOf(code), "یازدهمی");
}

TEST_F(GetBases, whatTheUserTypesIsUnsavedAndWhatTheProgramShowsIsNot) {
    auto editor = edit(3);
    EXPECT_TRUE(editor->base().IsSaved());
    run(*editor, [&] {
        EXPECT_TRUE(editor->base().IsSaved());
        type(editor->comment, QStringLiteral("x"));
        EXPECT_FALSE(editor->base().IsSaved());
    });
}

TEST_F(GetBases, closingAsksAboutUnsavedChanges) {
    auto editor = edit(3);
    const std::string before = nameOf(3);
    EXPECT_EQ(run(*editor,
                  [&] {
                      retype(*editor, "نام تازه");
                      messages.expect("MsgUnsavedChanges", mrCancel);
                      QTest::keyClick(editor->name, Qt::Key_Escape);
                      EXPECT_TRUE(editor->isVisible());
                      EXPECT_EQ(messages.shown.back().buttons,
                                (TMessageButtons{TMessageButton::Yes, TMessageButton::No, TMessageButton::Cancel}));
                      messages.expect("MsgUnsavedChanges", mrNo);
                      editor->close();
                      EXPECT_FALSE(editor->isVisible());
                  }),
              mrCancel);
    EXPECT_EQ(nameOf(3), before);
}

TEST_F(GetBases, yesToTheQuestionSavesAndCloses) {
    auto editor = edit(3);
    EXPECT_EQ(run(*editor,
                  [&] {
                      retype(*editor, "نام تازه");
                      editor->valid = false;
                      messages.expect("MsgUnsavedChanges", mrYes);
                      QTest::mouseClick(control<TSmartButton_VRO>(*editor, "Exit_BTN"), Qt::LeftButton);
                      EXPECT_TRUE(editor->isVisible()) << "what is not valid cannot be saved";
                      editor->valid = true;
                      messages.expect("MsgUnsavedChanges", mrYes);
                      QTest::mouseClick(control<TSmartButton_VRO>(*editor, "Exit_BTN"), Qt::LeftButton);
                      EXPECT_FALSE(editor->isVisible());
                  }),
              mrOk);
    EXPECT_EQ(nameOf(3), "نام تازه");
}

TEST_F(GetBases, closingWithoutChangesAsksNothing) {
    auto editor = edit(3);
    EXPECT_EQ(run(*editor, [&] { QTest::keyClick(editor.get(), Qt::Key_Escape); }), mrCancel);
    EXPECT_TRUE(messages.shown.empty());
}

TEST_F(GetBases, aRecordThatIsGoneClosesTheEditorAtOnce) {
    messages.expect("MsgRecordGone");
    auto editor = edit(999);
    EXPECT_TRUE(editor->ClosedOnCreate());
    EXPECT_EQ(after("IsNewRecordMode 999"), Calls{"PrepareQuery 999"});
    EXPECT_EQ(locks(), "0");
    EXPECT_EQ(editor->ShowModal(), mrCancel);
}

TEST_F(GetBases, theCodeIsHeldWhileTheEditorIsOpen) {
    auto editor = edit(3);
    EXPECT_EQ(one("SELECT Code FROM CodeLock_TBL WHERE Status = 114"), "3");
    run(*editor, [&] { EXPECT_EQ(locks(), "1"); });
    EXPECT_EQ(locks(), "0");

    auto created = create();
    EXPECT_EQ(one("SELECT Code FROM CodeLock_TBL WHERE Status = 114"), toText(created->Code()));
    auto second = create();
    EXPECT_EQ(toInt64(second->Code()), toInt64(created->Code()) + 1);
    created.reset();
    second.reset();
    EXPECT_EQ(locks(), "0");
}

TEST_F(GetBases, theCodeCannotBeChanged) {
    auto editor = edit(3);
    run(*editor, [&] {
        type(editor->code, QStringLiteral("9"));
        EXPECT_EQ(editor->code->text().toStdString(), "3");
    });
}

TEST_F(GetBases, aBannerTellsWhoElseHasTheRecordOpen) {
    HostOptions options = testOptions();
    options.workstationName = "انبار";
    ReferenceHost other(*session, options);
    other.signInAs(2);
    const CodeLock lock = other.codeLocks().hold("3", spPriceLevels);
    auto editor = edit(3);
    run(*editor, [&] {
        auto* text = control<QLabel>(*editor, "OpenElsewhere_LBL");
        EXPECT_TRUE(text->isVisible());
        EXPECT_TRUE(text->text().contains(QStringLiteral("انبار"))) << text->text().toStdString();
    });
    // Nobody knows who wrote these rows.
    execute(*session, "INSERT INTO CodeLock_TBL (Code, Status, Slot, WorkstationName) VALUES (N'5', 114, 0, N'دفتر')");
    auto unknown = edit(5);
    run(*unknown, [&] {
        EXPECT_EQ(control<QLabel>(*unknown, "OpenElsewhere_LBL")->text().toStdString(),
                  "این رکورد در ایستگاه «دفتر» هم باز است.");
    });
    execute(*session, "INSERT INTO CodeLock_TBL (Code, Status, Slot, UserCode) VALUES (N'6', 114, 0, 2)");
    auto unnamed = edit(6);
    run(*unnamed, [&] {
        EXPECT_EQ(control<QLabel>(*unnamed, "OpenElsewhere_LBL")->text().toStdString(),
                  "این رکورد را علی کریمی هم باز کرده است.");
    });
    execute(*session, "INSERT INTO CodeLock_TBL (Code, Status, Slot) VALUES (N'7', 114, 0)");
    auto neither = edit(7);
    run(*neither, [&] {
        EXPECT_EQ(control<QLabel>(*neither, "OpenElsewhere_LBL")->text().toStdString(),
                  "این رکورد در جای دیگری هم باز است.");
    });
    auto alone = edit(4);
    run(*alone, [&] { EXPECT_FALSE(control<QLabel>(*alone, "OpenElsewhere_LBL")->isVisible()); });
}

TEST_F(GetBases, enterLeadsFromInputToInput) {
    auto editor = edit(3);
    run(*editor, [&] {
        editor->name->setFocus();
        QTest::keyClick(editor->name, Qt::Key_Return);
        EXPECT_TRUE(editor->comment->hasFocus());
        EXPECT_TRUE(editor->isVisible());
    });
}

TEST_F(GetBases, tabReachesTheOtherWaysOfSavingBehindTheSaveButton) {
    auto editor = edit(3);
    run(*editor, [&] {
        const auto tab = [](Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
            QTest::keyClick(QApplication::focusWidget(), modifiers ? Qt::Key_Backtab : Qt::Key_Tab, modifiers);
        };
        const auto* save = control<QWidget>(*editor, "Save_BTN");
        const auto* variants = control<QToolButton>(*editor, "Save_BTN_Variants");
        const auto* exit = control<QWidget>(*editor, "Exit_BTN");
        editor->comment->setFocus();
        tab();
        EXPECT_TRUE(save->isAncestorOf(QApplication::focusWidget()));
        EXPECT_FALSE(variants->hasFocus());
        tab();
        EXPECT_TRUE(variants->hasFocus());
        tab();
        EXPECT_TRUE(exit->isAncestorOf(QApplication::focusWidget()));
        tab(Qt::ShiftModifier);
        EXPECT_TRUE(variants->hasFocus());
    });
}

TEST_F(GetBases, theWindowKeepsItsSizePerUser) {
    auto editor = edit(3);
    run(*editor, [&] { editor->resize(640, 480); });
    auto again = edit(3);
    run(*again, [&] { EXPECT_EQ(again->size(), QSize(640, 480)); });
    host.permissions().allow(2, spPriceLevels, prEdit, true);
    host.signInAs(2);
    auto others = edit(3);
    run(*others, [&] { EXPECT_NE(others->size(), QSize(640, 480)); });
}

TEST_F(GetBases, aListAndItsEditorKeepALayoutEach) {
    ScreenContext context(host, output);
    QDialog list;
    list.setObjectName("List_FRM");
    QDialog form;
    form.setObjectName("Get_FRM");
    FormOption listLayout(context, list);
    FormOption formLayout(context, form);
    listLayout.SetSoftwarePart(csPriceLevels);
    formLayout.SetSoftwarePart(csPriceLevels);
    listLayout.saveQuietly({{"width", 760}, {"grid", "columns"}});
    formLayout.saveQuietly({{"width", 460}});
    EXPECT_EQ(listLayout.load(), (QJsonObject{{"width", 760}, {"grid", "columns"}}));
    EXPECT_EQ(formLayout.load(), (QJsonObject{{"width", 460}}));
}

}  // namespace
}  // namespace basalt::host
