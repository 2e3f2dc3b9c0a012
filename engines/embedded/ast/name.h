// Names as they are written: one identifier, or up to four separated by points.
//
//   Code, [desc], dbo.Category, tempdb..#t (parts "tempdb", "", "#t")
#pragma once

#include <string>
#include <vector>

#include "engines/embedded/lexer/source_range.h"

namespace basalt::embedded::ast {

struct Identifier {
    std::string text;     // without brackets or quotes, doubled ones folded; empty for an omitted part
    bool quoted = false;  // was written in brackets or double quotes
    SourceRange range;

    [[nodiscard]] bool empty() const { return text.empty(); }
};

struct ObjectName {
    std::vector<Identifier> parts;  // outermost first, at least one once parsed, at most four
    SourceRange range;

    [[nodiscard]] bool empty() const { return parts.empty(); }
    [[nodiscard]] const std::string& last() const { return parts.back().text; }
    // The schema part; empty when there is none.
    [[nodiscard]] std::string schema() const { return parts.size() < 2 ? std::string() : parts[parts.size() - 2].text; }
    // #t and ##t.
    [[nodiscard]] bool isTemporary() const { return !parts.empty() && !last().empty() && last().front() == '#'; }
};

}  // namespace basalt::embedded::ast
