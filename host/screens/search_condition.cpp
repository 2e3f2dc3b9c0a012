#include "host/screens/search_condition.h"

#include <QString>
#include <algorithm>
#include <optional>

#include "ado/decimal.h"
#include "ado/names.h"
#include "host/screens/number_typing.h"
#include "host/screens/persian_digits.h"

namespace basalt::host {
namespace {

// Letters that are one to the reader. Each group becomes a set of LIKE, so that data of any origin is found.
constexpr const char16_t* kYehs = u"\u06CC\u064A\u0649";
constexpr const char16_t* kKafs = u"\u06A9\u0643";
constexpr const char16_t* kBlanks = u" \u200C";

QString likeSet(QStringView characters) {
    return QLatin1Char('[') + characters.toString() + QLatin1Char(']');
}

QString likePiece(QChar character) {
    if (QStringView(kYehs).contains(character)) return likeSet(kYehs);
    if (QStringView(kKafs).contains(character)) return likeSet(kKafs);
    if (QStringView(kBlanks).contains(character)) return likeSet(kBlanks);
    const QChar digit = latinDigits(QString(character)).at(0);
    if (digit >= QLatin1Char('0') && digit <= QLatin1Char('9')) {
        const auto value = static_cast<char16_t>(digit.unicode() - u'0');
        const QChar set[]{digit, QChar(static_cast<char16_t>(u'\u06F0' + value)),
                          QChar(static_cast<char16_t>(u'\u0660' + value))};
        return likeSet(QStringView(set, 3));
    }
    switch (character.unicode()) {
        case u'%':
        case u'_':
        case u'[':
            return likeSet(QStringView(&character, 1));
        case u'\'':
            return QStringLiteral("''");
        default:
            return QString(character);
    }
}

// No number of a list is as great as one with more digits before the point, nor as fine as one with more after it. With
// both a literal has still room within the digits of the server's numbers.
constexpr std::size_t kMostWholeDigits = 28;
constexpr std::size_t kMostFractionDigits = 10;

struct Bound {
    std::string number;
    bool negative = false;
    bool cut = false;  // what was typed is farther from zero than the number, by less than any number of a list shows
};

std::optional<Bound> boundOf(const QString& input) {
    const auto plain = plainAmount(input);
    if (!plain) return std::nullopt;
    const std::string text = plain->toStdString();
    Bound bound;
    bound.negative = text.starts_with('-');
    const std::size_t begin = bound.negative ? 1 : 0;
    const std::size_t point = std::min(text.find('.'), text.size());
    std::string whole = text.substr(begin, point - begin);
    std::string fraction = text.substr(std::min(point + 1, text.size()));
    whole.erase(0, whole.find_first_not_of('0'));
    fraction.erase(fraction.find_last_not_of('0') + 1);
    const std::string sign = bound.negative ? "-" : "";
    if (whole.size() > kMostWholeDigits) {
        bound.number = sign + "1" + std::string(kMostWholeDigits, '0');
        return bound;
    }
    bound.cut = fraction.size() > kMostFractionDigits;
    if (bound.cut) fraction.resize(kMostFractionDigits);
    bound.number =
        Decimal::parse(sign + "0" + whole + (fraction.empty() ? "" : "." + fraction)).value().toPlainString();
    return bound;
}

}  // namespace

std::string likePattern(const QString& input) {
    QString pattern;
    for (const QChar character : input.trimmed())
        pattern += likePiece(character);
    return pattern.toStdString();
}

std::string textCondition(const std::string& field, const QString& input) {
    const std::string pattern = likePattern(input);
    return pattern.empty() ? std::string() : quotedName(field) + " LIKE N'%" + pattern + "%'";
}

std::string digitsCondition(const std::string& field, const QString& input) {
    std::string digits;
    for (const QChar character : latinDigits(input))
        if (character >= QLatin1Char('0') && character <= QLatin1Char('9'))
            digits += static_cast<char>(character.unicode());
    // Codes are shown without leading zeros, and a person who types them means the same code.
    digits.erase(0, std::min(digits.find_first_not_of('0'), digits.empty() ? 0 : digits.size() - 1));
    if (digits.empty()) return {};
    return "CAST(" + quotedName(field) + " AS NVARCHAR(40)) LIKE N'" + digits + "%'";
}

std::string rangeCondition(const std::string& field, const QString& from, const QString& to) {
    std::vector<std::string> parts;
    if (const auto low = boundOf(from))
        parts.push_back(quotedName(field) + (low->cut && !low->negative ? " > " : " >= ") + low->number);
    if (const auto high = boundOf(to))
        parts.push_back(quotedName(field) + (high->cut && high->negative ? " < " : " <= ") + high->number);
    if (parts.empty()) return {};
    return parts.size() == 1 ? parts.front() : parts.front() + " AND " + parts.back();
}

std::string equalCondition(const std::string& field, const std::string& value) {
    if (value.empty()) return {};
    if (const auto number = Decimal::parse(value)) return quotedName(field) + " = " + number->toPlainString();
    std::string quoted;
    for (const char character : value) {
        if (character == '\'') quoted += '\'';
        quoted += character;
    }
    return quotedName(field) + " = N'" + quoted + "'";
}

std::string joinedConditions(const std::vector<std::string>& conditions) {
    std::vector<std::string> narrowing;
    for (const std::string& condition : conditions)
        if (!condition.empty()) narrowing.push_back(condition);
    if (narrowing.size() == 1) return narrowing.front();
    std::string joined;
    for (const std::string& condition : narrowing)
        joined += (joined.empty() ? "(" : " AND (") + condition + ")";
    return joined;
}

}  // namespace basalt::host
