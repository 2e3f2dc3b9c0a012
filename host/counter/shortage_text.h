// Which goods of an invoice there are too few of, in a sentence.
//
//   shortageText(invoice, "105", "انبار مرکزی", [](int good) { return stockOf(good); })
//                    "موجودی «انبار مرکزی» کافی نیست: «موز درجه یک» (هست ۰، خواسته ۱٫۲۵ کیلوگرم)."
#pragma once

#include <QString>
#include <functional>

#include "host/counter/counter_invoice.h"

namespace basalt::host {

// codes: of goods, with commas between. Each stands by its name with what the store has of it today and what the
// invoice takes, or by its code when the invoice does not have it; beyond three the rest is counted. Where today's
// stock would do it is documents of later days that need it, and the text says so.
[[nodiscard]] QString shortageText(const CounterInvoice& invoice, const QString& codes, const QString& store,
                                   const std::function<Extended(int good)>& stockOf);

}  // namespace basalt::host
