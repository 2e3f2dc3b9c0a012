#include "host/screens/workbook_text.h"

#include <QString>
#include <QStringDecoder>
#include <algorithm>

namespace basalt::host {
namespace {

constexpr std::size_t kLongestText = 32'767;  // of a cell

// Control characters but tab and line feed. A carriage return is allowed, but those who read XML make a line feed of
// it.
bool isControl(char16_t character) {
    return character < 0x20 && character != '\t' && character != '\n';
}

bool isNoCharacter(char16_t character) {
    return character == 0xFFFE || character == 0xFFFF;
}

// Whether the text can stand as it is. Cells are many, and most of them are plain.
bool isPlain(std::string_view text) {
    constexpr std::string_view noCharacterBegins = "\xEF\xBF";
    return text.size() <= kLongestText &&
           std::none_of(text.begin(), text.end(),
                        [](char byte) { return isControl(static_cast<unsigned char>(byte)); }) &&
           text.find("_x") == std::string_view::npos && text.find(noCharacterBegins) == std::string_view::npos &&
           QUtf8StringView(text.data(), static_cast<qsizetype>(text.size())).isValidUtf8();
}

bool looksEscaped(QStringView rest) {
    constexpr qsizetype length = 7;  // _xHHHH_
    return rest.size() >= length && rest[0] == u'_' && rest[1] == u'x' && rest[length - 1] == u'_' &&
           std::all_of(rest.begin() + 2, rest.begin() + length - 1, [](QChar digit) {
               return (digit >= u'0' && digit <= u'9') || (digit >= u'A' && digit <= u'F') ||
                      (digit >= u'a' && digit <= u'f');
           });
}

QString escaped(char16_t character) {
    return QStringLiteral("_x%1_").arg(QString::number(character, 16).toUpper(), 4, QLatin1Char('0'));
}

// The character that the text begins with, both halves of it where it has two.
QStringView firstCharacter(QStringView text) {
    return text.first(text[0].isHighSurrogate() && text.size() > 1 ? 2 : 1);
}

}  // namespace

std::string workbookText(std::string_view text) {
    if (isPlain(text)) return std::string(text);
    // A text may begin with the character that at the beginning of a file is a byte order mark.
    QStringDecoder decoder(QStringDecoder::Utf8, QStringConverter::Flag::ConvertInitialBom);
    const QString whole = decoder(QByteArrayView(text.data(), static_cast<qsizetype>(text.size())));
    QString result;
    for (QStringView rest = whole; !rest.isEmpty();) {
        const QStringView character = firstCharacter(rest);
        const char16_t unit = character[0].unicode();
        const bool escape = isControl(unit) || isNoCharacter(unit) || looksEscaped(rest);
        const QString piece = escape ? escaped(unit) : character.toString();
        if (result.size() + piece.size() > static_cast<qsizetype>(kLongestText)) break;
        result += piece;
        rest = rest.sliced(character.size());
    }
    return result.toStdString();
}

}  // namespace basalt::host
