#include "host/screens/short_cut.h"

#include <QStringList>

namespace basalt::host {
namespace {

// QKeySequence reads any letter as a key, so a caption whose last word is one letter would get a short cut that eats
// typing. Only names of function and control keys, or combinations with a modifier, count.
QKeySequence keyNamed(const QString& word) {
    static const QStringList controlKeys{
        QStringLiteral("Enter"), QStringLiteral("Return"), QStringLiteral("Esc"),      QStringLiteral("Escape"),
        QStringLiteral("Ins"),   QStringLiteral("Insert"), QStringLiteral("Del"),      QStringLiteral("Delete"),
        QStringLiteral("Home"),  QStringLiteral("End"),    QStringLiteral("PgUp"),     QStringLiteral("PgDown"),
        QStringLiteral("Space"), QStringLiteral("Tab"),    QStringLiteral("Backspace")};
    bool isNumber = false;
    const bool isFunctionKey =
        word.startsWith(QLatin1Char('F'), Qt::CaseInsensitive) && word.mid(1).toInt(&isNumber) > 0 && isNumber;
    const bool isControlKey = controlKeys.contains(word, Qt::CaseInsensitive);
    if (!isFunctionKey && !isControlKey && !word.contains(QLatin1Char('+'))) return {};
    const QKeySequence key = QKeySequence::fromString(word, QKeySequence::PortableText);
    return key.isEmpty() || key[0].key() == Qt::Key_unknown ? QKeySequence() : key;
}

}  // namespace

CaptionParts splitCaption(const QString& caption) {
    const QString trimmed = caption.trimmed();
    const qsizetype blank = trimmed.lastIndexOf(QLatin1Char(' '));
    if (blank > 0) {
        const QString word = trimmed.mid(blank + 1);
        const QKeySequence key = keyNamed(word);
        if (!key.isEmpty()) return {trimmed.left(blank).trimmed(), word, key};
    }
    return {trimmed, {}, {}};
}

}  // namespace basalt::host
