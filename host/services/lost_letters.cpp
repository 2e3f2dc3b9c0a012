#include "host/services/lost_letters.h"

#include <array>
#include <string_view>

#include "host/services/sql_access.h"

namespace basalt::host {

namespace {

struct Letter {
    std::string_view text;
    std::string_view shown;
};

constexpr std::array kLetters = {
    Letter{"آ", "آ"},           Letter{"ا", "ا"},          Letter{"ب", "ب"}, Letter{"پ", "پ"}, Letter{"ت", "ت"},
    Letter{"ث", "ث"},           Letter{"ج", "ج"},          Letter{"چ", "چ"}, Letter{"ح", "ح"}, Letter{"خ", "خ"},
    Letter{"د", "د"},           Letter{"ذ", "ذ"},          Letter{"ر", "ر"}, Letter{"ز", "ز"}, Letter{"ژ", "ژ"},
    Letter{"س", "س"},           Letter{"ش", "ش"},          Letter{"ص", "ص"}, Letter{"ض", "ض"}, Letter{"ط", "ط"},
    Letter{"ظ", "ظ"},           Letter{"ع", "ع"},          Letter{"غ", "غ"}, Letter{"ف", "ف"}, Letter{"ق", "ق"},
    Letter{"ک", "ک"},           Letter{"گ", "گ"},          Letter{"ل", "ل"}, Letter{"م", "م"}, Letter{"ن", "ن"},
    Letter{"و", "و"},           Letter{"ه", "ه"},          Letter{"ی", "ی"}, Letter{"ي", "ي"}, Letter{"ك", "ك"},
    Letter{"أ", "أ"},           Letter{"ؤ", "ؤ"},          Letter{"ئ", "ئ"}, Letter{"ء", "ء"}, Letter{"ۀ", "ۀ"},
    Letter{"۰", "۰"},           Letter{"۱", "۱"},          Letter{"۲", "۲"}, Letter{"۳", "۳"}, Letter{"۴", "۴"},
    Letter{"۵", "۵"},           Letter{"۶", "۶"},          Letter{"۷", "۷"}, Letter{"۸", "۸"}, Letter{"۹", "۹"},
    Letter{"،", "،"},           Letter{"؛", "؛"},          Letter{"؟", "؟"}, Letter{"«", "«"}, Letter{"»", "»"},
    Letter{"\u200C", "U+200C"}, Letter{"\u0654", "U+0654"}};

}  // namespace

std::string lostLetters(Session& session) {
    // A mark behind each: then one that has become two, or none, moves none of the others.
    std::string literal;
    for (const Letter& letter : kLetters)
        literal += std::string(letter.text) + "|";
    const RowSet rows = rowsOf(session, "SELECT CAST('" + literal + "' AS nvarchar(400))");
    std::string answer = rows.rowCount() == 0 ? std::string() : textAt(rows, 0, 0);
    std::string lost;
    for (const Letter& letter : kLetters) {
        const std::size_t end = answer.find('|');
        const bool kept = end != std::string::npos && std::string_view(answer).substr(0, end) == letter.text;
        if (!kept) lost += (lost.empty() ? "" : " ") + std::string(letter.shown);
        answer.erase(0, end == std::string::npos ? end : end + 1);
    }
    return lost;
}

std::string lostLettersWarning(const std::string& letters) {
    return "the database's collation loses these letters in texts without N, which the program's statements have: " +
           letters +
           "; what has them in its name is not found by it. A collation with UTF-8 (..._SC_UTF8, SQL Server 2019 and "
           "later) keeps every letter";
}

}  // namespace basalt::host
