#include "engines/embedded/runtime/convert.h"

#include <array>
#include <charconv>
#include <cmath>
#include <cstdio>
#include <limits>

#include "engines/embedded/lexer/utf8.h"
#include "engines/embedded/runtime/dates.h"
#include "engines/embedded/runtime/decimal_math.h"
#include "engines/embedded/runtime/guid.h"
#include "engines/embedded/runtime/sql_error.h"
#include "engines/embedded/runtime/utf16.h"

namespace basalt::embedded {

namespace {

std::string_view trimmed(std::string_view text) {
    while (!text.empty() && (text.back() == ' ' || text.back() == '\t' || text.back() == '\r' || text.back() == '\n'))
        text.remove_suffix(1);
    while (!text.empty() &&
           (text.front() == ' ' || text.front() == '\t' || text.front() == '\r' || text.front() == '\n'))
        text.remove_prefix(1);
    return text;
}

[[noreturn]] void failText(const std::string& value, const SqlType& from, const SqlType& to) {
    throwSqlError(error::kConversionFailed, "Conversion failed when converting the " + std::string(from.baseName()) +
                                                " value '" + value + "' to data type " + std::string(to.baseName()) +
                                                ".");
}

[[noreturn]] void failConverting(const SqlType& from, const SqlType& to) {
    throwSqlError(error::kConvertingType, "Error converting data type " + std::string(from.baseName()) + " to " +
                                              std::string(to.kind == TypeKind::Decimal ? "numeric" : to.baseName()) +
                                              ".");
}

[[noreturn]] void overflowOf(const SqlType& to) {
    throwSqlError(error::kArithmeticOverflow,
                  "Arithmetic overflow error converting expression to data type " + std::string(to.baseName()) + ".");
}

[[noreturn]] void notAllowed(const SqlType& from, const SqlType& to) {
    throwSqlError(529, "Explicit conversion from data type " + std::string(from.baseName()) + " to " +
                           std::string(to.baseName()) + " is not allowed.");
}

std::int64_t checkedInteger(Int128 value, const SqlType& to) {
    if (value < lowest(to.kind) || value > highest(to.kind)) {
        if (to.kind == TypeKind::TinyInt || to.kind == TypeKind::SmallInt) {
            throwSqlError(error::kArithmeticOverflowForType, "Arithmetic overflow error for data type " +
                                                                 std::string(to.baseName()) +
                                                                 ", value = " + toString(value) + ".");
        }
        overflowOf(to);
    }
    return static_cast<std::int64_t>(value);
}

Value integerResult(Int128 value, const SqlType& to) {
    if (to.kind == TypeKind::Bit) return value != 0;
    return checkedInteger(value, to);
}

Int128 truncatedFloat(double value, const SqlType& to) {
    if (!(std::fabs(value) < 1e37)) overflowOf(to);
    return static_cast<Int128>(value);
}

Value textToInteger(const std::string& text, const SqlType& from, const SqlType& to) {
    const std::string_view digits = trimmed(text);
    if (to.kind == TypeKind::Bit) {
        const std::string word = lowerCase(digits);
        if (word == "true") return true;
        if (word == "false") return false;
    }
    if (digits.empty()) return integerResult(0, to);
    std::size_t i = digits[0] == '-' || digits[0] == '+' ? 1 : 0;
    // Blanks between sign and digits are customary to SQL Server.
    while (i < digits.size() && digits[i] == ' ')
        ++i;
    if (i == digits.size()) {
        if (digits.size() == 1) return integerResult(0, to);
        failText(text, from, to);
    }
    Int128 value = 0;
    for (; i < digits.size(); ++i) {
        if (digits[i] < '0' || digits[i] > '9') {
            if (to.kind == TypeKind::BigInt) failConverting(from, to);
            failText(text, from, to);
        }
        value = value * 10 + (digits[i] - '0');
        if (value > (Int128{1} << 100)) break;
    }
    if (digits[0] == '-') value = -value;
    if (to.kind != TypeKind::Bit && (value < lowest(to.kind) || value > highest(to.kind))) {
        if (to.kind == TypeKind::Int) {
            throwSqlError(error::kIntegerOverflow, "The conversion of the " + std::string(from.baseName()) +
                                                       " value '" + text + "' overflowed an int column.");
        }
        if (to.kind == TypeKind::TinyInt || to.kind == TypeKind::SmallInt) {
            throwSqlError(244, "The conversion of the " + std::string(from.baseName()) + " value '" + text +
                                   "' overflowed an " + (to.kind == TypeKind::TinyInt ? "INT1" : "INT2") +
                                   " column. Use a larger integer column.");
        }
        overflowOf(to);
    }
    return integerResult(value, to);
}

Value toInteger(const Value& value, const SqlType& from, const SqlType& to) {
    if (const auto* number = std::get_if<std::int64_t>(&value)) {
        if (from.isDate()) notAllowed(from, to);
        return integerResult(*number, to);
    }
    if (const auto* flag = std::get_if<bool>(&value)) return integerResult(*flag ? 1 : 0, to);
    if (const auto* real = std::get_if<double>(&value)) {
        if (to.kind == TypeKind::Bit) return *real != 0;
        if (to.kind != TypeKind::BigInt &&
            !(*real > static_cast<double>(lowest(to.kind)) - 1 && *real < static_cast<double>(highest(to.kind)) + 1)) {
            char shown[400];
            std::snprintf(shown, sizeof shown, "%f", *real);
            throwSqlError(
                232, "Arithmetic overflow error for type " + std::string(to.baseName()) + ", value = " + shown + ".");
        }
        return integerResult(truncatedFloat(*real, to), to);
    }
    if (const auto* decimal = std::get_if<Decimal>(&value)) {
        if (to.kind == TypeKind::Bit) return decimal->coefficient() != 0;
        // Decimals are cut, money is rounded.
        if (from.kind != TypeKind::Decimal) return integerResult(decimal->rescaled(0).coefficient(), to);
        return integerResult(decimal->coefficient() / powerOfTen(decimal->scale()), to);
    }
    if (const auto* text = std::get_if<std::string>(&value)) return textToInteger(*text, from, to);
    if (const auto* bytes = std::get_if<Bytes>(&value)) {
        std::uint64_t number = 0;
        for (const std::uint8_t byte : *bytes)
            number = (number << 8) | byte;
        if (to.kind == TypeKind::Bit) return number != 0;
        if (to.kind == TypeKind::Int) return static_cast<std::int64_t>(static_cast<std::int32_t>(number));
        if (to.kind == TypeKind::SmallInt) return static_cast<std::int64_t>(static_cast<std::int16_t>(number));
        if (to.kind == TypeKind::TinyInt) return static_cast<std::int64_t>(number & 0xFF);
        return static_cast<std::int64_t>(number);
    }
    if (const auto* date = std::get_if<DateTime>(&value)) {
        if (from.kind != TypeKind::DateTime && from.kind != TypeKind::SmallDateTime) notAllowed(from, to);
        const std::int64_t half = date->ticks - kDateTimeZero + kTicksPerDay / 2;
        return integerResult(half / kTicksPerDay - (half % kTicksPerDay < 0 ? 1 : 0), to);
    }
    notAllowed(from, to);
}

Value toDecimal(const Value& value, const SqlType& from, const SqlType& to) {
    if (const auto* number = std::get_if<std::int64_t>(&value)) return fitted({*number, 0}, from, to);
    if (const auto* flag = std::get_if<bool>(&value)) return fitted({*flag ? 1 : 0, 0}, from, to);
    if (const auto* decimal = std::get_if<Decimal>(&value)) return fitted(*decimal, from, to);
    if (const auto* real = std::get_if<double>(&value)) {
        const std::optional<Decimal> nearest = Decimal::fromExtended(static_cast<Extended>(*real), to.scale);
        if (!nearest) {
            throwSqlError(error::kArithmeticOverflow,
                          "Arithmetic overflow error converting float to data type numeric.");
        }
        return fitted(*nearest, from, to);
    }
    if (const auto* text = std::get_if<std::string>(&value)) {
        const bool money = to.kind != TypeKind::Decimal;
        std::string plain;
        for (const char c : trimmed(*text)) {
            // Money takes separators of thousands.
            if (!(money && c == ',')) plain += c;
        }
        // The sign of the currency stands before the number, behind its own sign.
        const std::size_t currency = plain.starts_with('-') || plain.starts_with('+') ? 1 : 0;
        if (money && plain.substr(currency).starts_with('$')) plain.erase(currency, 1);
        if (plain.empty() && money) return Decimal(0, to.scale);
        std::optional<Decimal> parsed = Decimal::parse(plain);
        if (!parsed) {
            if (money) {
                throwSqlError(235, "Cannot convert a char value to money. The char value has incorrect syntax.");
            }
            failConverting(from, to);
        }
        return fitted(*parsed, from, to);
    }
    if (std::holds_alternative<Bytes>(value)) failConverting(from, to);
    if (const auto* date = std::get_if<DateTime>(&value)) {
        if (from.kind != TypeKind::DateTime && from.kind != TypeKind::SmallDateTime) notAllowed(from, to);
        const Extended days = static_cast<Extended>(date->ticks - kDateTimeZero) / static_cast<Extended>(kTicksPerDay);
        return fitted(*Decimal::fromExtended(days, to.scale), from, to);
    }
    notAllowed(from, to);
}

Value realResult(double value, const SqlType& to) {
    if (to.kind != TypeKind::Real) return value;
    const auto narrow = static_cast<float>(value);
    if (!std::isfinite(narrow)) {
        throwSqlError(error::kArithmeticOverflow, "Arithmetic overflow error converting expression to data type real.");
    }
    return static_cast<double>(narrow);
}

Value toFloat(const Value& value, const SqlType& from, const SqlType& to) {
    if (const auto* number = std::get_if<std::int64_t>(&value)) return realResult(static_cast<double>(*number), to);
    if (const auto* flag = std::get_if<bool>(&value)) return *flag ? 1.0 : 0.0;
    if (const auto* decimal = std::get_if<Decimal>(&value)) return realResult(decimal->toDouble(), to);
    if (const auto* real = std::get_if<double>(&value)) return realResult(*real, to);
    if (const auto* text = std::get_if<std::string>(&value)) {
        std::string_view digits = trimmed(*text);
        if (digits.empty()) return 0.0;
        if (digits.front() == '+') digits.remove_prefix(1);
        double result = 0;
        // An exponent may be marked by d too.
        std::string marked;
        if (const std::size_t mark = digits.find_first_of("dD"); mark != std::string_view::npos) {
            marked = digits;
            marked[mark] = 'e';
            digits = marked;
        }
        const auto [end, problem] = std::from_chars(digits.data(), digits.data() + digits.size(), result);
        if (problem != std::errc() || end != digits.data() + digits.size() || !std::isfinite(result)) {
            failConverting(from, to);
        }
        return realResult(result, to);
    }
    if (const auto* date = std::get_if<DateTime>(&value)) {
        if (from.kind != TypeKind::DateTime && from.kind != TypeKind::SmallDateTime) notAllowed(from, to);
        return static_cast<double>(date->ticks - kDateTimeZero) / static_cast<double>(kTicksPerDay);
    }
    notAllowed(from, to);
}

std::string hexText(const Bytes& bytes, bool prefix) {
    static constexpr char digits[] = "0123456789ABCDEF";
    std::string result = prefix ? "0x" : "";
    for (const std::uint8_t byte : bytes) {
        result += digits[byte >> 4];
        result += digits[byte & 15];
    }
    return result;
}

std::string moneyText(const Decimal& value, int style) {
    const Decimal rounded = value.rescaled(style == 2 || style == 126 ? 4 : 2);
    std::string text = rounded.toString();
    if (style != 1) return text;
    const std::size_t start = text[0] == '-' ? 1 : 0;
    for (std::size_t i = text.find('.'); i > start + 3;) {
        i -= 3;
        text.insert(i, 1, ',');
    }
    return text;
}

std::string plainText(const Value& value, const SqlType& from, const SqlType& to, int style) {
    if (const auto* number = std::get_if<std::int64_t>(&value)) return std::to_string(*number);
    if (const auto* flag = std::get_if<bool>(&value)) return *flag ? "1" : "0";
    if (const auto* decimal = std::get_if<Decimal>(&value)) {
        return from.kind == TypeKind::Decimal ? decimal->toString() : moneyText(*decimal, style);
    }
    if (const auto* real = std::get_if<double>(&value)) return floatText(*real, style);
    if (const auto* date = std::get_if<DateTime>(&value)) return formatDate(date->ticks, from, style);
    if (const auto* bytes = std::get_if<Bytes>(&value)) {
        if (style == 1 || style == 2) return hexText(*bytes, style == 1);
        if (to.isUnicode()) return textOfUtf16(*bytes);
        return std::string(bytes->begin(), bytes->end());
    }
    return std::get<std::string>(value);
}

Value toTextValue(const Value& value, const SqlType& from, const SqlType& to, int style) {
    if (to.kind == TypeKind::UniqueIdentifier && from.isBinary()) return guidOfBytes(std::get<Bytes>(value));
    std::string text = plainText(value, from, to, style);
    if (to.kind == TypeKind::UniqueIdentifier) {
        text = upperCase(trimmed(text));
        bool valid = text.size() == 36;
        for (std::size_t i = 0; valid && i < text.size(); ++i) {
            const bool dash = i == 8 || i == 13 || i == 18 || i == 23;
            const bool hex = (text[i] >= '0' && text[i] <= '9') || (text[i] >= 'A' && text[i] <= 'F');
            valid = dash ? text[i] == '-' : hex;
        }
        if (!valid) {
            throwSqlError(8169, "Conversion failed when converting from a character string to uniqueidentifier.");
        }
        return text;
    }
    if (to.length == kMaxLength) return text;
    const auto length = static_cast<std::int64_t>(utf16Length(text));
    if (length > to.length) {
        if (from.isInteger()) {
            // A number that does not fit shows as an asterisk in the older text types.
            if (!to.isUnicode())
                return to.isFixedText() ? Value("*" + std::string(static_cast<std::size_t>(to.length - 1), ' '))
                                        : Value("*");
            throwSqlError(error::kArithmeticOverflow, "Arithmetic overflow error converting expression to data type " +
                                                          std::string(to.baseName()) + ".");
        }
        if (const auto* real = std::get_if<double>(&value)) {
            std::array<char, 400> shown{};
            std::snprintf(shown.data(), shown.size(), "%f", *real);
            throwSqlError(232, "Arithmetic overflow error for type " + std::string(to.baseName()) +
                                   ", value = " + shown.data() + ".");
        }
        if (from.isDecimal()) {
            throwSqlError(error::kArithmeticOverflow,
                          "Arithmetic overflow error converting " +
                              std::string(from.kind == TypeKind::Decimal ? "numeric" : from.baseName()) +
                              " to data type " + std::string(to.baseName()) + ".");
        }
        text.resize(utf16Offset(text, to.length));
    } else if (to.isFixedText()) {
        text.append(static_cast<std::size_t>(to.length - length), ' ');
    }
    return text;
}

Value toBinary(const Value& value, const SqlType& from, const SqlType& to, int style) {
    Bytes bytes;
    if (const auto* given = std::get_if<Bytes>(&value)) {
        bytes = *given;
    } else if (const auto* text = std::get_if<std::string>(&value)) {
        if (from.kind == TypeKind::UniqueIdentifier) {
            bytes = bytesOfGuid(*text);
        } else if (style == 1 || style == 2) {
            std::string_view digits = *text;
            if (style == 1 && (digits.starts_with("0x") || digits.starts_with("0X"))) digits.remove_prefix(2);
            if (digits.size() % 2 != 0) failConverting(from, to);
            for (std::size_t i = 0; i < digits.size(); i += 2) {
                std::uint8_t byte = 0;
                const char* end = digits.data() + i + 2;
                const auto [next, problem] = std::from_chars(digits.data() + i, end, byte, 16);
                if (problem != std::errc() || next != end) failConverting(from, to);
                bytes.push_back(byte);
            }
        } else {
            bytes = from.isUnicode() ? utf16Bytes(*text) : Bytes(text->begin(), text->end());
        }
    } else if (from.isInteger()) {
        const std::int64_t number =
            std::holds_alternative<bool>(value) ? std::get<bool>(value) : std::get<std::int64_t>(value);
        int width = 4;
        if (from.kind == TypeKind::BigInt) width = 8;
        if (from.kind == TypeKind::SmallInt) width = 2;
        if (from.kind == TypeKind::TinyInt || from.kind == TypeKind::Bit) width = 1;
        for (int shift = (width - 1) * 8; shift >= 0; shift -= 8)
            bytes.push_back(static_cast<std::uint8_t>(number >> shift));
        if (to.kind == TypeKind::Binary && to.length > width) {
            bytes.insert(bytes.begin(), static_cast<std::size_t>(to.length - width), 0);
        } else if (to.length != kMaxLength && to.length < width) {
            bytes.erase(bytes.begin(), bytes.begin() + (width - to.length));
        }
    } else {
        notAllowed(from, to);
    }
    if (to.length != kMaxLength) {
        const auto length = static_cast<std::size_t>(to.length);
        if (bytes.size() > length || to.kind == TypeKind::Binary) bytes.resize(length);
    }
    return bytes;
}

[[noreturn]] void outOfRangeOf(const SqlType& from, const SqlType& to) {
    throwSqlError(error::kDateOutOfRange, "The conversion of a " + std::string(from.baseName()) + " data type to a " +
                                              std::string(to.baseName()) +
                                              " data type resulted in an out-of-range value.");
}

Value toDate(const Value& value, const SqlType& from, const SqlType& to, int style) {
    std::int64_t ticks = 0;
    if (const auto* date = std::get_if<DateTime>(&value)) {
        ticks = date->ticks;
        if (from.kind == TypeKind::Time && to.kind != TypeKind::Time) ticks += kDateTimeZero;
        if (from.kind != TypeKind::Time && to.kind == TypeKind::Time) ticks %= kTicksPerDay;
    } else if (const auto* text = std::get_if<std::string>(&value)) {
        bool outOfRange = false;
        const bool older = to.kind == TypeKind::DateTime || to.kind == TypeKind::SmallDateTime;
        const std::optional<std::int64_t> parsed = parseDate(*text, style, &outOfRange, older ? 3 : 7);
        if (!parsed && outOfRange && older) outOfRangeOf(from, to);
        if (!parsed) {
            throwSqlError(error::kDateConversion,
                          "Conversion failed when converting date and/or time from character string.");
        }
        ticks = to.kind == TypeKind::Time ? *parsed % kTicksPerDay : *parsed;
    } else if (to.kind == TypeKind::DateTime || to.kind == TypeKind::SmallDateTime) {
        // Numbers count days from 1900-01-01.
        if (const auto* number = std::get_if<std::int64_t>(&value)) {
            if (*number > 2958463 || *number < -53690) overflowOf(to);
            ticks = kDateTimeZero + *number * kTicksPerDay;
        } else if (const auto* flag = std::get_if<bool>(&value)) {
            ticks = kDateTimeZero + (*flag ? kTicksPerDay : 0);
        } else if (from.isFloat() || from.isDecimal()) {
            const double days =
                std::holds_alternative<double>(value) ? std::get<double>(value) : std::get<Decimal>(value).toDouble();
            if (!(days < 2958464.0 && days > -53691.0)) overflowOf(to);
            ticks = kDateTimeZero + std::llround(days * static_cast<double>(kTicksPerDay));
        } else {
            notAllowed(from, to);
        }
    } else {
        notAllowed(from, to);
    }
    try {
        return DateTime{roundedTo(ticks, to)};
    } catch (const DatabaseError& failure) {
        if (failure.nativeCode() != error::kDateOutOfRange) throw;
        outOfRangeOf(from, to);
    }
}

}  // namespace

Decimal fitted(const Decimal& value, const SqlType& from, const SqlType& to) {
    try {
        return fit(value, to);
    } catch (const DatabaseError& failure) {
        if (failure.nativeCode() != error::kArithmeticOverflow) throw;
        const auto shown = [](const SqlType& type) {
            return std::string(type.kind == TypeKind::Decimal ? "numeric" : type.baseName());
        };
        throwSqlError(error::kArithmeticOverflow,
                      "Arithmetic overflow error converting " + shown(from) + " to data type " + shown(to) + ".");
    }
}

std::string floatText(double value, int style) {
    std::array<char, 40> buffer;
    if (style == 1 || style == 2) {
        std::snprintf(buffer.data(), buffer.size(), style == 1 ? "%.7e" : "%.15e", value);
    } else {
        std::snprintf(buffer.data(), buffer.size(), "%.6g", value);
    }
    std::string text = buffer.data();
    // SQL Server writes the exponent with three digits.
    if (const std::size_t e = text.find('e'); e != std::string::npos) {
        while (text.size() - e - 2 < 3)
            text.insert(e + 2, 1, '0');
    }
    return text;
}

Value convert(const Value& value, const SqlType& from, const SqlType& to, int style) {
    if (isNull(value)) return Null{};
    // It reads as a text here, but is none.
    if (from.kind == TypeKind::UniqueIdentifier && to.kind != TypeKind::UniqueIdentifier && !to.isText() &&
        !to.isBinary())
        notAllowed(from, to);
    switch (to.storage()) {
        case Storage::Integer:
            return to.isNull() ? value : toInteger(value, from, to);
        case Storage::Real:
            return toFloat(value, from, to);
        case Storage::Decimal:
            return toDecimal(value, from, to);
        case Storage::Text:
            return toTextValue(value, from, to, style);
        case Storage::Blob:
            return toBinary(value, from, to, style);
        case Storage::Ticks:
            return toDate(value, from, to, style);
    }
    return value;
}

SqlType typeOfValue(const Value& value) {
    struct Visitor {
        SqlType operator()(Null) const { return SqlType::of(TypeKind::Null); }
        SqlType operator()(bool) const { return SqlType::of(TypeKind::Bit); }
        SqlType operator()(std::int64_t number) const {
            return SqlType::of(number >= lowest(TypeKind::Int) && number <= highest(TypeKind::Int) ? TypeKind::Int
                                                                                                   : TypeKind::BigInt);
        }
        SqlType operator()(double) const { return SqlType::of(TypeKind::Float); }
        SqlType operator()(const Decimal& number) const {
            return SqlType::decimal(std::max(number.digits(), std::max(1, number.scale())), number.scale());
        }
        SqlType operator()(const std::string& text) const {
            const auto length = static_cast<std::int64_t>(utf16Length(text));
            return SqlType::text(TypeKind::NVarChar,
                                 length > 4000 ? kMaxLength : std::max(1, static_cast<int>(length)));
        }
        SqlType operator()(const Bytes& bytes) const {
            return SqlType::text(TypeKind::VarBinary,
                                 bytes.size() > 8000 ? kMaxLength : std::max(1, static_cast<int>(bytes.size())));
        }
        SqlType operator()(DateTime) const { return SqlType::of(TypeKind::DateTime2); }
    };
    return std::visit(Visitor{}, value);
}

void requireLength(const Value& value, const SqlType& column, std::string_view table, std::string_view columnName) {
    if (column.length == kMaxLength) return;
    std::string cut;
    if (const auto* text = std::get_if<std::string>(&value)) {
        if (!column.isText() || static_cast<std::int64_t>(text->size()) <= column.length) return;
        const std::size_t limit = utf16Offset(*text, column.length);
        if (std::string_view(*text).substr(limit).find_first_not_of(' ') == std::string_view::npos) return;
        cut = text->substr(0, limit);
    } else if (const auto* bytes = std::get_if<Bytes>(&value)) {
        if (!column.isBinary() || bytes->size() <= static_cast<std::size_t>(column.length)) return;
    } else {
        return;
    }
    throwSqlError(error::kTruncation, "String or binary data would be truncated in table '" + std::string(table) +
                                          "', column '" + std::string(columnName) + "'. Truncated value: '" + cut +
                                          "'.");
}

}  // namespace basalt::embedded
