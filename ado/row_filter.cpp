#include "ado/row_filter.h"

#include <algorithm>
#include <array>
#include <compare>
#include <vector>

#include "ado/error.h"
#include "ado/names.h"
#include "ado/trailing_blanks.h"

namespace basalt {

namespace {

// Conditions nest in people's filters a few levels deep; a bound keeps a hostile text from exhausting the stack.
constexpr int kMostNesting = 200;

enum class Operator { Equal, NotEqual, Less, LessEqual, Greater, GreaterEqual, Like, NotLike };

std::string comparableText(std::string_view text) {
    return foldName(withoutTrailingBlanks(text));
}

bool likeMatches(std::string_view text, std::string_view pattern) {
    const auto isStar = [](char c) { return c == '*' || c == '%'; };
    std::size_t t = 0;
    std::size_t p = 0;
    std::size_t afterStar = std::string_view::npos;
    std::size_t retry = 0;
    while (t < text.size()) {
        if (p < pattern.size() && isStar(pattern[p])) {
            afterStar = ++p;
            retry = t;
        } else if (p < pattern.size() && pattern[p] == text[t]) {
            ++p;
            ++t;
        } else if (afterStar != std::string_view::npos) {
            p = afterStar;
            t = ++retry;
        } else {
            return false;
        }
    }
    while (p < pattern.size() && isStar(pattern[p]))
        ++p;
    return p == pattern.size();
}

std::partial_ordering compareNumbers(const Value& a, const Value& b) {
    if (std::holds_alternative<double>(a) || std::holds_alternative<double>(b)) return toExtended(a) <=> toExtended(b);
    return toDecimal(a) <=> toDecimal(b);
}

std::partial_ordering compareValues(const Value& a, const Value& b) {
    const auto* text = std::get_if<std::string>(&a);
    const auto* otherText = std::get_if<std::string>(&b);
    if (text != nullptr && otherText != nullptr) return comparableText(*text) <=> comparableText(*otherText);
    const auto* point = std::get_if<DateTime>(&a);
    const auto* otherPoint = std::get_if<DateTime>(&b);
    if (point != nullptr && otherPoint != nullptr) return *point <=> *otherPoint;
    const auto* bytes = std::get_if<Bytes>(&a);
    const auto* otherBytes = std::get_if<Bytes>(&b);
    if (bytes != nullptr && otherBytes != nullptr) return *bytes <=> *otherBytes;
    const auto notNumber = [](const Value& v) { return std::get_if<DateTime>(&v) || std::get_if<Bytes>(&v); };
    // Two fields of unlike kinds have no order but that of what they show.
    if (text || otherText || notNumber(a) || notNumber(b))
        return comparableText(toText(a)) <=> comparableText(toText(b));
    return compareNumbers(a, b);
}

bool isLike(Operator op) {
    return op == Operator::Like || op == Operator::NotLike;
}

bool orderHolds(Operator op, std::partial_ordering order) {
    switch (op) {
        case Operator::Equal:
            return std::is_eq(order);
        case Operator::NotEqual:
            return std::is_neq(order);
        case Operator::Less:
            return std::is_lt(order);
        case Operator::LessEqual:
            return std::is_lteq(order);
        case Operator::Greater:
            return std::is_gt(order);
        default:
            return std::is_gteq(order);
    }
}

// Both as comparableText gives them.
bool textsHold(Operator op, std::string_view a, std::string_view b) {
    return isLike(op) ? likeMatches(a, b) == (op == Operator::Like) : orderHolds(op, a <=> b);
}

bool holds(Operator op, const Value& a, const Value& b) {
    if (isLike(op)) return textsHold(op, comparableText(toText(a)), comparableText(toText(b)));
    return orderHolds(op, compareValues(a, b));
}

}  // namespace

struct RowFilter::Node {
    enum Kind { And, Or, Not, Compare, IsNull, IsNotNull } kind = Compare;
    std::unique_ptr<Node> left, right;
    Operator op = Operator::Equal;
    int field = -1;
    int otherField = -1;  // -1: the other side is the literal
    Value literal;
    std::optional<std::string> literalText;  // of a literal text, as it compares: folded once and not for every row

