// What stands in FROM.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "engines/embedded/ast/expression.h"

namespace basalt::embedded::ast {

enum class TableSourceKind : std::uint8_t { Table, Variable, Derived, Values, Function, Join };

struct TableSource {
    const TableSourceKind kind;
    SourceRange range;
    Identifier alias;                       // empty when there is none; never for a join
    std::vector<Identifier> columnAliases;  // (select ...) as T(a, b)

    TableSource(const TableSource&) = delete;
    TableSource& operator=(const TableSource&) = delete;
    virtual ~TableSource() = default;

protected:
    explicit TableSource(TableSourceKind k) : kind(k) {}
};

using TableSourcePtr = std::unique_ptr<TableSource>;

template <TableSourceKind Kind>
struct TableSourceOf : TableSource {
    static constexpr TableSourceKind kKind = Kind;
    TableSourceOf() : TableSource(Kind) {}
};

template <typename Node>
[[nodiscard]] const Node& as(const TableSource& source) {
    return static_cast<const Node&>(source);
}

// A table, view, common table expression or temporary table. Locking hints are kept by name and change nothing.
struct NamedTable : TableSourceOf<TableSourceKind::Table> {
    ObjectName name;
    std::vector<std::string> hints;  // in capitals
};

// @t
struct VariableTable : TableSourceOf<TableSourceKind::Variable> {
    std::string name;  // with the leading @
};

struct DerivedTable : TableSourceOf<TableSourceKind::Derived> {
    QueryPtr query;
    DerivedTable();
    ~DerivedTable() override;
};

// (VALUES (1, 'a'), (2, 'b')) AS T(x, y)
struct ValuesTable : TableSourceOf<TableSourceKind::Values> {
    std::vector<std::vector<ExpressionPtr>> rows;
};

// dbo.Split(@list) AS T
struct FunctionTable : TableSourceOf<TableSourceKind::Function> {
    ObjectName name;
    std::vector<ExpressionPtr> arguments;
};

enum class JoinKind : std::uint8_t { Inner, Left, Right, Full, Cross, CrossApply, OuterApply };

struct Join : TableSourceOf<TableSourceKind::Join> {
    JoinKind joinKind = JoinKind::Inner;
    TableSourcePtr left, right;
    ExpressionPtr condition;  // null for the cross joins and applies
};

}  // namespace basalt::embedded::ast
