// A whole parsed batch: what run() gets in one text.
//
//   Batch batch = parse(tokens);                       parser/parser.h
//   for (const auto& statement : batch.statements) ...
//   batch.literals[index]                              the value of a LiteralExpression
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "engines/embedded/ast/statement.h"
#include "engines/embedded/lexer/literal.h"

namespace basalt::embedded::ast {

struct Batch {
    std::string text;  // a copy, which the source ranges of the tree refer to
    LiteralTable literals;
    std::uint32_t parameterMarkers = 0;  // how many `?`
    Statements statements;

    [[nodiscard]] std::string_view textOf(SourceRange range) const {
        return std::string_view(text).substr(range.begin, range.size());
    }
};

}  // namespace basalt::embedded::ast
