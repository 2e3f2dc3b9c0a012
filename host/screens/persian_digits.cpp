#include "host/screens/persian_digits.h"

namespace basalt::host {
namespace {
constexpr char16_t kPersianZero = u'\u06F0';
constexpr char16_t kArabicZero = u'\u0660';

[[nodiscard]] bool isDigitFrom(QChar character, char16_t zero) {
    return character.unicode() >= zero && character.unicode() < zero + 10;
}

[[nodiscard]] QChar moved(QChar digit, char16_t from, char16_t to) {
    return QChar(static_cast<char16_t>(digit.unicode() - from + to));
}
}  // namespace

QString persianDigits(QString text) {
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

}  // namespace basalt::host
