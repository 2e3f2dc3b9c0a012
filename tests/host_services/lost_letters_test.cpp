// What is asked of a database about the letters that it keeps, and what becomes of the answer.
#include "host/services/lost_letters.h"

#include <gmock/gmock.h>

#include "engines/embedded/embedded_session.h"
#include "tests/support/scripted_session.h"

namespace basalt::host {
namespace {

constexpr const char* question =
    "SELECT CAST('آ|ا|ب|پ|ت|ث|ج|چ|ح|خ|د|ذ|ر|ز|ژ|س|ش|ص|ض|ط|ظ|ع|غ|ف|ق|ک|گ|ل|م|ن|و|ه|ی|ي|ك|أ|ؤ|ئ|ء|ۀ|۰|۱|۲|۳|۴|۵|۶|۷|۸|۹|،|؛|؟|«|»|"
    "\u200C|\u0654|' AS nvarchar(400))";

std::string lostWhen(const std::string& answer) {
    RowSet rows({{.name = "", .type = FieldType::Text, .size = 400}});
    rows.column(0).appendText(answer);
    rows.finishRow();
    ScriptedSession session;
    session.expect(question, std::move(rows));
    return lostLetters(session);
}

TEST(LostLetters, noneWhereAllComeBack) {
    EXPECT_EQ(
        lostWhen(
            "آ|ا|ب|پ|ت|ث|ج|چ|ح|خ|د|ذ|ر|ز|ژ|س|ش|ص|ض|ط|ظ|ع|غ|ف|ق|ک|گ|ل|م|ن|و|ه|ی|ي|ك|أ|ؤ|ئ|ء|ۀ|۰|۱|۲|۳|۴|۵|۶|۷|۸|۹|،|؛|؟|«|»|"
            "\u200C|\u0654|"),
        "");
    EXPECT_EQ(lostLetters(*embedded::EmbeddedSession::open(":memory:")), "");
}

TEST(LostLetters, thoseOfACodePageThatHasMostOfThem) {
    EXPECT_EQ(
        lostWhen(
            "آ|ا|ب|پ|ت|ث|ج|چ|ح|خ|د|ذ|ر|ز|ژ|س|ش|ص|ض|ط|ظ|ع|غ|ف|ق|ک|گ|ل|م|ن|و|ه|ي|ي|ك|أ|ؤ|ئ|ء|?|0|1|2|3|4|5|6|7|8|9|،|؛|؟|«|»|"
            "\u200C|?|"),
        "ی ۀ ۰ ۱ ۲ ۳ ۴ ۵ ۶ ۷ ۸ ۹ U+0654");
}

TEST(LostLetters, oneThatHasBecomeTwoOrNoneMovesNoOther) {
    EXPECT_EQ(
        lostWhen(
            "ab||ب|پ|ت|ث|ج|چ|ح|خ|د|ذ|ر|ز|ژ|س|ش|ص|ض|ط|ظ|ع|غ|ف|ق|ک|گ|ل|م|ن|و|ه|ی|ي|ك|أ|ؤ|ئ|ء|ۀ|۰|۱|۲|۳|۴|۵|۶|۷|۸|۹|،|؛|؟|«|»|"
            "\u200C|\u0654|"),
        "آ ا");
}

TEST(LostLetters, allWhereTheAnswerIsAnother) {
    const std::string all =
        "آ ا ب پ ت ث ج چ ح خ د ذ ر ز ژ س ش ص ض ط ظ ع غ ف ق ک گ ل م ن و ه ی ي ك أ ؤ ئ ء ۀ ۰ ۱ ۲ ۳ ۴ ۵ ۶ ۷ ۸ ۹ ، ؛ ؟ « » U+200C U+0654";
    EXPECT_EQ(lostWhen(""), all);
    EXPECT_EQ(lostWhen("????"), all);
}

}  // namespace
}  // namespace basalt::host
