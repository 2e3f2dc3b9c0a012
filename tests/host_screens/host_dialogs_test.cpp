// Dialogs that the module asks the host for: print settings and the picker of persons and goods.
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QRadioButton>
#include <QTableView>
#include <QTreeView>

#include "host/screens/column_list.h"
#include "host/screens/save_file_dialog.h"
#include "host/screens/theme.h"
#include "host/services/entity_store.h"
#include "host/services/sql_access.h"
#include "package/screens/print_setting.h"
#include "tests/host_screens/demo_screens.h"

namespace basalt::host {
namespace {

class HostDialogs : public DemoScreens {
protected:
    HostDialogs() : DemoScreens(true) {}

    // Acts in the dialog that the next call shows.
    static void inDialog(const char* objectName, const std::function<void(QDialog&)>& act) {
        QTimer::singleShot(0, qApp, [objectName, act] {
            auto* dialog = qobject_cast<QDialog*>(QApplication::activeModalWidget());
            ASSERT_NE(dialog, nullptr);
            ASSERT_EQ(dialog->objectName(), QString::fromLatin1(objectName));
            ASSERT_TRUE(QTest::qWaitForWindowActive(dialog));
            act(*dialog);
            if (dialog->isVisible()) dialog->reject();
        });
    }
    static void press(QDialog& dialog, const char* button) {
        QTest::mouseClick(control<QPushButton>(dialog, button), Qt::LeftButton);
    }
};

TEST(FileDialogs, foldersReadFromTheLeftAndColumnsHaveRoom) {
    applyTheme(*qApp);
    SaveFileDialog dialog(nullptr, QStringLiteral("خروجی"), QStringLiteral("list"), QStringLiteral("csv"));
    dialog.show();
    EXPECT_EQ(dialog.findChild<QComboBox*>("lookInCombo")->layoutDirection(), Qt::LeftToRight);
    const auto& files = *dialog.findChild<QTreeView*>("treeView");
    EXPECT_GT(files.columnWidth(1), files.fontMetrics().horizontalAdvance(QStringLiteral("۱۰۲۳ کیلوبایت")));
    EXPECT_GT(files.columnWidth(3), files.fontMetrics().horizontalAdvance(QStringLiteral("۱۴۰۵/۰۸/۳۰  ۱۲:۳۰")));
    const auto& side = *dialog.findChild<QListView*>("sidebar");
    EXPECT_GE(side.viewport()->width(), side.sizeHintForColumn(0));
}

// Where the ink of a folder box begins and ends, beside its frame and its arrow.
TEST(FileDialogs, theWholePathOfAFolderIsSeen) {
    applyTheme(*qApp);
    SaveFileDialog dialog(nullptr, QStringLiteral("خروجی"), QStringLiteral("list"), QStringLiteral("csv"));
    dialog.setDirectory(QStringLiteral("/usr"));
    dialog.show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&dialog));
    auto& box = *dialog.findChild<QComboBox*>("lookInCombo");
    const QImage picture = box.grab().toImage();
    const int middle = picture.height() / 2;
    int inked = 0;
    for (int x = 4; x < picture.width() - 30; ++x) {  // between the frame and the arrow
        bool ink = false;
        for (int y = middle - 7; y <= middle + 7; ++y)
            ink = ink || qGray(picture.pixel(x, y)) < 128;
        if (ink && inked == 0) inked = x;
    }
    EXPECT_GT(inked, 0);
    EXPECT_LT(inked, box.fontMetrics().horizontalAdvance(QStringLiteral("/usr"))) << "it stands on the left";
}

