// What hangs on a column of a table, and so keeps it as it is until it is dropped itself.
//
//   const std::string users = ColumnUsers(table, design, database, catalog).of("Code");
//   "The object 'PK_T' is dependent on column 'Code'.\n"
#pragma once

#include <functional>
#include <string>
#include <string_view>

#include "engines/embedded/executor/definition/table_design.h"

namespace basalt::embedded {

class ColumnUsers {
public:
    ColumnUsers(const Table& table, const TableDesign& design, SqliteDatabase& database, Catalog& catalog)
        : table_(table), design_(design), database_(database), catalog_(catalog) {}

    // What keeps the column from being dropped, a sentence a line; empty when nothing does.
    [[nodiscard]] std::string of(std::string_view column) const;
    // What keeps the column from becoming `after`: texts and bytes of variable length may grow under an index, and
    // change their length under a check; a default bears another length, precision or scale.
    [[nodiscard]] std::string ofAlteration(const DesignColumn& before, const DesignColumn& after) const;

private:
    enum class Kind {
        IndexKey,
        IndexIncluded,
        IndexCondition,
        PrimaryKey,
        Unique,
        ForeignKey,
        Check,
        Default,
        Computed
    };
    [[nodiscard]] static const char* wordFor(Kind kind);
    using Visit = std::function<void(Kind kind, std::string_view user)>;

    void each(std::string_view column, const Visit& visit) const;
    void eachReference(std::string_view column, const Visit& visit) const;
    [[nodiscard]] bool reads(const std::string& text, bool condition, std::string_view column) const;

    const Table& table_;
    const TableDesign& design_;
    SqliteDatabase& database_;
    Catalog& catalog_;
};

}  // namespace basalt::embedded
