#include "host/counter/named_goods.h"

#include "host/screens/persian_digits.h"

namespace basalt::host {

QString inSentence(QStringList goods, qsizetype all) {
    if (goods.size() > kMostNamedGoods) goods.resize(kMostNamedGoods);
    if (const qsizetype more = all - goods.size(); more > 0)
        goods << QStringLiteral("%1 کالای دیگر").arg(persianDigits(QString::number(more)));
    const QString last = goods.takeLast();
    return goods.isEmpty() ? last : goods.join(QStringLiteral("، ")) + QStringLiteral(" و ") + last;
}

}  // namespace basalt::host