// Titles of prints are free: they may look like folders, or like names that one system or another does not take.
TEST(FileDialogs, aTitleIsMadeAFilesName) {
    const auto name = [](const QString& title) { return fileNameFor(title).toStdString(); };
    EXPECT_EQ(name(QStringLiteral("لیست قیمت‌ها – فروش")), "لیست قیمت‌ها – فروش");
    EXPECT_EQ(name(QStringLiteral("قیمت ۱۴۰۴/۰۹/۰۱: \"x\" ../..")), "قیمت ۱۴۰۴-۰۹-۰۱- x");
    EXPECT_EQ(name(QStringLiteral("../../etc/passwd")), "etc-passwd");
    EXPECT_EQ(name(QStringLiteral("C:\\a\\b|c")), "C--a-b-c");
    EXPECT_EQ(name(QStringLiteral("a*b?c<d>e\tf\ng")), "a b c d e f g");
    EXPECT_EQ(name(QStringLiteral("فهرست \u2068A\u2069\u200F")), "فهرست A");
    EXPECT_EQ(name(QStringLiteral(".hidden. ")), "hidden");
    for (const char* empty : {"", " ", "..", "/", "./\\:", "\"?\""})
        EXPECT_EQ(name(QString::fromLatin1(empty)), "فهرست") << empty;
    EXPECT_EQ(name(QString(300, QChar(u'م'))), QString(120, QChar(u'م')).toStdString());
    EXPECT_EQ(name(QString::fromUtf8("\U0001F600").repeated(100)),
              QString::fromUtf8("\U0001F600").repeated(60).toStdString());

    for (const char* end : {". .", " ", "\u00A0", "..", " . "})
        EXPECT_EQ(name(QStringLiteral("x") + QString::fromUtf8(end)), "x") << '"' << end << '"';

    SaveFileDialog dialog(nullptr, QStringLiteral("خروجی"), QStringLiteral("قیمت ۱۴۰۴/۰۹"), QStringLiteral("pdf"));
    EXPECT_EQ(dialog.findChild<QLineEdit*>("fileNameEdit")->text().toStdString(), "قیمت ۱۴۰۴-۰۹.pdf");
}

// Under such a name Windows writes to a device, be there a suffix or not.
TEST(FileDialogs, aTitleIsNoDevice) {
    const auto name = [](const QString& title) { return fileNameFor(title).toStdString(); };
    for (const char* device : {"CON", "con", "Prn", "AUX", "nul", "COM1", "com9", "LPT1", "lPt9", "COM\u00B9",
                               "LPT\u00B3", "CONIN$", "conout$", "NUL.2024", "con.a.b", "aux .x"})
        EXPECT_EQ(name(QString::fromUtf8(device)), std::string("فهرست ") + device);
    EXPECT_EQ(name(QStringLiteral("  ..NUL. ")), "فهرست NUL");
    EXPECT_EQ(name(QStringLiteral("nul\u200F:")), "فهرست nul");
    EXPECT_EQ(name(QStringLiteral("prn") + QString(300, u'/') + QStringLiteral("x")), "فهرست prn");
    const std::string longest = name(QStringLiteral("COM1.") + QString(300, u'x'));
    EXPECT_EQ(longest, "فهرست COM1." + std::string(224, 'x'));
    for (const char* other : {"CONSOLE", "COM", "COM10", "COMA", "LPT", "NULL", "x.CON", "CON x", "AUX-1", "1CON"})
        EXPECT_EQ(name(QString::fromLatin1(other)), other);
}

class PrintSettings : public HostDialogs {
protected:
    PrintSettings() {
        execute(*session, "DELETE FROM PrintsSettings");
        request.Columns = {{.FieldName = "F1", .Title = "مصرف کننده"},
                           {.FieldName = "F2", .Title = "همکار", .Visible = false},
                           {.FieldName = "ConsumerPrice", .Title = "قیمت مصرف کننده", .SettingName = "F11"}};
    }
    [[nodiscard]] static std::string shown(const TPrintSetting& setting) {
        std::string text;
        for (const TPrintColumn& column : setting.Columns)
            text += column.FieldName + (column.Visible ? "+ " : "- ");
        return text;
    }
    // What the dialog would start from now.
    [[nodiscard]] TPrintSetting started() {
        TPrintSetting setting;
        inDialog("PrintSetting_FRM", [](QDialog& dialog) { press(dialog, "Ok_BTN"); });
        EXPECT_TRUE(PrintSetting(request, setting));
        return setting;
    }

