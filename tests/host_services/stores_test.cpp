// Settings, form options and properties: what is kept for the company and for each user.
#include <gmock/gmock.h>

#include <thread>

#include "tests/host_services/demo_database.h"

namespace basalt::host {
namespace {

using ::testing::AllOf;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

class SettingsTest : public DemoDatabaseTest {
protected:
    SettingsStore settings{*session};
};

TEST_F(SettingsTest, unknownToTheDatabaseMeansDefault) {
    EXPECT_EQ(settings.record().CompanyName, "بازرگانی مهرآفرین");
    EXPECT_EQ(settings.record().CurrencyDecimals, 0);
    EXPECT_EQ(settings.record().NegativeType, 1);
    EXPECT_TRUE(settings.record().FindGoodByScaleCode);
    EXPECT_FALSE(settings.record().DetailTwoUnits);
}

TEST_F(SettingsTest, storedForEverybody) {
    settings.store("currencydecimals", "3");
    settings.store("DetailTwoUnits", "true");
    settings.store("OperationBarcode1", "AB'12");
    SettingsStore other(*session);
    EXPECT_EQ(other.record().CurrencyDecimals, 3);
    EXPECT_TRUE(other.record().DetailTwoUnits);
    EXPECT_EQ(other.record().OperationBarcode1, "AB'12");
    settings.store("CurrencyDecimals", "2");
    EXPECT_EQ(other.record().CurrencyDecimals, 3) << "another client reads again when it is told to";
    other.reload();
    EXPECT_EQ(other.record().CurrencyDecimals, 2);
}

TEST_F(SettingsTest, aWholeRecordStoresWhatDiffers) {
    TSettingRecord record = settings.record();
    record.NegativeType = 0;
    record.MetreMorabaUnit = 8;
    EXPECT_THAT(settings.store(record), ElementsAre("NegativeType", "MetreMorabaUnit"));
    EXPECT_THAT(settings.store(record), IsEmpty());
    EXPECT_THAT(linesOf(*session, "SELECT Value FROM dbo.HostSettings WHERE Name = N'NegativeType'"), ElementsAre("0"));
}

TEST_F(SettingsTest, whatAnotherClientHasChangedMeanwhileIsNotOverwritten) {
    TSettingRecord record = settings.record();
    SettingsStore other(*session);
    other.store("CompanyName", "شرکت دیگری");
    record.CompanyName = "شرکت من";
    record.NegativeType = 0;
    try {
        settings.store(record);
        ADD_FAILURE() << "it was written";
    } catch (const DatabaseError& error) {
        EXPECT_EQ(error.category(), ErrorCategory::Conflict);
    }
    EXPECT_EQ(settings.record().NegativeType, 1);
    other.reload();
    EXPECT_EQ(other.record().CompanyName, "شرکت دیگری");
    EXPECT_EQ(other.record().NegativeType, 1) << "all or nothing";
    settings.reload();
    settings.store("CompanyName", "شرکت من");
    other.reload();
    EXPECT_EQ(other.record().CompanyName, "شرکت من");
}

TEST_F(SettingsTest, theNumberingOfTheLedgerIsStoredAsTheProceduresReadIt) {
    const auto stored = [this] {
        return linesOf(*session, "SELECT Value FROM dbo.HostSettings WHERE Name = N'LedgerNumbering'");
    };
    EXPECT_EQ(settings.ledgerNumbering(), LedgerNumbering::AllDates) << "as the demo company has it";
    EXPECT_THAT(settings.store(settings.record(), LedgerNumbering::EachDate), ElementsAre("LedgerNumbering"));
    EXPECT_THAT(stored(), ElementsAre("date"));
    EXPECT_THAT(settings.store(settings.record(), LedgerNumbering::EachDate), IsEmpty());
    EXPECT_THAT(settings.store(settings.record()), IsEmpty());
    static_cast<void>(settings.store(settings.record(), LedgerNumbering::AllDates));
    EXPECT_THAT(stored(), ElementsAre("all"));
    for (const char* change : {"UPDATE dbo.HostSettings SET Value = N'else' WHERE Name = N'LedgerNumbering'",
                               "DELETE FROM dbo.HostSettings WHERE Name = N'LedgerNumbering'"}) {
        execute(*session, change);
        settings.reload();
        EXPECT_EQ(settings.ledgerNumbering(), LedgerNumbering::EachDate) << change;
    }
    EXPECT_THAT(settings.store(settings.record(), LedgerNumbering::AllDates), ElementsAre("LedgerNumbering"));
    EXPECT_THAT(stored(), ElementsAre("all"));
}

TEST_F(SettingsTest, aNumberingThatAnotherClientHasChangedIsNotOverwritten) {
    TSettingRecord record = settings.record();
    record.CompanyName = "شرکت من";
    SettingsStore other(*session);
    static_cast<void>(other.store(other.record(), LedgerNumbering::EachDate));
    // What it would become is there already, and still it is not what was read.
    EXPECT_THROW(static_cast<void>(settings.store(record, LedgerNumbering::EachDate)), DatabaseError);
    EXPECT_EQ(settings.ledgerNumbering(), LedgerNumbering::AllDates);
    EXPECT_EQ(settings.record().CompanyName, "بازرگانی مهرآفرین");
    settings.reload();
    EXPECT_EQ(settings.ledgerNumbering(), LedgerNumbering::EachDate);
    EXPECT_EQ(settings.record().CompanyName, "بازرگانی مهرآفرین") << "all or nothing";
}

TEST_F(SettingsTest, standOrFallWithWhatIsWrittenBesideThem) {
    TSettingRecord record = settings.record();
    record.CompanyName = "شرکت من";
    EXPECT_THROW(settings.store(record,
                                [](const auto& names) {
                                    EXPECT_THAT(names, ElementsAre("CompanyName"));
                                    throw std::runtime_error("the log is full");
                                }),
                 std::runtime_error);
    EXPECT_EQ(settings.record().CompanyName, "بازرگانی مهرآفرین");
    settings.reload();
    EXPECT_EQ(settings.record().CompanyName, "بازرگانی مهرآفرین");
}

struct BadSetting {
    const char* label;
    const char* name;
    std::string value;
};

class BadSettings : public DemoDatabaseTest, public ::testing::WithParamInterface<BadSetting> {};

TEST_P(BadSettings, areRefusedAndChangeNothing) {
    SettingsStore settings(*session);
    const auto before = linesOf(*session, "SELECT Name, Value FROM dbo.HostSettings ORDER BY Name");
    EXPECT_THROW(settings.store(GetParam().name, GetParam().value), UsageError);
    EXPECT_THROW(settings.override(GetParam().name, GetParam().value), UsageError);
    EXPECT_EQ(linesOf(*session, "SELECT Name, Value FROM dbo.HostSettings ORDER BY Name"), before);
    if (const SettingField* field = SettingsStore::findField(GetParam().name)) {
        EXPECT_THAT(SettingsStore::problem(*field, GetParam().value), HasSubstr(std::string(field->title)));
    }
}

INSTANTIATE_TEST_SUITE_P(
    Settings, BadSettings,
    ::testing::Values(BadSetting{"tooManyDecimals", "CurrencyDecimals", "10"},
                      BadSetting{"negative", "CurrencyDecimals", "-1"}, BadSetting{"empty", "CurrencyDecimals", ""},
                      BadSetting{"words", "CurrencyDecimals", "دو"}, BadSetting{"fraction", "CurrencyDecimals", "1.5"},
                      BadSetting{"blank", "CurrencyDecimals", " 1"},
                      BadSetting{"beyondThePolicies", "NegativeType", "3"},
                      BadSetting{"beyondInteger", "MetreMorabaUnit", "2147483648"},
                      BadSetting{"noFlag", "DetailTwoUnits", "maybe"}, BadSetting{"emptyFlag", "DetailTwoUnits", ""},
                      BadSetting{"tooLong", "CompanyName", std::string(101, 'x')},
                      BadSetting{"unknown", "Decimals", "1"}),
    [](const auto& row) { return std::string(row.param.label); });

TEST_F(SettingsTest, anUnknownNameIsAnsweredWithTheNamesThereAre) {
    try {
        settings.override("Decimals", "1");
        FAIL() << "there is no such setting";
    } catch (const UsageError& error) {
        EXPECT_THAT(error.what(),
                    AllOf(HasSubstr("Decimals"), HasSubstr("CurrencyDecimals"), HasSubstr("OperationBarcode3")));
    }
}

TEST_F(SettingsTest, overridesHoldForThisProcessOnly) {
    settings.override("NegativeType", "2");
    settings.override("FindGoodByScaleCode", "no");
    EXPECT_EQ(settings.record().NegativeType, 2);
    settings.reload();
    EXPECT_EQ(settings.record().NegativeType, 2);
    EXPECT_FALSE(settings.record().FindGoodByScaleCode);
    EXPECT_EQ(SettingsStore(*session).record().NegativeType, 1);
    settings.store("CurrencyDecimals", "4");
    EXPECT_EQ(SettingsStore(*session).record().NegativeType, 1)
        << "storing another setting is not storing the override";
}

TEST_F(SettingsTest, everyFieldOfTheRecordCanBeSetAndReadBack) {
    TSettingRecord record;
    for (const SettingField& field : SettingsStore::fields()) {
        const std::string value = field.kind == SettingKind::Text ? "متن" : field.kind == SettingKind::Flag ? "1" : "2";
        SettingsStore::assign(record, field.name, value);
        EXPECT_EQ(SettingsStore::text(record, field), value) << field.name;
        EXPECT_EQ(SettingsStore::problem(field, value), "") << field.name;
    }
    EXPECT_EQ(record.OperationBarcode2, "متن");
    EXPECT_EQ(record.NegativeType, 2);
    EXPECT_TRUE(record.DetailMeasured);
}

TEST_F(SettingsTest, rowsThatSomebodySpoiledLeaveTheDefault) {
    execute(*session, "UPDATE dbo.HostSettings SET Value = N'many' WHERE Name = N'CurrencyDecimals'");
    execute(*session, "INSERT INTO dbo.HostSettings (Name, Value) VALUES (N'OfAnotherProgram', N'x')");
    EXPECT_EQ(settings.record().CurrencyDecimals, 0);
}

class UserStoresTest : public DemoDatabaseTest {
protected:
    FormOptionStore forms{*session};
    PropertyStore properties{*session};
};

TEST_F(UserStoresTest, formOptionsBelongToUserAndScreen) {
    EXPECT_EQ(forms.load(1, FormOptionStore::key(csPriceLevels)), std::nullopt);
    forms.save(1, "14", R"({"columns":["Code","Name"]})");
    forms.save(2, "14", "{}");
    forms.save(1, "TCostLevel_List_FRM", "");
    EXPECT_EQ(forms.load(1, FormOptionStore::key(csPriceLevels)), R"({"columns":["Code","Name"]})");
    EXPECT_EQ(forms.load(2, "14"), "{}");
    EXPECT_EQ(forms.load(1, "TCostLevel_List_FRM"), "");
    forms.save(1, "14", "{\"sort\":1}");
    EXPECT_EQ(forms.load(1, "14"), "{\"sort\":1}");
    forms.remove(1, "14");
    EXPECT_EQ(forms.load(1, "14"), std::nullopt);
    EXPECT_EQ(forms.load(2, "14"), "{}");
}

TEST_F(UserStoresTest, longOptionsComeBackWhole) {
    std::string options;
    while (options.size() < 100'000)
        options += "{\"ستون\":'پهنا'}";
    forms.save(1, "27", options);
    EXPECT_EQ(forms.load(1, "27"), options);
}

TEST_F(UserStoresTest, aKeyThatIsTooLongIsRefused) {
    EXPECT_THROW(forms.save(1, std::string(101, 'k'), "{}"), DatabaseError);
    EXPECT_THROW(forms.save(999, "14", "{}"), DatabaseError) << "there is no such user";
}

TEST_F(UserStoresTest, propertiesKeepTextsAndLists) {
    EXPECT_EQ(properties.get(1, "a"), std::nullopt);
    EXPECT_THAT(properties.getList(1, "weights"), IsEmpty());
    properties.set(1, "a", "'; DROP TABLE x --");
    EXPECT_EQ(properties.get(1, "a"), "'; DROP TABLE x --");
    EXPECT_EQ(properties.get(2, "a"), std::nullopt);
    properties.setList(1, "weights", {"1.5", "", "۲"});
    EXPECT_THAT(properties.getList(1, "weights"), ElementsAre("1.5", "", "۲"));
    properties.setList(1, "weights", {});
    EXPECT_THAT(properties.getList(1, "weights"), IsEmpty());
    properties.remove(1, "a");
    EXPECT_EQ(properties.get(1, "a"), std::nullopt);
}

class StoredLists : public DemoFileTest {};

TEST_F(StoredLists, whatAnotherProgramAddedSinceTheListWasReadStays) {
    const auto one = openDatabase(path());
    const auto other = openDatabase(path());
    ReferenceHost here(*one, workstation("یک"));
    ReferenceHost there(*other, workstation("دو"));
    here.signInAs(1);
    there.signInAs(1);
    here.StoreList("weights", {"1"});
    there.StoreList("weights", {"2", "1"});
    here.StoreList("weights", {"1", "3"});
    EXPECT_THAT(there.StoredList("weights"), ElementsAre("1", "2", "3"));
    there.signInAs(2);
    EXPECT_THAT(there.StoredList("weights"), IsEmpty());
}

TEST_F(StoredLists, programsThatAddAtTheSameMomentKeepEachOthersLines) {
    constexpr int kLines = 25;
    const auto add = [this](const std::string& who) {
        const auto session = openDatabase(path());
        ReferenceHost host(*session, workstation(who));
        host.signInAs(1);
        std::vector<std::string> read = host.StoredList("weights");
        for (int i = 0; i < kLines; ++i) {
            read.push_back(who + std::to_string(i));
            host.StoreList("weights", read);
        }
    };
    std::thread other(add, "b");
    add("a");
    other.join();
    const auto session = openDatabase(path());
    EXPECT_EQ(PropertyStore(*session).getList(1, "weights").size(), 2U * kLines);
}

}  // namespace
}  // namespace basalt::host
