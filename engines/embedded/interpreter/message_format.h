// The texts of RAISERROR.
//
//   formatMessage("%s: %d of %5d|%-5d|%x", {"x", 3, 10, 7, 255})     "x: 3 of    10|7    |ff"
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "ado/value.h"

namespace basalt::embedded {

// Fills the places %d %i %u %o %x %X %s (with flags, width and precision as in C, * included, and %I64 before the
// letter) in order. NULL shows as (null). Throws DatabaseError 2786 when a value is not of its place's kind, 2787 for a
// place that is none, 2748 for a value of a kind that has no place. At most 2047 characters are kept.
[[nodiscard]] std::string formatMessage(std::string_view format, const std::vector<Value>& values);

}  // namespace basalt::embedded
