// A host for the module over a database of one's own: users, permissions, the user log, code locks, settings, messages.
//
//   ReferenceHost host(session, {.userDataFolder = userDataFolder()});
//   if (!host.signIn("manager", password)) ...
//   host.setMessages(messages);
//   module.attach(host);
//
// Nothing is read from the database before it is needed, so a host can be made over a database that still has to be
// deployed. When the host goes away it gives back what it holds there.
#pragma once

#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "host/services/clock.h"
#include "host/services/code_locks.h"
#include "host/services/form_option_store.h"
#include "host/services/ini_options.h"
#include "host/services/message_catalogue.h"
#include "host/services/permission_store.h"
#include "host/services/process_identity.h"
#include "host/services/property_store.h"
#include "host/services/settings_store.h"
#include "host/services/system_programs.h"
#include "host/services/user_log.h"
#include "host/services/user_store.h"
#include "host/services/workstations.h"
#include "package/host.h"
#include "package/registry.h"

namespace basalt::host {

struct HostOptions {
    std::string workstationName = {};  // empty: the one of the option file, else the machine's name
    std::filesystem::path userDataFolder = {};
    bool persistOptions = true;                   // false: the option file is neither read nor written
    std::filesystem::path programFolder = {};     // where programs of ours are looked for first; empty: nowhere first
    std::optional<ProcessIdentity> process = {};  // of another process, when a recorded session is replayed
};

// Hears of what the host does for the module.
class HostObserver {
public:
    virtual ~HostObserver() = default;
    virtual void userEvent(TSoftwarePart part, TPermission permission, const std::string& text) = 0;
    // Before it is started.
    virtual void programStarting(const ProgramStart& program) { static_cast<void>(program); }
};

// Lets the user pick persons or goods, for Select_Entity_Multible.
class EntityPicking {
public:
    virtual ~EntityPicking() = default;
    [[nodiscard]] virtual std::string pickEntities(TSoftwarePart part, const std::string& text) = 0;
};

class ReferenceHost final : public Host {
public:
    ReferenceHost(Session& session, HostOptions options);
    ~ReferenceHost() override;
    ReferenceHost(const ReferenceHost&) = delete;
    ReferenceHost& operator=(const ReferenceHost&) = delete;

    // False: wrong name or password, or a user who may not sign in; who was signed in before stays so. Writes the log,
    // and frees what killed clients of this machine held; a wrong password is a line of the log too. Nobody else is
    // signed in either when the log cannot be written.
    [[nodiscard]] bool signIn(const std::string& userName, const std::string& password);
    // As SetUserEvent in a transaction, in words of the caller's own where the titles of part and permission say too
    // little of what was done.
    void recordEvent(TSoftwarePart part, TPermission permission, const std::string& text,
                     const std::string& description);

    // Without a password, for the command line. UsageError when there is no such user.
    void signInAs(int userCode);
    void signOut();
    [[nodiscard]] bool signedIn() const { return user_.Code != 0; }

    void setMessages(MessageService& service);  // before that, a question is a UsageError that shows its text
    void setScreens(ScreenServices* screens) { screens_ = screens; }
    void setEntityPicking(EntityPicking* picking) { picking_ = picking; }
    // The module's exports, for the host's calls into the module. Null when the module is let go.
    void setExports(const Registry* exports) { exports_ = exports; }
    void setObserver(HostObserver* observer) { observer_ = observer; }
    void setClock(Clock& clock) { clock_ = &clock; }
    // Stands in for the programs of this machine, which are used until then.
    void setPrograms(ProgramService& programs) { programs_ = &programs; }
    [[nodiscard]] ProgramService& programs() { return *programs_; }

    [[nodiscard]] Session& session() { return session_; }
    // The host's own connection: on the same session and in the same transactions as the module's, but not observed.
    [[nodiscard]] TADOConnection& connection() { return ownConnection_; }
    [[nodiscard]] UserStore& users() { return users_; }
    [[nodiscard]] PermissionStore& permissions() { return permissions_; }
    [[nodiscard]] UserLog& userLog() { return userLog_; }
    [[nodiscard]] CodeLocks& codeLocks() { return codeLocks_; }
    [[nodiscard]] SettingsStore& settings() { return settings_; }
    [[nodiscard]] FormOptionStore& formOptions() { return formOptions_; }
    [[nodiscard]] PropertyStore& properties() { return properties_; }
    [[nodiscard]] const MessageCatalogue& catalogue() const { return catalogue_; }
    [[nodiscard]] IniOptionsFile& optionFile() { return optionFile_; }
    [[nodiscard]] Clock& clock() { return *clock_; }
    [[nodiscard]] const std::string& workstationName() const;
    // Changes the options of the workstation, in the option file when options persist, and for all that follows; the
    // name too. As IniOptionsFile::change when it cannot be written.
    void changeWorkstation(const std::function<void(WorkstationOptions&)>& change);
    // A field of SettingRecord for this process only; UsageError as SettingsStore::assign.
    void setSetting(const std::string& name, const std::string& value) { settings_.override(name, value); }

