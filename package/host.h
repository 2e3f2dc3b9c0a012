// What the module requires of the application that loads it.
//
// A host implements Host, hands it to Module::attach and keeps it alive until Module::detach. Everything is lent: the
// module opens and closes no connection and frees nothing it finds here. All calls come on the host's user-interface
// thread. The module itself reaches these services through the free functions of package/services.h and
// package/messages.h, which bear the names that the rest of the application knows them by.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "ado/command.h"
#include "ado/connection.h"
#include "ado/error.h"
#include "ado/query.h"
#include "ado/stored_proc.h"
#include "package/messages.h"
#include "package/programs.h"
#include "package/types.h"

namespace basalt {

class ScreenServices;  // package/screens/screen_services.h

// The host's data module: the one connection and three components on it that the data functions borrow. A borrower
// closes the component, sets its statement, runs it and reads the result before it returns.
struct TDM {
    TADOConnection& ADOConnection1;
    TADOQuery& SharedQuery;      // named "DM.SharedQuery"
    TADOCommand& SharedCommand;  // named "DM.SharedCommand"
    TADOStoredProc& SharedProc;  // named "DM.SharedProc"
};

class Host {
public:
    virtual ~Host() = default;

    virtual TDM& DM() = 0;
    virtual const TUserInfo& UserInfo() = 0;
    virtual const TIniOptions& IniOptions() = 0;
    virtual const TSettingRecord& SettingRecord() = 0;

    // The value of `resultField` (a column or an expression) in the row of `table` whose `keyField` equals `keyValue`;
    // null when there is no such row. `keyValue` is decimal text or any text; it is quoted by the host.
    virtual Value ScalerQuery(const std::string& table, const std::string& resultField, const std::string& keyField,
                              const std::string& keyValue) = 0;
    // Re-runs the query's current statement and keeps the cursor near where it was.
    virtual void ResetDataset(TADOQuery& query) = 0;
    // True when the good's unit conversion formula can be evaluated.
    virtual bool CheckGoodUnitFormul(int goodCode) = 0;
    // True when the code of that part is held by an open editor of an owner other than `owner`. `flag` true leaves the
    // owner out of account: any holder counts.
    virtual bool LocateLockCode_SoftwarePart(const std::string& code, TSoftwarePart part, int owner, bool flag) = 0;

    // True when the user holds the permission. On false the host has told the user why, when `tellUser` asks for it in
    // an entry point or a check alike; the caller then does nothing more.
    virtual bool HavePermission(const TUserInfo& user, TSoftwarePart part, TPermission permission, bool entryPoint,
                                bool tellUser, const std::string& text) = 0;
    // Writes one entry to the user activity log. `insideTransaction` says that the caller has begun a transaction that
    // the entry belongs to; `withDescription` asks for the part's title in the entry.
    virtual void SetUserEvent(TSoftwarePart part, TPermission permission, const std::string& text,
                              bool insideTransaction, bool withDescription) = 0;

    // Today in the application's calendar, its fields joined by `separator`: NowDate("/") is "1405/08/30".
    virtual std::string NowDate(const std::string& separator) = 0;

    // Calls the module's export Open_InsertTags: the tag editor, for a new tag when `kind` is 1 and else for the tag of
    // code `text`. Gives the code of the tag, -1 when no tag may be added, and 0 when the user may not.
    virtual int Call_insert_tags(const std::string& text, std::uint8_t kind) = 0;
    // Lets the user pick any number of persons (part 101) or goods (part 102). `text` is what the picker's search
    // starts with. Gives the codes in the order in which they were picked, each followed by a comma ("12,40,7,"); the
    // empty text when nothing was picked or the picker was cancelled. UsageError for another part, and when the host
    // shows no screens.
    [[nodiscard]] virtual std::string Select_Entity_Multible(TSoftwarePart part, const std::string& text) = 0;

    virtual MessageService& Messages() = 0;
    // Null when the host shows no screens; an entry point is then a UsageError.
    virtual ScreenServices* Screens() = 0;

    // Other programs of this workstation. A host without any makes the call a UsageError.
    virtual ProgramService& Programs() { throw UsageError("this host starts no programs"); }

    // What a screen wants to find again after a restart, for the signed-in user: a list of texts of one line each under
    // a name, by habit "Screen.Control". A host that keeps nothing gives an empty list.
    virtual std::vector<std::string> StoredList(const std::string& /*name*/) { return {}; }
    virtual void StoreList(const std::string& /*name*/, const std::vector<std::string>& /*values*/) {}
};

}  // namespace basalt
