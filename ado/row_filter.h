// The small language of a data set's Filter.
//
//   RowFilter filter("CostType = 1 and (Name like 'ع%' or [Comment] is null)", fields);
//   filter.accepts(read)
//
// Comparisons = <> < <= > >= and LIKE (* or % for any characters) between a field and a value; IS NULL and IS NOT NULL,
// also written = NULL and <> NULL; NOT, AND, OR and parentheses. Fields by name, [in brackets] where needed; texts
// 'quoted', a quote doubled; dates quoted or #between hashes#; numbers; True and False. Words and texts compare without
// case, trailing blanks do not count. A comparison with null is neither true nor false, and such a row is not accepted.
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "ado/rowset.h"

namespace basalt {

class RowFilter {
public:
    struct FilterField {
        int index;
        FieldType type;
    };
    // The field of that name, or nothing.
    using Resolve = std::function<std::optional<FilterField>(std::string_view name)>;
    using Read = std::function<Value(int field)>;

    // UsageError with the position (in characters, from 1) and what was expected there.
    RowFilter(std::string_view text, const Resolve& fields);
    ~RowFilter();
    RowFilter(const RowFilter&) = delete;
    RowFilter& operator=(const RowFilter&) = delete;

    [[nodiscard]] bool accepts(const Read& read) const;

    struct Node;

private:
    std::unique_ptr<Node> root_;
};

}  // namespace basalt
