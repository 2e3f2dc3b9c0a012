#include "host/screens/persian_digits.h"

#include <QLocale>
#include <algorithm>

namespace basalt::host {
namespace {
constexpr char16_t kPersianZero = u'\u06F0';
constexpr char16_t kArabicZero = u'\u0660';
constexpr char16_t kDecimalMark = u'\u066B';
constexpr char16_t kThousandsMark = u'\u066C';
constexpr char16_t kLeftToRightIsolate = u'\u2066';
constexpr char16_t kPopIsolate = u'\u2069';

bool persianWanted = true;

[[nodiscard]] bool isDigitFrom(QChar character, char16_t zero) {
    return character.unicode() >= zero && character.unicode() < zero + 10;
}

[[nodiscard]] QChar moved(QChar digit, char16_t from, char16_t to) {
    return QChar(static_cast<char16_t>(digit.unicode() - from + to));
}

[[nodiscard]] bool isLatinLetter(QChar character) {
    const char16_t lower = character.unicode() | 0x20;
    return lower >= u'a' && lower <= u'z';
}
}  // namespace

void showPersianDigits(bool on) {
    persianWanted = on;
    QLocale::setDefault(on ? QLocale(QLocale::Persian, QLocale::Iran) : QLocale::c());
}

bool showsPersianDigits() {
    return persianWanted;
}

QString screenNumber(std::string_view number) {
    QString text = persianDigits(QString::fromUtf8(number.data(), static_cast<qsizetype>(number.size())));
    if (!persianWanted) return text;
    for (qsizetype i = 1; i + 1 < text.size(); ++i) {
        const bool between = isDigitFrom(text[i - 1], kPersianZero) && isDigitFrom(text[i + 1], kPersianZero);
        if (between && text[i] == QLatin1Char('.')) text[i] = QChar(kDecimalMark);
        if (between && text[i] == QLatin1Char(',')) text[i] = QChar(kThousandsMark);
    }
    return text;
}

QString isolatedNumber(std::string_view number) {
    const QString text = screenNumber(number);
    return text.startsWith(QLatin1Char('-')) ? QChar(kLeftToRightIsolate) + text + QChar(kPopIsolate) : text;
}

QString screenText(QString text) {
    if (!persianWanted) return text;
    for (qsizetype start = 0; start < text.size();) {
        const auto isEnd = [](QChar c) { return c.isSpace(); };
        const auto from = text.begin() + start;
        const auto end = std::find_if(from, text.end(), isEnd);
        if (std::none_of(from, end, isLatinLetter)) {
            std::transform(from, end, from,
                           [](QChar c) { return isDigitFrom(c, u'0') ? moved(c, u'0', kPersianZero) : c; });
        }
        start = end - text.begin() + 1;
    }
    return text;
}

QString persianDigits(QString text) {
    if (!persianWanted) return text;
    for (QChar& character : text)
        if (isDigitFrom(character, u'0')) character = moved(character, u'0', kPersianZero);
    return text;
}

QString latinDigits(QString text) {
    for (QChar& character : text) {
        if (isDigitFrom(character, kPersianZero)) character = moved(character, kPersianZero, u'0');
        if (isDigitFrom(character, kArabicZero)) character = moved(character, kArabicZero, u'0');
    }
    return text;
}

QString plainNumber(QString text) {
    text = latinDigits(std::move(text));
    text.replace(QChar(kDecimalMark), QLatin1Char('.'));
    text.replace(QChar(kThousandsMark), QLatin1Char(','));
    text.remove(QChar(kLeftToRightIsolate)).remove(QChar(kPopIsolate));
    return text;
}

}  // namespace basalt::host