    // Nothing when a null leaves it open.
    [[nodiscard]] std::optional<bool> test(const Read& read) const {
        switch (kind) {
            case And: {
                const auto a = left->test(read);
                if (a == false) return false;
                const auto b = right->test(read);
                if (b == false) return false;
                return a && b ? std::optional(true) : std::nullopt;
            }
            case Or: {
                const auto a = left->test(read);
                if (a == true) return true;
                const auto b = right->test(read);
                if (b == true) return true;
                return a && b ? std::optional(false) : std::nullopt;
            }
            case Not: {
                const auto a = left->test(read);
                return a ? std::optional(!*a) : std::nullopt;
            }
            case IsNull:
                return basalt::isNull(read(field));
            case IsNotNull:
                return !basalt::isNull(read(field));
            case Compare:
                break;
        }
        const Value a = read(field);
        if (basalt::isNull(a)) return std::nullopt;
        if (literalText) return textsHold(op, comparableText(toText(a)), *literalText);
        if (otherField < 0) return holds(op, a, literal);
        const Value b = read(otherField);
        if (basalt::isNull(b)) return std::nullopt;
        return holds(op, a, b);
    }
};

namespace {

using Node = RowFilter::Node;

struct Token {
    enum Kind { End, Word, Name, Text, Number, Date, Symbol } kind = End;
    std::string text;
    std::size_t offset = 0;  // in bytes
};

class Lexer {
public:
    explicit Lexer(std::string_view text) : text_(text) {}

    [[noreturn]] void fail(std::size_t offset, const std::string& problem) const {
        std::size_t position = 1;
        for (const char c : text_.substr(0, offset))
            position += (static_cast<unsigned char>(c) & 0xC0) != 0x80 ? 1 : 0;
        throw UsageError("position " + std::to_string(position) + ": " + problem);
    }

    Token next() {
        while (at_ < text_.size() && isBlank(text_[at_]))
            ++at_;
        Token token;
        token.offset = at_;
        if (at_ == text_.size()) return token;
        const char c = text_[at_];
        if (c == '[') return quoted(token, Token::Name, ']', "name");
        if (c == '\'') return quoted(token, Token::Text, '\'', "text");
        if (c == '#') return quoted(token, Token::Date, '#', "date");
        if (isDigit(c) || c == '.' || c == '-' || c == '+') return number(token);
        if (isWordByte(c)) {
            token.kind = Token::Word;
            while (at_ < text_.size() && (isWordByte(text_[at_]) || isDigit(text_[at_])))
                token.text += text_[at_++];
            return token;
        }
        token.kind = Token::Symbol;
        token.text = c;
        ++at_;
        if (at_ < text_.size()) {
            const std::string two = token.text + text_[at_];
            if (two == "<>" || two == "<=" || two == ">=") {
                token.text = two;
                ++at_;
            }
        }
        return token;
    }

private:
    static bool isBlank(char c) { return c == ' ' || c == '\t' || c == '\r' || c == '\n'; }
    static bool isDigit(char c) { return c >= '0' && c <= '9'; }
    static bool isWordByte(char c) {
        return static_cast<unsigned char>(c) >= 0x80 || (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_';
    }

    Token& quoted(Token& token, Token::Kind kind, char close, const char* what) {
        token.kind = kind;
        for (++at_; at_ < text_.size(); ++at_) {
            if (text_[at_] != close) {
                token.text += text_[at_];
            } else if (at_ + 1 < text_.size() && text_[at_ + 1] == close && close != '#') {
                token.text += text_[at_++];
            } else {
                ++at_;
                return token;
            }
        }
        fail(token.offset, std::string("this ") + what + " is never closed");
    }

    Token& number(Token& token) {
        token.kind = Token::Number;
        if (text_[at_] == '-' || text_[at_] == '+') token.text += text_[at_++];
        while (at_ < text_.size() && (isDigit(text_[at_]) || text_[at_] == '.'))
            token.text += text_[at_++];
        if (!Decimal::parse(token.text)) fail(token.offset, "'" + token.text + "' is not a number");
        return token;
    }

    std::string_view text_;
    std::size_t at_ = 0;
};

class Parser {
public:
    Parser(std::string_view text, const RowFilter::Resolve& fields) : lexer_(text), fields_(fields) { advance(); }

