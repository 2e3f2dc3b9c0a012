// Finding texts by what stands inside of them without reading all of them: every text is kept in pieces as well, one
// for each of its characters, which begins there and is a few characters long. A LIKE whose pattern says some
// characters in a row can only match texts with a piece that begins with these.
//
//   piecesOf("!626!")        {"!626!", "26!", "626!"}
//   needleOf("%!626!%")      "!626!"
//
// Pieces and needles are folded as LIKE compares characters, so that no match is lost; texts found so are candidates,
// and LIKE itself has the last word. In SQL: the table t_pieces(text) with the column `value`, and the functions
// t_needle(pattern) and t_needle_end(pattern), between which the pieces stand: the needle and what sorts behind all
// that begins with it.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "engines/embedded/runtime/sqlite.h"

namespace basalt::embedded {

// In the order of their bytes, each once. What is shorter than a needle can be is left out.
[[nodiscard]] std::vector<std::string> piecesOf(std::string_view text);

// Characters that every text which matches the pattern (without ESCAPE) has in a row; nothing when there are too few.
[[nodiscard]] std::optional<std::string> needleOf(std::string_view pattern);

void addTextPieces(SqliteDatabase& database);

}  // namespace basalt::embedded
