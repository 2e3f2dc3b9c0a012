#include "host/services/reference_host.h"

#include <algorithm>

#include "host/services/cut_text.h"
#include "host/services/host_parts.h"
#include "host/services/jalali_calendar.h"
#include "host/services/sql_access.h"
#include "host/services/unit_formula.h"
#include "package/numbers.h"

namespace basalt::host {

namespace {

// Stands in until somebody shows messages: notes have nobody to read them, but a question cannot be answered for the
// user.
class UnattendedMessages final : public MessageService {
public:
    explicit UnattendedMessages(const MessageCatalogue& catalogue) : catalogue_(catalogue) {}

    int show(const MessageRequest& request) override {
        if (!request.isQuestion()) return mrNone;
        throw UsageError("nobody is there to answer " + request.operation + ": " + catalogue_.render(request).text);
    }

private:
    const MessageCatalogue& catalogue_;
};

std::vector<std::filesystem::path> foldersOf(const HostOptions& options) {
    if (options.programFolder.empty()) return {};
    return {options.programFolder};
}

HostOptions withShortName(HostOptions options) {
    options.workstationName = cutText(options.workstationName, kLongestWorkstationName);
    return options;
}

std::string timeText(const CivilDateTime& moment) {
    const auto two = [](int number) { return (number < 10 ? "0" : "") + std::to_string(number); };
    return two(moment.hour) + ":" + two(moment.minute) + ":" + two(moment.second);
}

std::string dateText(const CivilDateTime& moment, const std::string& separator) {
    return toText(toJalali(moment.year, moment.month, moment.day), separator);
}

// The record with this code that stands nearest to the given one, which it is itself when there is none: a list may
// hold several of one code.
int nearestWith(const TADOQuery& query, const TField& key, const Value& code, int number) {
    const int last = query.RecordCount();
    for (int distance = 0; distance < last; ++distance) {
        for (const int near : {number - distance, number + distance}) {
            if (near >= 1 && near <= last && query.valueAt(near - 1, key.Index()) == code) return near;
        }
    }
    return number;
}

// A table or column as it may stand in a statement: letters, digits, _ and points between, or a name in brackets.
// Others could carry a statement of their own.
void requireName(const std::string& name, const char* what) {
    bool valid = !name.empty();
    bool bracketed = false;
    for (const char c : name) {
        const auto byte = static_cast<unsigned char>(c);
        if (bracketed) {
            if (c == ']') bracketed = false;
        } else if (c == '[') {
            bracketed = true;
        } else if (!(std::isalnum(byte) || byte >= 0x80 || c == '_' || c == '.' || c == '#')) {
            valid = false;
        }
    }
    if (!valid || bracketed) throw UsageError(std::string("\"") + name + "\" is not a " + what);
}

}  // namespace

ReferenceHost::ReferenceHost(Session& session, HostOptions options)
    : session_(session),
      options_(withShortName(std::move(options))),
      unattended_(std::make_unique<UnattendedMessages>(catalogue_)),
      messages_(unattended_.get()),
      systemPrograms_(foldersOf(options_)),
      moduleConnection_(session, "ADOConnection1"),
      ownConnection_(session, "HostConnection"),
      sharedQuery_(moduleConnection_, "DM.SharedQuery"),
      sharedCommand_(moduleConnection_, "DM.SharedCommand"),
      sharedProc_(moduleConnection_, "DM.SharedProc"),
      dm_{moduleConnection_, sharedQuery_, sharedCommand_, sharedProc_},
      optionFile_(options_.persistOptions ? options_.userDataFolder : std::filesystem::path()),
      workstations_(session),
      users_(session),
      permissions_(session),
      userLog_(session),
      settings_(session),
      formOptions_(session),
      properties_(session),
      codeLocks_(session, [this] {
          const CivilDateTime now = clock_->now();
          return CodeLockOwner{.owner = IniOptions().LockOwner,
                               .userCode = user_.Code,
                               .workstationName = workstationName(),
                               .moment = dateText(now, "/") + " " + timeText(now)};
      }) {}

ReferenceHost::~ReferenceHost() {
    try {
        formOptions_.saveRest();
    } catch (const std::exception&) {
        // The screens then open as they did this time.
    }
    if (!claimed_) return;
    try {
        const ShortWait wait(session_);
        workstations_.release(ini_.LockOwner);
    } catch (const std::exception&) {
        // The next client of this machine sees that the process is gone and cleans up.
    }
}

bool ReferenceHost::signIn(const std::string& userName, const std::string& password) {
    const auto user = users_.signIn(userName, password);
    if (!user) {
        recordRefusal([&] { recordRefusedSignIn(userName); });
        return false;
    }
    workstations_.removeKilledIfPossible(process().machine);
    const TUserInfo before = user_;
    enter(*user);
    try {
        record(hpUsers, prOpen, std::to_string(user->Code), "ورود به سیستم");
    } catch (...) {
        user_ = before;
        throw;
    }
    return true;
}

// Nobody waits for the log to be refused, nor hears of a log that cannot be written in place of the refusal.
void ReferenceHost::recordRefusal(const std::function<void()>& write) {
    try {
        const ShortWait wait(session_);
        write();
    } catch (const std::exception&) {
        // Another program writes: the refusal stands without its line.
    }
}

// Whose name it was, if anybody's. What else was typed as a name may be a password in the wrong box.
void ReferenceHost::recordRefusedSignIn(const std::string& userName) {
    const RowSet rows = rowsOf(session_, "SELECT Code FROM dbo.HostUsers WHERE UserName = ?", {userName});
    const auto user = rows.rowCount() > 0 ? users_.find(static_cast<int>(integerAt(rows, 0, 0))) : std::nullopt;
    recordFor(user.value_or(TUserInfo{}), hpUsers, prOpen, user ? std::to_string(user->Code) : std::string(),
              user ? "ورود ناموفق به سیستم" : "ورود ناموفق به سیستم با نامی که نیست");
}

void ReferenceHost::signInAs(int userCode) {
    const auto user = users_.find(userCode);
    if (!user) throw UsageError("there is no user " + std::to_string(userCode));
    enter(*user);
}

void ReferenceHost::enter(const TUserInfo& user) {
    settings_.reload();
    user_ = user;
}

void ReferenceHost::signOut() {
    user_ = {};
}

void ReferenceHost::setMessages(MessageService& service) {
    messages_ = &service;
}

const std::string& ReferenceHost::workstationName() const {
    return options_.workstationName.empty() ? optionFile_.options().workstationName : options_.workstationName;
}

void ReferenceHost::changeWorkstation(const std::function<void(WorkstationOptions&)>& change) {
    optionFile_.change(change);
    options_.workstationName.clear();
    ini_.WorkstationName = workstationName();
    if (claimed_) workstations_.rename(ini_.LockOwner, ini_.WorkstationName);
}

const TUserInfo& ReferenceHost::UserInfo() {
    if (!signedIn()) throw UsageError("nobody is signed in");
    return user_;
}

ProcessIdentity ReferenceHost::process() const {
    return options_.process ? *options_.process : currentProcess();
}

const TIniOptions& ReferenceHost::IniOptions() {
    if (!claimed_) {
        ini_.WorkstationName = workstationName();
        ini_.LockOwner = workstations_.claim(process(), ini_.WorkstationName);
        claimed_ = true;
    }
    return ini_;
}

Value ReferenceHost::ScalerQuery(const std::string& table, const std::string& resultField, const std::string& keyField,
                                 const std::string& keyValue) {
    requireName(table, "table");
    requireName(keyField, "column");
    const RowSet rows = rowsOf(session_, "SELECT " + resultField + " AS Result FROM " + table + " WHERE " + keyField +
                                             " = N" + QuotedStr(keyValue));
    if (rows.rowCount() == 0) return {};
    return rows.column(0).valueAt(0);
}

void ReferenceHost::ResetDataset(TADOQuery& query) {
    const int number = query.RecNo();
    const TField* key = query.Active() && !query.IsEmpty() ? query.FindField("Code") : nullptr;
    const Value code = key ? key->AsValue() : Value{};
    query.Requery();
    if (query.IsEmpty()) return;
    const int nearby = std::clamp(number, 1, query.RecordCount());
    const TField* found = key ? query.FindField("Code") : nullptr;
    query.RecNo(found ? nearestWith(query, *found, code, nearby) : nearby);
}

bool ReferenceHost::CheckGoodUnitFormul(int goodCode) {
    const RowSet rows = rowsOf(session_, "SELECT UnitFormul FROM dbo.GoodInf WHERE Code = ?", {std::int64_t{goodCode}});
    if (rows.rowCount() == 0) return false;
    return evaluateUnitFormula(textAt(rows, 0, 0), 1.0).has_value();
}

bool ReferenceHost::LocateLockCode_SoftwarePart(const std::string& code, TSoftwarePart part, int owner, bool flag) {
    if (!codeLocks_.isHeld(code, part, owner, flag)) return false;
    // Perhaps by a client that was killed while this one was running.
    workstations_.removeKilled(process().machine);
    return codeLocks_.isHeld(code, part, owner, flag);
}

bool ReferenceHost::HavePermission(const TUserInfo& user, TSoftwarePart part, TPermission permission, bool entryPoint,
                                   bool tellUser, const std::string& text) {
    if (permissions_.holds(user.Code, part, permission)) return true;
    if (!tellUser) return false;
    MessageRequest request;
    request.operation = "HavePermission";
    request.arguments = {permissions_.partTitle(part), permissions_.permissionTitle(permission)};
    if (!text.empty()) request.arguments.push_back(text);
    messages_->show(request);
    // A door that somebody has tried; what may be done behind one is only asked for.
    if (entryPoint && user.Code == user_.Code) {
        recordRefusal([&] {
            record(part, permission, "",
                   "دسترسی داده نشد: " + permissions_.permissionTitle(permission) + " «" +
                       permissions_.partTitle(part) + "»");
        });
    }
    return false;
}

void ReferenceHost::SetUserEvent(TSoftwarePart part, TPermission permission, const std::string& text,
                                 bool insideTransaction, bool withDescription) {
    if (insideTransaction && !session_.inTransaction()) {
        throw UsageError("the user event belongs to a transaction, but none is open");
    }
    std::string description;
    // Of a record that is gone the code alone tells nothing any more.
    if (withDescription || permission == prDelete) {
        description = permissions_.permissionTitle(permission) + " «" + permissions_.partTitle(part) + "»";
    }
    record(part, permission, text, description);
    if (observer_) observer_->userEvent(part, permission, text);
}

void ReferenceHost::recordEvent(TSoftwarePart part, TPermission permission, const std::string& text,
                                const std::string& description) {
    if (!session_.inTransaction()) throw UsageError("the user event belongs to a transaction, but none is open");
    record(part, permission, text, description);
    if (observer_) observer_->userEvent(part, permission, text);
}

void ReferenceHost::record(TSoftwarePart part, TPermission permission, const std::string& text,
                           const std::string& description) {
    recordFor(UserInfo(), part, permission, text, description);
}

void ReferenceHost::recordFor(const TUserInfo& user, TSoftwarePart part, TPermission permission,
                              const std::string& text, const std::string& description) {
    const CivilDateTime now = clock_->now();
    userLog_.add({.userCode = user.Code,
                  .userName = user.FullName,
                  .workstationName = workstationName(),
                  .date = dateText(now, "/"),
                  .time = timeText(now),
                  .part = part,
                  .permission = permission,
                  .text = text,
                  .description = description},
                 fromCivil(now));
}

std::vector<std::string> ReferenceHost::StoredList(const std::string& name) {
    return properties_.getList(UserInfo().Code, name);
}

void ReferenceHost::StoreList(const std::string& name, const std::vector<std::string>& values) {
    const int user = UserInfo().Code;
    HostTransaction transaction(session_);
    execute(session_, "SELECT Value FROM dbo.HostProperties WITH (UPDLOCK, HOLDLOCK) WHERE UserCode = ? AND Name = ?",
            {std::int64_t{user}, name});
    // Another program of the user may have added to the list since the caller read it; that stays.
    std::vector<std::string> kept = properties_.getList(user, name);
    for (const std::string& value : values) {
        if (std::find(kept.begin(), kept.end(), value) == kept.end()) kept.push_back(value);
    }
    properties_.setList(user, name, kept);
    transaction.commit();
}

std::string ReferenceHost::NowDate(const std::string& separator) {
    return dateText(clock_->now(), separator);
}

int ReferenceHost::Call_insert_tags(const std::string& text, std::uint8_t kind) {
    const EntryPoint* entry = exports_ ? exports_->findEntryPoint("Open_InsertTags") : nullptr;
    if (!entry) throw UsageError("Call_insert_tags: no module with the export Open_InsertTags is attached");
    FunctionState state;
    FunctionCall call(state, {{"Text", Datum(text)}, {"Kind", Datum(static_cast<int>(kind))}});
    entry->run(call);
    return call.resultValue().isNull() ? 0 : static_cast<int>(call.resultValue().asInteger());
}

std::string ReferenceHost::Select_Entity_Multible(TSoftwarePart part, const std::string& text) {
    if (!picking_) throw UsageError("Select_Entity_Multible: there is no screen to pick on");
    return picking_->pickEntities(part, text);
}

}  // namespace basalt::host
