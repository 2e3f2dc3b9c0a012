#include "host/counter/shortage_text.h"

#include <QStringList>
#include <algorithm>

#include "host/screens/persian_digits.h"

namespace basalt::host {

namespace {

constexpr qsizetype kMostNames = 3;

QString nameOf(const CounterInvoice& invoice, const QString& code) {
    const auto& lines = invoice.lines();
    const auto line = std::find_if(lines.begin(), lines.end(),
                                   [&](const CounterLine& each) { return QString::number(each.good) == code; });
    return line == lines.end() ? persianDigits(code) : QStringLiteral("«%1»").arg(QString::fromStdString(line->name));
}

// "a", "a و b", "a، b و c", "a، b، c و ۲ کالای دیگر"
QString joined(QStringList names) {
    const qsizetype more = names.size() - kMostNames;
    if (more > 0) {
        names.resize(kMostNames);
        names << QStringLiteral("%1 کالای دیگر").arg(persianDigits(QString::number(more)));
    }
    const QString last = names.takeLast();
    return names.isEmpty() ? last : names.join(QStringLiteral("، ")) + QStringLiteral(" و ") + last;
}

}  // namespace

QString shortageText(const CounterInvoice& invoice, const QString& codes) {
    QStringList names;
    for (const QString& code : codes.split(QLatin1Char(','), Qt::SkipEmptyParts))
        names << nameOf(invoice, code.trimmed());
    if (names.isEmpty()) return QStringLiteral("موجودی کافی نیست.");
    return (names.size() == 1 ? QStringLiteral("موجودی کالای %1 کافی نیست.")
                              : QStringLiteral("موجودی کالاهای %1 کافی نیست."))
        .arg(joined(names));
}

}  // namespace basalt::host
