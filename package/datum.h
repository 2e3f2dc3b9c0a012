// Values that cross the registry: what a caller passes to a function and what comes back, free of any text format.
//
//   Datum level = Datum::record({{"Code", 3}, {"Name", "همکار"}});
//   level["Code"].asInteger()
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

#include "ado/value.h"

namespace basalt {

class Datum {
public:
    using List = std::vector<Datum>;
    using Fields = std::vector<std::pair<std::string, Datum>>;  // in the record's order

    Datum() = default;  // null
    Datum(std::nullptr_t) {}
    Datum(bool value) : value_(value) {}
    Datum(int value) : value_(static_cast<std::int64_t>(value)) {}
    Datum(std::int64_t value) : value_(value) {}
    Datum(Decimal value) : value_(value) {}
    Datum(Extended value);  // nine digits after the point, as FloatToStr_VRO writes it
    Datum(const char* value) : value_(std::string(value)) {}
    Datum(std::string value) : value_(std::move(value)) {}
    [[nodiscard]] static Datum list(List items);
    [[nodiscard]] static Datum record(Fields fields);
    // What the other side is to call; null without a function. It has no text form that could be read back.
    [[nodiscard]] static Datum event(std::function<void()> handler);
    [[nodiscard]] static Datum from(const Value& value);  // bytes as 0x..., dates as text

    [[nodiscard]] bool isNull() const { return std::holds_alternative<std::monostate>(value_); }
    [[nodiscard]] bool isBool() const { return std::holds_alternative<bool>(value_); }
    [[nodiscard]] bool isInteger() const { return std::holds_alternative<std::int64_t>(value_); }
    [[nodiscard]] bool isDecimal() const { return std::holds_alternative<Decimal>(value_); }
    [[nodiscard]] bool isText() const { return std::holds_alternative<std::string>(value_); }
    [[nodiscard]] bool isList() const { return std::holds_alternative<List>(value_); }
    [[nodiscard]] bool isRecord() const { return std::holds_alternative<Fields>(value_); }
    [[nodiscard]] bool isEvent() const { return std::holds_alternative<Event>(value_); }

    // Conversions between the plain kinds; a UsageError that shows the value when it cannot be read so.
    [[nodiscard]] bool asBool() const;             // true, false, 1, 0, "yes", "no", "true", "false", "-1"
    [[nodiscard]] std::int64_t asInteger() const;  // also decimal text
    [[nodiscard]] int asInt32() const;             // as asInteger; a UsageError too beyond 32 bits
    [[nodiscard]] Extended asAmount() const;       // also text as StrToFloat_VRO reads it
    [[nodiscard]] std::string asText() const;      // numbers in plain digits, null as the empty text, "event"
    [[nodiscard]] const List& asList() const;
    [[nodiscard]] const Fields& asRecord() const;
    [[nodiscard]] std::function<void()> asEvent() const;  // null as none
    // A field of a record, names compared without case; null when the record has no such field.
    [[nodiscard]] const Datum& operator[](std::string_view field) const;

    // One line of JSON; decimals as plain numbers without trailing zeros, texts in UTF-8.
    [[nodiscard]] std::string toJson() const;
    // Reads JSON exactly (numbers with a fraction become decimals); UsageError with the position when it is malformed.
    [[nodiscard]] static Datum parseJson(std::string_view text);

    bool operator==(const Datum&) const = default;

private:
    // Shared, so that copies are the same event.
    using Event = std::shared_ptr<const std::function<void()>>;

    std::variant<std::monostate, bool, std::int64_t, Decimal, std::string, List, Fields, Event> value_;
};

}  // namespace basalt
