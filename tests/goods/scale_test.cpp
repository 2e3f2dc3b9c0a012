// Sending goods to scales: the query, the agent's command lines and its library.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <chrono>
#include <fstream>
#include <iterator>
#include <thread>

#include "ado/error.h"
#include "goods/scale_unt.h"
#include "host/services/system_programs.h"
#include "package/services.h"
#include "tests/goods/rows.h"
#include "tests/support/fake_host.h"
#include "tests/support/scripted_session.h"
#include "tests/support/temp_folder.h"

namespace basalt {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class Scales : public ::testing::Test {
protected:
    ScriptedSession script;
    FakeHost host{script};
    AttachedHost attached{host};
};

// One part a group, as the scale agent's database has a column a group.
// clang-format off
const std::string kTwentyParts =
    " SELECT PlU, Items.Code AS GoodCode, name1, name2, price, IP, Items.type AS ItemType, BarCode  , sc.ipRange, items.costlevel_Type, sg.GroupNo   FROM [Group-PLU] JOIN Scales_Groups sg ON sg.GroupNo = 1 JOIN Scales sc ON sg.ScaleCode = sc.Number JOIN Items ON Items.Code = Group1 WHERE Group1 IN (28,57) \n\rUNION ALL \n\r"
    " SELECT PlU, Items.Code AS GoodCode, name1, name2, price, IP, Items.type AS ItemType, BarCode  , sc.ipRange, items.costlevel_Type, sg.GroupNo   FROM [Group-PLU] JOIN Scales_Groups sg ON sg.GroupNo = 2 JOIN Scales sc ON sg.ScaleCode = sc.Number JOIN Items ON Items.Code = Group2 WHERE Group2 IN (28,57) \n\rUNION ALL \n\r"
    " SELECT PlU, Items.Code AS GoodCode, name1, name2, price, IP, Items.type AS ItemType, BarCode  , sc.ipRange, items.costlevel_Type, sg.GroupNo   FROM [Group-PLU] JOIN Scales_Groups sg ON sg.GroupNo = 3 JOIN Scales sc ON sg.ScaleCode = sc.Number JOIN Items ON Items.Code = Group3 WHERE Group3 IN (28,57) \n\rUNION ALL \n\r"
    " SELECT PlU, Items.Code AS GoodCode, name1, name2, price, IP, Items.type AS ItemType, BarCode  , sc.ipRange, items.costlevel_Type, sg.GroupNo   FROM [Group-PLU] JOIN Scales_Groups sg ON sg.GroupNo = 4 JOIN Scales sc ON sg.ScaleCode = sc.Number JOIN Items ON Items.Code = Group4 WHERE Group4 IN (28,57) \n\rUNION ALL \n\r"
    " SELECT PlU, Items.Code AS GoodCode, name1, name2, price, IP, Items.type AS ItemType, BarCode  , sc.ipRange, items.costlevel_Type, sg.GroupNo   FROM [Group-PLU] JOIN Scales_Groups sg ON sg.GroupNo = 5 JOIN Scales sc ON sg.ScaleCode = sc.Number JOIN Items ON Items.Code = Group5 WHERE Group5 IN (28,57) \n\rUNION ALL \n\r"
    " SELECT PlU, Items.Code AS GoodCode, name1, name2, price, IP, Items.type AS ItemType, BarCode  , sc.ipRange, items.costlevel_Type, sg.GroupNo   FROM [Group-PLU] JOIN Scales_Groups sg ON sg.GroupNo = 6 JOIN Scales sc ON sg.ScaleCode = sc.Number JOIN Items ON Items.Code = Group6 WHERE Group6 IN (28,57) \n\rUNION ALL \n\r"
    " SELECT PlU, Items.Code AS GoodCode, name1, name2, price, IP, Items.type AS ItemType, BarCode  , sc.ipRange, items.costlevel_Type, sg.GroupNo   FROM [Group-PLU] JOIN Scales_Groups sg ON sg.GroupNo = 7 JOIN Scales sc ON sg.ScaleCode = sc.Number JOIN Items ON Items.Code = Group7 WHERE Group7 IN (28,57) \n\rUNION ALL \n\r"
    " SELECT PlU, Items.Code AS GoodCode, name1, name2, price, IP, Items.type AS ItemType, BarCode  , sc.ipRange, items.costlevel_Type, sg.GroupNo   FROM [Group-PLU] JOIN Scales_Groups sg ON sg.GroupNo = 8 JOIN Scales sc ON sg.ScaleCode = sc.Number JOIN Items ON Items.Code = Group8 WHERE Group8 IN (28,57) \n\rUNION ALL \n\r"
    " SELECT PlU, Items.Code AS GoodCode, name1, name2, price, IP, Items.type AS ItemType, BarCode  , sc.ipRange, items.costlevel_Type, sg.GroupNo   FROM [Group-PLU] JOIN Scales_Groups sg ON sg.GroupNo = 9 JOIN Scales sc ON sg.ScaleCode = sc.Number JOIN Items ON Items.Code = Group9 WHERE Group9 IN (28,57) \n\rUNION ALL \n\r"
    " SELECT PlU, Items.Code AS GoodCode, name1, name2, price, IP, Items.type AS ItemType, BarCode  , sc.ipRange, items.costlevel_Type, sg.GroupNo   FROM [Group-PLU] JOIN Scales_Groups sg ON sg.GroupNo = 10 JOIN Scales sc ON sg.ScaleCode = sc.Number JOIN Items ON Items.Code = Group10 WHERE Group10 IN (28,57) \n\rUNION ALL \n\r"
    " SELECT PlU, Items.Code AS GoodCode, name1, name2, price, IP, Items.type AS ItemType, BarCode  , sc.ipRange, items.costlevel_Type, sg.GroupNo   FROM [Group-PLU] JOIN Scales_Groups sg ON sg.GroupNo = 11 JOIN Scales sc ON sg.ScaleCode = sc.Number JOIN Items ON Items.Code = Group11 WHERE Group11 IN (28,57) \n\rUNION ALL \n\r"
    " SELECT PlU, Items.Code AS GoodCode, name1, name2, price, IP, Items.type AS ItemType, BarCode  , sc.ipRange, items.costlevel_Type, sg.GroupNo   FROM [Group-PLU] JOIN Scales_Groups sg ON sg.GroupNo = 12 JOIN Scales sc ON sg.ScaleCode = sc.Number JOIN Items ON Items.Code = Group12 WHERE Group12 IN (28,57) \n\rUNION ALL \n\r"
    " SELECT PlU, Items.Code AS GoodCode, name1, name2, price, IP, Items.type AS ItemType, BarCode  , sc.ipRange, items.costlevel_Type, sg.GroupNo   FROM [Group-PLU] JOIN Scales_Groups sg ON sg.GroupNo = 13 JOIN Scales sc ON sg.ScaleCode = sc.Number JOIN Items ON Items.Code = Group13 WHERE Group13 IN (28,57) \n\rUNION ALL \n\r"
    " SELECT PlU, Items.Code AS GoodCode, name1, name2, price, IP, Items.type AS ItemType, BarCode  , sc.ipRange, items.costlevel_Type, sg.GroupNo   FROM [Group-PLU] JOIN Scales_Groups sg ON sg.GroupNo = 14 JOIN Scales sc ON sg.ScaleCode = sc.Number JOIN Items ON Items.Code = Group14 WHERE Group14 IN (28,57) \n\rUNION ALL \n\r"
    " SELECT PlU, Items.Code AS GoodCode, name1, name2, price, IP, Items.type AS ItemType, BarCode  , sc.ipRange, items.costlevel_Type, sg.GroupNo   FROM [Group-PLU] JOIN Scales_Groups sg ON sg.GroupNo = 15 JOIN Scales sc ON sg.ScaleCode = sc.Number JOIN Items ON Items.Code = Group15 WHERE Group15 IN (28,57) \n\rUNION ALL \n\r"
    " SELECT PlU, Items.Code AS GoodCode, name1, name2, price, IP, Items.type AS ItemType, BarCode  , sc.ipRange, items.costlevel_Type, sg.GroupNo   FROM [Group-PLU] JOIN Scales_Groups sg ON sg.GroupNo = 16 JOIN Scales sc ON sg.ScaleCode = sc.Number JOIN Items ON Items.Code = Group16 WHERE Group16 IN (28,57) \n\rUNION ALL \n\r"
    " SELECT PlU, Items.Code AS GoodCode, name1, name2, price, IP, Items.type AS ItemType, BarCode  , sc.ipRange, items.costlevel_Type, sg.GroupNo   FROM [Group-PLU] JOIN Scales_Groups sg ON sg.GroupNo = 17 JOIN Scales sc ON sg.ScaleCode = sc.Number JOIN Items ON Items.Code = Group17 WHERE Group17 IN (28,57) \n\rUNION ALL \n\r"
    " SELECT PlU, Items.Code AS GoodCode, name1, name2, price, IP, Items.type AS ItemType, BarCode  , sc.ipRange, items.costlevel_Type, sg.GroupNo   FROM [Group-PLU] JOIN Scales_Groups sg ON sg.GroupNo = 18 JOIN Scales sc ON sg.ScaleCode = sc.Number JOIN Items ON Items.Code = Group18 WHERE Group18 IN (28,57) \n\rUNION ALL \n\r"
    " SELECT PlU, Items.Code AS GoodCode, name1, name2, price, IP, Items.type AS ItemType, BarCode  , sc.ipRange, items.costlevel_Type, sg.GroupNo   FROM [Group-PLU] JOIN Scales_Groups sg ON sg.GroupNo = 19 JOIN Scales sc ON sg.ScaleCode = sc.Number JOIN Items ON Items.Code = Group19 WHERE Group19 IN (28,57) \n\rUNION ALL \n\r"
    " SELECT PlU, Items.Code AS GoodCode, name1, name2, price, IP, Items.type AS ItemType, BarCode  , sc.ipRange, items.costlevel_Type, sg.GroupNo   FROM [Group-PLU] JOIN Scales_Groups sg ON sg.GroupNo = 20 JOIN Scales sc ON sg.ScaleCode = sc.Number JOIN Items ON Items.Code = Group20 WHERE Group20 IN (28,57) \n";
// clang-format on

RowSet keyRows(const std::vector<std::vector<Value>>& values) {
    return rows({{"PlU", FieldType::Integer},
                 {"GoodCode", FieldType::Integer},
                 {"name1", FieldType::Text, 50},
                 {"name2", FieldType::Text, 50},
                 {"price", FieldType::Integer},
                 {"IP", FieldType::Text, 15},
                 {"ItemType", FieldType::Integer},
                 {"BarCode", FieldType::Text, 20},
                 {"ipRange", FieldType::Integer},
                 {"costlevel_Type", FieldType::Integer},
                 {"GroupNo", FieldType::Integer}},
                values);
}

TEST_F(Scales, firstKindGetsTheConnectionAndTheCodes) {
    host.DM().ADOConnection1.ConnectionString = "Provider=SQLOLEDB;Data Source=shop;Password=a b";
    GoodInf_SendToScale("28,57", 0);
    EXPECT_THAT(host.calls, ElementsAre("start(open, ScaleAgentApp.exe, \"Provider=SQLOLEDB;Data "
                                        "Source=shop;Password=a b\" \"28,57\", , 0)"));
}

TEST_F(Scales, otherKindsStartTheAgentOnceAKey) {
    script.expect(kTwentyParts,
                  keyRows({{number(4), number(28), text("سیب زرد"), text("درجه یک"), number(450000),
                            text("192.168.10.21"), number(0), text("2800028"), number(1), number(1), number(1)},
                           {number(9), number(28), text("سیب زرد"), Null{}, number(450000), text("192.168.20.21"),
                            number(1), Null{}, number(2), number(1), number(2)}}));
    GoodInf_SendToScale("28,57", 1);
    EXPECT_THAT(
        host.calls,
        ElementsAre("start(open, ScaleAgentApp.exe, 28 \"سیب زرد\" \"درجه یک \"  450000  0 \"2800028 \"  4  "
                    "192.168.10.21  0, , 0)",
                    "start(open, ScaleAgentApp.exe, 28 \"سیب زرد\" \" \"  450000  1 \" \"  9  192.168.20.21  1, , 0)"));
}

TEST_F(Scales, aSingleRowIsTheLast) {
    script.expect(kTwentyParts,
                  keyRows({{number(4), number(28), text("سیب"), text(""), number(450000), text("192.168.10.21"),
                            number(0), text(""), number(1), number(1), number(1)}}));
    GoodInf_SendToScale("28,57", 1);
    EXPECT_THAT(host.calls, ElementsAre("start(open, ScaleAgentApp.exe, 28 \"سیب\" \" \"  450000  0 \" \"  4  "
                                        "192.168.10.21  1, , 0)"));
    EXPECT_FALSE(host.DM().SharedQuery.Active());
}

TEST_F(Scales, decimalsComeWithoutTheirLastZeros) {
    RowSet keys = rows({{"PlU", FieldType::Integer},
                        {"GoodCode", FieldType::Integer},
                        {"name1", FieldType::Text, 50},
                        {"name2", FieldType::Text, 50},
                        {"price", FieldType::Decimal},
                        {"IP", FieldType::Text, 15},
                        {"ItemType", FieldType::Integer},
                        {"BarCode", FieldType::Text, 20}},
                       {{number(4), number(28), text("سیب"), text(""), *Decimal::parse("450000"), text("192.168.10.21"),
                         number(0), text("")},
                        {number(4), number(28), text("سیب"), text(""), *Decimal::parse("0.5"), text("192.168.10.21"),
                         number(0), text("")}});
    script.expect(kTwentyParts, std::move(keys));
    GoodInf_SendToScale("28,57", 1);
    EXPECT_THAT(host.calls, ElementsAre("start(open, ScaleAgentApp.exe, 28 \"سیب\" \" \"  450000  0 \" \"  4  "
                                        "192.168.10.21  0, , 0)",
                                        "start(open, ScaleAgentApp.exe, 28 \"سیب\" \" \"  0.5  0 \" \"  4  "
                                        "192.168.10.21  1, , 0)"));
}

TEST_F(Scales, goodsThatNoKeyMeansStartNothing) {
    for (const int kind : {2, -1}) {
        script.expect(kTwentyParts, keyRows({}));
        GoodInf_SendToScale("28,57", kind);
        EXPECT_THAT(host.calls, IsEmpty()) << kind;
    }
}

TEST_F(Scales, failureStartsNothing) {
    script.expectError(kTwentyParts, DatabaseError(ErrorCategory::Syntax, "42000", 102, "not understood"));
    EXPECT_THROW(GoodInf_SendToScale("28,57", 1), DatabaseError);
    EXPECT_THAT(host.calls, IsEmpty());
    EXPECT_FALSE(host.DM().SharedQuery.Active());
}

TEST_F(Scales, everyRowIsStartedWhateverBecomesOfTheStarts) {
    host.startResult = {.started = false, .searched = {"/opt/agent"}};
    script.expect(kTwentyParts,
                  keyRows({{number(4), number(28), text("سیب"), text(""), number(450000), text("192.168.10.21"),
                            number(0), text(""), number(1), number(1), number(1)},
                           {number(9), number(57), text("برنج"), text(""), number(850000), text("192.168.10.21"),
                            number(0), text(""), number(1), number(1), number(1)}}));
    GoodInf_SendToScale("28,57", 1);
    EXPECT_THAT(host.calls, ElementsAre("start(open, ScaleAgentApp.exe, 28 \"سیب\" \" \"  450000  0 \" \"  4  "
                                        "192.168.10.21  0, , 0)",
                                        "start(open, ScaleAgentApp.exe, 57 \"برنج\" \" \"  850000  0 \" \"  9  "
                                        "192.168.10.21  1, , 0)"));
}

// The library

std::int32_t registerGood() {
    return GoodInfo_ScaleAgent(57, u"برنج", u"rice", 850000, 1, 2, u"2800057", 58, 3, u"14", 21);
}

TEST_F(Scales, missingLibraryIsTold) {
    host.expectMessage("ShowMessage('\"ScaleAgent.dll\" DLL File not found / not loaded')");
    EXPECT_EQ(registerGood(), 0);
    EXPECT_THAT(host.calls, ElementsAre("load(ScaleAgent.dll)",
                                        "ShowMessage('\"ScaleAgent.dll\" DLL File not found / not loaded')"));
}

TEST_F(Scales, missingFunctionIsTold) {
    host::SystemPrograms programs({EMPTY_LIBRARY_FOLDER});
    host.programs = &programs;
    host.expectMessage("ShowMessage('\"GoodInfo_Register\" Method not found in the DLL')");
    EXPECT_EQ(registerGood(), 0);
}

TEST_F(Scales, libraryGetsEveryArgumentAndItsAnswerComesBack) {
    host::SystemPrograms programs({LIBRARY_FOLDER});
    host.programs = &programs;
    // What the library makes of these arguments, worked out apart from it.
    EXPECT_EQ(registerGood(), 315585);
    EXPECT_EQ(GoodInfo_ScaleAgent(1, u"", u"", 0, 0, 0, u"", 0, 0, u"", 0), 103317);
    EXPECT_THAT(host.calls, IsEmpty());
}

// A library whose uses are noted, with or without the function.
class NotedLibrary final : public ProgramLibrary {
public:
    NotedLibrary(std::vector<std::string>& notes, void* function) : notes_(notes), function_(function) {}
    ~NotedLibrary() override { notes_.push_back("free"); }
    void* find(const std::string& function) override {
        notes_.push_back("find(" + function + ")");
        return function_;
    }

private:
    std::vector<std::string>& notes_;
    void* function_;
};

class NotedLibraries final : public ProgramService {
public:
    NotedLibraries(std::vector<std::string>& notes, void* function) : notes_(notes), function_(function) {}
    StartResult start(const ProgramStart& /*program*/) override { return {.started = true}; }
    std::unique_ptr<ProgramLibrary> load(const std::string& name) override {
        notes_.push_back("load(" + name + ")");
        return std::make_unique<NotedLibrary>(notes_, function_);
    }

private:
    std::vector<std::string>& notes_;
    void* function_;
};

std::vector<std::string>* called = nullptr;
std::int32_t BASALT_STDCALL notedRegister(std::int32_t goodCode, const char16_t*, const char16_t*, std::int32_t,
                                          std::int32_t, std::int32_t, const char16_t*, std::int32_t, std::int32_t,
                                          const char16_t*, std::int32_t) {
    called->push_back("GoodInfo_Register(" + std::to_string(goodCode) + ")");
    return -1;  // as a library answers that could not do it
}

TEST_F(Scales, libraryIsFreedBehindTheCallWhateverItAnswers) {
    called = &host.calls;
    NotedLibraries programs(host.calls, reinterpret_cast<void*>(&notedRegister));
    host.programs = &programs;
    EXPECT_EQ(registerGood(), -1);
    EXPECT_THAT(host.calls,
                ElementsAre("load(ScaleAgent.dll)", "find(GoodInfo_Register)", "GoodInfo_Register(57)", "free"));
}

TEST_F(Scales, libraryWithoutTheFunctionIsFreedToo) {
    NotedLibraries programs(host.calls, nullptr);
    host.programs = &programs;
    host.expectMessage("ShowMessage('\"GoodInfo_Register\" Method not found in the DLL')");
    EXPECT_EQ(registerGood(), 0);
    EXPECT_THAT(host.calls, ElementsAre("load(ScaleAgent.dll)", "find(GoodInfo_Register)",
                                        "ShowMessage('\"GoodInfo_Register\" Method not found in the DLL')", "free"));
}

// Programs of this machine

// Another search path while it lives.
class SearchPath {
public:
    explicit SearchPath(const std::string& folders) { setenv("PATH", folders.c_str(), 1); }
    ~SearchPath() { setenv("PATH", before_.c_str(), 1); }
    SearchPath(const SearchPath&) = delete;
    SearchPath& operator=(const SearchPath&) = delete;

private:
    std::string before_ = std::getenv("PATH");
};

class Programs : public ::testing::Test {
protected:
    Programs() { setenv("SCALE_AGENT_OUTPUT", output.c_str(), 1); }
    ~Programs() override { unsetenv("SCALE_AGENT_OUTPUT"); }

