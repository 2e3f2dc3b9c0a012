// Uniqueidentifiers as bytes, in the order that SQL Server gives them: the first three groups back to front.
//
//   bytesOfGuid("6F9619FF-8B86-D011-B42D-00C04FC964FF")      FF 19 96 6F  86 8B  11 D0  B4 2D  00 C0 4F C9 64 FF
#pragma once

#include <string>
#include <string_view>

#include "ado/value.h"

namespace basalt::embedded {

// Of a text that is a uniqueidentifier.
[[nodiscard]] Bytes bytesOfGuid(std::string_view text);
// Missing bytes are zeros, more than sixteen are left out.
[[nodiscard]] std::string guidOfBytes(const Bytes& bytes);

}  // namespace basalt::embedded