    TPrintSettingRequest request{.ReportName = "CostReport", .Title = "لیست قیمت ها"};
};

TEST_F(PrintSettings, startFromTheRequest) {
    const TPrintSetting setting = started();
    EXPECT_EQ(setting.Title, "لیست قیمت ها");
    EXPECT_EQ(shown(setting), "F1+ F2- ConsumerPrice+ ");
    EXPECT_EQ(setting.Paper, TPrintPaper::A4);
    EXPECT_EQ(setting.Orientation, TPrintOrientation::Portrait);
}

TEST_F(PrintSettings, keepWhatTheUserChoseForTheReport) {
    TPrintSetting setting;
    inDialog("PrintSetting_FRM", [](QDialog& dialog) {
        auto* title = control<QLineEdit>(dialog, "PrintTitle_EDT");
        title->selectAll();
        type(title, QStringLiteral("قیمت‌های پاییز"));
        control<QComboBox>(dialog, "Paper_CMB")->setCurrentText(QStringLiteral("A3"));
        QTest::mouseClick(control<QRadioButton>(dialog, "Landscape_RDB"), Qt::LeftButton, {}, QPoint(8, 8));
        auto* columns = control<QListWidget>(dialog, "Columns_LST");
        columns->item(0)->setCheckState(Qt::Unchecked);
        columns->item(1)->setCheckState(Qt::Checked);
        columns->setCurrentRow(2);
        press(dialog, "Up_BTN");
        press(dialog, "Ok_BTN");
    });
    ASSERT_TRUE(PrintSetting(request, setting));
    EXPECT_EQ(setting.Title, "قیمت‌های پاییز");
    EXPECT_EQ(shown(setting), "F1- ConsumerPrice+ F2+ ");
    EXPECT_EQ(setting.Paper, TPrintPaper::A3);
    EXPECT_EQ(setting.Orientation, TPrintOrientation::Landscape);
    EXPECT_EQ(one("SELECT COUNT(*) FROM PrintsSettings WHERE PartName = 'CostReport'"), "3");
    EXPECT_EQ(one("SELECT Title FROM PrintsSettings WHERE Comment = 'F11' AND Visible = 1"), "قیمت مصرف کننده");
    EXPECT_EQ(one("SELECT Title FROM PrintsSettings WHERE Comment = 'F1' AND Visible = 0"), "مصرف کننده");

    const TPrintSetting again = started();
    EXPECT_EQ(again.Title, setting.Title);
    EXPECT_EQ(shown(again), shown(setting));
    EXPECT_EQ(again.Paper, setting.Paper);
    EXPECT_EQ(again.Orientation, setting.Orientation);
    EXPECT_EQ(one("SELECT COUNT(*) FROM PrintsSettings WHERE PartName = 'CostReport'"), "3");

    // Another user has a title, an order and paper of their own.
    host.signInAs(2);
    const TPrintSetting others = started();
    EXPECT_EQ(others.Title, "لیست قیمت ها");
    EXPECT_EQ(others.Paper, TPrintPaper::A4);
}

// As while another program writes to the database for long.
TEST_F(PrintSettings, printAlsoWhatCannotBeKept) {
    passing.onBegin = [] { throw DatabaseError(ErrorCategory::Busy, "HY000", 1222, "locked"); };
    TPrintSetting setting;
    inDialog("PrintSetting_FRM", [](QDialog& dialog) {
        control<QListWidget>(dialog, "Columns_LST")->item(0)->setCheckState(Qt::Unchecked);
        press(dialog, "Ok_BTN");
    });
    EXPECT_TRUE(PrintSetting(request, setting));
    EXPECT_EQ(shown(setting), "F1- F2- ConsumerPrice+ ");
    passing.onBegin = {};
    EXPECT_EQ(shown(started()), "F1+ F2- ConsumerPrice+ ");
}

