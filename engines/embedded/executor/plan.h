// Prepared statements with all that running them again needs, and the sets of them that belong to one batch.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

#include "ado/rowset.h"
#include "engines/embedded/ast/batch.h"
#include "engines/embedded/binder/bound_statement.h"
#include "engines/embedded/runtime/sqlite.h"

namespace basalt::embedded {

enum class CellReader : std::uint8_t { Integer, Real, Decimal, Text, Bytes, Ticks, Time };

// What a statement does to rows; for messages and for what happens after it.
enum class PlanKind : std::uint8_t { Select, Insert, Update, Delete };

struct Plan;

// The plans of one batch, procedure or function, by the node of its tree that they carry out.
class PlanSet {
public:
    PlanSet();
    PlanSet(PlanSet&&) noexcept;
    PlanSet& operator=(PlanSet&&) noexcept;
    ~PlanSet();
    // Null when there is none.
    [[nodiscard]] Plan* find(const void* node) const;
    Plan& keep(const void* node, std::unique_ptr<Plan> plan);

private:
    std::unordered_map<const void*, std::unique_ptr<Plan>> plans_;
};

// OUTPUT ... INTO: an INSERT of one row, with a marker for each of its values.
struct OutputTarget {
    ast::Batch batch;
    PlanSet plans;
};

// The same query with its LIKEs looked up, for patterns that few texts come into question for.
struct TextSearch {
    // Counts how many, up to a number that is too many.
    struct Probe {
        SqliteStatement statement;
        Slot pattern;
    };
    std::vector<Probe> probes;
    // Those of the plan and these change places when the patterns want it.
    SqliteStatement statement;
    std::vector<Slot> slots;
    bool inUse = false;
};

struct Plan {
    PlanKind kind = PlanKind::Select;
    SqliteStatement statement;
    std::vector<Slot> slots;
    std::shared_ptr<const std::vector<ColumnInfo>> columns;  // of the result set; null when there is none
    std::vector<CellReader> readers;
    std::vector<SqlType> types;
    std::vector<SelectAssignment> assignments;  // variables that take the last columns of each row
    std::string table;                          // the changed table
    bool oneRow = false;                        // changes one row at the most
    bool generatesIdentity = false;
    bool setsIdentity = false;
    std::size_t identityOutput = 0;
    std::uint64_t generation = 0;  // of the catalog
    // The statement without the indexes that it names; empty when it names none. Another program may drop them.
    std::string withoutIndexes;
    bool outdated = false;  // they are gone: the schema is another one than the plan was made for
    // Of UPDATE that assigns variables or shows what was: `statement` reads the rows one by one, and `each` changes one
    // of them; null when nothing but variables is set.
    bool byRow = false;
    std::unique_ptr<Plan> each;
    std::unique_ptr<TextSearch> search;    // null when the query has no such LIKE
    std::unique_ptr<OutputTarget> target;  // where the OUTPUT goes instead of to the caller

    [[nodiscard]] bool writes() const { return kind != PlanKind::Select; }
};

}  // namespace basalt::embedded
