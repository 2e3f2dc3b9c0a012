// Company-wide settings: the fields of SettingRecord, kept in the database under their names.
//
//   settings.record().CurrencyDecimals
//   settings.store("CurrencyDecimals", "2");      // for everybody
//   settings.override("NegativeType", "0");       // for this process only
//
// Fields that nobody stored have the defaults of TSettingRecord. Beside them stands how the stock ledger numbers its
// documents, which is for the procedures of the database and not for the module.
#pragma once

#include <functional>
#include <map>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "ado/session.h"
#include "package/types.h"

namespace basalt::host {

enum class SettingKind { Integer, Flag, Text };

// One field of SettingRecord, for settings screens and for checking.
struct SettingField {
    std::string_view name;   // as in TSettingRecord
    std::string_view title;  // Persian
    SettingKind kind;
    int lowest = 0;   // Integer
    int highest = 0;  // Integer; Text: the longest length in characters
};

// How the numbers of the documents in the stock ledger run (database/README.md).
enum class LedgerNumbering {
    EachDate,  // anew with each date; also where nobody has said it
    AllDates,
};

class SettingsStore {
public:
    explicit SettingsStore(Session& session) : session_(session) {}

    [[nodiscard]] static std::span<const SettingField> fields();
    // Names compare without case; null when there is none.
    [[nodiscard]] static const SettingField* findField(std::string_view name);
    // The field's value as text: numbers in decimal, flags "1" and "0".
    [[nodiscard]] static std::string text(const TSettingRecord& record, const SettingField& field);
    // Sets one field from a text; flags also read true, false, yes, no, -1. UsageError with the reason, and for an
    // unknown name with the names there are; the record is unchanged then.
    static void assign(TSettingRecord& record, std::string_view name, std::string_view value);
    // The same, telling the reason in Persian instead; empty when the value fits.
    [[nodiscard]] static std::string problem(const SettingField& field, std::string_view value);

    // Read from the database at the first call.
    [[nodiscard]] const TSettingRecord& record();
    [[nodiscard]] LedgerNumbering ledgerNumbering();
    void reload();

    static constexpr std::string_view kLedgerNumberingName = "LedgerNumbering";
    static constexpr std::string_view kLedgerNumberingTitle = "شماره‌گذاری سندها در کاردکس";

    // Checks and writes; errors as for assign, and nothing is written then.
    void store(std::string_view name, std::string_view value);
    // All fields that differ from record(), the numbering when it differs from ledgerNumbering(), and in the same
    // transaction what `also` writes, given their names; it is not asked when there are none. Returns the names.
    // DatabaseError (Conflict) when somebody else has changed one of the fields since they were read. After an error
    // nothing is written and record() is as it was.
    using AlsoWritten = std::function<void(const std::vector<std::string>& names)>;
    std::vector<std::string> store(const TSettingRecord& record, LedgerNumbering numbering,
                                   const AlsoWritten& also = {});
    std::vector<std::string> store(const TSettingRecord& record, const AlsoWritten& also = {}) {
        return store(record, ledgerNumbering(), also);
    }
    // Holds for this process only and wins over what is stored.
    void override(std::string_view name, std::string_view value);

private:
    [[nodiscard]] std::optional<std::string> lockedValue(const std::string& name);
    void write(const SettingField& field, const std::string& value);
    void write(LedgerNumbering numbering);
    void writeValue(const std::string& name, const std::string& value);

    Session& session_;
    bool loaded_ = false;
    TSettingRecord stored_;  // as read
    TSettingRecord record_;  // with what holds for this process only
    std::map<std::string, std::string, std::less<>> overrides_;
    LedgerNumbering numbering_ = LedgerNumbering::EachDate;
};

}  // namespace basalt::host