TEST_F(PrintSettings, cancelledKeepNothingAndChangeNothing) {
    TPrintSetting setting{.Title = "پیش از آن"};
    inDialog("PrintSetting_FRM", [](QDialog& dialog) {
        control<QListWidget>(dialog, "Columns_LST")->item(0)->setCheckState(Qt::Unchecked);
        QTest::keyClick(&dialog, Qt::Key_Escape);
    });
    EXPECT_FALSE(PrintSetting(request, setting));
    EXPECT_EQ(setting.Title, "پیش از آن");
    EXPECT_TRUE(setting.Columns.empty());
    EXPECT_EQ(one("SELECT COUNT(*) FROM PrintsSettings"), "0");
    EXPECT_EQ(one("SELECT COUNT(*) FROM HostFormOptions"), "0");
}

TEST_F(PrintSettings, startAnewForAColumnWhoseRowWasDeleted) {
    inDialog("PrintSetting_FRM", [](QDialog& dialog) {
        control<QListWidget>(dialog, "Columns_LST")->item(0)->setCheckState(Qt::Unchecked);
        press(dialog, "Ok_BTN");
    });
    TPrintSetting setting;
    ASSERT_TRUE(PrintSetting(request, setting));
    execute(*session, "DELETE FROM PrintsSettings WHERE Comment = 'F1'");
    EXPECT_EQ(shown(started()), "F1+ F2- ConsumerPrice+ ");
}

TEST_F(PrintSettings, haveTheReportsOrderUntilTheUserMakesAnother) {
    const auto moveUp = [this](int row) {
        inDialog("PrintSetting_FRM", [row](QDialog& dialog) {
            control<QListWidget>(dialog, "Columns_LST")->setCurrentRow(row);
            press(dialog, "Up_BTN");
            press(dialog, "Ok_BTN");
        });
        TPrintSetting setting;
        EXPECT_TRUE(PrintSetting(request, setting));
        return shown(setting);
    };
    static_cast<void>(started());
    std::swap(request.Columns[0], request.Columns[1]);
    EXPECT_EQ(shown(started()), "F2- F1+ ConsumerPrice+ ");
    EXPECT_EQ(moveUp(2), "F2- ConsumerPrice+ F1+ ");
    std::swap(request.Columns[0], request.Columns[1]);
    EXPECT_EQ(shown(started()), "F2- ConsumerPrice+ F1+ ");
    // Columns that are not asked for now have their place all the same, when the rest is left alone.
    const std::vector<TPrintColumn> all = std::exchange(request.Columns, {request.Columns[1], request.Columns[0]});
    EXPECT_EQ(shown(started()), "F2- F1+ ");
    request.Columns = all;
    EXPECT_EQ(shown(started()), "F2- ConsumerPrice+ F1+ ");
    // Put back, it is the report's again.
    EXPECT_EQ(moveUp(2), "F2- F1+ ConsumerPrice+ ");
    EXPECT_EQ(moveUp(1), "F1+ F2- ConsumerPrice+ ");
    std::swap(request.Columns[1], request.Columns[2]);
    EXPECT_EQ(shown(started()), "F1+ ConsumerPrice+ F2- ");
}

TEST_F(PrintSettings, putNewColumnsBehindTheOnesBeforeThem) {
    inDialog("PrintSetting_FRM", [](QDialog& dialog) {
        control<QListWidget>(dialog, "Columns_LST")->setCurrentRow(2);
        press(dialog, "Up_BTN");
        press(dialog, "Ok_BTN");
    });
    TPrintSetting setting;
    ASSERT_TRUE(PrintSetting(request, setting));
    request.Columns.insert(request.Columns.begin() + 1, {.FieldName = "F7", .Title = "سطح هفت"});
    request.Columns.insert(request.Columns.begin(), {.FieldName = "F8", .Title = "سطح هشت"});
    EXPECT_EQ(shown(started()), "F8+ F1+ F7+ ConsumerPrice+ F2- ");
}

