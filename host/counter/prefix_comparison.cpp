#include "host/counter/prefix_comparison.h"

#include "engines/embedded/runtime/collation.h"

namespace basalt::host {

namespace {

QString withoutBlanksBehind(QString text) {
    while (text.endsWith(QLatin1Char(' ')))
        text.chop(1);
    return text;
}

// Within a text, since a blank at its end would count for nothing as well.
bool countsForNothing(QChar c) {
    const QString around = QStringLiteral("aa");
    return isSameToTheServer(QString(around).insert(1, c), around);
}

}  // namespace

bool isSameToTheServer(const QString& a, const QString& b) {
    return embedded::compareTexts(a.toStdString(), b.toStdString()) == 0;
}

QString asTheServerSees(const QString& text) {
    const QString kept = withoutBlanksBehind(text);
    QString seen = kept.normalized(QString::NormalizationForm_KC).toCaseFolded();
    for (QChar& c : seen) {
        if (c.isDigit()) c = QLatin1Char(static_cast<char>('0' + c.digitValue()));
    }
    seen.removeIf(countsForNothing);
    // Normal forms go further than the server in places.
    return isSameToTheServer(seen, kept) ? seen : kept.toCaseFolded();
}

}  // namespace basalt::host
