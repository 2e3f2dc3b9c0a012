#include "package/datum.h"

#include <cstdint>

#include "ado/error.h"
#include "ado/names.h"
#include "package/numbers.h"

namespace basalt {

namespace {

// As FloatToStr_VRO writes amounts.
constexpr int kAmountDecimals = 9;

// Beyond the range of nine decimals an amount is stored whole, as it is a whole number there anyway.
Decimal amountDecimal(Extended value) {
    auto decimal = Decimal::fromExtended(value, kAmountDecimals);
    if (!decimal) decimal = Decimal::fromExtended(value, 0);
    if (!decimal) throw UsageError("an amount must be a finite number of at most 38 digits");
    return *decimal;
}

[[noreturn]] void failReading(const Datum& value, std::string_view wanted) {
    throw UsageError(value.toJson() + " cannot be read as " + std::string(wanted));
}

std::optional<Decimal> asDecimal(const Datum& value) {
    if (value.isBool()) return Decimal(value.asBool() ? 1 : 0, 0);
    if (value.isInteger()) return Decimal(value.asInteger(), 0);
    if (value.isDecimal() || value.isText()) return Decimal::parse(value.asText());
    return std::nullopt;
}

}  // namespace

Datum::Datum(Extended value) : value_(amountDecimal(value)) {}

Datum Datum::list(List items) {
    Datum datum;
    datum.value_ = std::move(items);
    return datum;
}

Datum Datum::record(Fields fields) {
    Datum datum;
    datum.value_ = std::move(fields);
    return datum;
}

Datum Datum::event(std::function<void()> handler) {
    Datum datum;
    if (handler) datum.value_ = std::make_shared<const std::function<void()>>(std::move(handler));
    return datum;
}

Datum Datum::from(const Value& value) {
    struct Converter {
        Datum operator()(Null) const { return {}; }
        Datum operator()(bool flag) const { return flag; }
        Datum operator()(std::int64_t number) const { return number; }
        Datum operator()(double number) const { return static_cast<Extended>(number); }
        Datum operator()(const Decimal& number) const { return number; }
        Datum operator()(const std::string& text) const { return text; }
        Datum operator()(const Bytes& bytes) const { return toText(Value(bytes)); }
        Datum operator()(const DateTime& time) const { return toText(Value(time)); }
    };
    return std::visit(Converter{}, value);
}

bool Datum::asBool() const {
    if (const bool* flag = std::get_if<bool>(&value_)) return *flag;
    if (isText() || isInteger() || isDecimal()) {
        const std::string text = foldName(asText());
        if (text == "1" || text == "-1" || text == "yes" || text == "true") return true;
        if (text == "0" || text == "no" || text == "false") return false;
    }
    failReading(*this, "a flag");
}

std::int64_t Datum::asInteger() const {
    if (const auto* number = std::get_if<std::int64_t>(&value_)) return *number;
    if (const auto decimal = asDecimal(*this)) {
        const auto number = decimal->toInt64();
        if (number && Decimal(*number, 0) == *decimal) return *number;
    }
    failReading(*this, "a whole number");
}

int Datum::asInt32() const {
    const std::int64_t number = asInteger();
    if (number != static_cast<std::int32_t>(number)) throw UsageError(toJson() + " is beyond the range of an integer");
    return static_cast<int>(number);
}

Extended Datum::asAmount() const {
    if (isText()) {
        // As users write amounts, in digits and separators of their keyboards.
        try {
            return StrToFloat_VRO(asText());
        } catch (const DatabaseError&) {
            failReading(*this, "an amount");
        }
    }
    if (const auto decimal = asDecimal(*this)) return decimal->toExtended();
    failReading(*this, "an amount");
}

std::string Datum::asText() const {
    if (isNull()) return {};
    if (const auto* text = std::get_if<std::string>(&value_)) return *text;
    if (const auto* flag = std::get_if<bool>(&value_)) return *flag ? "true" : "false";
    if (const auto* number = std::get_if<std::int64_t>(&value_)) return std::to_string(*number);
    if (const auto* decimal = std::get_if<Decimal>(&value_)) return decimal->toPlainString();
    if (isEvent()) return "event";
    failReading(*this, "a text");
}

const Datum::List& Datum::asList() const {
    if (const auto* items = std::get_if<List>(&value_)) return *items;
    failReading(*this, "a list");
}

const Datum::Fields& Datum::asRecord() const {
    if (const auto* fields = std::get_if<Fields>(&value_)) return *fields;
    failReading(*this, "a record");
}

std::function<void()> Datum::asEvent() const {
    if (isNull()) return {};
    if (const auto* handler = std::get_if<Event>(&value_)) return **handler;
    failReading(*this, "an event");
}

const Datum& Datum::operator[](std::string_view field) const {
    static const Datum absent;
    for (const auto& [name, value] : asRecord()) {
        if (sameName(name, field)) return value;
    }
    return absent;
}

}  // namespace basalt
