// The host's services under their application-wide names. Each forwards to the attached host; without one they raise a
// UsageError that says so.
//
//   if (!HavePermission(UserInfo(), spPriceLevels, prOpen, true, true, "")) return;
#pragma once

#include <string>
#include <vector>

#include "package/host.h"

namespace basalt {

[[nodiscard]] Host& attachedHost();
[[nodiscard]] bool hasHost() noexcept;
// Null detaches. For Module and for tests, which attach a host of their own (see AttachedHost below).
void attachHost(Host* host) noexcept;
// A unit that keeps something of its host (a store on its connection, what was scanned last) gives it up here:
// `release` is called whenever a host leaves or is replaced, while that host is still alive. Once per unit; never
// forgotten.
void whenHostLeaves(void (*release)() noexcept);

// Attaches a host for a scope and puts back the previous one.
class AttachedHost {
public:
    explicit AttachedHost(Host& host);
    ~AttachedHost();
    AttachedHost(const AttachedHost&) = delete;
    AttachedHost& operator=(const AttachedHost&) = delete;

private:
    Host* previous_;
};

[[nodiscard]] TDM& DM();
[[nodiscard]] const TUserInfo& UserInfo();
[[nodiscard]] const TIniOptions& IniOptions();
[[nodiscard]] const TSettingRecord& SettingRecord();

[[nodiscard]] Value ScalerQuery(const std::string& table, const std::string& resultField, const std::string& keyField,
                                const std::string& keyValue);
void ResetDataset(TADOQuery& query);
[[nodiscard]] bool CheckGoodUnitFormul(int goodCode);
[[nodiscard]] bool LocateLockCode_SoftwarePart(const std::string& code, TSoftwarePart part, int owner, bool flag);
[[nodiscard]] bool HavePermission(const TUserInfo& user, TSoftwarePart part, TPermission permission, bool entryPoint,
                                  bool tellUser, const std::string& text);
void SetUserEvent(TSoftwarePart part, TPermission permission, const std::string& text, bool insideTransaction,
                  bool withDescription);
[[nodiscard]] std::string NowDate(const std::string& separator);
int Call_insert_tags(const std::string& text, std::uint8_t kind);
[[nodiscard]] std::string Select_Entity_Multible(TSoftwarePart part, const std::string& text);
[[nodiscard]] ProgramService& Programs();
[[nodiscard]] std::vector<std::string> StoredList(const std::string& name);
void StoreList(const std::string& name, const std::vector<std::string>& values);

}  // namespace basalt
