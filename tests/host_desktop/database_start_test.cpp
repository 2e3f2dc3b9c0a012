#include "host/desktop/database_start.h"

#include <sqlite3.h>

#include <QTimer>
#include <fstream>
#include <future>

#include "host/desktop/database_opener.h"
#include "host/engines/open_database.h"
#include "host/screens/theme.h"
#include "host/services/process_identity.h"
#include "host/services/sql_access.h"
#include "tests/host_desktop/desktop_test.h"

namespace basalt::host {
namespace {

namespace fs = std::filesystem;

class Start : public ::testing::Test {
protected:
    Start() : folder_(fs::temp_directory_path() / ("basalt-start-" + std::to_string(getpid()))) {
        fs::remove_all(folder_);
        fs::create_directories(folder_);
    }
    ~Start() override { fs::remove_all(folder_); }

    [[nodiscard]] DatabaseUrl file(const char* name) const { return {EngineKind::Embedded, (folder_ / name).string()}; }
    [[nodiscard]] DatabaseUrl damaged() const {
        std::ofstream(file("damaged.db").target, std::ios::binary) << std::string(8192, 'x');
        return file("damaged.db");
    }
    [[nodiscard]] DatabaseUrl empty() const {
        static_cast<void>(openOrCreateDatabase(file("empty.db"))->run("CREATE TABLE dbo.Other (Code int NOT NULL)"));
        return file("empty.db");
    }
    [[nodiscard]] DatabaseUrl unfinished() const {
        createDatabase(file("unfinished.db"), false);
        openDatabase(file("unfinished.db"))->run("DELETE FROM dbo.HostSchemaVersion");
        return file("unfinished.db");
    }
    [[nodiscard]] DatabaseUrl newer() const {
        createDatabase(file("newer.db"), false);
        openDatabase(file("newer.db"))->run("INSERT INTO dbo.HostSchemaVersion (Version) VALUES (99)");
        return file("newer.db");
    }
    static std::string titleFor(const DatabaseUrl& url) {
        try {
            static_cast<void>(openForDesktop(url));
        } catch (const std::exception& error) {
            return describeProblem(error).title;
        }
        return "(opened)";
    }

    // Presses that button of the dialog that comes up next, and notes the dialog's title.
    void press(const char* button) {
        QTimer::singleShot(0, [this, button] {
            QWidget* dialog = QApplication::activeModalWidget();
            ASSERT_NE(dialog, nullptr);
            titles.push_back(shown(*dialog, "ProblemTitle_LBL"));
            click(*dialog, button);
        });
    }

