// Any bytes as a barcode, with a layout made of the first ones.
#include <array>
#include <optional>

#include "ado/error.h"
#include "fuzz/require.h"
#include "fuzz/substring_oracle.h"
#include "fuzz/targets.h"
#include "goods/barcode_extractor_unt.h"
#include "goods/character_cut.h"
#include "package/services.h"

namespace basalt::fuzz {

namespace {

namespace state = Barcode_extractor_unt;

constexpr std::array kNumbers = {"DigitCount",       "ConstantStart",    "ConstantCount", "BarCodeType",
                                 "ItemConstantCode", "ItemCodeType",     "ItemCodeStart", "ItemCodeCount",
                                 "AmountStart",      "AmountCount",      "AmountDivide",  "BalanceNoStart",
                                 "BalanceNoCount",   "BalanceNoAsStore", "PriceStart",    "PriceCount"};

// Small numbers mostly, and now and then the ends of the range.
int numberFrom(char byte) {
    const int value = static_cast<signed char>(byte);
    if (value == 127) return 2147483647;
    if (value == -128) return -2147483647 - 1;
    return value;
}

// Where a field's numbers stand among the layout's.
struct FieldNumbers {
    const char* name;
    std::size_t start;
    std::size_t count;
};
constexpr FieldNumbers kConstant{"ConstantStart", 1, 2};
constexpr FieldNumbers kItem{"ItemCodeStart", 6, 7};
constexpr FieldNumbers kAmount{"AmountStart", 8, 9};
constexpr FieldNumbers kBalance{"BalanceNoStart", 11, 12};
constexpr FieldNumbers kPrice{"PriceStart", 14, 15};

// What the field is by the oracle; nullopt for a barcode that is no text.
std::optional<std::string> fieldOf(std::string_view numbers, const FieldNumbers& field, std::string_view barcode) {
    return substringOf(barcode, numberFrom(numbers[field.start]), numberFrom(numbers[field.count]));
}

std::string_view withoutBlanksAround(std::string_view text) {
    constexpr std::string_view kBlanks(
        "\0\1\2\3\4\5\6\7\b\t\n\v\f\r\x0E\x0F\x10\x11\x12\x13\x14\x15\x16\x17\x18\x19\x1A\x1B\x1C\x1D\x1E\x1F ", 33);
    const std::size_t begin = text.find_first_not_of(kBlanks);
    if (begin == std::string_view::npos) return {};
    return text.substr(begin, text.find_last_not_of(kBlanks) - begin + 1);
}

// Answers every question for layouts with one, every other with one good and its price.
class OneLayout final : public Session {
public:
    void set(std::string_view numbers, std::string_view constant) {
        std::vector<ColumnInfo> columns;
        for (const char* name : kNumbers)
            columns.push_back({.name = name, .type = FieldType::Integer});
        columns.push_back({.name = "ConstantCode", .type = FieldType::Text, .size = 20});
        RowSet rows(columns);
        for (std::size_t i = 0; i < kNumbers.size(); ++i)
            rows.column(i).appendInt(numberFrom(numbers[i]));
        rows.column(kNumbers.size()).appendText(constant);
        rows.finishRow();
        layout_ = std::move(rows);
    }

    BatchResult run(std::string_view sql) override {
        const bool layouts = sql.find("dbo.BarCodeFormul") != std::string_view::npos;
        RowSet rows = layouts ? std::move(layout_) : goods();
        BatchResult batch;
        batch.results.push_back({.rows = std::move(rows)});
        return batch;
    }
    BatchResult run(std::string_view sql, std::span<const Value>) override { return run(sql); }
    ProcedureInfo procedure(std::string_view) override { throw std::logic_error("nothing is called"); }
    CallResult call(std::string_view, std::span<const Argument>) override {
        throw std::logic_error("nothing is called");
    }
    void begin() override {}
    void commit() override {}
    void rollback() override {}
    [[nodiscard]] bool inTransaction() const override { return false; }
    TableInfo table(std::string_view) override { throw std::logic_error("nothing is written"); }
    [[nodiscard]] std::string engine() const override { return "one layout"; }
    [[nodiscard]] std::string location() const override { return {}; }

private:
    static RowSet goods() {
        RowSet rows({{.name = "Code", .type = FieldType::Integer}, {.name = "Cost", .type = FieldType::Integer}});
        rows.column(0).appendInt(57);
        rows.column(1).appendInt(1000);
        rows.finishRow();
        return rows;
    }

    RowSet layout_;
};

class SilentHost final : public Host, private MessageService {
public:
    explicit SilentHost(Session& session)
        : connection_(session),
          query_(connection_, "DM.SharedQuery"),
          command_(connection_, "DM.SharedCommand"),
          proc_(connection_, "DM.SharedProc"),
          dm_{connection_, query_, command_, proc_} {}

