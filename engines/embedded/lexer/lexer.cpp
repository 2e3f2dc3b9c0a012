#include "engines/embedded/lexer/lexer.h"

#include <array>
#include <charconv>
#include <cstdint>
#include <cstring>
#include <limits>
#include <string>
#include <system_error>

#include "ado/error.h"
#include "engines/embedded/lexer/error_context.h"
#include "engines/embedded/lexer/utf8.h"

namespace basalt::embedded {

namespace {

// What a token that begins with a byte may be.
enum class Start : std::uint8_t {
    Unknown,
    Blank,
    Letter,  // also _ and every byte outside ASCII
    NationalLetter,
    Digit,
    Quote,
    DoubleQuote,
    Bracket,
    At,
    Hash,
    Dollar,
    Point,
    Minus,
    Slash,
    Operator,  // everything else that is punctuation
};

constexpr std::array<Start, 256> makeStarts() {
    std::array<Start, 256> starts{};
    for (const char c : {' ', '\t', '\r', '\n', '\f', '\v'})
        starts[static_cast<unsigned char>(c)] = Start::Blank;
    for (int c = 'a'; c <= 'z'; ++c)
        starts[static_cast<std::size_t>(c)] = Start::Letter;
    for (int c = 'A'; c <= 'Z'; ++c)
        starts[static_cast<std::size_t>(c)] = Start::Letter;
    for (int c = 0x80; c <= 0xFF; ++c)
        starts[static_cast<std::size_t>(c)] = Start::Letter;
    for (int c = '0'; c <= '9'; ++c)
        starts[static_cast<std::size_t>(c)] = Start::Digit;
    starts['_'] = Start::Letter;
    starts['n'] = starts['N'] = Start::NationalLetter;
    starts['\''] = Start::Quote;
    starts['"'] = Start::DoubleQuote;
    starts['['] = Start::Bracket;
    starts['@'] = Start::At;
    starts['#'] = Start::Hash;
    starts['$'] = Start::Dollar;
    starts['.'] = Start::Point;
    starts['-'] = Start::Minus;
    starts['/'] = Start::Slash;
    for (const char c :
         {'(', ')', '{', '}', ',', ';', ':', '+', '*', '%', '&', '|', '^', '~', '=', '<', '>', '!', '?'}) {
        starts[static_cast<unsigned char>(c)] = Start::Operator;
    }
    return starts;
}

constexpr std::array<bool, 256> makeNameBytes() {
    std::array<bool, 256> bytes{};
    for (int c = 'a'; c <= 'z'; ++c)
        bytes[static_cast<std::size_t>(c)] = true;
    for (int c = 'A'; c <= 'Z'; ++c)
        bytes[static_cast<std::size_t>(c)] = true;
    for (int c = '0'; c <= '9'; ++c)
        bytes[static_cast<std::size_t>(c)] = true;
    for (int c = 0x80; c <= 0xFF; ++c)
        bytes[static_cast<std::size_t>(c)] = true;
    for (const char c : {'_', '@', '#', '$'})
        bytes[static_cast<unsigned char>(c)] = true;
    return bytes;
}

constexpr std::array<Start, 256> kStarts = makeStarts();
constexpr std::array<bool, 256> kNameBytes = makeNameBytes();

Start startOf(char c) {
    return kStarts[static_cast<unsigned char>(c)];
}
bool isNameByte(char c) {
    return kNameBytes[static_cast<unsigned char>(c)];
}
bool isDigit(char c) {
    return c >= '0' && c <= '9';
}

int hexDigit(char c) {
    if (c >= '0' && c <= '9') return c - '0';
    if (c >= 'a' && c <= 'f') return c - 'a' + 10;
    if (c >= 'A' && c <= 'F') return c - 'A' + 10;
    return -1;
}

// The key of a literal begins with one of these control characters; no token does.
char literalMark(const Literal& literal) {
    return static_cast<char>(1 + static_cast<int>(literal.type) + 8 * static_cast<int>(lengthClassOf(literal)));
}

// A batch of this many literals is not one that somebody wrote; the bound keeps its lists small.
constexpr std::size_t kMostLiterals = 1'000'000;

}  // namespace

// One scan. Pointers into the text instead of offsets, and the key written through a pointer into a buffer that is
// large enough beforehand, because this runs for every statement whether its plan is cached or not.
class Lexer::Scanner {
public:
    Scanner(Lexer& lexer, std::string_view sql)
        : lexer_(lexer), begin_(sql.data()), end_(sql.data() + sql.size()), at_(sql.data()), key_(lexer.key_.data()) {}

