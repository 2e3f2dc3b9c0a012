#include "engines/embedded/lexer/literal_value.h"

namespace basalt::embedded {

Value valueOf(const Literal& literal) {
    switch (literal.type) {
        case LiteralType::Int:
            return literal.integer;
        case LiteralType::Decimal:
            return Decimal(literal.coefficient, literal.scale);
        case LiteralType::Float:
            return literal.real;
        case LiteralType::Money:
            return Decimal(literal.coefficient, kMoneyScale);
        case LiteralType::Varbinary:
            return Bytes(literal.text.begin(), literal.text.end());
        default:
            return std::string(literal.text);
    }
}

}  // namespace basalt::embedded
