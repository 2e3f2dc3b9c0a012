// Which type an operation on two types has, and what converts to what by itself.
#pragma once

#include "engines/embedded/runtime/sql_type.h"

namespace basalt::embedded {

// The type that both sides take in a comparison, CASE, COALESCE or UNION.
[[nodiscard]] SqlType commonType(const SqlType& a, const SqlType& b);

// Whether an assignment converts without CAST.
[[nodiscard]] bool convertsImplicitly(const SqlType& from, const SqlType& to);
// Whether CAST converts, if not always every value.
[[nodiscard]] bool converts(const SqlType& from, const SqlType& to);
// Whether every value of `from` is the same cell in `to`: the conversion needs no code.
[[nodiscard]] bool isSameStored(const SqlType& from, const SqlType& to);
// Whether every value of `from` converts, so that a parameter may be converted before the statement runs.
[[nodiscard]] bool alwaysConverts(const SqlType& from, const SqlType& to);

// Of a + b for texts.
[[nodiscard]] SqlType concatenatedType(const SqlType& a, const SqlType& b);

}  // namespace basalt::embedded
