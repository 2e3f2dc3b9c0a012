#include "host/counter/scan_text.h"

#include <QHash>
#include <algorithm>

#include "host/screens/persian_digits.h"

namespace basalt::host {

namespace {

const QHash<QChar, QChar>& keys() {
    static const QHash<QChar, QChar> map = [] {
        QHash<QChar, QChar> made;
        const QString persian = QStringLiteral("ضصثقفغعهخحشسیبلاتنمظطزرذدپيكک");
        const QString latin = QStringLiteral("qwertyuiopasdfghjklzxcvbnmd;;");
        for (qsizetype i = 0; i < persian.size(); ++i)
            made.insert(persian[i], latin[i]);
        // Above 1 to 9 and 0.
        const QString signs = QStringLiteral("!٬٫﷼٪×،*)(");
        for (qsizetype i = 0; i < signs.size(); ++i)
            made.insert(signs[i], QLatin1Char(static_cast<char>('0' + (i + 1) % 10)));
        return made;
    }();
    return map;
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
    for (QChar& c : text)
        c = keys().value(c, c);
    return text.trimmed();
}

bool isPlainCode(const QString& text) {
    return !text.isEmpty() &&
           std::all_of(text.begin(), text.end(), [](QChar c) { return c.unicode() < 0x80 && c.isLetterOrNumber(); });
}

}  // namespace basalt::host
