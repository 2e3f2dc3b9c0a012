// The player on real widgets: a small list screen that opens an editor, as the module's screens do.
#include "host/steps/step_player.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QAction>
#include <QApplication>
#include <QComboBox>
#include <QDialog>
#include <QDir>
#include <QFile>
#include <QFileDialog>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QPushButton>
#include <QShortcut>
#include <QSpinBox>
#include <QStandardItemModel>
#include <QTabBar>
#include <QTableView>
#include <QTemporaryDir>
#include <QTimer>
#include <QToolButton>
#include <QVBoxLayout>

#include "host/screens/escape_rest.h"
#include "host/steps/steps_file.h"
#ifndef _WIN32
#include "tests/support/small_files.h"
#endif

namespace basalt::host {
namespace {

class Editor : public QDialog {
public:
    Editor(const QString& name, MessageService& messages) : messages_(messages) {
        setObjectName("Editor_FRM");
        auto* layout = new QVBoxLayout(this);
        name_.setObjectName("Name_EDT");
        name_.setText(name);
        save_.setObjectName("Save_BTN");
        save_.setText("Save");
        code_.setObjectName("Code_EDT");
        code_.setReadOnly(true);
        layout->addWidget(&name_);
        layout->addWidget(&code_);
        layout->addWidget(&save_);
        connect(&save_, &QPushButton::clicked, this, &QDialog::accept);
        original_ = name;
    }

    [[nodiscard]] QString name() const { return name_.text(); }

    void reject() override {
        if (name_.text() != original_) {
            MessageRequest question{.operation = "MsgUnsavedChanges",
                                    .buttons = {TMessageButton::Yes, TMessageButton::No, TMessageButton::Cancel}};
            const int answer = messages_.show(question);
            if (answer == mrCancel) return;
            if (answer == mrYes) return accept();
        }
        QDialog::reject();
    }

private:
    MessageService& messages_;
    QLineEdit name_;
    QSpinBox code_;
    QPushButton save_;
    QString original_;
};

class List : public QDialog {
public:
    explicit List(MessageService& messages) : messages_(messages), model_(3, 2) {
        setObjectName("List_FRM");
        const char* names[] = {"یک", "دو", "سه"};
        for (int row = 0; row < 3; ++row) {
            model_.setItem(row, 0, new QStandardItem(QString(QChar(0x06F1 + row))));
            model_.setItem(row, 1, new QStandardItem(QString::fromUtf8(names[row])));
        }
        model_.setHorizontalHeaderLabels({"کد", "عنوان"});
        grid_.setObjectName("List_GRD");
        grid_.setModel(&model_);
        grid_.setSelectionBehavior(QAbstractItemView::SelectRows);
        grid_.setEditTriggers(QAbstractItemView::NoEditTriggers);
        edit_.setObjectName("Edit_BTN");
        edit_.setText("Edit");
        disabled_.setObjectName("New_BTN");
        disabled_.setEnabled(false);
        hidden_.setObjectName("Delete_BTN");
        combo_.setObjectName("Type_CMB");
        combo_.addItems({"خرید", "فروش", "هر دو"});
        tabs_.setObjectName("Tab_TBC");
        tabs_.addTab("first");
        tabs_.addTab("second");
        auto* layout = new QVBoxLayout(this);
        for (QWidget* widget : std::initializer_list<QWidget*>{&tabs_, &combo_, &grid_, &edit_, &disabled_, &hidden_}) {
            layout->addWidget(widget);
        }
        hidden_.hide();
        connect(&edit_, &QPushButton::clicked, this, [this] { edit(); });
        connect(&grid_, &QTableView::doubleClicked, this, [this] { edit(); });
        connect(new QShortcut(QKeySequence("F5"), this), &QShortcut::activated, this, [this] { edit(); });
        connect(&tabs_, &QTabBar::currentChanged, this,
                [this](int tab) { messages_.show({.operation = "TabChanged", .arguments = {std::to_string(tab)}}); });
    }

    int chosen = 0;

