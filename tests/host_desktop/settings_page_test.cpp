#include "host/desktop/settings_page.h"

#include <gmock/gmock.h>

#include <QCheckBox>
#include <QComboBox>

#include "host/screens/theme.h"
#include "host/services/host_parts.h"
#include "tests/host_desktop/desktop_test.h"
#include "tests/support/temp_folder.h"

namespace basalt::host {
namespace {

using ::testing::ElementsAre;
using ::testing::SizeIs;

class Settings : public DesktopTest {
protected:
    Settings() {
        host.signInAs(1);
        page = std::make_unique<SettingsPage>(context());
        page->resize(900, 1100);
        showActive(*page);
        page->enter();
    }
    ~Settings() override { page.reset(); }
    [[nodiscard]] bool saveIsPossible() const { return control(*page, "SaveSettings_BTN").isEnabled(); }
    [[nodiscard]] TSettingRecord stored() {
        SettingsStore anew(*session);
        return anew.record();
    }

    std::unique_ptr<SettingsPage> page;
};

TEST_F(Settings, areStoredForEverybodyAndLogged) {
    EXPECT_FALSE(saveIsPossible());
    type(*page, "CompanyName_EDT", "فروشگاه آزمون");
    type(*page, "CurrencyDecimals_EDT", "۲");
    control<QComboBox>(*page, "NegativeType_CMB").setFocus();
    QTest::keyClick(&control(*page, "NegativeType_CMB"), Qt::Key_Down);
    click(*page, "DetailTwoUnits_CHK");
    QTest::keyClick(page.get(), Qt::Key_F3);
    EXPECT_EQ(shown(*page, "SettingsState_LBL"), "تنظیمات ذخیره شد.");
    EXPECT_FALSE(saveIsPossible());
    const TSettingRecord record = stored();
    EXPECT_EQ(record.CompanyName, "فروشگاه آزمون");
    EXPECT_EQ(record.CurrencyDecimals, 2);
    EXPECT_EQ(record.NegativeType, 2);
    EXPECT_TRUE(record.DetailTwoUnits);
    EXPECT_EQ(host.SettingRecord().CompanyName, "فروشگاه آزمون");
    const UserLogEntry entry = host.userLog().latest(1).at(0);
    EXPECT_EQ(entry.part, hpSettings);
    EXPECT_EQ(entry.permission, prEdit);
    EXPECT_EQ(entry.text, "نام شرکت، تعداد رقم اعشار مبالغ، کنترل موجودی منفی، جزئیات کالا دوواحدی");
}

TEST_F(Settings, thatSomebodyElseHasChangedAreShownInsteadOfOverwritten) {
    SettingsStore(*session).store("CompanyName", "فروشگاه دیگری");
    type(*page, "CompanyName_EDT", "فروشگاه آزمون");
    click(*page, "SaveSettings_BTN");
    EXPECT_THAT(takeMessages(), ElementsAre("MsgRecordChanged()"));
    EXPECT_EQ(stored().CompanyName, "فروشگاه دیگری");
    EXPECT_EQ(control<QLineEdit>(*page, "CompanyName_EDT").text().toStdString(), "فروشگاه دیگری");
    EXPECT_FALSE(saveIsPossible());
}

TEST_F(Settings, sayHowTheLedgerNumbersItsDocuments) {
    auto& numbering = control<QComboBox>(*page, "LedgerNumbering_CMB");
    EXPECT_EQ(numbering.currentText(), "پیوسته در همهٔ تاریخ‌ها") << "as the demo company has it";
    numbering.setFocus();
    QTest::keyClick(&numbering, Qt::Key_Up);
    click(*page, "SaveSettings_BTN");
    EXPECT_EQ(shown(*page, "SettingsState_LBL"), "تنظیمات ذخیره شد.");
    EXPECT_EQ(SettingsStore(*session).ledgerNumbering(), LedgerNumbering::EachDate);
    EXPECT_EQ(host.userLog().latest(1).at(0).text, "شماره‌گذاری سندها در کاردکس");
    SettingsStore other(*session);
    other.store(other.record(), LedgerNumbering::AllDates);
    QTest::keyClick(&numbering, Qt::Key_Down);
    QTest::keyClick(&numbering, Qt::Key_Up);
    click(*page, "SaveSettings_BTN");
    EXPECT_THAT(takeMessages(), ElementsAre()) << "chosen and taken back, it is no change";
    page->enter();
    EXPECT_EQ(numbering.currentText(), "پیوسته در همهٔ تاریخ‌ها");
}

TEST_F(Settings, limitTheTimeOfAStatementOnAServer) {
    auto& timeout = control<QSpinBox>(*page, "QueryTimeout_EDT");
    EXPECT_EQ(timeout.value(), 0);
    timeout.setFocus();
    for (const QChar letter : QStringLiteral("90000"))
        QTest::sendKeyEvent(QTest::Click, &timeout, static_cast<Qt::Key>(letter.unicode()), QString(letter), {});
    EXPECT_EQ(timeout.text(), "۸۶۴۰۰") << "a day is the most";
    click(*page, "SaveSettings_BTN");
    EXPECT_EQ(host.optionFile().options().queryTimeoutSeconds, 86400);
    page->enter();
    EXPECT_EQ(timeout.value(), 86400);
    EXPECT_FALSE(saveIsPossible());
}

TEST_F(Settings, areNotStoredWithoutTheirEntryInTheLog) {
    const std::string before = stored().CompanyName;
    execute(*session, "DROP TABLE dbo.HostUserLog");
    type(*page, "CompanyName_EDT", "فروشگاه آزمون");
    click(*page, "SaveSettings_BTN");
    EXPECT_THAT(takeMessages(), SizeIs(1));
    EXPECT_EQ(stored().CompanyName, before);
    EXPECT_EQ(host.SettingRecord().CompanyName, before);
    EXPECT_TRUE(saveIsPossible());
}

TEST_F(Settings, theFontSizeThatIsTypedReplacesTheOneThere) {
    auto& size = control<QSpinBox>(*page, "FontSize_EDT");
    EXPECT_EQ(size.value(), 10);
    QTest::mouseClick(size.findChild<QLineEdit*>(), Qt::LeftButton);
    QCoreApplication::processEvents();
    for (const QChar letter : QStringLiteral("12"))
        QTest::sendKeyEvent(QTest::Click, &size, static_cast<Qt::Key>(letter.unicode()), QString(letter), {});
    EXPECT_EQ(size.value(), 12);
}

TEST_F(Settings, aFontSizeBeyondTheRangeIsTheLargest) {
    auto& size = control<QSpinBox>(*page, "FontSize_EDT");
    QTest::mouseClick(size.findChild<QLineEdit*>(), Qt::LeftButton);
    QCoreApplication::processEvents();
    for (const QChar letter : QStringLiteral("99"))
        QTest::sendKeyEvent(QTest::Click, &size, static_cast<Qt::Key>(letter.unicode()), QString(letter), {});
    EXPECT_EQ(size.value(), 16);
    EXPECT_EQ(size.text(), "۱۶");
    QLabel* title = nullptr;
    for (QLabel* label : page->findChildren<QLabel*>())
        if (label->buddy() == &size) title = label;
    ASSERT_TRUE(title);
    EXPECT_EQ(title->text(), "اندازهٔ قلم (۸ تا ۱۶)");
}

TEST_F(Settings, theUnitOfSquareMetresIsChosenByName) {
    const auto& units = control<QComboBox>(*page, "MetreMorabaUnit_CMB");
    EXPECT_EQ(units.itemText(0), "هیچ‌کدام");
    EXPECT_EQ(units.currentIndex(), units.findData(stored().MetreMorabaUnit));
    EXPECT_GE(units.findText("متر مربع"), 1);
    control(*page, "MetreMorabaUnit_CMB").setFocus();
    QTest::keyClick(&control(*page, "MetreMorabaUnit_CMB"), Qt::Key_Home);
    click(*page, "SaveSettings_BTN");
    EXPECT_EQ(stored().MetreMorabaUnit, 0);
    for (int down = 0; down < units.findText("متر مربع"); ++down)
        QTest::keyClick(&control(*page, "MetreMorabaUnit_CMB"), Qt::Key_Down);
    click(*page, "SaveSettings_BTN");
    EXPECT_EQ(stored().MetreMorabaUnit, 9);
}

TEST_F(Settings, aUnitThatIsNotInTheTableIsNotStoredAgain) {
    SettingsStore(*session).store("MetreMorabaUnit", "999");
    page->enter();
    EXPECT_EQ(control<QComboBox>(*page, "MetreMorabaUnit_CMB").currentIndex(), -1);
    EXPECT_EQ(control<QComboBox>(*page, "MetreMorabaUnit_CMB").placeholderText(), "کد ۹۹۹ در جدول نیست");
    type(*page, "CompanyName_EDT", "فروشگاه آزمون");
    click(*page, "SaveSettings_BTN");
    EXPECT_EQ(shown(*page, "MetreMorabaUnit_Problem"), "آنچه ثبت شده است دیگر در جدول نیست؛ یکی از فهرست را برگزینید.");
    EXPECT_NE(stored().CompanyName, "فروشگاه آزمون");
}

// The panels below each other, with the largest font.
TEST_F(Settings, inputsAreWholeInANarrowWindow) {
    setThemeFontSize(16);
    page = std::make_unique<SettingsPage>(context());
    page->resize(820, 500);
    showActive(*page);
    page->enter();
    QCoreApplication::processEvents();
    for (const char* name : {"CompanyName_EDT", "NegativeType_CMB", "OperationBarcode3_EDT"}) {
        const QWidget& editor = *control(*page, name).parentWidget();
        EXPECT_GE(editor.height(), editor.minimumSizeHint().height()) << name;
    }
    setThemeFontSize(10);
}

struct WrongCase {
    const char* name;
    const char* edit;
    const char* problemLabel;
    QString typed;
    std::string problem;
};

class WrongSetting : public Settings, public ::testing::WithParamInterface<WrongCase> {};

TEST_P(WrongSetting, isToldAndNotStored) {
    const WrongCase& wrong = GetParam();
    const TSettingRecord before = stored();
    type(*page, "OperationBarcode3_EDT", "99");
    type(*page, wrong.edit, wrong.typed);
    EXPECT_EQ(shown(*page, wrong.problemLabel), wrong.problem);
    click(*page, "SaveSettings_BTN");
    EXPECT_TRUE(control(*page, wrong.edit).hasFocus());
    EXPECT_TRUE(saveIsPossible());
    const TSettingRecord after = stored();
    EXPECT_EQ(after.OperationBarcode3, before.OperationBarcode3);
    EXPECT_EQ(after.CurrencyDecimals, before.CurrencyDecimals);
    EXPECT_EQ(after.CompanyName, before.CompanyName);
}

INSTANTIATE_TEST_SUITE_P(Kinds, WrongSetting,
                         ::testing::Values(WrongCase{"tooLarge", "CurrencyDecimals_EDT", "CurrencyDecimals_Problem",
                                                     "10", "«تعداد رقم اعشار مبالغ» باید عددی صحیح از ۰ تا ۹ باشد."},
                                           WrongCase{"negative", "CurrencyDecimals_EDT", "CurrencyDecimals_Problem",
                                                     "-1", "«تعداد رقم اعشار مبالغ» باید عددی صحیح از ۰ تا ۹ باشد."},
                                           WrongCase{"empty", "CurrencyDecimals_EDT", "CurrencyDecimals_Problem", "",
                                                     "«تعداد رقم اعشار مبالغ» باید عددی صحیح از ۰ تا ۹ باشد."},
                                           WrongCase{"noNumber", "CurrencyDecimals_EDT", "CurrencyDecimals_Problem",
                                                     "دو", "«تعداد رقم اعشار مبالغ» باید عددی صحیح از ۰ تا ۹ باشد."},
                                           WrongCase{"tooLong", "CompanyName_EDT", "CompanyName_Problem",
                                                     QString(101, QChar(u'ش')), "«نام شرکت» حداکثر ۱۰۰ نویسه دارد."},
                                           WrongCase{"noWorkstation", "WorkstationName_EDT", "WorkstationName_Problem",
                                                     "   ", "نام ایستگاه نباید خالی باشد."}),
                         [](const auto& each) { return each.param.name; });

TEST_F(Settings, areTakenBack) {
    type(*page, "CompanyName_EDT", "نامی دیگر");
    click(*page, "UndoSettings_BTN");
    EXPECT_EQ(control<QLineEdit>(*page, "CompanyName_EDT").text(), "بازرگانی مهرآفرین");
    EXPECT_FALSE(saveIsPossible());
    EXPECT_TRUE(page->mayLeave());
}

TEST_F(Settings, theWorkstationIsRenamed) {
    type(*page, "WorkstationName_EDT", "صندوق ۲");
    click(*page, "SaveSettings_BTN");
    EXPECT_EQ(host.workstationName(), "صندوق ۲");
    // Nothing of the company's settings has changed, so nothing is logged.
    EXPECT_NE(host.userLog().latest(1).at(0).part, hpSettings);
}

class KeptSettings : public Settings {
protected:
    KeptSettings() {
        host.signInAs(1);
        page =
            std::make_unique<SettingsPage>(DesktopContext{host, testedModule().registry(), screens, screens.context()});
        page->resize(900, 1100);
        showActive(*page);
        page->enter();
    }
    ~KeptSettings() override { page.reset(); }

