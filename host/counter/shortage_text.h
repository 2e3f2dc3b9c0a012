// Which goods of an invoice there are too few of, in a sentence.
//
//   shortageText(invoice, "98,105")      "موجودی کالاهای «سیب سبز ترش» و «موز درجه یک» کافی نیست."
#pragma once

#include <QString>

#include "host/counter/counter_invoice.h"

namespace basalt::host {

// codes: of goods, with commas between. Each stands by its name, or by its code when the invoice does not have it;
// beyond three the rest is counted.
[[nodiscard]] QString shortageText(const CounterInvoice& invoice, const QString& codes);

}  // namespace basalt::host