    void run() {
        while (at_ < end_)
            next();
        add(TokenKind::End, at_, at_);
        lexer_.keySize_ = static_cast<std::size_t>(key_ - lexer_.key_.data());
    }

private:
    void next() {
        const char* const start = at_;
        switch (startOf(*at_)) {
            case Start::Blank:
                ++at_;
                return;
            case Start::NationalLetter:
                if (at_ + 1 < end_ && at_[1] == '\'') {
                    at_ += 1;
                    text(start, LiteralType::NVarchar);
                    return;
                }
                name(start, TokenKind::Word);
                return;
            case Start::Letter:
                if (static_cast<unsigned char>(*at_) >= 0x80) {
                    if (const std::size_t blank = leadingUnicodeBlank(rest())) {
                        at_ += blank;
                        return;
                    }
                }
                name(start, TokenKind::Word);
                return;
            case Start::Digit:
                number(start);
                return;
            case Start::Quote:
                text(start, LiteralType::Varchar);
                return;
            case Start::DoubleQuote:
                quotedName(start, '"');
                return;
            case Start::Bracket:
                quotedName(start, ']');
                return;
            case Start::At:
                ++at_;
                if (at_ < end_ && *at_ == '@') {
                    ++at_;
                    name(start, TokenKind::SystemVariable);
                } else {
                    name(start, TokenKind::Variable);
                }
                return;
            case Start::Dollar:
                if (const std::size_t digit = follows('.') ? 2 : 1;
                    static_cast<std::size_t>(end_ - at_) > digit && isDigit(at_[digit])) {
                    money(start);
                    return;
                }
                [[fallthrough]];
            case Start::Hash:
                ++at_;
                name(start, TokenKind::Word);
                return;
            case Start::Point:
                if (at_ + 1 < end_ && isDigit(at_[1])) {
                    number(start);
                    return;
                }
                punctuation(TokenKind::Point, 1);
                return;
            case Start::Minus:
                if (at_ + 1 < end_ && at_[1] == '-') {
                    while (at_ < end_ && *at_ != '\n' && *at_ != '\r')
                        ++at_;
                    return;
                }
                withEqual(TokenKind::Minus, TokenKind::MinusEqual);
                return;
            case Start::Slash:
                if (at_ + 1 < end_ && at_[1] == '*') {
                    comment(start);
                    return;
                }
                withEqual(TokenKind::Slash, TokenKind::SlashEqual);
                return;
            case Start::Operator:
                operatorToken();
                return;
            case Start::Unknown:
                punctuation(TokenKind::Unknown, 1);
                return;
        }
    }

    std::string_view rest() const { return {at_, static_cast<std::size_t>(end_ - at_)}; }
    std::uint32_t offset(const char* p) const { return static_cast<std::uint32_t>(p - begin_); }
    SourceRange range(const char* from, const char* to) const { return {offset(from), offset(to)}; }

    void add(TokenKind kind, const char* from, const char* to, LiteralIndex literal = 0) {
        lexer_.tokens_.push_back({kind, range(from, to), literal});
    }

    void addToKey(const char* from, const char* to) {
        const auto size = static_cast<std::size_t>(to - from);
        std::memcpy(key_, from, size);
        key_[size] = ' ';
        key_ += size + 1;
    }

    void addWithKey(TokenKind kind, const char* from) {
        add(kind, from, at_);
        addToKey(from, at_);
    }

    void punctuation(TokenKind kind, std::size_t size) {
        const char* const start = at_;
        at_ += size;
        addWithKey(kind, start);
    }

    bool follows(char c) const { return at_ + 1 < end_ && at_[1] == c; }

    void withEqual(TokenKind plain, TokenKind assigning) {
        if (follows('=')) {
            punctuation(assigning, 2);
        } else {
            punctuation(plain, 1);
        }
    }

