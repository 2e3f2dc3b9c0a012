#include "engines/embedded/lexer/literal.h"

#include <cstring>

#include "engines/embedded/lexer/utf8.h"

namespace basalt::embedded {

namespace {

bool isTextual(LiteralType type) {
    return type >= LiteralType::Varchar;
}

std::size_t lengthOf(const Literal& literal) {
    return literal.type == LiteralType::Varbinary ? literal.text.size() : utf16Length(literal.text);
}

}  // namespace

LiteralLength lengthClassOf(const Literal& literal) {
    // Most are short; no text has more units than bytes.
    if (literal.text.size() <= kLongestShort) return LiteralLength::Short;
    const std::size_t length = lengthOf(literal);
    if (length <= kLongestShort) return LiteralLength::Short;
    return length <= (literal.type == LiteralType::NVarchar ? 4000 : 8000) ? LiteralLength::Bounded
                                                                           : LiteralLength::Unbounded;
}

bool sameLiteral(const Literal& a, const Literal& b) {
    if (a.type != b.type) return false;
    switch (a.type) {
        case LiteralType::Int:
            return a.integer == b.integer;
        case LiteralType::Decimal:
            return a.precision == b.precision && a.scale == b.scale && a.coefficient == b.coefficient;
        case LiteralType::Float:
            return a.real == b.real;
        case LiteralType::Money:
            return a.coefficient == b.coefficient;
        case LiteralType::Varchar:
        case LiteralType::NVarchar:
        case LiteralType::Varbinary:
            return a.text == b.text;
    }
    return false;
}

LiteralTable::LiteralTable(const std::vector<Literal>& literals)
    : literals_(literals), uses_(literals.size(), LiteralUse::Bound) {
    std::size_t bytes = 0;
    for (const Literal& literal : literals_)
        bytes += literal.text.size();
    if (bytes == 0) return;
    texts_ = std::make_unique<char[]>(bytes);
    char* at = texts_.get();
    for (Literal& literal : literals_) {
        if (literal.text.empty()) {
            literal.text = {};
            continue;
        }
        std::memcpy(at, literal.text.data(), literal.text.size());
        literal.text = {at, literal.text.size()};
        at += literal.text.size();
    }
}

bool LiteralTable::fits(const std::vector<Literal>& literals) const {
    if (literals.size() != literals_.size()) return false;
    for (std::size_t i = 0; i < literals_.size(); ++i) {
        switch (uses_[i]) {
            case LiteralUse::Bound:
                break;
            case LiteralUse::Length:
                if (isTextual(literals_[i].type) && lengthOf(literals_[i]) != lengthOf(literals[i])) return false;
                break;
            case LiteralUse::Value:
                if (!sameLiteral(literals_[i], literals[i])) return false;
                break;
        }
    }
    return true;
}

}  // namespace basalt::embedded
