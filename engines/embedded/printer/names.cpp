// Names, types and constants.
#include <array>
#include <charconv>

#include "engines/embedded/parser/keyword.h"
#include "engines/embedded/printer/writer.h"

namespace basalt::embedded {

namespace {

bool isPlainName(std::string_view name) {
    if (name.empty() || isReserved(findKeyword(name))) return false;
    const auto begins = [](char c) {
        return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_' || c == '#' || c == '$' ||
               static_cast<unsigned char>(c) >= 0x80;
    };
    if (!begins(name.front())) return false;
    for (const char c : name) {
        if (!begins(c) && c != '@' && !(c >= '0' && c <= '9')) return false;
    }
    return true;
}

std::string quotedText(std::string_view text) {
    std::string result = "'";
    for (const char c : text) {
        result += c;
        if (c == '\'') result += c;
    }
    return result + "'";
}

std::string decimalText(const Literal& literal) {
    std::string digits = toString(literal.coefficient);
    if (literal.scale == 0) return digits + ".";
    const auto scale = static_cast<std::size_t>(literal.scale);
    if (digits.size() <= scale) digits.insert(0, scale + 1 - digits.size(), '0');
    digits.insert(digits.size() - scale, ".");
    return digits;
}

std::string realText(double value) {
    std::array<char, 40> buffer{};
    const auto end = std::to_chars(buffer.data(), buffer.data() + buffer.size(), value, std::chars_format::scientific);
    return std::string(buffer.data(), end.ptr);
}

std::string binaryText(std::string_view bytes) {
    constexpr std::string_view kDigits = "0123456789ABCDEF";
    std::string result = "0x";
    for (const char c : bytes) {
        const auto byte = static_cast<unsigned char>(c);
        result += kDigits[byte >> 4];
        result += kDigits[byte & 15];
    }
    return result;
}

}  // namespace

std::string print(const Literal& literal) {
    switch (literal.type) {
        case LiteralType::Int:
            return std::to_string(literal.integer);
        case LiteralType::Decimal:
            return decimalText(literal);
        case LiteralType::Float:
            return realText(literal.real);
        case LiteralType::Money: {
            Literal amount = literal;
            amount.scale = kMoneyScale;
            return "$" + decimalText(amount);
        }
        case LiteralType::Varchar:
            return quotedText(literal.text);
        case LiteralType::NVarchar:
            return "N" + quotedText(literal.text);
        case LiteralType::Varbinary:
            return binaryText(literal.text);
    }
    return {};
}

void write(Writer& writer, const ast::Identifier& name) {
    if (!name.quoted && isPlainName(name.text)) {
        writer << name.text;
        return;
    }
    writer << "[";
    for (const char c : name.text) {
        writer << std::string_view(&c, 1);
        if (c == ']') writer << "]";
    }
    writer << "]";
}

void write(Writer& writer, const ast::ObjectName& name) {
    bool first = true;
    for (const ast::Identifier& part : name.parts) {
        if (!first) writer << ".";
        first = false;
        if (!part.empty()) write(writer, part);
    }
}

void writeFunctionName(Writer& writer, const ast::ObjectName& name) {
    // LEFT and COALESCE are reserved and yet names here.
    if (name.parts.size() == 1 && !name.parts.front().quoted) {
        writer << name.last();
    } else {
        write(writer, name);
    }
}

void writeNames(Writer& writer, const std::vector<ast::Identifier>& names) {
    writer << "(";
    writeList(writer, names, [&](const ast::Identifier& name) { write(writer, name); });
    writer << ")";
}

void write(Writer& writer, const ast::DataType& type) {
    write(writer, type.name);
    if (type.max) {
        writer << "(max)";
    } else if (type.length) {
        writer << "(" << std::to_string(*type.length);
        if (type.scale) writer << ", " << std::to_string(*type.scale);
        writer << ")";
    }
}

}  // namespace basalt::embedded
