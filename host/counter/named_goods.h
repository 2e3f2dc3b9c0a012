// The first few of several goods in a sentence, and how many more there are.
//
//   inSentence({"«سیب»", "«موز»", "«چای»"}, 5)                              "«سیب»، «موز»، «چای» و ۲ کالای دیگر"
#pragma once

#include <QStringList>

namespace basalt::host {

// As many as a sentence names; whoever writes more about each needs to do so for these alone.
inline constexpr qsizetype kMostNamedGoods = 3;

// goods: what is said of the first ones, one at least. all: how many there are; those behind the first
// kMostNamedGoods, and those that goods does not have, are counted.
[[nodiscard]] QString inSentence(QStringList goods, qsizetype all);

}  // namespace basalt::host
