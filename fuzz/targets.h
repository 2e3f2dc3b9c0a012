// One function a target. Each takes any bytes, must not crash, and aborts with a message when a property does not hold.
#pragma once

#include <string_view>

namespace basalt::fuzz {

// Tokens lie in the text, in order, and a second scan finds the same.
void lexer(std::string_view input);
// What parses prints, and what prints parses to the same tree. What does not parse says where.
void parser(std::string_view input);

// Any barcode under any layout: it is taken apart, does not fit, or has a number that is none.
void barcode(std::string_view input);

// Any batch on a small database: it answers or throws DatabaseError, and the session stays usable.
void engine(std::string_view input);

}  // namespace basalt::fuzz