TEST_F(PrintSettings, offerRegisteredColumnsByTheirPlaces) {
    request.Columns.clear();
    RegisterPrintColumn("CostReport", {.FieldName = "F1", .Title = "همکار", .Place = 5});
    RegisterPrintColumn("CostReport", {.FieldName = "F3", .Title = "عمده", .Place = 3});
    RegisterPrintColumn(
        "CostReport",
        {.FieldName = "ConsumerPrice", .Title = "مصرف کننده", .SettingName = "F11", .Index = "4", .Place = 4});
    EXPECT_EQ(shown(started()), "F3+ ConsumerPrice+ F1+ ");
}

TEST_F(PrintSettings, keepTheirPlaceForColumnsThatArePrintedAtOtherTimes) {
    inDialog("PrintSetting_FRM", [](QDialog& dialog) {
        auto* columns = control<QListWidget>(dialog, "Columns_LST");
        columns->item(2)->setCheckState(Qt::Unchecked);
        columns->setCurrentRow(2);
        press(dialog, "Up_BTN");
        press(dialog, "Ok_BTN");
    });
    TPrintSetting setting;
    ASSERT_TRUE(PrintSetting(request, setting));
    EXPECT_EQ(shown(setting), "F1+ ConsumerPrice- F2- ");
    const std::vector<TPrintColumn> all = std::exchange(request.Columns, {request.Columns[0], request.Columns[1]});
    inDialog("PrintSetting_FRM", [](QDialog& dialog) {
        auto* columns = control<QListWidget>(dialog, "Columns_LST");
        columns->setCurrentRow(1);
        press(dialog, "Up_BTN");
        press(dialog, "Ok_BTN");
    });
    ASSERT_TRUE(PrintSetting(request, setting));
    EXPECT_EQ(shown(setting), "F2- F1+ ");
    request.Columns = all;
    EXPECT_EQ(shown(started()), "F2- ConsumerPrice- F1+ ");
}

TEST_F(PrintSettings, anEmptiedTitleIsTheReportsOwn) {
    for (const char* title : {"", "   "}) {
        TPrintSetting setting;
        inDialog("PrintSetting_FRM", [title](QDialog& dialog) {
            auto* edit = control<QLineEdit>(dialog, "PrintTitle_EDT");
            edit->setText(QString::fromUtf8(title));
            EXPECT_EQ(edit->placeholderText().toStdString(), "لیست قیمت ها");
            press(dialog, "Ok_BTN");
        });
        ASSERT_TRUE(PrintSetting(request, setting));
        EXPECT_EQ(setting.Title, "لیست قیمت ها");
        inDialog("PrintSetting_FRM", [](QDialog& dialog) {
            EXPECT_EQ(control<QLineEdit>(dialog, "PrintTitle_EDT")->text().toStdString(), "لیست قیمت ها");
        });
        EXPECT_FALSE(PrintSetting(request, setting));
    }
    // One that was kept without any.
    execute(*session, "UPDATE HostFormOptions SET Options = REPLACE(Options, '{', '{\"title\":\"\",')");
    EXPECT_EQ(started().Title, "لیست قیمت ها");
}

TEST_F(PrintSettings, sayHowLongATitleMayBe) {
    TPrintSetting setting;
    inDialog("PrintSetting_FRM", [](QDialog& dialog) {
        auto* limit = control<QLabel>(dialog, "PrintTitle_Limit");
        EXPECT_FALSE(limit->isVisible());
        control<QLineEdit>(dialog, "PrintTitle_EDT")->setText(QString(150, QLatin1Char('a')));
        EXPECT_TRUE(limit->isVisible());
        EXPECT_EQ(limit->text().toStdString(), "عنوان حداکثر ۱۰۰ نویسه دارد.");
        press(dialog, "Ok_BTN");
    });
    ASSERT_TRUE(PrintSetting(request, setting));
    EXPECT_EQ(setting.Title, std::string(100, 'a'));
}