    std::vector<std::string> titles;

private:
    fs::path folder_;
};

TEST_F(Start, theFirstStartMakesADatabaseAndSaysSo) {
    qputenv("XDG_DATA_HOME", QByteArray::fromStdString(fs::path(file("data").target).string()));
    const OpenedDatabase first = openForDesktop(DatabaseUrl::defaultDatabase(), {.createMissing = true});
    qunsetenv("XDG_DATA_HOME");
    EXPECT_TRUE(fs::exists(fs::path(file("data").target) / "basalt" / "basalt.db"));
    EXPECT_EQ(first.notice, "نخستین اجرای برنامه است؛ یک پایگاه دادهٔ نمایشی برایتان ساخته شد.");
    EXPECT_TRUE(holdsDemoData(*first.session));
}

TEST_F(Start, theSecondStartSaysNothing) {
    static_cast<void>(openForDesktop(file("basalt.db"), {.createMissing = true}));
    EXPECT_EQ(openForDesktop(file("basalt.db"), {.createMissing = true}).notice, "");
}

TEST_F(Start, twoFirstStartsAtOnceOpenTheSameDatabase) {
    const auto start = [this] { return openForDesktop(file("basalt.db"), {.createMissing = true}); };
    std::future<OpenedDatabase> other = std::async(std::launch::async, start);
    const OpenedDatabase one = start();
    const OpenedDatabase two = other.get();
    EXPECT_NE(one.notice.empty(), two.notice.empty()) << "one of them has made it";
    execute(*one.session, "UPDATE dbo.Stores SET Name = N'یکی'");
    EXPECT_EQ(textAt(rowsOf(*two.session, "SELECT TOP 1 Name FROM dbo.Stores"), 0, 0), "یکی");
}

// Two codes of a client that was killed, the one of the demo company's level 3 and a new one.
void leaveKilledClient(Session& session) {
    const ProcessIdentity self = currentProcess();
    execute(session,
            "INSERT INTO dbo.HostWorkstations (Owner, MachineName, WorkstationName, ProcessId, ProcessStarted) "
            "VALUES (7, ?, N'صندوق', ?, N'before the last start:1')",
            {self.machine, self.id});
    execute(session, "INSERT INTO dbo.CodeLock_TBL (Code, Status, Owner) VALUES (3, 114, 7), (11, 114, 7)");
}

std::int64_t heldCodes(Session& session) {
    return integerAt(rowsOf(session, "SELECT COUNT(*) FROM dbo.CodeLock_TBL"), 0, 0);
}

TEST_F(Start, freesWhatAKilledClientOfThisMachineHeld) {
    const DatabaseUrl url = file("basalt.db");
    createDatabase(url, true);
    leaveKilledClient(*openDatabase(url));
    const OpenedDatabase opened = openForDesktop(url);
    EXPECT_EQ(opened.notice, "");
    EXPECT_EQ(heldCodes(*openDatabase(url)), 0);
    EXPECT_EQ(
        integerAt(rowsOf(*opened.session, "SELECT COUNT(*) FROM dbo.HostWorkstations WHERE ProcessId IS NULL"), 0, 0),
        1);
}

TEST_F(Start, isNotHinderedByAnotherProgramThatIsWriting) {
    const DatabaseUrl url = file("basalt.db");
    createDatabase(url, true);
    leaveKilledClient(*openDatabase(url));
    const auto writer = openDatabase(url);
    writer->begin();
    execute(*writer, "UPDATE dbo.HostWorkstations SET WorkstationName = N'انبار'");
    const OpenedDatabase opened = openForDesktop(url);
    EXPECT_EQ(heldCodes(*opened.session), 2);
    EXPECT_EQ(textAt(rowsOf(*opened.session, "SELECT @@LOCK_TIMEOUT"), 0, 0), "-1");
    writer->rollback();
    // Who signs in then finds it done.
    ReferenceHost host(*opened.session, workstation("دفتر"));
    EXPECT_TRUE(host.signIn("manager", "manager"));
    EXPECT_EQ(heldCodes(*opened.session), 0);
}

TEST_F(Start, eachProblemIsNamed) {
    EXPECT_EQ(titleFor(file("missing.db")), "پروندهٔ پایگاه داده پیدا نشد");
    EXPECT_EQ(titleFor(damaged()), "پروندهٔ پایگاه داده آسیب دیده است");
    EXPECT_EQ(titleFor(empty()), "این پرونده، پایگاه دادهٔ بازالت نیست");
    EXPECT_EQ(titleFor(newer()),
              "این پایگاه داده از نسخهٔ تازه‌تری از برنامه است");
    EXPECT_EQ(titleFor({EngineKind::Odbc, "Server=s;Pwd=secret"}), "پایگاه داده باز نشد");
}

// What making a database at that place is told as.
DatabaseProblem makingAt(const DatabaseUrl& url) {
    try {
        createDatabase(url, false);
    } catch (const std::exception& error) {
        return describeProblem(error);
    }
    return {"(made)", ""};
}

TEST_F(Start, aFileOfThatNameAndTheRemainsOfOneAreToldApart) {
    const std::string title = "پایگاه داده ساخته نشد";
    const DatabaseProblem exists = makingAt(damaged());
    EXPECT_EQ(exists.title, title);
    EXPECT_EQ(exists.advice, "پرونده‌ای با این نام هست. نام دیگری برگزینید.");
    std::ofstream(file("gone.db-wal").target) << "log";
    const DatabaseProblem remains = makingAt(file("gone.db"));
    EXPECT_EQ(remains.title, title);
    // clang-format off
    EXPECT_EQ(remains.advice, "از پایگاه دادهٔ پیشین با این نام، پرونده‌ای به جا مانده که شاید آخرین نوشته‌های آن را دارد. آن را جابه‌جا کنید یا نام دیگری برگزینید.");
    // clang-format on
}

TEST_F(Start, whatTheSystemRefusesIsToldInTheUsersWords) {
    const DatabaseProblem nowhere = makingAt(file("nowhere/new.db"));
    EXPECT_EQ(nowhere.title, "پایگاه داده ساخته نشد");
    EXPECT_EQ(nowhere.advice, "پوشهٔ آن پیدا نشد. پروندهٔ دیگری برگزینید.");
    const DatabaseProblem full =
        describeProblem(NoPlaceForDatabase("x", std::make_error_code(std::errc::no_space_on_device)));
    EXPECT_EQ(full.title, "پایگاه داده ساخته نشد");
    EXPECT_EQ(full.advice, "روی دیسک جای خالی نمانده است. پروندهٔ دیگری برگزینید.");
    const std::string longName(300, 'n');
    EXPECT_EQ(
        makingAt(file(longName.c_str())).advice,
        "نام پرونده بلندتر از آن است که دیسک می‌پذیرد. پروندهٔ دیگری برگزینید.");
}

TEST_F(Start, tablesWithoutAVersionAreNotToldAsAnothersDatabase) {
    EXPECT_EQ(titleFor(empty()), "این پرونده، پایگاه دادهٔ بازالت نیست");
    EXPECT_EQ(titleFor(unfinished()), "ساختن این پایگاه داده به پایان نرسیده است");
}

TEST_F(Start, noOtherMistakeIsToldAsAFileOfThatName) {
    EXPECT_EQ(describeProblem(UsageError("x")).title, "پایگاه داده باز نشد");
    EXPECT_EQ(describeProblem(UsageError("x")).advice, MessageCatalogue().errorText(UsageError("x")));
}

TEST_F(Start, aDamagedFileIsLeftAsItIs) {
    const DatabaseUrl url = damaged();
    static_cast<void>(titleFor(url));
    EXPECT_EQ(fs::file_size(url.target), 8192U);
}

TEST_F(Start, theUserLeavesWhenTheDatabaseCannotBeOpened) {
    press("Exit_BTN");
    EXPECT_FALSE(DatabaseOpener(damaged(), {}).open().has_value());
    EXPECT_EQ(titles, std::vector<std::string>{"پروندهٔ پایگاه داده آسیب دیده است"});
}

TEST_F(Start, theUserChoosesAnotherFile) {
    createDatabase(file("other.db"), true);
    const DatabaseFileChooser files{.existing = [&] { return QString::fromStdString(file("other.db").target); },
                                    .created = {}};
    press("ChooseFile_BTN");
    const auto opened = DatabaseOpener(damaged(), {}, files).open();
    ASSERT_TRUE(opened.has_value());
    EXPECT_TRUE(holdsDemoData(*opened->session));
}

TEST_F(Start, theUserMakesADemoDatabase) {
    QStringList suggestions;
    const DatabaseFileChooser files{.existing = {}, .created = [&](const QString& suggested) {
                                        suggestions << suggested;
                                        const char* made = suggestions.size() == 1 ? "new.db" : "second.db";
                                        return QString::fromStdString(file(made).target);
                                    }};
    press("CreateDemo_BTN");
    const auto opened = DatabaseOpener(file("missing.db"), {}, files).open();
    ASSERT_TRUE(opened.has_value());
    EXPECT_TRUE(fs::exists(file("new.db").target));
    EXPECT_FALSE(fs::exists(file("missing.db").target));
    // What was asked for is proposed; beside a file that is there, another name.
    press("CreateDemo_BTN");
    ASSERT_TRUE(DatabaseOpener(damaged(), {}, files).open().has_value());
    EXPECT_EQ(suggestions, (QStringList{QString::fromStdString(file("missing.db").target),
                                        QString::fromStdString(file("demo.db").target)}));
}

TEST_F(Start, theDialogBeginsAtItsMainActionAndShowsAllOfIt) {
    applyTheme(*qApp);
    DatabaseProblemDialog dialog(
        {"پروندهٔ پایگاه داده پیدا نشد", "شاید جابه‌جا یا پاک شده باشد."}, "one\ntwo\nthree",
        "embedded:" + QString(200, 'x'));
    showActive(dialog);
    EXPECT_TRUE(control(dialog, "Retry_BTN").hasFocus());
    for (const char* name : {"Retry_BTN", "ChooseFile_BTN", "CreateDemo_BTN", "Exit_BTN"}) {
        const QWidget& button = control(dialog, name);
        EXPECT_GE(button.width(), button.sizeHint().width()) << name;
        EXPECT_TRUE(dialog.rect().contains(QRect(button.mapTo(&dialog, QPoint(0, 0)), button.size()))) << name;
    }
    const int before = dialog.height();
    click(dialog, "Detail_BTN");
    QApplication::processEvents();
    const QWidget& detail = control(dialog, "Detail_EDT");
    EXPECT_TRUE(detail.isVisible());
    EXPECT_GE(detail.height(), 3 * detail.fontMetrics().lineSpacing());
    EXPECT_GT(dialog.height(), before + 3 * detail.fontMetrics().lineSpacing());
}

TEST_F(Start, aDatabaseInTheHandsOfAnotherProgramIsWaitedForAndTriedAgain) {
    const DatabaseUrl url = file("locked.db");
    createDatabase(url, true);
    sqlite3* other = nullptr;
    ASSERT_EQ(sqlite3_open(url.target.c_str(), &other), SQLITE_OK);
    ASSERT_EQ(sqlite3_exec(other, "PRAGMA locking_mode = EXCLUSIVE; BEGIN EXCLUSIVE", nullptr, nullptr, nullptr),
              SQLITE_OK);
    QTimer::singleShot(0, [&] {
        QWidget* dialog = QApplication::activeModalWidget();
        ASSERT_NE(dialog, nullptr);
        titles.push_back(shown(*dialog, "ProblemTitle_LBL"));
        titles.push_back(shown(*dialog, "ProblemAdvice_LBL"));
        sqlite3_close(other);
        click(*dialog, "Retry_BTN");
    });
    EXPECT_TRUE(DatabaseOpener(url, {}).open().has_value());
    EXPECT_EQ(titles, (std::vector<std::string>{"پایگاه داده در دست برنامهٔ دیگری است",
                                                MessageCatalogue().errorText(ErrorCategory::Busy)}));
}

TEST_F(Start, tryingAgainOpensWhatHasBeenPutRight) {
    const DatabaseUrl url = damaged();
    QTimer::singleShot(0, [&] {
        fs::remove(url.target);
        createDatabase(url, true);
        click(*QApplication::activeModalWidget(), "Retry_BTN");
    });
    EXPECT_TRUE(DatabaseOpener(url, {}).open().has_value());
}

}  // namespace
}  // namespace basalt::host