    void operatorToken() {
        switch (*at_) {
            case '(':
                return punctuation(TokenKind::LeftParenthesis, 1);
            case ')':
                return punctuation(TokenKind::RightParenthesis, 1);
            case '{':
                return punctuation(TokenKind::LeftBrace, 1);
            case '}':
                return punctuation(TokenKind::RightBrace, 1);
            case ',':
                return punctuation(TokenKind::Comma, 1);
            case ';':
                return punctuation(TokenKind::Semicolon, 1);
            case ':':
                return punctuation(TokenKind::Colon, 1);
            case '?':
                return punctuation(TokenKind::Marker, 1);
            case '~':
                return punctuation(TokenKind::Tilde, 1);
            case '=':
                return punctuation(TokenKind::Equal, 1);
            case '+':
                return withEqual(TokenKind::Plus, TokenKind::PlusEqual);
            case '*':
                return withEqual(TokenKind::Star, TokenKind::StarEqual);
            case '%':
                return withEqual(TokenKind::Percent, TokenKind::PercentEqual);
            case '&':
                return withEqual(TokenKind::Ampersand, TokenKind::AmpersandEqual);
            case '|':
                return withEqual(TokenKind::Bar, TokenKind::BarEqual);
            case '^':
                return withEqual(TokenKind::Caret, TokenKind::CaretEqual);
            case '<':
                if (follows('>')) return punctuation(TokenKind::NotEqual, 2);
                return withEqual(TokenKind::Less, TokenKind::LessOrEqual);
            case '>':
                return withEqual(TokenKind::Greater, TokenKind::GreaterOrEqual);
            case '!':
                if (follows('=')) return punctuation(TokenKind::NotEqual, 2);
                if (follows('<')) return punctuation(TokenKind::GreaterOrEqual, 2);
                if (follows('>')) return punctuation(TokenKind::LessOrEqual, 2);
                return punctuation(TokenKind::Unknown, 1);
            default:
                return punctuation(TokenKind::Unknown, 1);
        }
    }

    void name(const char* start, TokenKind kind) {
        while (at_ < end_ && isNameByte(*at_)) {
            if (static_cast<unsigned char>(*at_) >= 0xC2 && leadingUnicodeBlank(rest()) != 0) break;
            ++at_;
        }
        addWithKey(kind, start);
    }

    // [a]]b] and "a""b"
    void quotedName(const char* start, char close) {
        ++at_;
        for (;;) {
            const void* const found = std::memchr(at_, close, static_cast<std::size_t>(end_ - at_));
            if (!found) unclosedQuote(start, start + 1);
            at_ = static_cast<const char*>(found) + 1;
            if (at_ >= end_ || *at_ != close) break;
            ++at_;
        }
        addWithKey(TokenKind::QuotedName, start);
    }

    [[noreturn]] void unclosedQuote(const char* start, const char* content) const {
        const std::string_view rest(content, static_cast<std::size_t>(end_ - content));
        constexpr std::size_t kShown = 80;
        throwSyntaxError(105,
                         "Unclosed quotation mark after the character string '" +
                             std::string(rest.substr(0, utf8Prefix(rest, kShown))) + "'.",
                         {begin_, static_cast<std::size_t>(end_ - begin_)}, range(start, content));
    }

    void comment(const char* start) {
        int depth = 0;
        while (end_ - at_ >= 2) {
            if (at_[0] == '/' && at_[1] == '*') {
                ++depth;
                at_ += 2;
            } else if (at_[0] == '*' && at_[1] == '/') {
                at_ += 2;
                if (--depth == 0) return;
            } else {
                ++at_;
            }
        }
        throwSyntaxError(113, "Missing end comment mark '*/'.", {begin_, static_cast<std::size_t>(end_ - begin_)},
                         range(start, start + 2));
    }

    void addLiteral(Literal literal, const char* start) {
        literal.range = range(start, at_);
        if (lexer_.literals_.size() >= kMostLiterals) {
            throw statementError(ErrorCategory::Limit, 8631, "The batch holds too many constants.",
                                 {begin_, static_cast<std::size_t>(end_ - begin_)}, literal.range);
        }
        add(TokenKind::Literal, start, at_, static_cast<LiteralIndex>(lexer_.literals_.size()));
        lexer_.literals_.push_back(literal);
        *key_++ = literalMark(literal);
        if (literal.type == LiteralType::Decimal) {
            *key_++ = static_cast<char>(literal.precision);
            *key_++ = static_cast<char>(literal.scale);
        }
    }

