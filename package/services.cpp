#include "package/services.h"

#include <vector>

#include "ado/error.h"

namespace basalt {

namespace {

Host* currentHost = nullptr;

// Made at first use: units of other files register before main.
std::vector<void (*)() noexcept>& releases() {
    static std::vector<void (*)() noexcept> all;
    return all;
}

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
    if (currentHost != nullptr && currentHost != host) {
        for (const auto release : releases())
            release();
    }
    currentHost = host;
}

void whenHostLeaves(void (*release)() noexcept) {
    releases().push_back(release);
}

AttachedHost::AttachedHost(Host& host) : previous_(currentHost) {
    attachHost(&host);
}

AttachedHost::~AttachedHost() {
    attachHost(previous_);
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

bool HavePermission(const TUserInfo& user, TSoftwarePart part, TPermission permission, bool entryPoint, bool tellUser,
                    const std::string& text) {
    return attachedHost().HavePermission(user, part, permission, entryPoint, tellUser, text);
}

void SetUserEvent(TSoftwarePart part, TPermission permission, const std::string& text, bool insideTransaction,
                  bool withDescription) {
    attachedHost().SetUserEvent(part, permission, text, insideTransaction, withDescription);
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

ProgramService& Programs() {
    return attachedHost().Programs();
}

std::vector<std::string> StoredList(const std::string& name) {
    return attachedHost().StoredList(name);
}

void StoreList(const std::string& name, const std::vector<std::string>& values) {
    attachedHost().StoreList(name, values);
}

}  // namespace basalt