TEST_F(PrintSettings, areNotAcceptedWithoutAColumn) {
    inDialog("PrintSetting_FRM", [](QDialog& dialog) {
        auto* columns = control<QListWidget>(dialog, "Columns_LST");
        for (int row = 0; row < columns->count(); ++row)
            columns->item(row)->setCheckState(Qt::Unchecked);
        EXPECT_FALSE(control<QPushButton>(dialog, "Ok_BTN")->isEnabled());
    });
    TPrintSetting setting;
    EXPECT_FALSE(PrintSetting(request, setting));
}

TEST_F(PrintSettings, withoutANameAreAMistakeOfTheCaller) {
    TPrintSetting setting;
    request.ReportName.clear();
    EXPECT_THROW(static_cast<void>(PrintSetting(request, setting)), UsageError);
    EXPECT_THROW(RegisterPrintColumn("", {.FieldName = "F1", .Title = "همکار"}), UsageError);
    EXPECT_THROW(RegisterPrintColumn("CostReport", {.FieldName = "", .Title = "همکار"}), UsageError);
    EXPECT_THROW(ClearPrintColumns(""), UsageError);
}

TEST_F(PrintSettings, offerTheRegisteredColumns) {
    request.Columns.clear();
    RegisterPrintColumn("CostReport",
                        {.FieldName = "ConsumerPrice", .Title = "مصرف کننده", .SettingName = "F11", .Index = "13"});
    RegisterPrintColumn("CostReport", {.FieldName = "F1", .Title = "نام پیشین"});
    RegisterPrintColumn("CostReport", {.FieldName = "F2", .Title = "F2", .Visible = false, .Offered = false});
    RegisterPrintColumn("CostReport", {.FieldName = "F1", .Title = "همکار", .Visible = false});
    RegisterPrintColumn("AnotherReport", {.FieldName = "F3", .Title = "عمده"});
    const TPrintSetting setting = started();
    EXPECT_EQ(shown(setting), "F1- ConsumerPrice+ ");
    EXPECT_EQ(setting.Columns[0].Title, "همکار");
    // What was not offered has no row.
    EXPECT_EQ(one("SELECT COUNT(*) FROM PrintsSettings"), "2");
    EXPECT_EQ(one("SELECT Title FROM PrintsSettings WHERE Comment = 'F11'"), "مصرف کننده");
}

TEST_F(PrintSettings, withoutAnyColumnAskForTheRest) {
    request.Columns.clear();
    ClearPrintColumns("CostReport");
    TPrintSetting setting;
    inDialog("PrintSetting_FRM", [](QDialog& dialog) {
        EXPECT_FALSE(control<QListWidget>(dialog, "Columns_LST")->isVisible());
        EXPECT_TRUE(control<QPushButton>(dialog, "Ok_BTN")->isEnabled());
        QTest::mouseClick(control<QRadioButton>(dialog, "Landscape_RDB"), Qt::LeftButton, {}, QPoint(8, 8));
        press(dialog, "Ok_BTN");
    });
    ASSERT_TRUE(PrintSetting(request, setting));
    EXPECT_TRUE(setting.Columns.empty());
    EXPECT_EQ(setting.Orientation, TPrintOrientation::Landscape);
    EXPECT_EQ(one("SELECT COUNT(*) FROM PrintsSettings"), "0");
}

