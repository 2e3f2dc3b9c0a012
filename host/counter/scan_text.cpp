#include "host/counter/scan_text.h"

#include <QHash>
#include <algorithm>

#include "host/screens/persian_digits.h"

namespace basalt::host {

namespace {

const QHash<QChar, QChar>& letters() {
    static const QHash<QChar, QChar> map = [] {
        QHash<QChar, QChar> made;
        const QString persian = QStringLiteral("ضصثقفغعهخحشسیبلاتنمظطزرذدپيكک");
        const QString latin = QStringLiteral("qwertyuiopasdfghjklzxcvbnmd;;");
        for (qsizetype i = 0; i < persian.size(); ++i)
            made.insert(persian[i], latin[i]);
        return made;
    }();
    return map;
}

// Above the digits 1 to 9 and 0 of a Persian layout.
const QString kSigns = QStringLiteral("!٬٫﷼٪×،*)(");

// A scanner that shifts digits shifts all of them: beside a digit or a letter a sign is one of the barcode's own. And
// what has ASCII signs alone may come from any layout, where they may stand above other digits.
bool isOfShiftedDigits(const QString& text) {
    const auto isSign = [](QChar c) { return kSigns.contains(c); };
    const auto isPersian = [](QChar c) { return c.unicode() >= 0x80; };
    return std::all_of(text.begin(), text.end(), isSign) && std::any_of(text.begin(), text.end(), isPersian);
}

bool isDirectionMark(QChar c) {
    const ushort code = c.unicode();
    return (code >= 0x200B && code <= 0x200F) || (code >= 0x202A && code <= 0x202E) ||
           (code >= 0x2066 && code <= 0x2069) || code == 0xFEFF;
}

}  // namespace

QString repairedScan(const QString& typed) {
    QString text = latinDigits(typed);
    text.removeIf(isDirectionMark);
    text = text.trimmed();
    const bool shifted = isOfShiftedDigits(text);
    for (QChar& c : text)
        c = shifted ? QChar(QLatin1Char(static_cast<char>('0' + (kSigns.indexOf(c) + 1) % 10))) : letters().value(c, c);
    return text;
}

bool isPlainCode(const QString& text) {
    return !text.isEmpty() &&
           std::all_of(text.begin(), text.end(), [](QChar c) { return c.unicode() < 0x80 && c.isLetterOrNumber(); });
}

}  // namespace basalt::host