    // at_ stands on the opening quote.
    void text(const char* start, LiteralType type) {
        const char* const content = at_ + 1;
        ++at_;
        char* folded = nullptr;  // where the value is gathered once a doubled quote was seen
        char* foldedEnd = nullptr;
        for (;;) {
            const void* const found = std::memchr(at_, '\'', static_cast<std::size_t>(end_ - at_));
            if (!found) unclosedQuote(start, content);
            const char* const quote = static_cast<const char*>(found);
            const bool doubled = quote + 1 < end_ && quote[1] == '\'';
            if (doubled && !folded) folded = foldedEnd = foldingSpace();
            if (folded) {
                const auto size = static_cast<std::size_t>(quote - at_) + (doubled ? 1 : 0);
                std::memcpy(foldedEnd, at_, size);
                foldedEnd += size;
            }
            if (!doubled) {
                Literal literal;
                literal.type = type;
                literal.text = folded ? std::string_view(folded, static_cast<std::size_t>(foldedEnd - folded))
                                      : std::string_view(content, static_cast<std::size_t>(quote - content));
                if (folded) foldedUsed_ += literal.text.size();
                at_ = quote + 1;
                addLiteral(literal, start);
                return;
            }
            at_ = quote + 2;
            // The first stretch begins at the content, the next ones after the pair.
        }
    }

    // Room for the rest of the folded texts: together they are never longer than the batch.
    char* foldingSpace() {
        const auto size = static_cast<std::size_t>(end_ - begin_);
        if (lexer_.folded_.size() < size) lexer_.folded_.resize(size);
        return lexer_.folded_.data() + foldedUsed_;
    }

    struct Digits {
        unsigned __int128 coefficient = 0;
        int significant = 0;
        int scale = 0;
        bool point = false;
    };

    // Digits that do not fit are noticed by their count; the coefficient may wrap until then.
    Digits digits() {
        Digits taken;
        const auto takeDigits = [&](bool fraction) {
            while (at_ < end_ && isDigit(*at_)) {
                if (taken.significant < 100) {
                    taken.coefficient = taken.coefficient * 10 + static_cast<unsigned>(*at_ - '0');
                    if (taken.coefficient != 0 || *at_ != '0') ++taken.significant;
                    if (fraction) ++taken.scale;
                }
                ++at_;
            }
        };
        takeDigits(false);
        if (at_ < end_ && *at_ == '.') {
            taken.point = true;
            ++at_;
            takeDigits(true);
        }
        return taken;
    }

    // at_ stands on the $, and a number behind it.
    void money(const char* start) {
        ++at_;
        Digits taken = digits();
        bool fits = taken.significant <= kMaxDecimalDigits && taken.significant - taken.scale <= kMaxDecimalDigits / 2;
        if (fits) {
            for (; taken.scale > kMoneyScale + 1; --taken.scale)
                taken.coefficient /= 10;
            if (taken.scale > kMoneyScale) taken.coefficient = (taken.coefficient + 5) / 10;
            for (; taken.scale < kMoneyScale; ++taken.scale)
                taken.coefficient *= 10;
            fits = taken.coefficient <= static_cast<std::uint64_t>(std::numeric_limits<std::int64_t>::max());
        }
        if (!fits) {
            throwSyntaxError(8115, "Arithmetic overflow error converting numeric to data type money.",
                             {begin_, static_cast<std::size_t>(end_ - begin_)}, range(start, at_));
        }
        Literal literal;
        literal.type = LiteralType::Money;
        literal.coefficient = static_cast<Int128>(taken.coefficient);
        addLiteral(literal, start);
    }

    void number(const char* start) {
        if (*at_ == '0' && at_ + 1 < end_ && (at_[1] == 'x' || at_[1] == 'X')) {
            binary(start);
            return;
        }
        const auto [coefficient, significant, scale, point] = digits();
        if (at_ < end_ && (*at_ == 'e' || *at_ == 'E') && exponentFollows()) {
            real(start);
            return;
        }
        Literal literal;
        if (!point && significant <= 10 &&
            coefficient <= static_cast<unsigned>(std::numeric_limits<std::int32_t>::max())) {
            literal.type = LiteralType::Int;
            literal.integer = static_cast<std::int64_t>(coefficient);
            addLiteral(literal, start);
            return;
        }
        const int precision = significant > scale ? significant : scale;
        if (precision > kMaxDecimalDigits) {
            throwSyntaxError(1007,
                             "The number '" + shortened(start) +
                                 "' is out of the range for numeric representation (maximum precision 38).",
                             {begin_, static_cast<std::size_t>(end_ - begin_)}, range(start, at_));
        }
        literal.type = LiteralType::Decimal;
        literal.precision = static_cast<std::uint8_t>(precision < 1 ? 1 : precision);
        literal.scale = static_cast<std::uint8_t>(scale);
        literal.coefficient = static_cast<Int128>(coefficient);
        addLiteral(literal, start);
    }