    // Host
    TDM& DM() override { return dm_; }
    const TUserInfo& UserInfo() override;  // UsageError when nobody is signed in
    const TIniOptions& IniOptions() override;
    const TSettingRecord& SettingRecord() override { return lent_ ? *lent_ : settings_.record(); }
    Value ScalerQuery(const std::string& table, const std::string& resultField, const std::string& keyField,
                      const std::string& keyValue) override;
    void ResetDataset(TADOQuery& query) override;
    bool CheckGoodUnitFormul(int goodCode) override;
    bool LocateLockCode_SoftwarePart(const std::string& code, TSoftwarePart part, int owner, bool flag) override;
    bool HavePermission(const TUserInfo& user, TSoftwarePart part, TPermission permission, bool entryPoint,
                        bool tellUser, const std::string& text) override;
    void SetUserEvent(TSoftwarePart part, TPermission permission, const std::string& text, bool insideTransaction,
                      bool withDescription) override;
    std::string NowDate(const std::string& separator) override;
    // UsageError when no module is attached or it lacks the export.
    int Call_insert_tags(const std::string& text, std::uint8_t kind) override;
    // UsageError without screens.
    std::string Select_Entity_Multible(TSoftwarePart part, const std::string& text) override;
    MessageService& Messages() override { return *messages_; }
    ScreenServices* Screens() override { return screens_; }
    ProgramService& Programs() override { return watchedPrograms_; }
    std::vector<std::string> StoredList(const std::string& name) override;
    void StoreList(const std::string& name, const std::vector<std::string>& values) override;

private:
    friend class LentSettings;

    // Tells the observer and passes on.
    class WatchedPrograms final : public ProgramService {
    public:
        explicit WatchedPrograms(ReferenceHost& host) : host_(host) {}
        StartResult start(const ProgramStart& program) override {
            if (host_.observer_) host_.observer_->programStarting(program);
            return host_.programs_->start(program);
        }
        [[nodiscard]] std::unique_ptr<ProgramLibrary> load(const std::string& name) override {
            return host_.programs_->load(name);
        }

    private:
        ReferenceHost& host_;
    };

    void enter(const TUserInfo& user);
    [[nodiscard]] ProcessIdentity process() const;
    void recordRefusal(const std::function<void()>& write);
    void recordRefusedSignIn(const std::string& userName);
    void recordFor(const TUserInfo& user, TSoftwarePart part, TPermission permission, const std::string& text,
                   const std::string& description);
    void record(TSoftwarePart part, TPermission permission, const std::string& text, const std::string& description);

    Session& session_;
    HostOptions options_;
    SystemClock systemClock_;
    Clock* clock_ = &systemClock_;
    MessageCatalogue catalogue_;
    std::unique_ptr<MessageService> unattended_;
    MessageService* messages_;
    ScreenServices* screens_ = nullptr;
    EntityPicking* picking_ = nullptr;
    const Registry* exports_ = nullptr;
    HostObserver* observer_ = nullptr;
    SystemPrograms systemPrograms_;
    ProgramService* programs_ = &systemPrograms_;
    WatchedPrograms watchedPrograms_{*this};

    TADOConnection moduleConnection_;
    TADOConnection ownConnection_;
    TADOQuery sharedQuery_;
    TADOCommand sharedCommand_;
    TADOStoredProc sharedProc_;
    TDM dm_;

    IniOptionsFile optionFile_;
    Workstations workstations_;
    UserStore users_;
    PermissionStore permissions_;
    UserLog userLog_;
    SettingsStore settings_;
    const TSettingRecord* lent_ = nullptr;
    FormOptionStore formOptions_;
    PropertyStore properties_;
    CodeLocks codeLocks_;

    TUserInfo user_;
    TIniOptions ini_;
    bool claimed_ = false;
};

// Has the module read other settings than the company's while it lives, for a call into it. settings() is not touched:
// nothing is stored, and the host's own screens go by what the company has set.
//
//   TSettingRecord settings = host.settings().record();
//   settings.NegativeType = 2;
//   const LentSettings lent(host, settings);
class LentSettings {
public:
    LentSettings(ReferenceHost& host, TSettingRecord settings)
        : host_(host), settings_(std::move(settings)), before_(std::exchange(host.lent_, &settings_)) {}
    ~LentSettings() { host_.lent_ = before_; }
    LentSettings(const LentSettings&) = delete;
    LentSettings& operator=(const LentSettings&) = delete;

private:
    ReferenceHost& host_;
    const TSettingRecord settings_;
    const TSettingRecord* before_;
};

}  // namespace basalt::host
