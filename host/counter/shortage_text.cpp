#include "host/counter/shortage_text.h"

#include <QStringList>
#include <algorithm>

#include "host/counter/counter_scanner.h"
#include "host/counter/named_goods.h"
#include "host/screens/persian_digits.h"

namespace basalt::host {

namespace {

QString lackOf(const CounterInvoice& invoice, const QString& code, const std::function<Extended(int good)>& stockOf) {
    const int good = code.toInt();
    Extended wanted = 0;
    const CounterLine* found = nullptr;
    for (const CounterLine& line : invoice.lines()) {
        if (line.good != good) continue;
        found = &line;
        wanted += line.amount;
    }
    if (found == nullptr) return QStringLiteral("کالای %1").arg(persianDigits(code));
    const Extended stock = stockOf(good);
    const QString numbers = QStringLiteral("هست %1، خواسته %2").arg(amountText(stock), amountText(wanted, found->unit));
    const QString later = stock < wanted ? QString() : QStringLiteral("؛ سندهای روزهای بعد به آن نیاز دارند");
    return QStringLiteral("«%1» (%2%3)").arg(screenText(QString::fromStdString(found->name)), numbers, later);
}

}  // namespace

QString shortageText(const CounterInvoice& invoice, const QString& codes, const QString& store,
                     const std::function<Extended(int good)>& stockOf) {
    const QStringList goods = codes.split(QLatin1Char(','), Qt::SkipEmptyParts);
    if (goods.isEmpty()) return QStringLiteral("موجودی «%1» کافی نیست.").arg(store);
    QStringList lacks;
    for (const QString& code : goods.first(std::min(goods.size(), kMostNamedGoods)))
        lacks << lackOf(invoice, code.trimmed(), stockOf);
    return QStringLiteral("موجودی «%1» کافی نیست: %2.").arg(store, inSentence(lacks, goods.size()));
}

}  // namespace basalt::host
