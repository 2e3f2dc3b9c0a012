#include "tds_request.h"

#include <cstring>
#include <stdexcept>

#include "ado/decimal.h"
#include "engines/odbc/utf16.h"

namespace basalt::odbc::test {

namespace {

class BodyReader {
public:
    explicit BodyReader(std::string_view body) : rest_(body) {
        // All headers, the transaction among them.
        const std::uint64_t length = number(4);
        take(length - 4);
    }

    [[nodiscard]] bool atEnd() const { return rest_.empty(); }

    std::uint64_t number(std::size_t bytes) {
        std::uint64_t value = 0;
        const std::string_view raw = take(bytes);
        for (std::size_t i = 0; i < bytes; ++i)
            value |= std::uint64_t{static_cast<unsigned char>(raw[i])} << (8 * i);
        return value;
    }

    std::string_view take(std::size_t bytes) {
        if (bytes > rest_.size()) throw std::runtime_error("the request is shorter than it says");
        const std::string_view part = rest_.substr(0, bytes);
        rest_.remove_prefix(bytes);
        return part;
    }

    std::string text16(std::size_t bytes) {
        const std::string_view raw = take(bytes);
        std::u16string units(bytes / sizeof(char16_t), u'\0');
        std::memcpy(units.data(), raw.data(), units.size() * sizeof(char16_t));
        return toUtf8(units);
    }

    std::string rest16() { return text16(rest_.size()); }

    std::string pieces() {
        std::string all;
        const std::uint64_t length = number(8);
        if (length == ~std::uint64_t{0}) return "NULL";
        while (const std::uint64_t piece = number(4))
            all += take(piece);
        return all;
    }

private:
    std::string_view rest_;
};

std::string utf8Of(const std::string& utf16Bytes) {
    if (utf16Bytes == "NULL") return utf16Bytes;
    std::u16string units(utf16Bytes.size() / sizeof(char16_t), u'\0');
    std::memcpy(units.data(), utf16Bytes.data(), units.size() * sizeof(char16_t));
    return toUtf8(units);
}

std::string hex(std::string_view bytes) {
    constexpr std::string_view kDigits = "0123456789ABCDEF";
    std::string text = "0x";
    for (const char c : bytes) {
        text += kDigits[static_cast<unsigned char>(c) >> 4];
        text += kDigits[static_cast<unsigned char>(c) & 15];
    }
    return text;
}

void readInteger(BodyReader& reader, TdsParameter& parameter) {
    const std::uint64_t size = reader.number(1);
    parameter.type = size == 8 ? "bigint" : size == 4 ? "int" : size == 2 ? "smallint" : "tinyint";
    const std::uint64_t length = reader.number(1);
    if (length == 0) return;
    const std::uint64_t raw = reader.number(length);
    const int shift = static_cast<int>(64 - 8 * length);
    parameter.value = std::to_string(static_cast<std::int64_t>(raw << shift) >> shift);
}

void readDecimal(BodyReader& reader, TdsParameter& parameter) {
    reader.number(1);
    const std::uint64_t precision = reader.number(1);
    const std::uint64_t scale = reader.number(1);
    parameter.type = "decimal(" + std::to_string(precision) + "," + std::to_string(scale) + ")";
    const std::uint64_t length = reader.number(1);
    if (length == 0) return;
    const bool positive = reader.number(1) == 1;
    Int128 value = 0;
    const std::string_view raw = reader.take(length - 1);
    for (auto byte = raw.rbegin(); byte != raw.rend(); ++byte)
        value = value * 256 + static_cast<unsigned char>(*byte);
    parameter.value = Decimal(positive ? value : -value, static_cast<int>(scale)).toString();
}

void readText(BodyReader& reader, TdsParameter& parameter) {
    const std::uint64_t size = reader.number(2);
    reader.take(5);  // collation
    if (size == 0xFFFF) {
        parameter.type = "nvarchar(max)";
        parameter.value = utf8Of(reader.pieces());
        return;
    }
    parameter.type = "nvarchar(" + std::to_string(size / 2) + ")";
    const std::uint64_t length = reader.number(2);
    if (length != 0xFFFF) parameter.value = reader.text16(length);
}

void readBinary(BodyReader& reader, TdsParameter& parameter) {
    const std::uint64_t size = reader.number(2);
    if (size == 0xFFFF) {
        parameter.type = "varbinary(max)";
        const std::string bytes = reader.pieces();
        parameter.value = bytes == "NULL" ? bytes : hex(bytes);
        return;
    }
    parameter.type = "varbinary(" + std::to_string(size) + ")";
    const std::uint64_t length = reader.number(2);
    if (length != 0xFFFF) parameter.value = hex(reader.take(length));
}

// Types whose value is told by its bytes only.
void readShort(BodyReader& reader, TdsParameter& parameter, const std::string& name) {
    parameter.type = name + "(" + std::to_string(reader.number(1)) + ")";
    const std::uint64_t length = reader.number(1);
    if (length != 0) parameter.value = hex(reader.take(length));
}

void readLong(BodyReader& reader, TdsParameter& parameter, bool text) {
    constexpr std::uint64_t kNull = 0xFFFFFFFF;
    parameter.type = text ? "ntext" : "image";
    reader.number(4);
    if (text) reader.take(5);  // collation
    const std::uint64_t length = reader.number(4);
    if (length == kNull) return;
    parameter.value = text ? reader.text16(length) : hex(reader.take(length));
}

TdsParameter readParameter(BodyReader& reader) {
    TdsParameter parameter;
    parameter.value = "NULL";
    parameter.name = reader.text16(reader.number(1) * 2);
    parameter.output = (reader.number(1) & 1U) != 0;
    switch (const std::uint64_t type = reader.number(1)) {
        case 0x26:
            readInteger(reader, parameter);
            break;
        case 0x6A:
        case 0x6C:
            readDecimal(reader, parameter);
            break;
        case 0xE7:
            readText(reader, parameter);
            break;
        case 0xA5:
            readBinary(reader, parameter);
            break;
        case 0x63:
        case 0x22:
            readLong(reader, parameter, type == 0x63);
            break;
        case 0x68:
            readShort(reader, parameter, "bit");
            break;
        case 0x6D:
            readShort(reader, parameter, "float");
            break;
        case 0x2A:
            readShort(reader, parameter, "datetime2");
            break;
        case 0x6F:
            readShort(reader, parameter, "datetime");
            break;
        default:
            throw std::runtime_error("a parameter of type " + std::to_string(type));
    }
    return parameter;
}

}  // namespace

TdsRequest readBatch(std::string_view body) {
    return {TdsRequest::Batch, BodyReader(body).rest16(), {}};
}

TdsRequest readProcedureCall(std::string_view body) {
    BodyReader reader(body);
    TdsRequest request{TdsRequest::Procedure, {}, {}};
    const std::uint64_t length = reader.number(2);
    if (length == 0xFFFF) {
        constexpr std::uint64_t kExecuteSql = 10;
        const std::uint64_t number = reader.number(2);
        request.text = number == kExecuteSql ? "sp_executesql" : "procedure " + std::to_string(number);
    } else {
        request.text = reader.text16(length * 2);
    }
    reader.number(2);  // options
    while (!reader.atEnd())
        request.parameters.push_back(readParameter(reader));
    return request;
}

}  // namespace basalt::odbc::test
