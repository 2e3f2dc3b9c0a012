#include "host/screens/search_condition.h"

#include <QString>
#include <algorithm>
#include <optional>

#include "ado/decimal.h"
#include "ado/names.h"
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

std::optional<Decimal> numberOf(const QString& input) {
    QString text = latinDigits(input.trimmed());
    for (const char16_t separator : {u',', u'\u066C', u'\u060C'})
        text.remove(QChar(separator));
    text.replace(QChar(u'\u066B'), QLatin1Char('.'));
    return Decimal::parse(text.toStdString());
}

}  // namespace

std::string textCondition(const std::string& field, const QString& input) {
    const QString wanted = input.trimmed();
    if (wanted.isEmpty()) return {};
    QString pattern;
    for (const QChar character : wanted)
        pattern += likePiece(character);
    return quotedName(field) + " LIKE N'%" + pattern.toStdString() + "%'";
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
    if (const auto low = numberOf(from)) parts.push_back(quotedName(field) + " >= " + low->toPlainString());
    if (const auto high = numberOf(to)) parts.push_back(quotedName(field) + " <= " + high->toPlainString());
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