    TDM& DM() override { return dm_; }
    const TUserInfo& UserInfo() override { return user_; }
    const TIniOptions& IniOptions() override { return options_; }
    const TSettingRecord& SettingRecord() override { return settings_; }
    Value ScalerQuery(const std::string&, const std::string&, const std::string&, const std::string&) override {
        return {};
    }
    void ResetDataset(TADOQuery&) override {}
    bool CheckGoodUnitFormul(int) override { return true; }
    bool LocateLockCode_SoftwarePart(const std::string&, TSoftwarePart, int, bool) override { return false; }
    bool HavePermission(const TUserInfo&, TSoftwarePart, TPermission, bool, bool, const std::string&) override {
        return true;
    }
    void SetUserEvent(TSoftwarePart, TPermission, const std::string&, bool, bool) override {}
    std::string NowDate(const std::string&) override { return {}; }
    int Call_insert_tags(const std::string&, std::uint8_t) override { return 0; }
    std::string Select_Entity_Multible(TSoftwarePart, const std::string&) override { return {}; }
    MessageService& Messages() override { return *this; }
    ScreenServices* Screens() override { return nullptr; }

private:
    int show(const MessageRequest&) override { return mrNone; }

    TADOConnection connection_;
    TADOQuery query_;
    TADOCommand command_;
    TADOStoredProc proc_;
    TDM dm_;
    TUserInfo user_;
    TIniOptions options_;
    TSettingRecord settings_;
};

}  // namespace

void barcode(std::string_view input) {
    // The numbers of the layout, the length of the prefix, the prefix, the barcode.
    if (input.size() < kNumbers.size() + 1) return;
    const std::string_view numbers = input.substr(0, kNumbers.size());
    const std::size_t constant = static_cast<unsigned char>(input[kNumbers.size()]) % 4;
    const std::string_view rest = input.substr(kNumbers.size() + 1);
    if (rest.size() < constant) return;

    const std::string barcode(rest.substr(constant));
    for (const FieldNumbers& field : {kConstant, kItem, kAmount, kBalance, kPrice}) {
        const auto expected = fieldOf(numbers, field, barcode);
        const std::string cut =
            cutCharacters(barcode, numberFrom(numbers[field.start]), numberFrom(numbers[field.count]));
        require(!expected || cut == *expected, "a field is the substring at its place", field.name + (": " + cut));
    }

    OneLayout session;
    session.set(numbers, rest.substr(0, constant));
    SilentHost host(session);
    const AttachedHost attached(host);
    TBarCodeFormulType kind = bftConstPrice;
    bool fits = false;
    try {
        fits = FillGoodInfFromBarcode(butNew, kind, barcode, "12", "", 1000);
    } catch (const DatabaseError& error) {
        require(error.category() == ErrorCategory::Conversion, "only a conversion can fail", error.what());
        require(kind == bftNone, "a failed scan is of no kind");
        return;
    }
    require(state::Percode == Value(std::string("12")), "the person is kept");
    if (!fits || kind != bftAmount) {
        require(fits || kind == bftNone, "a barcode without layout is of no kind");
        require(state::Fi.empty() && state::Weight.empty() && state::BalanceNum.empty() && isNull(state::GoodCode),
                "only a good fills the fields");
        return;
    }
    const auto isField = [&](const FieldNumbers& field, const std::string& text) {
        require(utf16Length(text) <= utf16Length(barcode), "a field is a part of the barcode", text);
        const auto expected = fieldOf(numbers, field, withoutBlanksAround(barcode));
        require(!expected || text == *expected, "the field is cut where the layout says", field.name + (": " + text));
    };
    const bool isAlwaysOneGood = numberFrom(numbers[4]) > 0;
    if (!isAlwaysOneGood && numberFrom(numbers[5]) == kGoodFieldIsItsCode) isField(kItem, toText(state::GoodCode));
    const int amountCount = numberFrom(numbers[kAmount.count]);
    const int amountDivide = numberFrom(numbers[10]);
    if (amountCount <= 0) require(state::Weight == "1", "no amount is one piece", state::Weight);
    if (amountCount > 0 && amountDivide <= 0) isField(kAmount, state::Weight);
    if (numberFrom(numbers[kBalance.count]) > 0 && numberFrom(numbers[13]) != 0) {
        isField(kBalance, state::BalanceNum);
    } else {
        require(state::BalanceNum == "-1", "a scale that is not read has no number", state::BalanceNum);
    }
    if (numberFrom(numbers[kPrice.count]) > 0) {
        isField(kPrice, state::Fi);
    } else {
        require(state::Fi == "1000", "a price that is not printed is the person's", state::Fi);
    }
}

}  // namespace basalt::fuzz
