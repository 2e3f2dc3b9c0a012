#include "engines/embedded/lexer/lexer.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "ado/error.h"

namespace basalt::embedded {
namespace {

// Tokens as their spellings with a blank between them, so that a table can show them.
std::string tokensOf(std::string_view sql) {
    Lexer lexer;
    lexer.scan(sql);
    std::string result;
    for (const Token& token : lexer.tokens()) {
        if (token.kind == TokenKind::End) break;
        if (!result.empty()) result += " ";
        result += sql.substr(token.range.begin, token.range.size());
    }
    return result;
}

struct TokensCase {
    const char* name;
    const char* sql;
    const char* tokens;
};

void PrintTo(const TokensCase& c, std::ostream* os) {
    *os << c.name;
}

class Tokens : public testing::TestWithParam<TokensCase> {};

TEST_P(Tokens, AreSeparated) {
    EXPECT_EQ(tokensOf(GetParam().sql), GetParam().tokens);
}

INSTANTIATE_TEST_SUITE_P(
    Lexer, Tokens,
    testing::Values(
        TokensCase{"Empty", "", ""}, TokensCase{"OnlyBlanks", " \t\r\n", ""},
        TokensCase{"NumberThenWord", "1UNION", "1 UNION"},
        TokensCase{"NumberThenAnd", "user_code=1and x", "user_code = 1 and x"},
        TokensCase{"NumberThenElse", "5else", "5 else"}, TokensCase{"Exponent", "1.5e3 2E+1 3e-2", "1.5e3 2E+1 3e-2"},
        TokensCase{"BareExponent", "1e ", "1e"}, TokensCase{"LeadingPoint", "a=.5", "a = .5"},
        TokensCase{"TrailingPoint", "5.and", "5. and"}, TokensCase{"TwoPoints", "1.5.5", "1.5 .5"},
        TokensCase{"Binary", "0x1Fg", "0x1F g"}, TokensCase{"EmptyBinary", "0x", "0x"},
        TokensCase{"QualifiedNames", "dbo.T.Code tempdb..#t", "dbo . T . Code tempdb . . #t"},
        TokensCase{"Brackets", "[a]]b][c d]", "[a]]b] [c d]"}, TokensCase{"QuotedName", "\"a\"\"b\" c", "\"a\"\"b\" c"},
        TokensCase{"Texts", "'it''s'N'x''y'", "'it''s' N'x''y'"}, TokensCase{"TextWithLines", "'a\nb'", "'a\nb'"},
        TokensCase{"SmallN", "n'x'", "n'x'"}, TokensCase{"NameBeginningWithN", "Name", "Name"},
        TokensCase{"LineComment", "a -- b 'c\nd", "a d"}, TokensCase{"LineCommentAtEnd", "a--", "a"},
        TokensCase{"NestedComment", "a/* b /* c */ d */e", "a e"}, TokensCase{"CommentNotDivision", "a/b", "a / b"},
        TokensCase{"Variables", "@a @@ROWCOUNT #t ##t $x", "@a @@ROWCOUNT #t ##t $x"},
        TokensCase{"Operators", "a+=1-=2*=3/=4%=5&=6|=7^=8", "a += 1 -= 2 *= 3 /= 4 %= 5 &= 6 |= 7 ^= 8"},
        TokensCase{"Comparisons", "a<>b!=c<=d>=e!<f!>g<h>i", "a <> b != c <= d >= e !< f !> g < h > i"},
        TokensCase{"Call", "{call p(?,1)}", "{ call p ( ? , 1 ) }"},
        TokensCase{"Persian", "عنوان=کالا", "عنوان = کالا"},
        TokensCase{"NoBreakSpaceSeparates",
                   "a\xC2\xA0"
                   "b",
                   "a b"},
        TokensCase{"ByteOrderMark", "\xEF\xBB\xBFselect", "select"},
        TokensCase{"JoinerInsideName", "\xD9\x85\xDB\x8C\xE2\x80\x8C\xD8\xB4", "\xD9\x85\xDB\x8C\xE2\x80\x8C\xD8\xB4"},
        TokensCase{"UnknownCharacter", "a \\ b", "a \\ b"}),
    [](const testing::TestParamInfo<TokensCase>& test) { return std::string(test.param.name); });

Literal onlyLiteral(std::string_view sql) {
    static Lexer lexer;
    lexer.scan(sql);
    EXPECT_EQ(lexer.literals().size(), 1U);
    return lexer.literals().empty() ? Literal{} : lexer.literals().front();
}

TEST(LexerLiterals, WholeNumbersAreIntsWhileTheyFit) {
    EXPECT_EQ(onlyLiteral("0").type, LiteralType::Int);
    EXPECT_EQ(onlyLiteral("2147483647").integer, 2147483647);
    EXPECT_EQ(onlyLiteral("0000000000000012").integer, 12);
    const Literal large = onlyLiteral("2147483648");
    EXPECT_EQ(large.type, LiteralType::Decimal);
    EXPECT_EQ(large.precision, 10);
    EXPECT_EQ(large.scale, 0);
    EXPECT_EQ(toString(large.coefficient), "2147483648");
}

struct DecimalCase {
    const char* sql;
    int precision, scale;
    const char* coefficient;
};

TEST(LexerLiterals, DecimalsTakePrecisionAndScaleFromTheirDigits) {
    const DecimalCase cases[] = {
        {"1.5", 2, 1, "15"},
        {"0.05", 2, 2, "5"},
        {".5", 1, 1, "5"},
        {"10.", 2, 0, "10"},
        {"0.0", 1, 1, "0"},
        {"00.10", 2, 2, "10"},
        {"12500.50", 7, 2, "1250050"},
        {"99999999999999999999999999999999999999", 38, 0, "99999999999999999999999999999999999999"},
        {"0.00000000000000000000000000000000000001", 38, 38, "1"},
    };
    for (const DecimalCase& c : cases) {
        SCOPED_TRACE(c.sql);
        const Literal literal = onlyLiteral(c.sql);
        EXPECT_EQ(literal.type, LiteralType::Decimal);
        EXPECT_EQ(literal.precision, c.precision);
        EXPECT_EQ(literal.scale, c.scale);
        EXPECT_EQ(toString(literal.coefficient), c.coefficient);
    }
}

TEST(LexerLiterals, ExponentsAreFloats) {
    EXPECT_EQ(onlyLiteral("1.5e3").real, 1500);
    EXPECT_EQ(onlyLiteral(".5E-1").real, 0.05);
    EXPECT_EQ(onlyLiteral("1.e2").real, 100);
    EXPECT_EQ(onlyLiteral("7e").real, 7);
    EXPECT_EQ(onlyLiteral("1e-999").real, 0);
    EXPECT_EQ(onlyLiteral("1e5").type, LiteralType::Float);
}

TEST(LexerLiterals, MoneyHasFourDigitsBehindThePoint) {
    const std::pair<const char*, const char*> cases[] = {{"$12.5", "125000"},
                                                         {"$.00005", "1"},
                                                         {"$0.00004", "0"},
                                                         {"$7.", "70000"},
                                                         {"$922337203685477.58074", "9223372036854775807"}};
    for (const auto& [sql, coefficient] : cases) {
        SCOPED_TRACE(sql);
        const Literal literal = onlyLiteral(sql);
        EXPECT_EQ(literal.type, LiteralType::Money);
        EXPECT_EQ(toString(literal.coefficient), coefficient);
    }
}

TEST(LexerLiterals, TextsFoldDoubledQuotes) {
    EXPECT_EQ(onlyLiteral("'it''s'").text, "it's");
    EXPECT_EQ(onlyLiteral("''").text, "");
    EXPECT_EQ(onlyLiteral("''''").text, "'");
    EXPECT_EQ(onlyLiteral("''''''").text, "''");
    EXPECT_EQ(onlyLiteral("'a''b''c'").text, "a'b'c");
    EXPECT_EQ(onlyLiteral("N'عمده'").text, "عمده");
    EXPECT_EQ(onlyLiteral("N'x'").type, LiteralType::NVarchar);
    EXPECT_EQ(onlyLiteral("'x'").type, LiteralType::Varchar);
    const Literal ranged = onlyLiteral("  N'x'");
    EXPECT_EQ(ranged.range.begin, 2U);
    EXPECT_EQ(ranged.range.end, 6U);
}

TEST(LexerLiterals, SeveralFoldedTextsKeepTheirOwnValues) {
    Lexer lexer;
    lexer.scan("'a''1' 0x0AFF N'b''2' 'plain'");
    ASSERT_EQ(lexer.literals().size(), 4U);
    EXPECT_EQ(lexer.literals()[0].text, "a'1");
    EXPECT_EQ(lexer.literals()[1].text, "\x0A\xFF");
    EXPECT_EQ(lexer.literals()[2].text, "b'2");
    EXPECT_EQ(lexer.literals()[3].text, "plain");
}

TEST(LexerLiterals, BinaryWithAnOddCountOfDigitsStartsWithOneDigit) {
    EXPECT_EQ(onlyLiteral("0xABC").text, "\x0A\xBC");
    EXPECT_EQ(onlyLiteral("0x").text, "");
}

std::string keyOf(std::string_view sql) {
    Lexer lexer;
    lexer.scan(sql);
    return std::string(lexer.key());
}

TEST(LexerKey, IsTheSameForOtherValuesOfTheSameTypes) {
    EXPECT_EQ(keyOf("select a from t where x = 5 and y = 'a'"),
              keyOf("select a from t where x = 70000 and y = 'b''c'"));
    EXPECT_EQ(keyOf("a = 1.5"), keyOf("a = 9.7"));
}

TEST(LexerKey, IgnoresCommentsAndTheAmountOfWhiteSpace) {
    EXPECT_EQ(keyOf("select  a\n from t -- x"), keyOf("select a/* y */from t"));
}

TEST(LexerKey, DiffersWhereThePlanDoes) {
    const std::vector<std::string> texts = {
        "a = 5",          "a = 5.5", "a = 5.55",  "a = 15.5", "a = 5e0", "a = '5'", "a = N'5'",  "a = 0x05",
        "a = 2147483648", "a = ?",   "A = 5",     "a = b",    "a = [b]", "a = -5",  "a = 5 - 5", "a . b = 5",
        "a < > 5",        "a <> 5",  "[a b] = 5", "a b = 5",  "a = @b",  "a = 5;",  "(a = 5)",
    };
    for (std::size_t i = 0; i < texts.size(); ++i) {
        for (std::size_t j = i + 1; j < texts.size(); ++j) {
            EXPECT_NE(keyOf(texts[i]), keyOf(texts[j])) << texts[i] << " / " << texts[j];
        }
    }
}

TEST(LexerKey, TellsTextsApartThatABoundedTypeDoesNotHold) {
    const auto text = [](const char* prefix, std::size_t length, const char* character = "a") {
        std::string result = prefix;
        for (std::size_t i = 0; i < length; ++i)
            result += character;
        return keyOf(result + (*prefix == '0' ? "" : "'"));
    };
    EXPECT_EQ(text("N'", 0), text("N'", 255));
    EXPECT_EQ(text("N'", 0), text("N'", 255, "ک"));
    EXPECT_NE(text("N'", 255), text("N'", 256));
    EXPECT_EQ(text("N'", 256), text("N'", 4000, "ک"));
    EXPECT_NE(text("N'", 4000), text("N'", 4001));
    EXPECT_EQ(text("N'", 4001), text("N'", 9000));
    EXPECT_EQ(text("'", 256), text("'", 8000));
    EXPECT_NE(text("'", 8000), text("'", 8001));
    EXPECT_EQ(text("0x", 512), text("0x", 16000));
    EXPECT_NE(text("0x", 16000), text("0x", 16002));
}

TEST(Lexer, GivesItsBuffersBackAfterALargeBatch) {
    Lexer lexer;
    const std::string large = "select '" + std::string(3'000'000, 'x') + "'";
    lexer.scan(large);
    EXPECT_EQ(lexer.literals().front().text.size(), 3'000'000U);
    lexer.scan("select 'y'");
    EXPECT_EQ(lexer.literals().front().text, "y");
    EXPECT_EQ(lexer.tokens().size(), 3U);
}

TEST(Lexer, IsEmptyAfterAFailure) {
    Lexer lexer;
    lexer.scan("select 1");
    EXPECT_THROW(lexer.scan("select 'x"), DatabaseError);
    EXPECT_TRUE(lexer.tokens().empty());
    EXPECT_TRUE(lexer.literals().empty());
    EXPECT_EQ(lexer.key(), "");
    lexer.scan("select 2");
    EXPECT_EQ(lexer.literals().front().integer, 2);
}

struct InvalidText {
    const char* name;
    std::string sql;
    int at;
};

TEST(Lexer, RefusesTextThatIsNotUtf8) {
    const InvalidText cases[] = {
        {"continuation alone", "select \x80", 7},
        {"overlong slash", "\xC0\xAF", 0},
        {"overlong of three", "a\xE0\x80\xAF", 1},
        {"surrogate", "'\xED\xA0\x80'", 1},
        {"above the last character", "'\xF4\x90\x80\x80'", 1},
        {"cut short", "select '\xD8", 8},
        {"after eight plain bytes", "12345678\xFF", 8},
    };
    Lexer lexer;
    for (const InvalidText& c : cases) {
        SCOPED_TRACE(c.name);
        try {
            lexer.scan(c.sql);
            ADD_FAILURE() << "accepted";
        } catch (const DatabaseError& error) {
            EXPECT_EQ(error.category(), ErrorCategory::Conversion);
            EXPECT_EQ(std::string(error.what()),
                      "The statement is not valid UTF-8 at byte " + std::to_string(c.at) + ".");
        }
    }
}

TEST(Lexer, TakesEveryKindOfWellFormedCharacter) {
    Lexer lexer;
    lexer.scan("select N'\xC2\x80\xDF\xBF\xE0\xA0\x80\xED\x9F\xBF\xEE\x80\x80\xF0\x90\x80\x80\xF4\x8F\xBF\xBF'");
    EXPECT_EQ(lexer.literals().size(), 1U);
}

TEST(NameValue, FoldsDoubledClosingMarks) {
    EXPECT_EQ(nameValue("Code"), "Code");
    EXPECT_EQ(nameValue("[desc]"), "desc");
    EXPECT_EQ(nameValue("[a]]b]"), "a]b");
    EXPECT_EQ(nameValue("\"a\"\"b\""), "a\"b");
    EXPECT_EQ(nameValue("[]"), "");
    EXPECT_EQ(nameValue("[a[b]"), "a[b");
}

}  // namespace
}  // namespace basalt::embedded
