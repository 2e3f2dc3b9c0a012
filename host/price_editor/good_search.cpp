#include "host/price_editor/good_search.h"

#include <algorithm>

#include "host/screens/persian_digits.h"
#include "host/screens/search_condition.h"

namespace basalt::host {
namespace {

constexpr std::size_t kCodeDigits = 10;  // that a code has at most

// The digits of a text that is digits and nothing else, without zeros before them; a name may hold some too.
std::string codeIn(const QString& wanted) {
    const std::string digits = latinDigits(wanted).toStdString();
    if (digits.empty() || digits.find_first_not_of("0123456789") != std::string::npos) return {};
    return digits.substr(std::min(digits.find_first_not_of('0'), digits.size() - 1));
}

}  // namespace

std::string goodSearch(const QString& input, int most) {
    const QString wanted = input.trimmed();
    const std::string select = "SELECT TOP " + std::to_string(most) + " Code, Name FROM dbo.GoodInf";
    if (wanted.isEmpty()) return select + " ORDER BY Code";
    const std::string pattern = likePattern(wanted);
    const std::string code = codeIn(wanted);
    std::string found = textCondition("Name", wanted) + " OR " + textCondition("AbbName", wanted);
    // Barcodes stand between exclamation marks.
    std::string beginning = "[Name] LIKE N'" + pattern + "%' OR [AbbName] LIKE N'%!" + pattern + "%'";
    std::string exact;
    if (!code.empty()) {
        const std::string codes = digitsCondition("Code", wanted);
        found += " OR " + codes;
        beginning += " OR " + codes;
        if (code.size() <= kCodeDigits) exact = "WHEN Code = " + code + " THEN 0 ";
    }
    return select + " WHERE " + found + " ORDER BY CASE " + exact + "WHEN N'!' + [AbbName] + N'!' LIKE N'%!" + pattern +
           "!%' OR [Name] LIKE N'" + pattern + "' THEN 1 WHEN " + beginning + " THEN 2 ELSE 3 END, Code";
}

}  // namespace basalt::host
