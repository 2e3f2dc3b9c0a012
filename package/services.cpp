#include "package/services.h"

#include <utility>

#include "ado/error.h"

namespace basalt {

namespace {

Host* currentHost = nullptr;

}  // namespace

Host& attachedHost() {
    if (currentHost == nullptr)
        throw UsageError("no host is attached: attach one before anything of the module is called");
    return *currentHost;
}

bool hasHost() noexcept {
    return currentHost != nullptr;
}

void attachHost(Host* host) noexcept {
    currentHost = host;
}

AttachedHost::AttachedHost(Host& host) : previous_(std::exchange(currentHost, &host)) {}

AttachedHost::~AttachedHost() {
    currentHost = previous_;
}

TDM& DM() {
    return attachedHost().DM();
}

const TUserInfo& UserInfo() {
    return attachedHost().UserInfo();
}

const TIniOptions& IniOptions() {
    return attachedHost().IniOptions();
}

const TSettingRecord& SettingRecord() {
    return attachedHost().SettingRecord();
}

Value ScalerQuery(const std::string& table, const std::string& resultField, const std::string& keyField,
                  const std::string& keyValue) {
    return attachedHost().ScalerQuery(table, resultField, keyField, keyValue);
}

void ResetDataset(TADOQuery& query) {
    attachedHost().ResetDataset(query);
}

bool CheckGoodUnitFormul(int goodCode) {
    return attachedHost().CheckGoodUnitFormul(goodCode);
}

bool LocateLockCode_SoftwarePart(const std::string& code, TSoftwarePart part, int owner, bool flag) {
    return attachedHost().LocateLockCode_SoftwarePart(code, part, owner, flag);
}

bool HavePermission(const TUserInfo& user, TSoftwarePart part, TPermission permission, bool flag1, bool flag2,
                    const std::string& text) {
    return attachedHost().HavePermission(user, part, permission, flag1, flag2, text);
}

void SetUserEvent(TSoftwarePart part, TPermission permission, const std::string& text, bool flag1, bool flag2) {
    attachedHost().SetUserEvent(part, permission, text, flag1, flag2);
}

std::string NowDate(const std::string& separator) {
    return attachedHost().NowDate(separator);
}

int Call_insert_tags(const std::string& text, std::uint8_t kind) {
    return attachedHost().Call_insert_tags(text, kind);
}

std::string Select_Entity_Multible(TSoftwarePart part, const std::string& text) {
    return attachedHost().Select_Entity_Multible(part, text);
}

}  // namespace basalt