    std::string shortened(const char* start) const {
        constexpr std::ptrdiff_t kShown = 80;
        return std::string(start, at_ - start > kShown ? start + kShown : at_);
    }

    // at_ stands on the e. 5else is 5 and else: only digits, or the end of the word, make an exponent.
    bool exponentFollows() const {
        const char* p = at_ + 1;
        if (p < end_ && (*p == '+' || *p == '-')) {
            ++p;
            return p < end_ && isDigit(*p);
        }
        return p >= end_ || isDigit(*p) || !isNameByte(*p);
    }

    void real(const char* start) {
        ++at_;
        const bool small = at_ < end_ && *at_ == '-';
        if (at_ < end_ && (*at_ == '+' || *at_ == '-')) ++at_;
        while (at_ < end_ && isDigit(*at_))
            ++at_;
        Literal literal;
        literal.type = LiteralType::Float;
        const std::from_chars_result parsed = std::from_chars(start, at_, literal.real);
        if (parsed.ec == std::errc::result_out_of_range) {
            if (!small) {
                throwSyntaxError(168,
                                 "The floating point value '" + shortened(start) +
                                     "' is out of the range of computer representation (8 bytes).",
                                 {begin_, static_cast<std::size_t>(end_ - begin_)}, range(start, at_));
            }
            literal.real = 0;
        }
        addLiteral(literal, start);
    }

    void binary(const char* start) {
        at_ += 2;
        const char* const digits = at_;
        while (at_ < end_ && hexDigit(*at_) >= 0)
            ++at_;
        char* const bytes = foldingSpace();
        std::size_t size = 0;
        const char* p = digits;
        // An odd count of digits has its first digit alone: 0xABC is 0A BC.
        if ((at_ - digits) % 2 != 0) bytes[size++] = static_cast<char>(hexDigit(*p++));
        for (; p < at_; p += 2)
            bytes[size++] = static_cast<char>(hexDigit(p[0]) * 16 + hexDigit(p[1]));
        foldedUsed_ += size;
        Literal literal;
        literal.type = LiteralType::Varbinary;
        literal.text = {bytes, size};
        addLiteral(literal, start);
    }

    Lexer& lexer_;
    const char* const begin_;
    const char* const end_;
    const char* at_;
    char* key_;
    std::size_t foldedUsed_ = 0;
};

void Lexer::scan(std::string_view sql) {
    text_ = {};
    tokens_.clear();
    literals_.clear();
    keySize_ = 0;
    if (sql.size() > kLongestBatch) {
        throw DatabaseError(ErrorCategory::Limit, "54000", 8631,
                            "The batch is longer than " + std::to_string(kLongestBatch >> 20) + " MB.");
    }
    if (const std::size_t invalid = findInvalidUtf8(sql); invalid != kValidUtf8) {
        throw DatabaseError(ErrorCategory::Conversion, "22021", 0,
                            "The statement is not valid UTF-8 at byte " + std::to_string(invalid) + ".");
    }
    // A buffer that one large batch needed is not kept for the small ones after it.
    constexpr std::size_t kKept = std::size_t{1} << 20;
    if (key_.size() > kKept && sql.size() < kKept / 4) {
        key_ = {};
        folded_ = {};
        tokens_ = {};
        literals_ = {};
    }
    // A token takes its bytes and a blank in the key; the marks of the shortest decimals (1. and .5) take three.
    if (const std::size_t need = 2 * sql.size() + 4; key_.size() < need) key_.resize(need < 512 ? 512 : need);
    try {
        Scanner(*this, sql).run();
    } catch (...) {
        tokens_.clear();
        literals_.clear();
        throw;
    }
    text_ = sql;
}

std::string nameValue(std::string_view spelling) {
    if (spelling.size() < 2 || (spelling.front() != '[' && spelling.front() != '"')) return std::string(spelling);
    const char close = spelling.front() == '[' ? ']' : '"';
    std::string value;
    value.reserve(spelling.size() - 2);
    for (std::size_t i = 1; i + 1 < spelling.size(); ++i) {
        value += spelling[i];
        if (spelling[i] == close) ++i;
    }
    return value;
}

}  // namespace basalt::embedded
