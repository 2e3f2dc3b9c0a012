// Letters of Persian that the database loses in texts without N.
//
//   if (const std::string letters = lostLetters(session); !letters.empty()) std::cerr << lostLettersWarning(letters);
//
// A server takes a literal without N through the code page of the database's collation; a letter that has no place
// there becomes another one. The module's statements have such literals. Asking is better than a list of collations.
#pragma once

#include <string>

#include "ado/session.h"

namespace basalt::host {

// With blanks between them; letters that are not seen by themselves as U+200C. Empty when the database keeps them all.
// DatabaseError as the session throws it.
[[nodiscard]] std::string lostLetters(Session& session);

// What follows from it and what helps, in a sentence.
[[nodiscard]] std::string lostLettersWarning(const std::string& letters);

}  // namespace basalt::host
