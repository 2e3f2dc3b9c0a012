// Datum to and from JSON. Numbers keep every digit: they pass as text between JSON and Decimal, never through a double.
#include <charconv>
#include <nlohmann/json.hpp>

#include "ado/error.h"
#include "package/datum.h"

namespace basalt {

namespace {

// Deeper than any record of the module, and shallow enough for the destructors of nested values.
constexpr std::size_t kDeepest = 64;

std::string quotedJson(const std::string& text) {
    // Bytes that are not UTF-8 become U+FFFD, so that a reply is always readable.
    return nlohmann::json(text).dump(-1, ' ', false, nlohmann::json::error_handler_t::replace);
}

// Applies the exponent of a JSON number ("1.5e3"), which Decimal itself does not read.
std::optional<Decimal> decimalFromJson(const std::string& text) {
    const std::size_t mark = text.find_first_of("eE");
    const auto mantissa = Decimal::parse(text.substr(0, mark));
    if (!mantissa || mark == std::string::npos) return mantissa;
    std::size_t begin = mark + 1;
    if (text[begin] == '+') ++begin;
    int exponent = 0;
    const auto [end, error] = std::from_chars(text.data() + begin, text.data() + text.size(), exponent);
    if (mantissa->coefficient() == 0) return Decimal(0, 0);
    if (error != std::errc{}) return std::nullopt;
    const int shift = exponent - mantissa->scale();  // the value is coefficient * 10^shift
    if (shift > kMaxDecimalDigits || shift < -kMaxDecimalDigits) return std::nullopt;
    if (shift <= 0) return Decimal(mantissa->coefficient(), -shift);
    if (mantissa->digits() + shift > kMaxDecimalDigits) return std::nullopt;
    return Decimal(mantissa->coefficient() * powerOfTen(shift), 0);
}

// Builds a Datum as the parser meets its pieces.
class Builder {
public:
    bool null() { return add({}); }
    bool boolean(bool value) { return add(value); }
    bool number_integer(std::int64_t value) { return add(value); }
    bool number_unsigned(std::uint64_t value) {
        if (value <= static_cast<std::uint64_t>(INT64_MAX)) return add(static_cast<std::int64_t>(value));
        return add(Decimal(static_cast<Int128>(value), 0));
    }
    bool number_float(double /*value*/, const std::string& text) {
        const auto decimal = decimalFromJson(text);
        if (!decimal) throw UsageError("the number " + text + " has more than 38 digits");
        return add(*decimal);
    }
    bool string(std::string& value) { return add(std::move(value)); }
    bool binary(nlohmann::json::binary_t& /*value*/) { return false; }  // never in text
    bool start_array(std::size_t /*size*/) { return open(false); }
    bool end_array() { return close(); }
    bool start_object(std::size_t /*size*/) { return open(true); }
    bool end_object() { return close(); }
    bool key(std::string& name) {
        open_.back().names.push_back(std::move(name));
        return true;
    }
    [[noreturn]] static bool parse_error(std::size_t position, const std::string& token,
                                         const nlohmann::json::exception& error) {
        // The number's digits were read without fault; it is only beyond every kind of number.
        if (dynamic_cast<const nlohmann::json::out_of_range*>(&error))
            throw UsageError("the number " + token + " is too large");
        throw UsageError("malformed JSON at character " + std::to_string(position));
    }

    [[nodiscard]] Datum take() { return std::move(result_); }

private:
    struct Level {
        bool isRecord = false;
        std::vector<std::string> names;
        Datum::List values;
    };

    bool add(Datum value) {
        if (open_.empty()) {
            result_ = std::move(value);
        } else {
            open_.back().values.push_back(std::move(value));
        }
        return true;
    }
    bool open(bool isRecord) {
        if (open_.size() == kDeepest) {
            throw UsageError("JSON nested deeper than " + std::to_string(kDeepest) + " levels");
        }
        open_.push_back({.isRecord = isRecord, .names = {}, .values = {}});
        return true;
    }
    bool close() {
        Level level = std::move(open_.back());
        open_.pop_back();
        if (!level.isRecord) return add(Datum::list(std::move(level.values)));
        Datum::Fields fields;
        fields.reserve(level.values.size());
        for (std::size_t i = 0; i < level.values.size(); ++i) {
            fields.emplace_back(std::move(level.names[i]), std::move(level.values[i]));
        }
        return add(Datum::record(std::move(fields)));
    }

    std::vector<Level> open_;
    Datum result_;
};

}  // namespace

std::string Datum::toJson() const {
    if (isNull()) return "null";
    if (isText() || isEvent()) return quotedJson(asText());
    if (isList()) {
        std::string text = "[";
        for (const Datum& item : asList()) {
            if (text.size() > 1) text += ',';
            text += item.toJson();
        }
        return text + ']';
    }
    if (isRecord()) {
        std::string text = "{";
        for (const auto& [name, value] : asRecord()) {
            if (text.size() > 1) text += ',';
            text += quotedJson(name) + ':' + value.toJson();
        }
        return text + '}';
    }
    return asText();
}

Datum Datum::parseJson(std::string_view text) {
    Builder builder;
    nlohmann::json::sax_parse(text, &builder);
    return builder.take();
}

}  // namespace basalt
