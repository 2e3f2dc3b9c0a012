#include "host/services/settings_store.h"

#include <array>
#include <charconv>
#include <optional>
#include <variant>

#include "ado/error.h"
#include "ado/names.h"
#include "host/services/sql_access.h"

namespace basalt::host {

namespace {

constexpr std::array kFields = {
    SettingField{"CompanyName", "نام شرکت", SettingKind::Text, 0, 100},
    SettingField{"CurrencyDecimals", "تعداد رقم اعشار مبالغ", SettingKind::Integer, 0, 9},
    SettingField{"NegativeType", "کنترل موجودی منفی (۰ ممنوع، ۱ هشدار، ۲ مجاز)", SettingKind::Integer, 0, 2},
    SettingField{"FindGoodByScaleCode", "یافتن کالا با کد ترازو", SettingKind::Flag},
    SettingField{"DetailSingleUnitOnly", "جزئیات کالا فقط یک‌واحدی", SettingKind::Flag},
    SettingField{"DetailTwoUnits", "جزئیات کالا دوواحدی", SettingKind::Flag},
    SettingField{"DetailPartialAmounts", "مقدار جزء برای واحد دوم", SettingKind::Flag},
    SettingField{"DetailRatioUnits", "واحدها با ضریب ثابت", SettingKind::Flag},
    SettingField{"DetailMeasured", "جزئیات کالا با طول و عرض", SettingKind::Flag},
    SettingField{"MetreMorabaUnit", "کد واحد متر مربع (۰ یعنی هیچ)", SettingKind::Integer, 0, 2'147'483'647},
    SettingField{"OperationBarcode1", "بارکد عملیات ۱", SettingKind::Text, 0, 50},
    SettingField{"OperationBarcode2", "بارکد عملیات ۲", SettingKind::Text, 0, 50},
    SettingField{"OperationBarcode3", "بارکد عملیات ۳", SettingKind::Text, 0, 50},
};

using Member = std::variant<int TSettingRecord::*, std::uint8_t TSettingRecord::*, bool TSettingRecord::*,
                            std::string TSettingRecord::*>;

// In the order of kFields.
const std::array<Member, kFields.size()> kMembers = {
    &TSettingRecord::CompanyName,          &TSettingRecord::CurrencyDecimals,     &TSettingRecord::NegativeType,
    &TSettingRecord::FindGoodByScaleCode,  &TSettingRecord::DetailSingleUnitOnly, &TSettingRecord::DetailTwoUnits,
    &TSettingRecord::DetailPartialAmounts, &TSettingRecord::DetailRatioUnits,     &TSettingRecord::DetailMeasured,
    &TSettingRecord::MetreMorabaUnit,      &TSettingRecord::OperationBarcode1,    &TSettingRecord::OperationBarcode2,
    &TSettingRecord::OperationBarcode3,
};

Member memberOf(const SettingField& field) {
    return kMembers[static_cast<std::size_t>(&field - kFields.data())];
}

std::optional<bool> readFlag(std::string_view text) {
    for (const char* yes : {"1", "-1", "true", "yes"}) {
        if (sameName(text, yes)) return true;
    }
    for (const char* no : {"0", "false", "no"}) {
        if (sameName(text, no)) return false;
    }
    return std::nullopt;
}

std::optional<int> readInteger(std::string_view text) {
    int value = 0;
    const auto [end, failure] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (failure != std::errc{} || end != text.data() + text.size()) return std::nullopt;
    return value;
}

// What is wrong with a value; two languages, for two kinds of reader.
struct Problem {
    std::string english;
    std::string persian;
};

std::optional<Problem> examine(const SettingField& field, std::string_view value) {
    const std::string title(field.title);
    switch (field.kind) {
        case SettingKind::Flag:
            if (readFlag(value)) return std::nullopt;
            return Problem{"is a flag: true or false", "«" + title + "» فقط بله یا خیر می‌پذیرد."};
        case SettingKind::Integer: {
            const auto number = readInteger(value);
            if (number && *number >= field.lowest && *number <= field.highest) return std::nullopt;
            const std::string lowest = std::to_string(field.lowest);
            const std::string highest = std::to_string(field.highest);
            return Problem{"is a whole number from " + lowest + " to " + highest,
                           "«" + title + "» باید عددی صحیح از " + lowest + " تا " + highest + " باشد."};
        }
        case SettingKind::Text:
            break;
    }
    if (utf16Length(value) <= static_cast<std::size_t>(field.highest)) return std::nullopt;
    const std::string longest = std::to_string(field.highest);
    return Problem{"has at most " + longest + " characters", "«" + title + "» حداکثر " + longest + " نویسه دارد."};
}

const SettingField& requireField(std::string_view name) {
    if (const SettingField* field = SettingsStore::findField(name)) return *field;
    std::string message = "there is no setting " + std::string(name) + "; there are";
    std::string_view separator = " ";
    for (const SettingField& field : kFields) {
        message += separator;
        message += field.name;
        separator = ", ";
    }
    throw UsageError(message);
}

void put(TSettingRecord& record, const SettingField& field, std::string_view value) {
    const Member member = memberOf(field);
    if (const auto* flag = std::get_if<bool TSettingRecord::*>(&member)) {
        record.*(*flag) = readFlag(value).value_or(false);
    } else if (const auto* small = std::get_if<std::uint8_t TSettingRecord::*>(&member)) {
        record.*(*small) = static_cast<std::uint8_t>(readInteger(value).value_or(0));
    } else if (const auto* number = std::get_if<int TSettingRecord::*>(&member)) {
        record.*(*number) = readInteger(value).value_or(0);
    } else {
        record.*std::get<std::string TSettingRecord::*>(member) = std::string(value);
    }
}

constexpr const char* kEachDate = "date";
constexpr const char* kAllDates = "all";

// As the procedures read it: whatever is not the one is the other.
LedgerNumbering numberingFrom(std::string_view value) {
    return sameName(value, kAllDates) ? LedgerNumbering::AllDates : LedgerNumbering::EachDate;
}

[[noreturn]] void throwChanged(const std::string& name) {
    throw DatabaseError(ErrorCategory::Conflict, "01001", 0,
                        "the setting " + name + " has been changed by somebody else meanwhile; nothing was saved");
}

}  // namespace

std::span<const SettingField> SettingsStore::fields() {
    return kFields;
}

const SettingField* SettingsStore::findField(std::string_view name) {
    for (const SettingField& field : kFields) {
        if (sameName(field.name, name)) return &field;
    }
    return nullptr;
}

std::string SettingsStore::text(const TSettingRecord& record, const SettingField& field) {
    const Member member = memberOf(field);
    if (const auto* flag = std::get_if<bool TSettingRecord::*>(&member)) return record.*(*flag) ? "1" : "0";
    if (const auto* small = std::get_if<std::uint8_t TSettingRecord::*>(&member))
        return std::to_string(record.*(*small));
    if (const auto* number = std::get_if<int TSettingRecord::*>(&member)) return std::to_string(record.*(*number));
    return record.*std::get<std::string TSettingRecord::*>(member);
}

std::string SettingsStore::problem(const SettingField& field, std::string_view value) {
    const auto found = examine(field, value);
    return found ? found->persian : std::string();
}

void SettingsStore::assign(TSettingRecord& record, std::string_view name, std::string_view value) {
    const SettingField& field = requireField(name);
    if (const auto found = examine(field, value)) {
        throw UsageError("the setting " + std::string(field.name) + " " + found->english + ", not \"" +
                         std::string(value) + "\"");
    }
    put(record, field, value);
}

const TSettingRecord& SettingsStore::record() {
    if (!loaded_) reload();
    return record_;
}

LedgerNumbering SettingsStore::ledgerNumbering() {
    if (!loaded_) reload();
    return numbering_;
}

void SettingsStore::reload() {
    TSettingRecord record;
    auto numbering = LedgerNumbering::EachDate;
    const RowSet rows = rowsOf(session_, "SELECT Name, Value FROM dbo.HostSettings");
    for (std::size_t row = 0; row < rows.rowCount(); ++row) {
        // Rows of other programs, and values that somebody wrote by hand and that do not fit, leave the default.
        const SettingField* field = findField(textAt(rows, 0, row));
        const std::string value = textAt(rows, 1, row);
        if (field && !examine(*field, value)) put(record, *field, value);
        if (sameName(textAt(rows, 0, row), kLedgerNumberingName)) numbering = numberingFrom(value);
    }
    numbering_ = numbering;
    stored_ = record;
    for (const auto& [name, value] : overrides_)
        assign(record, name, value);
    record_ = std::move(record);
    loaded_ = true;
}

// The row stays locked, so that nobody changes it between the comparison and the writing.
std::optional<std::string> SettingsStore::lockedValue(const std::string& name) {
    const RowSet rows =
        rowsOf(session_, "SELECT Value FROM dbo.HostSettings WITH (UPDLOCK, HOLDLOCK) WHERE Name = ?", {name});
    if (rows.rowCount() == 0) return std::nullopt;
    return textAt(rows, 0, 0);
}

void SettingsStore::writeValue(const std::string& name, const std::string& value) {
    updateOrInsert(session_, "UPDATE dbo.HostSettings SET Value = ? WHERE Name = ?", {value, name},
                   "INSERT INTO dbo.HostSettings (Name, Value) VALUES (?, ?)", {name, value});
}

void SettingsStore::write(const SettingField& field, const std::string& value) {
    const std::string name(field.name);
    const std::optional<std::string> there = lockedValue(name);
    TSettingRecord current;
    if (there && !examine(field, *there)) put(current, field, *there);
    if (text(current, field) != text(stored_, field)) throwChanged(name);
    writeValue(name, value);
}

void SettingsStore::write(LedgerNumbering numbering) {
    const std::string name(kLedgerNumberingName);
    if (numberingFrom(lockedValue(name).value_or(kEachDate)) != numbering_) throwChanged(name);
    writeValue(name, numbering == LedgerNumbering::AllDates ? kAllDates : kEachDate);
}

void SettingsStore::store(std::string_view name, std::string_view value) {
    TSettingRecord changed = record();
    assign(changed, name, value);
    store(changed);
}

std::vector<std::string> SettingsStore::store(const TSettingRecord& changed, LedgerNumbering numbering,
                                              const AlsoWritten& also) {
    std::vector<std::string> fields;
    for (const SettingField& field : kFields) {
        const std::string value = text(changed, field);
        if (value == text(record(), field)) continue;
        if (const auto found = examine(field, value)) {
            throw UsageError("the setting " + std::string(field.name) + " " + found->english);
        }
        fields.emplace_back(field.name);
    }
    std::vector<std::string> names = fields;
    const bool renumbered = numbering != ledgerNumbering();
    if (renumbered) names.emplace_back(kLedgerNumberingName);
    if (names.empty()) return names;
    HostTransaction transaction(session_);
    for (const std::string& name : fields)
        write(requireField(name), text(changed, requireField(name)));
    if (renumbered) write(numbering);
    if (also) also(names);
    transaction.commit();
    numbering_ = numbering;
    for (const std::string& name : fields) {
        overrides_.erase(name);
        put(stored_, requireField(name), text(changed, requireField(name)));
    }
    record_ = changed;
    return names;
}

void SettingsStore::override(std::string_view name, std::string_view value) {
    const SettingField& field = requireField(name);
    assign(record_, field.name, value);
    overrides_.insert_or_assign(std::string(field.name), std::string(value));
}

}  // namespace basalt::host