    std::unique_ptr<Node> parse() {
        std::unique_ptr<Node> root = disjunction();
        if (token_.kind != Token::End) unexpected("AND, OR or the end");
        return root;
    }

private:
    struct Operand {
        std::optional<RowFilter::FilterField> field;
        Token token;
    };

    void advance() { token_ = lexer_.next(); }
    [[nodiscard]] bool isWord(std::string_view word) const {
        return token_.kind == Token::Word && sameName(token_.text, word);
    }
    bool takeWord(std::string_view word) {
        if (!isWord(word)) return false;
        advance();
        return true;
    }
    bool takeSymbol(std::string_view symbol) {
        if (token_.kind != Token::Symbol || token_.text != symbol) return false;
        advance();
        return true;
    }
    [[noreturn]] void unexpected(const std::string& expected) const {
        const std::string found = token_.kind == Token::End ? "the end" : "'" + token_.text + "'";
        lexer_.fail(token_.offset, "expected " + expected + ", found " + found);
    }

    static std::unique_ptr<Node> join(Node::Kind kind, std::unique_ptr<Node> left, std::unique_ptr<Node> right) {
        auto node = std::make_unique<Node>();
        node->kind = kind;
        node->left = std::move(left);
        node->right = std::move(right);
        return node;
    }

    // Chains of AND and OR become balanced trees, so that a long chain nests no deeper than a short one.
    static std::unique_ptr<Node> joinAll(Node::Kind kind, std::vector<std::unique_ptr<Node>> parts) {
        while (parts.size() > 1) {
            std::vector<std::unique_ptr<Node>> joined;
            for (std::size_t i = 0; i < parts.size(); i += 2) {
                const bool pair = i + 1 < parts.size();
                joined.push_back(pair ? join(kind, std::move(parts[i]), std::move(parts[i + 1])) : std::move(parts[i]));
            }
            parts = std::move(joined);
        }
        return std::move(parts.front());
    }

    std::unique_ptr<Node> disjunction() {
        std::vector<std::unique_ptr<Node>> parts;
        do {
            parts.push_back(conjunction());
        } while (takeWord("or"));
        return joinAll(Node::Or, std::move(parts));
    }

    std::unique_ptr<Node> conjunction() {
        std::vector<std::unique_ptr<Node>> parts;
        do {
            parts.push_back(negation());
        } while (takeWord("and"));
        return joinAll(Node::And, std::move(parts));
    }

    std::unique_ptr<Node> negation() {
        if (++nesting_ > kMostNesting) lexer_.fail(token_.offset, "the conditions nest too deeply");
        std::unique_ptr<Node> node;
        if (takeWord("not")) {
            node = join(Node::Not, negation(), nullptr);
        } else if (takeSymbol("(")) {
            node = disjunction();
            if (!takeSymbol(")")) unexpected("')'");
        } else {
            node = comparison();
        }
        --nesting_;
        return node;
    }

    Operand operand() {
        Operand operand;
        operand.token = token_;
        const bool constant = isWord("true") || isWord("false") || isWord("null");
        switch (token_.kind) {
            case Token::Word:
            case Token::Name:
                operand.field = token_.kind == Token::Word && isReserved() ? std::nullopt : fields_(token_.text);
                if (operand.field || constant) break;
                if (token_.kind == Token::Word && isReserved()) unexpected("a field or a value");
                lexer_.fail(token_.offset, "there is no field " + token_.text);
            case Token::Text:
            case Token::Number:
            case Token::Date:
                break;
            default:
                unexpected("a field or a value");
        }
        advance();
        return operand;
    }

    [[nodiscard]] bool isReserved() const {
        return isWord("and") || isWord("or") || isWord("not") || isWord("like") || isWord("is") || isWord("null");
    }

