// What names mean at a place of a query: the sources of its FROM, and those of the queries around it.
#pragma once

#include <algorithm>
#include <iterator>
#include <string>
#include <string_view>
#include <vector>

#include "engines/embedded/binder/bound_query.h"

namespace basalt::embedded {

struct SourceColumn {
    OutputColumn shown;
    std::string sqlName;  // quoted, as the generated statement refers to it
    // Whether SQLite knows that texts of the column compare by TSQL.
    bool ownCollation = true;
};

struct ScopeSource {
    std::string name;  // the alias, or the table's own name
    std::string sqlAlias;
    std::vector<SourceColumn> columns;
    // What it is when its rows are not those of a table themselves: "derived table x". Such rows cannot be changed.
    std::string derivation = {};
};

struct Scope {
    explicit Scope(Scope* outer) : parent(outer) {}

    Scope* parent;
    std::vector<ScopeSource> sources;
    // Aggregates are for the select list, HAVING and ORDER BY.
    bool aggregatesAllowed = false;
    bool windowsAllowed = false;
    bool insideAggregate = false;
    bool aggregated = false;  // an aggregate has been seen
    bool correlated = false;  // a name was found further out

    [[nodiscard]] bool owns(std::string_view sqlAlias) const {
        for (const ScopeSource& source : sources) {
            if (source.sqlAlias == sqlAlias) return true;
        }
        return false;
    }
    // The other sources alone.
    [[nodiscard]] Scope without(std::string_view sqlAlias) const {
        Scope others(nullptr);
        std::ranges::copy_if(sources, std::back_inserter(others.sources),
                             [&](const ScopeSource& source) { return source.sqlAlias != sqlAlias; });
        return others;
    }
};

}  // namespace basalt::embedded
