#include "engines/embedded/interpreter/message_format.h"

#include <cstdint>
#include <optional>

#include "engines/embedded/lexer/utf8.h"
#include "engines/embedded/runtime/sql_error.h"
#include "engines/embedded/runtime/utf16.h"

namespace basalt::embedded {

namespace {

constexpr std::int64_t kLongestMessage = 2047;  // UTF-16 units
constexpr int kWidest = 1000;

struct Place {
    bool left = false, plus = false, zero = false, alternate = false, blank = false;
    int width = 0;
    std::optional<int> precision;
    bool large = false;
    char letter = 0;
};

class Formatter {
public:
    Formatter(std::string_view format, const std::vector<Value>& values) : format_(format), values_(values) {}

    std::string run() {
        while (at_ < format_.size()) {
            const char c = format_[at_++];
            if (c != '%') {
                result_ += c;
            } else if (at_ < format_.size() && format_[at_] == '%') {
                result_ += '%';
                ++at_;
            } else {
                fill(readPlace());
            }
        }
        return std::move(result_);
    }

private:
    bool accept(char c) {
        if (at_ >= format_.size() || format_[at_] != c) return false;
        ++at_;
        return true;
    }

    int readNumber() {
        int number = 0;
        while (at_ < format_.size() && format_[at_] >= '0' && format_[at_] <= '9') {
            number = number * 10 + (format_[at_++] - '0');
            if (number > kWidest) number = kWidest;
        }
        return number;
    }

    Place readPlace() {
        const std::size_t start = at_ - 1;
        Place place;
        for (bool flag = true; flag;) {
            flag = false;
            if (accept('-')) flag = place.left = true;
            if (accept('+')) flag = place.plus = true;
            if (accept('0')) flag = place.zero = true;
            if (accept('#')) flag = place.alternate = true;
            if (accept(' ')) flag = place.blank = true;
        }
        place.width = accept('*') ? static_cast<int>(nextInteger(false)) : readNumber();
        if (place.width < 0) {
            place.left = true;
            place.width = -place.width;
        }
        if (place.width > kWidest) place.width = kWidest;
        if (accept('.')) place.precision = accept('*') ? static_cast<int>(nextInteger(false)) : readNumber();
        if (format_.substr(at_, 3) == "I64") {
            place.large = true;
            at_ += 3;
        } else if (!accept('h')) {
            accept('l');
        }
        if (at_ < format_.size()) place.letter = format_[at_++];
        if (std::string_view("diuoxXs").find(place.letter) == std::string_view::npos || place.letter == 0) {
            throwSqlError(2787,
                          "Invalid format specification: '" + std::string(format_.substr(start, at_ - start)) + "'.");
        }
        return place;
    }

    const Value& nextValue() {
        static const Value kNothing = Null{};
        return next_ < values_.size() ? values_[next_++] : kNothing;
    }

    [[noreturn]] void wrongKind() const {
        throwSqlError(2786, "The data type of substitution parameter " + std::to_string(next_) +
                                " does not match the expected type of the format specification.");
    }

    std::int64_t integerOf(const Value& value, bool large) const {
        std::int64_t number = 0;
        if (const auto* integer = std::get_if<std::int64_t>(&value)) {
            number = *integer;
        } else if (const auto* bit = std::get_if<bool>(&value)) {
            number = *bit ? 1 : 0;
        } else {
            wrongKind();
        }
        if (!large && (number < INT32_MIN || number > INT32_MAX)) wrongKind();
        return number;
    }

    std::int64_t nextInteger(bool large) {
        const Value& value = nextValue();
        return isNull(value) ? 0 : integerOf(value, large);
    }

    void fill(const Place& place) {
        const Value& value = nextValue();
        if (isNull(value)) {
            pad("(null)", place);
        } else if (place.letter == 's') {
            const auto* text = std::get_if<std::string>(&value);
            if (!text) wrongKind();
            std::string_view shown = *text;
            if (place.precision)
                shown = shown.substr(0, utf16Offset(shown, *place.precision < 0 ? 0 : *place.precision));
            pad(std::string(shown), place);
        } else {
            fillNumber(place, integerOf(value, place.large));
        }
    }

    void fillNumber(const Place& place, std::int64_t number) {
        const bool isSigned = place.letter == 'd' || place.letter == 'i';
        const std::uint64_t base = place.letter == 'o' ? 8 : place.letter == 'x' || place.letter == 'X' ? 16 : 10;
        std::string prefix;
        auto magnitude = static_cast<std::uint64_t>(number);
        if (isSigned) {
            if (number < 0) {
                prefix = "-";
                magnitude = 0 - magnitude;
            } else if (place.plus) {
                prefix = "+";
            } else if (place.blank) {
                prefix = " ";
            }
        } else if (!place.large) {
            magnitude &= 0xFFFFFFFFU;
        }
        if (place.alternate && magnitude != 0) {
            prefix = base == 16 ? (place.letter == 'x' ? "0x" : "0X") : base == 8 ? "0" : prefix;
        }
        const char* const digits = place.letter == 'X' ? "0123456789ABCDEF" : "0123456789abcdef";
        std::string text;
        do {
            text.insert(text.begin(), digits[magnitude % base]);
            magnitude /= base;
        } while (magnitude != 0);
        if (place.precision) {
            const auto least = static_cast<std::size_t>(*place.precision < kWidest ? *place.precision : kWidest);
            if (*place.precision > 0 && text.size() < least) text.insert(0, least - text.size(), '0');
        } else if (place.zero && !place.left) {
            const auto width = static_cast<std::size_t>(place.width);
            if (text.size() + prefix.size() < width) text.insert(0, width - text.size() - prefix.size(), '0');
        }
        pad(prefix + text, place);
    }

    void pad(std::string text, const Place& place) {
        const std::size_t length = utf16Length(text);
        const auto width = static_cast<std::size_t>(place.width);
        if (length < width) text.insert(place.left ? text.size() : 0, width - length, ' ');
        result_ += text;
    }

    std::string_view format_;
    const std::vector<Value>& values_;
    std::size_t at_ = 0;
    std::size_t next_ = 0;
    std::string result_;
};

}  // namespace

std::string formatMessage(std::string_view format, const std::vector<Value>& values) {
    for (std::size_t i = 0; i < values.size(); ++i) {
        const Value& value = values[i];
        const bool fits = isNull(value) || std::holds_alternative<std::int64_t>(value) ||
                          std::holds_alternative<bool>(value) || std::holds_alternative<std::string>(value);
        if (!fits) {
            throwSqlError(2748, "Cannot specify this data type (parameter " + std::to_string(i + 4) +
                                    ") as a substitution parameter.");
        }
    }
    std::string text = Formatter(format, values).run();
    return text.substr(0, utf16Offset(text, kLongestMessage));
}

}  // namespace basalt::embedded