    void accept() override {
        chosen = grid_.currentIndex().row() + 1;
        QDialog::accept();
    }

private:
    void edit() {
        const int row = grid_.currentIndex().row();
        if (row < 0) return;
        Editor editor(model_.item(row, 1)->text(), messages_);
        if (editor.exec() == QDialog::Accepted) model_.item(row, 1)->setText(editor.name());
    }

    MessageService& messages_;
    QStandardItemModel model_;
    QTabBar tabs_;
    QComboBox combo_;
    QTableView grid_;
    QPushButton edit_, disabled_, hidden_;
};

// Plays the steps on the list and gives the failure, or the empty text.
std::string play(const std::string& text, const std::vector<SentStatement>& statements = {}) {
    StepPlayer player(parseSteps(text, "t.steps"), "t.steps",
                      {.step = std::chrono::milliseconds(300), .standstill = std::chrono::seconds(30)});
    player.setStatements([&]() -> const std::vector<SentStatement>& { return statements; });
    player.start();
    int chosen = 0;
    {
        List list(player.messages());
        list.exec();
        chosen = list.chosen;
    }
    player.returned(chosen);
    player.finish();
    EXPECT_TRUE(player.finished());
    EXPECT_EQ(QApplication::activeModalWidget(), nullptr);
    return player.failure().value_or("");
}

TEST(StepPlayer, renamesThroughTheEditor) {
    EXPECT_EQ(play(R"(expect screen List_FRM
expect rows List_GRD 3
row List_GRD 1
click Edit_BTN
expect screen Editor_FRM
expect text Name_EDT دو
clear Name_EDT
type Name_EDT همکار ۲ (New)
expect text Name_EDT همکار 2 (New)
click Save_BTN
expect screen List_FRM
expect cell List_GRD 1 عنوان همکار ۲ (New)
expect cell List_GRD 1 1 همکار ۲ (New)
expect cell List_GRD ۱ کد 2
expect cell List_GRD ۱ ۱ همکار ۲ (New)
expect cell List_GRD ۱ ٠ ۲
key - Esc
expect result ۰
)"),
              "");
}

TEST(StepPlayer, doubleClickAndShortCutOpenTheEditorOfTheCurrentRow) {
    EXPECT_EQ(
        play("row List_GRD 2\ndblclick List_GRD\nexpect text Name_EDT سه\nkey - Esc\nexpect screen List_FRM\n"
             "row List_GRD 0\nkey List_GRD F5\nexpect text Name_EDT یک\nkey Name_EDT Esc\nexpect screen List_FRM\n"),
        "");
}

TEST(StepPlayer, statesTabsAndCombos) {
    EXPECT_EQ(
        play("expect disabled New_BTN\nexpect enabled Edit_BTN\nexpect visible Edit_BTN\nexpect hidden Delete_BTN\n"
             "choose Type_CMB 2\nexpect text Type_CMB هر دو\nchoose Type_CMB 0\nexpect text Type_CMB خرید\n"
             "tab Tab_TBC 1\nexpect message TabChanged ۱\nclick Edit_BTN\nexpect focused Edit_BTN\n"),
        "");
}

TEST(StepPlayer, answersAheadAndBefore) {
    const std::string change = "row List_GRD 0\nclick Edit_BTN\ntype Name_EDT x\n";
    EXPECT_EQ(
        play(change + "key - Esc\nexpect message MsgUnsavedChanges\nanswer cancel\nexpect screen Editor_FRM\n"
                      "answer ۲\nkey - Esc\nexpect message MsgUnsavedChanges\nexpect screen Editor_FRM\n"
                      "answer yes\nkey - Esc\nexpect message MsgUnsavedChanges\nexpect cell List_GRD 0 عنوان یکx\n"),
        "");
}

// A step is what a user means, and so never the second press of a key.
TEST(StepPlayer, escapeIsPressedWhenItIsTaken) {
    qint64 now = 0;
    EscapeRest& rest = EscapeRest::ofApplication();
    rest.setClock([&now] { return now; });
    rest.begin();
    QTimer::singleShot(50, qApp, [&now] { now = 401; });
    EXPECT_EQ(play("key - Esc\nexpect result 0\n"), "");
    rest.begin();
    EXPECT_EQ(play("expect rows List_GRD 3\nkey - Esc\n"),
              "t.steps:2: expected Escape to be taken, found it resting behind one that has closed a message or a "
              "notice");
    rest.setClock({});
}

TEST(StepPlayer, leavesScreensOpenAtTheEndClosedWithoutSaving) {
    EXPECT_EQ(play("row List_GRD 0\nclick Edit_BTN\ntype Name_EDT x\n"), "");
}

// A screen whose only button shows a message when its click is long done.
std::string playLateMessage(const MessageRequest& message) {
    StepPlayer player(parseSteps("click Late_BTN\n", "t.steps"), "t.steps");
    QDialog screen;
    screen.setObjectName("Late_FRM");
    QPushButton button("Late", &screen);
    button.setObjectName("Late_BTN");
    QObject::connect(&button, &QPushButton::clicked, &screen,
                     [&] { QTimer::singleShot(120, &screen, [&] { player.messages().show(message); }); });
    player.start();
    screen.exec();
    player.returned({});
    player.finish();
    return player.failure().value_or("");
}

TEST(StepPlayer, waitsForWhatTheLastClickBringsLater) {
    EXPECT_EQ(playLateMessage({.operation = "MsgLate"}), "t.steps:1: expected no message, found MsgLate");
}

TEST(StepPlayer, aQuestionThatTheLastClickBringsLaterFails) {
    EXPECT_EQ(playLateMessage({.operation = "MsgLate", .buttons = {TMessageButton::Yes, TMessageButton::No}}),
              "t.steps:1: expected an answer to MsgLate (yes, no), found none");
}

// A grid that exports as those of the module do: it asks for a file's name, and takes its time to write the file.
class ExportingList : public QDialog {
public:
    explicit ExportingList(MessageService& messages) {
        setObjectName("List_FRM");
        grid_.setObjectName("List_GRD");
        export_.setObjectName("GridCsv_ACT");
        grid_.addAction(&export_);
        (new QVBoxLayout(this))->addWidget(&grid_);
        connect(&export_, &QAction::triggered, this, [this, &messages] {
            QFileDialog dialog(this);
            dialog.setOption(QFileDialog::DontUseNativeDialog);
            dialog.setAcceptMode(QFileDialog::AcceptSave);
            if (dialog.exec() != QDialog::Accepted) return;
            QEventLoop writing;
            QTimer::singleShot(400, &writing, &QEventLoop::quit);
            writing.exec();
            QFile file(dialog.selectedFiles().constFirst());
            if (!file.open(QIODevice::WriteOnly)) {
                messages.show({.operation = "MsgNotWritten"});
                return;
            }
            file.write("a,1\r\n");
        });
    }

private:
    QTableView grid_;
    QAction export_;
};

// Plays on a screen that is made with the player's messages, with that much patience for each step.
template <typename Screen>
std::string playOn(const std::string& text, std::chrono::milliseconds patience) {
    StepPlayer player(parseSteps(text, "t.steps"), "t.steps", {.step = patience});
    player.start();
    {
        Screen screen(player.messages());
        screen.exec();
    }
    player.returned({});
    player.finish();
    return player.failure().value_or("");
}

std::string playExport(const std::string& text) {
    return playOn<ExportingList>(text, std::chrono::milliseconds(300));
}

TEST(StepPlayer, waitsForAnExportAsTheLastStep) {
    const QTemporaryDir folder;
    const QString file = folder.filePath("deep/list.csv");
    EXPECT_EQ(playExport("export List_GRD csv " + file.toStdString() + "\n"), "");
    QFile written(file);
    ASSERT_TRUE(written.open(QIODevice::ReadOnly));
    EXPECT_EQ(written.readAll(), "a,1\r\n");
}

TEST(StepPlayer, anExportThatCannotBeWrittenFailsAsTheLastStep) {
    const QTemporaryDir folder;
    const std::string place = folder.path().toStdString();
    EXPECT_EQ(playExport("export List_GRD csv " + place + "\n"),
              "t.steps:1: expected the name of a file, found the folder " + place);
    QFile file(folder.filePath("file"));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    EXPECT_EQ(
        playExport("export List_GRD csv " + place + "/file/list.csv\n"),
        "t.steps:1: expected to write the file " + place + "/file/list.csv, found that its folder cannot be made");
    // A link to nowhere: its folder is there, and nobody can write it, not even an administrator.
    ASSERT_TRUE(QFile::link(folder.filePath("no/where"), folder.filePath("link.csv")));
    EXPECT_EQ(playExport("export List_GRD csv " + place + "/link.csv\n"),
              "t.steps:1: expected no message, found MsgNotWritten");
}

#ifndef _WIN32
TEST(StepPlayer, aPictureThatFindsNoRoomIsOneLine) {
    const QTemporaryDir folder;
    const std::string file = folder.filePath("list.png").toStdString();
    const test::SmallFiles full(16);
    EXPECT_EQ(play("shot " + file + "\n"),
              "t.steps:1: expected to write the picture " + file + ", found File too large");
    EXPECT_TRUE(QDir(folder.path()).isEmpty(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot));
}
#endif

TEST(StepPlayer, statementsAreClaimedInOrder) {
    std::vector<SentStatement> sent(3);
    sent[0].text = "select 1";
    sent[1].text = "update a\nset b";
    sent[2].procedure = "GetNext";
    EXPECT_EQ(play("expect statement update a\\nset b\nexpect statement GetNext\n", sent), "");
    EXPECT_EQ(play("expect statement GetNext\nexpect statement select 1\n", sent),
              "t.steps:2: expected the statement\n  select 1\n, found no further statement");
}

TEST(StepPlayer, statementsThatMustNotBeSent) {
    std::vector<SentStatement> sent(2);
    sent[0].text = "update a set b = 1";
    sent[1].text = "select 1";
    EXPECT_EQ(play("expect statement select 1\nexpect unsent update\nexpect unsent select\n", sent), "");
    EXPECT_EQ(play("expect unsent set\nexpect unsent update a\n", sent),
              "t.steps:2: expected no statement update a..., found update a set b = 1");
}

TEST(StepPlayer, whatOnlyShowsItsTextTakesNone) {
    const std::string steps = "row List_GRD 1\nclick Edit_BTN\n";
    EXPECT_EQ(play(steps + "type Code_EDT 5\n"), "t.steps:3: expected Code_EDT to take text, found it read-only");
    EXPECT_EQ(play(steps + "clear Code_EDT\n"), "t.steps:3: expected Code_EDT to take text, found it read-only");
    EXPECT_EQ(play(steps + "key Code_EDT Tab\nexpect text Code_EDT 0\n"), "");
}

TEST(StepPlayer, takesPictures) {
    const QTemporaryDir folder;
    const QString file = folder.filePath("deep/list.png");
    EXPECT_EQ(play("shot " + file.toStdString() + "\n"), "");
    EXPECT_FALSE(QImage(file).isNull());
}

// A button that opens a menu of two items over a green screen.
std::string playOnMenu(const std::string& steps) {
    StepPlayer player(parseSteps(steps, "t.steps"), "t.steps",
                      {.step = std::chrono::milliseconds(300), .standstill = std::chrono::seconds(30)});
    QDialog screen;
    screen.setObjectName("Menu_FRM");
    screen.setStyleSheet("QDialog { background: #00ff00; } QMenu { background: #ff0000; border: 0; }");
    screen.resize(300, 200);
    QMenu menu(&screen);
    for (const char* name : {"Copy_ACT", "Paste_ACT"})
        menu.addAction(name)->setObjectName(name);
    QPushButton button("Menu", &screen);
    button.setObjectName("Menu_BTN");
    QObject::connect(&button, &QPushButton::clicked, &screen, [&] { menu.popup(screen.mapToGlobal(QPoint(40, 60))); });
    player.start();
    screen.exec();
    player.returned({});
    player.finish();
    return player.failure().value_or("");
}

TEST(StepPlayer, anOpenMenuIsPartOfThePicture) {
    const QTemporaryDir folder;
    const QString file = folder.filePath("menu.png");
    EXPECT_EQ(playOnMenu("shot " + folder.filePath("closed.png").toStdString() + "\nclick Menu_BTN\nshot " +
                         file.toStdString() + "\n"),
              "");
    EXPECT_EQ(QImage(folder.filePath("closed.png")).pixelColor(41, 61), QColor(0, 255, 0));
    const QImage picture(file);
    EXPECT_EQ(picture.pixelColor(41, 61), QColor(255, 0, 0));
    EXPECT_EQ(picture.pixelColor(20, 150), QColor(0, 255, 0));
}

TEST(StepPlayer, anItemThatTheOpenMenuDoesNotHaveListsThoseItHas) {
    EXPECT_EQ(playOnMenu("click Menu_BTN\nclick Cut_ACT\n"),
              "t.steps:2: expected an item Cut_ACT of the open menu, found the items Copy_ACT, Paste_ACT");
}

TEST(StepPlayer, picturesAreOfAScreenAtRest) {
    const QTemporaryDir folder;
    const QString file = folder.filePath("late.png");
    StepPlayer player(parseSteps("click Grow_BTN\nshot " + file.toStdString() + "\n", "t.steps"), "t.steps");
    QDialog screen;
    screen.setObjectName("Late_FRM");
    screen.setStyleSheet("QDialog { background: #0000ff; }");
    screen.resize(200, 100);
    QPushButton button("Grow", &screen);
    button.setObjectName("Grow_BTN");
    QLabel bar(&screen);
    bar.setStyleSheet("background: #ff0000;");
    bar.setGeometry(0, 90, 10, 10);
    // In steps of its own, as lists fill and lay themselves out.
    QTimer growing;
    growing.setInterval(0);
    QObject::connect(&growing, &QTimer::timeout, &screen, [&] {
        bar.resize(bar.width() + 1, 10);
        if (bar.width() >= 150) growing.stop();
    });
    QObject::connect(&button, &QPushButton::clicked, &growing, [&] { growing.start(); });
    player.start();
    screen.exec();
    player.returned({});
    player.finish();
    EXPECT_EQ(player.failure().value_or(""), "");
    EXPECT_EQ(QImage(file).pixelColor(145, 95), QColor(255, 0, 0));
}

TEST(StepPlayer, listsTheNamesOfTheScreen) {
    ::testing::internal::CaptureStderr();
    EXPECT_EQ(play("names\n"), "");
    EXPECT_THAT(::testing::internal::GetCapturedStderr(),
                ::testing::HasSubstr("List_FRM\n  Tab_TBC\n  Type_CMB \"خرید\"\n  List_GRD\n  Edit_BTN \"Edit\"\n"
                                     "  New_BTN (disabled)\n  Delete_BTN (hidden)\n"));
}

TEST(StepPlayer, readsTextsWithMarkupAsTheyRead) {
    QDialog screen;
    screen.setObjectName("Marked_FRM");
    QLabel label(QStringLiteral("<b>وزن</b> &amp; <span style=\"color:red\">۱۲</span>"), &screen);
    label.setObjectName("Marked_LBL");
    QLabel plain(QStringLiteral("<b>x</b>"), &screen);
    plain.setTextFormat(Qt::PlainText);
    plain.setObjectName("Plain_LBL");
    StepPlayer player(parseSteps("expect text Marked_LBL وزن & 12\nexpect text Plain_LBL <b>x</b>\nnames\n", "t.steps"),
                      "t.steps", {.step = std::chrono::milliseconds(300), .standstill = std::chrono::seconds(30)});
    ::testing::internal::CaptureStderr();
    player.start();
    screen.exec();
    player.returned({});
    player.finish();
    EXPECT_EQ(player.failure().value_or(""), "");
    EXPECT_THAT(::testing::internal::GetCapturedStderr(), ::testing::HasSubstr("Marked_LBL \"وزن & ۱۲\"\n"));
}

TEST(StepPlayer, whatComesBeforeTheFirstStepIsToldAtItsLine) {
    StepPlayer player(parseSteps("# nothing yet\n\nexpect result 0\n", "t.steps"), "t.steps",
                      {.step = std::chrono::milliseconds(300), .standstill = std::chrono::seconds(30)});
    player.messages().show({.operation = "Told"});
    player.start();
    player.returned(0);
    player.finish();
    EXPECT_EQ(player.failure().value_or(""), "t.steps:3: expected no message, found Told");
}

TEST(StepPlayer, filesAreLookedInto) {
    const QTemporaryDir folder;
    const auto write = [&](const char* name, const char* text) {
        QFile file(folder.filePath(name));
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(text);
        return file.fileName().toStdString();
    };
    const std::string one = write("one.csv", "a,1\r\nb,2\r\n");
    const std::string same = write("same.csv", "a,1\r\nb,2\r\n");
    const std::string other = write("other.csv", "a,1\r\nb,3\r\n");
    const std::string none = write("none.csv", "");
    EXPECT_EQ(play("expect file " + one + "\nexpect file " + one + " " + same + "\n"), "");
    EXPECT_EQ(play("expect file " + one + " " + other + "\n"),
              "t.steps:1: expected \"b,3\" in line 2 of " + one + ", found \"b,2\"");
    EXPECT_EQ(play("expect file " + none + "\n"),
              "t.steps:1: expected something in the file " + none + ", found nothing");
    EXPECT_EQ(play("expect file gone.csv\n"), "t.steps:1: expected the file gone.csv, found none that can be read");
    EXPECT_EQ(play("export List_GRD csv " + one + "\n"),
              "t.steps:1: expected List_GRD to offer an export to csv, found none");
}

TEST(StepPlayer, slowScreensAreWaitedFor) {
    // The editor is looked for before the event that opens it has been handled.
    StepPlayer player(parseSteps("expect screen Late_FRM\n", "t.steps"), "t.steps");
    QDialog list;
    list.setObjectName("List_FRM");
    QDialog late;
    late.setObjectName("Late_FRM");
    QTimer::singleShot(200, &late, [&] { late.exec(); });
    player.start();
    list.exec();
    player.returned({});
    player.finish();
    EXPECT_EQ(player.failure().value_or(""), "");
}

// A screen with a menu and with a frame of a choice and an input, as the module's screens have them.
class MenuScreen : public QDialog {
public:
    explicit MenuScreen(MessageService& messages) {
        setObjectName("Menu_FRM");
        name_.setObjectName("Name_EDT");
        more_.setObjectName("More_BTN");
        more_.setPopupMode(QToolButton::InstantPopup);
        more_.setFocusPolicy(Qt::StrongFocus);
        more_.setMenu(&menu_);
        QAction* tell = menu_.addAction("Tell");
        tell->setObjectName("Tell_ACT");
        connect(tell, &QAction::triggered, this, [&messages] { messages.show({.operation = "Told"}); });
        QAction* enter = menu_.addAction("Enter");
        enter->setObjectName("Enter_ACT");
        connect(enter, &QAction::triggered, this, [this] { name_.setFocus(); });
        frame_.setObjectName("Search_FRM");
        fields_.setObjectName("Search_FRM_CMB");
        fields_.addItems({"کد", "عنوان"});
        input_.setObjectName("Search_FRM_EDT");
        auto* inside = new QHBoxLayout(&frame_);
        inside->addWidget(&fields_);
        inside->addWidget(&input_);
        exit_.setObjectName("Exit_BTN");
        auto* layout = new QVBoxLayout(this);
        for (QWidget* widget : std::initializer_list<QWidget*>{&name_, &more_, &frame_, &exit_})
            layout->addWidget(widget);
        setTabOrder(&name_, &more_);
        setTabOrder(&more_, &fields_);
        setTabOrder(&fields_, &input_);
        setTabOrder(&input_, &exit_);
    }

private:
    QLineEdit name_;
    QMenu menu_;
    QToolButton more_;
    QWidget frame_;
    QComboBox fields_;
    QLineEdit input_;
    QPushButton exit_;
};

std::string playMenu(const std::string& text) {
    return playOn<MenuScreen>(text, std::chrono::milliseconds(500));
}

TEST(StepPlayer, theFocusIsWhereItWasWhenAMenuHasClosed) {
    EXPECT_EQ(playMenu("click More_BTN\nkey - Esc\nexpect screen Menu_FRM\nexpect focused More_BTN\n"), "");
    EXPECT_EQ(playMenu("click More_BTN\nclick Tell_ACT\nexpect message Told\nexpect focused More_BTN\n"), "");
    EXPECT_EQ(playMenu("click More_BTN\nclick Enter_ACT\nexpect focused Name_EDT\n"), "");
    EXPECT_EQ(playMenu("click More_BTN\nkey - Esc\nexpect focused Name_EDT\n"),
              "t.steps:3: expected Name_EDT to be focused, found the focus on More_BTN");
}

// A button made of parts, of which the one that takes the keys has no name.
class ComposedScreen : public QDialog {
public:
    explicit ComposedScreen(MessageService&) : part_("Save", &save_), name_(this) {
        setObjectName("Composed_FRM");
        save_.setObjectName("Save_BTN");
        name_.setObjectName("Name_EDT");
        auto* layout = new QVBoxLayout(this);
        layout->addWidget(&save_);
        layout->addWidget(&name_);
        part_.setFocus();
    }

private:
    QWidget save_;
    QPushButton part_;
    QLineEdit name_;
};

TEST(StepPlayer, theFocusOnANamelessPartIsToldByTheNameOfTheWhole) {
    EXPECT_EQ(playOn<ComposedScreen>("expect focused Name_EDT\n", std::chrono::milliseconds(300)),
              "t.steps:1: expected Name_EDT to be focused, found the focus on Save_BTN");
}

TEST(StepPlayer, aKeyBehindAMenuGoesToWhatHasTheFocus) {
    EXPECT_EQ(playMenu("click More_BTN\nkey - Esc\nkey - Tab\nexpect focused Search_FRM_CMB\n"), "");
    EXPECT_EQ(playMenu("type Name_EDT ab\nclick More_BTN\nclick Enter_ACT\nkey - End\nkey - Backspace\nkey - "
                       "Tab\nexpect text Name_EDT a\n"
                       "expect focused More_BTN\n"),
              "");
    EXPECT_EQ(playMenu("click More_BTN\nkey - Esc\nkey - Shift+Tab\nclick More_BTN\nkey - Down\nkey - Enter\n"
                       "expect message Told\ntype Name_EDT x\nexpect text Name_EDT x\nexpect focused Name_EDT\n"),
              "");
}

TEST(StepPlayer, keysGoToTheListThatIsOpen) {
    // Escape closes the list of a combo box and nothing else; F4 opens it.
    EXPECT_EQ(play("key Type_CMB F4\nkey - Esc\nexpect screen List_FRM\nexpect text Type_CMB خرید\n"), "");
    EXPECT_EQ(play("click Type_CMB\nkey - Down\nkey - Esc\nexpect screen List_FRM\nexpect text Type_CMB خرید\n"), "");
    EXPECT_EQ(play("click Type_CMB\nkey - Down\nkey - Enter\nexpect text Type_CMB فروش\n"), "");
    // Named by its combo box it is the same list.
    EXPECT_EQ(play("click Type_CMB\nkey Type_CMB Down\nkey Type_CMB Down\nkey Type_CMB Enter\n"
                   "expect text Type_CMB هر دو\nkey - Esc\nexpect result 0\n"),
              "");
}

TEST(StepPlayer, textForAFrameGoesIntoItsInput) {
    EXPECT_EQ(playMenu("choose Search_FRM_CMB 1\nexpect focused Search_FRM_CMB\ntype Search_FRM همکار\n"
                       "expect text Search_FRM_EDT همکار\nexpect focused Search_FRM_EDT\n"),
              "");
    EXPECT_EQ(playMenu("type Search_FRM x\nchoose Search_FRM 1\nclear Search_FRM\nexpect text Search_FRM_EDT\n"), "");
    EXPECT_EQ(playMenu("choose Search_FRM 1\ntype Search_FRM_CMB x\n"),
              "t.steps:2: expected Search_FRM_CMB to take text, found another kind of control");
}

struct Failing {
    std::string name;
    std::string steps;
    std::string failure;
};

class FailingSteps : public ::testing::TestWithParam<Failing> {};

TEST_P(FailingSteps, nameLineExpectedAndFound) {
    EXPECT_EQ(play(GetParam().steps), "t.steps:" + GetParam().failure);
}

INSTANTIATE_TEST_SUITE_P(
    Table, FailingSteps,
    ::testing::Values(
        Failing{"wrongScreen", "expect screen Editor_FRM", "1: expected the screen Editor_FRM, found List_FRM"},
        Failing{"wrongCount", "\nexpect rows List_GRD 4", "2: expected 4 rows in List_GRD, found 3"},
        Failing{"wrongCell", "expect cell List_GRD 0 1 دو",
                "1: expected \"دو\" in row 0, column 1 of List_GRD, found \"یک\""},
        Failing{"noSuchRow", "row List_GRD 3", "1: expected row 3, found 3 rows"},
        Failing{"noSuchColumn", "expect cell List_GRD 0 2 x", "1: expected column 2, found 2 columns"},
        Failing{"noSuchPersianColumn", "expect cell List_GRD 0 ۲ x", "1: expected column ۲, found 2 columns"},
        Failing{"noSuchTitle", "expect cell List_GRD 0 نام x", "1: expected column نام, found the columns کد, عنوان"},
        Failing{"noSuchObject", "click Save_BTN",
                "1: expected an object Save_BTN on List_FRM, found none of that name; there are Tab_TBC, Type_CMB, "
                "List_GRD, Edit_BTN, New_BTN, Delete_BTN"},
        Failing{"clickOnDisabled", "click New_BTN", "1: expected New_BTN to be enabled, found it disabled"},
        Failing{"clickOnHidden", "click Delete_BTN", "1: expected Delete_BTN to be visible, found it hidden"},
        Failing{"stateIsOther", "expect enabled New_BTN", "1: expected New_BTN to be enabled, found it not enabled"},
        Failing{"typeIntoButton", "type Edit_BTN x",
                "1: expected Edit_BTN to take text, found another kind of control"},
        Failing{"noSuchTab", "tab Tab_TBC 2", "1: expected tab 2, found 2 tabs"},
        Failing{"noSuchItem", "choose Type_CMB 3", "1: expected item 3, found 3 items"},
        Failing{"noMessage", "expect message MsgDeleteRow", "1: expected message MsgDeleteRow, found none"},
        Failing{"otherMessage", "tab Tab_TBC 1\nexpect message TabChanged 5",
                "2: expected message TabChanged (5), found TabChanged (1)"},
        Failing{"unclaimedMessage", "tab Tab_TBC 1", "1: expected no message, found TabChanged (1)"},
        Failing{"noStatement", "expect statement x", "1: expected the statement\n  x\n, found no further statement"},
        Failing{"unansweredQuestion",
                "row List_GRD 0\nclick Edit_BTN\ntype Name_EDT x\nkey - Esc\nclick Save_BTN\nanswer yes",
                "4: expected an answer to MsgUnsavedChanges (yes, no, cancel), found none"},
        Failing{"answerThatDoesNotFit", "row List_GRD 0\nclick Edit_BTN\ntype Name_EDT x\nkey - Esc\nanswer ok",
                "4: expected an answer to MsgUnsavedChanges (yes, no, cancel), found ok"},
        Failing{"answerNobodyAskedFor", "answer yes\nexpect rows List_GRD 3",
                "1: expected a question for the answer yes, found none"},
        Failing{"wrongResult", "key - Esc\nexpect result 3", "2: expected the result 3, found 0"},
        Failing{"resultTooEarly", "expect result 0", "1: expected the result 0, found the call still running"}),
    [](const auto& test) { return test.param.name; });

}  // namespace
}  // namespace basalt::host