    test::TempFolder folder;
    ReferenceHost host{*session, {.userDataFolder = folder.path()}};
};

// Where the workstation's options cannot be written, what is stored holds, and shows when the change is taken back.
TEST_F(KeptSettings, thatCannotBeWrittenAreAsTheyAreStored) {
    host.setMessages(messages);
    std::vector<std::string> companies;
    page->OnSaved = [&] { companies.push_back(host.SettingRecord().CompanyName); };
    const std::string name = host.workstationName();
    std::filesystem::create_directories(folder.path() / "workstation.json" / "in the way");
    std::filesystem::create_directories(folder.path() / "workstation.json.damaged" / "in the way, too");
    type(*page, "CompanyName_EDT", "فروشگاه آزمون");
    type(*page, "WorkstationName_EDT", "صندوق ۲");
    click(*page, "PersianDigits_CHK");
    click(*page, "SaveSettings_BTN");
    ASSERT_THAT(messages.shown, SizeIs(1));
    EXPECT_EQ(messages.shown.at(0).operation, "OptionsError");
    EXPECT_THAT(companies, ElementsAre("فروشگاه آزمون")) << "that is stored";
    EXPECT_TRUE(saveIsPossible());
    EXPECT_EQ(host.workstationName(), name);
    click(*page, "UndoSettings_BTN");
    EXPECT_EQ(control<QLineEdit>(*page, "WorkstationName_EDT").text().toStdString(), name);
    EXPECT_TRUE(control<QCheckBox>(*page, "PersianDigits_CHK").isChecked());
    EXPECT_EQ(control<QLineEdit>(*page, "CompanyName_EDT").text(), "فروشگاه آزمون");
}

TEST_F(Settings, areNotStoredWithoutThePermission) {
    type(*page, "CompanyName_EDT", "نامی دیگر");
    host.signInAs(2);
    click(*page, "SaveSettings_BTN");
    EXPECT_EQ(takeMessages(), std::vector<std::string>{"HavePermission('تنظیمات', 'ویرایش')"});
    EXPECT_EQ(stored().CompanyName, "بازرگانی مهرآفرین");
    EXPECT_TRUE(saveIsPossible());
}

}  // namespace
}  // namespace basalt::host