class EntityPickers : public HostDialogs {
protected:
    [[nodiscard]] static QTableView& list(QDialog& dialog) { return *control<QTableView>(dialog, "Entities_GRD"); }
    [[nodiscard]] static std::string cell(QDialog& dialog, int row, int column) {
        return list(dialog).model()->index(row, column).data().toString().toStdString();
    }
    static void toggle(QDialog& dialog, int row) {
        list(dialog).setCurrentIndex(list(dialog).model()->index(row, 0));
        QTest::keyClick(&list(dialog), Qt::Key_Space);
    }
};

TEST_F(EntityPickers, listGoodsAndGiveTheCodesInTheOrderOfPicking) {
    const std::string first = one("SELECT MIN(Code) FROM GoodInf");
    const std::string third =
        one("SELECT MIN(Code) FROM GoodInf WHERE Code > (SELECT MIN(Code) FROM GoodInf WHERE "
            "Code > (SELECT MIN(Code) FROM GoodInf))");
    inDialog("EntityPicker_FRM", [&](QDialog& dialog) {
        EXPECT_EQ(std::to_string(list(dialog).model()->rowCount()), one("SELECT COUNT(*) FROM GoodInf"));
        EXPECT_EQ(cell(dialog, 0, 1), one("SELECT Name FROM GoodInf WHERE Code = " + first));
        toggle(dialog, 2);
        toggle(dialog, 1);
        toggle(dialog, 0);
        toggle(dialog, 1);
        EXPECT_EQ(control<QLabel>(dialog, "Count_LBL")->text().toStdString(), "۲ مورد انتخاب شده است.");
        press(dialog, "Ok_BTN");
    });
    EXPECT_EQ(Select_Entity_Multible(spGoods, ""), third + "," + first + ",");
}

TEST_F(EntityPickers, searchNamesAndCodesAndKeepWhatWasPicked) {
    const std::string code = one("SELECT MAX(Code) FROM PerInf");
    const std::string name = one("SELECT FullName FROM PerInf WHERE Code = " + code);
    inDialog("EntityPicker_FRM", [&](QDialog& dialog) {
        auto* search = control<QLineEdit>(dialog, "Search_EDT");
        EXPECT_EQ(search->text(), QString::fromStdString(name)) << "the search starts with the caller's text";
        ASSERT_GE(list(dialog).model()->rowCount(), 1);
        EXPECT_EQ(cell(dialog, 0, 1), name);
        QTest::keyClick(search, Qt::Key_Return);
        EXPECT_TRUE(list(dialog).hasFocus());
        QTest::keyClick(&list(dialog), Qt::Key_Space);
        search->setText(QStringLiteral("هیچ‌کس به این نام نیست"));
        EXPECT_EQ(list(dialog).model()->rowCount(), 0);
        search->setText(QString::fromStdString(code));
        EXPECT_GE(list(dialog).model()->rowCount(), 1);
        QTest::keyClick(&list(dialog), Qt::Key_Return);
    });
    EXPECT_EQ(Select_Entity_Multible(spPersons, name), code + ",");
}

TEST_F(EntityPickers, cancelledOrWithoutAPickGiveNothing) {
    inDialog("EntityPicker_FRM", [&](QDialog& dialog) {
        toggle(dialog, 0);
        QTest::keyClick(&dialog, Qt::Key_Escape);
    });
    EXPECT_EQ(Select_Entity_Multible(spGoods, ""), "");
    inDialog("EntityPicker_FRM", [&](QDialog& dialog) { press(dialog, "Ok_BTN"); });
    EXPECT_EQ(Select_Entity_Multible(spGoods, ""), "");
}

TEST_F(EntityPickers, knowPersonsAndGoodsOnly) {
    EXPECT_THROW(static_cast<void>(Select_Entity_Multible(spTags, "")), UsageError);
}

TEST_F(EntityPickers, passOnThatTheTableIsMissing) {
    const auto bare = embedded::EmbeddedSession::open(":memory:", {.createIfMissing = true});
    EntityStore store(*bare);
    EXPECT_THROW(static_cast<void>(store.list(spPersons, "")), DatabaseError);
}

}  // namespace
}  // namespace basalt::host
