// A host for tests: answers messages from a queue, notes every call in the order in which it came, and fails the test
// when a message comes that is not the next one of the queue, or when one of the queue never comes.
//
//   FakeHost host(session);
//   const AttachedHost attached(host);
//   host.expectMessage("MsgDeleteRow()", mrYes);
//   EXPECT_TRUE(levels.CostLevel_Delete(4, 1));
//   EXPECT_THAT(host.calls, ElementsAre("HavePermission(user 1, 114, 3, false, true, '')", ...));
#pragma once

#include <gtest/gtest.h>

#include <deque>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "package/host.h"

namespace basalt {

// One line for a message: "MsgRepeatedField('نام', 'سطح تخفیف')", "ShowSmartMessage(error 30055, 'a')".
inline std::string messageLine(const MessageRequest& request) {
    static const char* const kinds[] = {"", "confirmation ", "notification ", "error "};
    std::string inside;
    if (request.kind != MessageKind::None) {
        inside = kinds[static_cast<std::size_t>(request.kind)] + std::to_string(request.number);
    }
    for (const std::string& argument : request.arguments) {
        inside += inside.empty() ? "'" : ", '";
        inside += argument + '\'';
    }
    return request.operation + '(' + inside + ')';
}

class FakeHost final : public Host, private MessageService {
public:
    explicit FakeHost(Session& session)
        : connection_(session),
          query_(connection_, "DM.SharedQuery"),
          command_(connection_, "DM.SharedCommand"),
          proc_(connection_, "DM.SharedProc"),
          dm_{connection_, query_, command_, proc_} {}
    ~FakeHost() override {
        for (const auto& [line, answer] : expected_)
            ADD_FAILURE() << "the message " << line << " never came";
    }
    FakeHost(const FakeHost&) = delete;
    FakeHost& operator=(const FakeHost&) = delete;

    // The next message that is to come, as messageLine writes it, and the button that answers it.
    void expectMessage(std::string line, int answer = mrNone) { expected_.emplace_back(std::move(line), answer); }

    // What the module asked of the host, messages included, in order. Looking up the connection and records is not
    // noted.
    std::vector<std::string> calls;
    // The last message as it came.
    MessageRequest lastMessage;

    // What the host answers.
    bool permitted = true;
    bool locked = false;
    TUserInfo user{.Code = 1, .UserName = "manager", .FullName = "مدیر", .IsManager = true};
    TIniOptions options{.LockOwner = 7, .WorkstationName = "test"};
    TSettingRecord settings;
    Value scaler = std::string("عنوان");
    int insertedTag = 0;
    std::string pickedCodes;
    ScreenServices* screens = nullptr;
    std::function<void()> onUserEvent;  // may throw, as a log that cannot be written does

    TDM& DM() override { return dm_; }
    const TUserInfo& UserInfo() override { return user; }
    const TIniOptions& IniOptions() override { return options; }
    const TSettingRecord& SettingRecord() override { return settings; }
    Value ScalerQuery(const std::string& table, const std::string& resultField, const std::string& keyField,
                      const std::string& keyValue) override {
        note("ScalerQuery", {quoted(table), quoted(resultField), quoted(keyField), quoted(keyValue)});
        return scaler;
    }
    void ResetDataset(TADOQuery& query) override {
        note("ResetDataset", {query.Name()});
        query.Requery();
    }
    bool CheckGoodUnitFormul(int goodCode) override {
        note("CheckGoodUnitFormul", {std::to_string(goodCode)});
        return true;
    }
    bool LocateLockCode_SoftwarePart(const std::string& code, TSoftwarePart part, int owner, bool flag) override {
        note("LocateLockCode_SoftwarePart", {quoted(code), std::to_string(part), std::to_string(owner), truth(flag)});
        return locked;
    }
    bool HavePermission(const TUserInfo& asked, TSoftwarePart part, TPermission permission, bool entryPoint,
                        bool tellUser, const std::string& text) override {
        note("HavePermission", {"user " + std::to_string(asked.Code), std::to_string(part), std::to_string(permission),
                                truth(entryPoint), truth(tellUser), quoted(text)});
        return permitted;
    }
    void SetUserEvent(TSoftwarePart part, TPermission permission, const std::string& text, bool insideTransaction,
                      bool withDescription) override {
        note("SetUserEvent", {std::to_string(part), std::to_string(permission), quoted(text), truth(insideTransaction),
                              truth(withDescription)});
        if (onUserEvent) onUserEvent();
    }
    std::string NowDate(const std::string& separator) override { return "1405" + separator + "08" + separator + "30"; }
    int Call_insert_tags(const std::string& text, std::uint8_t kind) override {
        note("Call_insert_tags", {quoted(text), std::to_string(kind)});
        return insertedTag;
    }
    std::string Select_Entity_Multible(TSoftwarePart part, const std::string& text) override {
        note("Select_Entity_Multible", {std::to_string(part), quoted(text)});
        return pickedCodes;
    }
    MessageService& Messages() override { return *this; }
    ScreenServices* Screens() override { return screens; }
    ProgramService& Programs() override { return programs != nullptr ? *programs : noted_; }
    std::vector<std::string> StoredList(const std::string& name) override {
        const auto kept = storedLists.find(name);
        return kept == storedLists.end() ? std::vector<std::string>() : kept->second;
    }
    void StoreList(const std::string& name, const std::vector<std::string>& values) override {
        std::vector<std::string> arguments{name};
        arguments.insert(arguments.end(), values.begin(), values.end());
        note("StoreList", arguments);
        storedLists[name] = values;
    }

    // Stands in for the host's own, which starts nothing, knows no library and notes what it is asked.
    ProgramService* programs = nullptr;
    // What it answers a start.
    StartResult startResult{.started = true};
    std::map<std::string, std::vector<std::string>> storedLists;

private:
    class NotedPrograms final : public ProgramService {
    public:
        explicit NotedPrograms(FakeHost& host) : host_(host) {}
        StartResult start(const ProgramStart& program) override {
            host_.note("start", {program.verb, program.file, program.parameters, program.directory,
                                 std::to_string(program.show)});
            return host_.startResult;
        }
        [[nodiscard]] std::unique_ptr<ProgramLibrary> load(const std::string& name) override {
            host_.note("load", {name});
            return nullptr;
        }

    private:
        FakeHost& host_;
    };

    static std::string quoted(const std::string& text) { return '\'' + text + '\''; }
    static std::string truth(bool flag) { return flag ? "true" : "false"; }

    void note(const std::string& operation, const std::vector<std::string>& arguments) {
        std::string line = operation + '(';
        for (const std::string& argument : arguments) {
            if (line.back() != '(') line += ", ";
            line += argument;
        }
        calls.push_back(line + ')');
    }

    int show(const MessageRequest& request) override {
        const std::string line = messageLine(request);
        calls.push_back(line);
        lastMessage = request;
        if (expected_.empty() || expected_.front().first != line) {
            ADD_FAILURE() << "unexpected message " << line << ", the next one was to be "
                          << (expected_.empty() ? "none" : expected_.front().first);
            return request.isQuestion() ? mrNo : mrNone;
        }
        const int answer = expected_.front().second;
        expected_.pop_front();
        EXPECT_EQ(request.isQuestion(), answer != mrNone) << line;
        return answer;
    }

    TADOConnection connection_;
    TADOQuery query_;
    TADOCommand command_;
    TADOStoredProc proc_;
    TDM dm_;
    std::deque<std::pair<std::string, int>> expected_;
    NotedPrograms noted_{*this};
};

}  // namespace basalt