    // What the program was given, once it has written it; the empty text when it never does.
    [[nodiscard]] std::string written() const {
        for (int i = 0; i < 500 && !std::filesystem::exists(output); ++i)
            std::this_thread::sleep_for(std::chrono::milliseconds(20));
        std::ifstream file(output, std::ios::binary);
        return {std::istreambuf_iterator<char>(file), {}};
    }

    test::TempFolder folder;
    std::string output = folder.file("arguments");
    host::SystemPrograms programs{{PROGRAM_FOLDER}};
};

TEST_F(Programs, theParametersAreOneArgumentAndNoShellReadsThem) {
    const std::string parameters = "28 \"a\" --option; touch " + folder.file("broken") + " $(id) `id` \"  1";
    EXPECT_TRUE(
        programs
            .start({.verb = "open", .file = "ScaleAgentApp.exe", .parameters = parameters, .directory = {}, .show = 0})
            .started);
    EXPECT_EQ(written(), parameters + "\n");
    EXPECT_FALSE(std::filesystem::exists(folder.file("broken")));
}

TEST_F(Programs, withoutParametersThereIsNoArgument) {
    const StartResult result =
        programs.start({.verb = "open", .file = "ScaleAgentApp.exe", .parameters = {}, .directory = {}, .show = 0});
    EXPECT_TRUE(result.started);
    EXPECT_THAT(result.searched, IsEmpty());
    EXPECT_EQ(result.reason, "");
    EXPECT_EQ(written(), "");
    EXPECT_TRUE(std::filesystem::exists(output));
}

TEST_F(Programs, aProgramGetsNoFileThatIsOpenHere) {
    // As a library opens them that thinks of no other program.
    int ends[2];
    ASSERT_EQ(pipe(ends), 0);
    const int high = dup2(ends[1], 700);
    EXPECT_TRUE(
        programs.start({.verb = "open", .file = "ScaleAgentApp.exe", .parameters = "1", .directory = {}, .show = 0})
            .started);
    EXPECT_EQ(written(), "1\n");
    int inherited = -1;
    std::ifstream(output + ".open") >> inherited;
    EXPECT_EQ(inherited, 0);
    for (const int each : {ends[0], ends[1], high})
        close(each);
}

TEST_F(Programs, aProgramThatIsNotThereIsReportedWithThePlacesLookedAt) {
    const SearchPath path(folder.path().string() + ":/nowhere::" + folder.path().string());
    const StartResult result =
        programs.start({.verb = "open", .file = "NoSuchAgent.exe", .parameters = "1", .directory = {}, .show = 0});
    EXPECT_FALSE(result.started);
    EXPECT_THAT(result.searched, ElementsAre(PROGRAM_FOLDER, folder.path().string(), "/nowhere"));
    EXPECT_EQ(result.reason, "");
    EXPECT_FALSE(std::filesystem::exists(output));
}

TEST_F(Programs, aProgramIsFoundWhereTheSystemLooks) {
    const SearchPath path("/nowhere:" PROGRAM_FOLDER);
    host::SystemPrograms elsewhere({folder.path()});
    EXPECT_TRUE(
        elsewhere.start({.verb = "open", .file = "ScaleAgentApp.exe", .parameters = "7", .directory = {}, .show = 0})
            .started);
    EXPECT_EQ(written(), "7\n");
}

TEST_F(Programs, aFileThatIsNoProgramIsReportedWithTheSystemsReason) {
    host::SystemPrograms here({folder.path()});
    std::ofstream(folder.file("Agent.exe")) << "no program";
    const ProgramStart agent{.verb = "open", .file = "Agent.exe", .parameters = "1", .directory = {}, .show = 0};
    StartResult result = here.start(agent);
    EXPECT_FALSE(result.started);
    EXPECT_EQ(result.reason, folder.file("Agent.exe") + ": Permission denied");
    std::filesystem::permissions(folder.file("Agent.exe"), std::filesystem::perms::owner_all);
    result = here.start(agent);
    EXPECT_FALSE(result.started);
    EXPECT_THAT(result.searched, IsEmpty());
    EXPECT_EQ(result.reason, folder.file("Agent.exe") + ": Exec format error");
}

TEST_F(Programs, aFolderThatIsNotThereIsReported) {
    const StartResult result = programs.start(
        {.verb = "open", .file = "ScaleAgentApp.exe", .parameters = "1", .directory = folder.file("gone"), .show = 0});
    EXPECT_FALSE(result.started);
    EXPECT_EQ(result.reason, std::string(PROGRAM_FOLDER "/ScaleAgentApp.exe: No such file or directory"));
    EXPECT_FALSE(std::filesystem::exists(output));
}

TEST_F(Programs, aLibraryThatIsNotThereIsNull) {
    EXPECT_EQ(programs.load("NoSuchLibrary.dll"), nullptr);
}

}  // namespace
}  // namespace basalt