    Operator comparisonOperator() {
        if (takeWord("like")) return Operator::Like;
        if (takeWord("not")) {
            if (!takeWord("like")) unexpected("LIKE");
            return Operator::NotLike;
        }
        static const std::array<std::pair<std::string_view, Operator>, 6> kSymbols = {{{"=", Operator::Equal},
                                                                                       {"<>", Operator::NotEqual},
                                                                                       {"<=", Operator::LessEqual},
                                                                                       {"<", Operator::Less},
                                                                                       {">=", Operator::GreaterEqual},
                                                                                       {">", Operator::Greater}}};
        for (const auto& [symbol, op] : kSymbols) {
            if (takeSymbol(symbol)) return op;
        }
        unexpected("a comparison");
    }

    std::unique_ptr<Node> comparison() {
        const Operand left = operand();
        auto node = std::make_unique<Node>();
        if (takeWord("is")) {
            node->kind = takeWord("not") ? Node::IsNotNull : Node::IsNull;
            if (!takeWord("null")) unexpected("NULL");
            node->field = requireField(left).index;
            return node;
        }
        const Operator op = comparisonOperator();
        const Operand right = operand();
        if (!left.field && right.field) return complete(std::move(node), right, left, mirrored(op, left));
        return complete(std::move(node), left, right, op);
    }

    [[nodiscard]] RowFilter::FilterField requireField(const Operand& operand) const {
        if (!operand.field) lexer_.fail(operand.token.offset, "a condition needs a field on one side");
        return *operand.field;
    }

    // 5 < Code is Code > 5.
    [[nodiscard]] Operator mirrored(Operator op, const Operand& left) const {
        switch (op) {
            case Operator::Less:
                return Operator::Greater;
            case Operator::LessEqual:
                return Operator::GreaterEqual;
            case Operator::Greater:
                return Operator::Less;
            case Operator::GreaterEqual:
                return Operator::LessEqual;
            case Operator::Like:
            case Operator::NotLike:
                lexer_.fail(left.token.offset, "LIKE needs the field on its left side");
            default:
                return op;
        }
    }

    std::unique_ptr<Node> complete(std::unique_ptr<Node> node, const Operand& field, const Operand& other,
                                   Operator op) const {
        node->op = op;
        node->field = requireField(field).index;
        if (other.field) {
            node->otherField = other.field->index;
        } else if (other.token.kind == Token::Word && sameName(other.token.text, "null")) {
            if (op != Operator::Equal && op != Operator::NotEqual) {
                lexer_.fail(other.token.offset, "NULL can only be compared with = and <>");
            }
            node->kind = op == Operator::Equal ? Node::IsNull : Node::IsNotNull;
        } else {
            node->literal = literalFor(*field.field, other.token, op);
            if (const auto* text = std::get_if<std::string>(&node->literal)) node->literalText = comparableText(*text);
        }
        return node;
    }

    // The value in the field's own kind, so that rows compare without conversions that could fail.
    [[nodiscard]] Value literalFor(const RowFilter::FilterField& field, const Token& token, Operator op) const {
        if (isLike(op) || field.type == FieldType::Text) return token.text;
        Value value = token.text;
        try {
            if (token.kind == Token::Word) value = sameName(token.text, "true");
            if (field.type == FieldType::Date || field.type == FieldType::DateTime) {
                if (const auto point = parseDateTime(token.text)) return *point;
            } else if (field.type == FieldType::Boolean) {
                return toBool(value);
            } else if (field.type == FieldType::Float) {
                return static_cast<double>(toExtended(value));
            } else if (field.type != FieldType::Binary) {
                return toDecimal(value);
            }
        } catch (const DatabaseError&) {
            // Told below, with the place.
        }
        lexer_.fail(token.offset, "'" + token.text + "' cannot be compared with this field");
    }

    Lexer lexer_;
    const RowFilter::Resolve& fields_;
    Token token_;
    int nesting_ = 0;
};

}  // namespace

RowFilter::RowFilter(std::string_view text, const Resolve& fields) : root_(Parser(text, fields).parse()) {}

RowFilter::~RowFilter() = default;

bool RowFilter::accepts(const Read& read) const {
    return root_->test(read) == true;
}

}  // namespace basalt
