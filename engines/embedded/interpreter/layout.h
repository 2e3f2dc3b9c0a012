// The variables of a batch, procedure or function: names and types, known before anything runs.
//
// T-SQL declares a variable for the whole text, whatever the flow: DECLARE inside a branch that is never taken declares
// all the same, and in a loop it declares once.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "engines/embedded/ast/batch.h"
#include "engines/embedded/ast/control_statement.h"
#include "engines/embedded/ast/definition_statement.h"
#include "engines/embedded/runtime/sql_type.h"

namespace basalt::embedded {

class Layout {
public:
    struct Variable {
        std::string name;                             // with the leading @
        SqlType type;                                 // of no meaning for a table variable
        const ast::TableDefinition* table = nullptr;  // of a table variable, in the tree of the batch
    };

    static constexpr std::size_t kNone = static_cast<std::size_t>(-1);

    // Parameters come first, then the variables in the order of their declarations. Throws DatabaseError 134 for a name
    // declared twice, 2715 for a type that does not exist.
    void addParameters(const ast::Batch& batch, const std::vector<ast::ParameterDefinition>& parameters);
    void addDeclarations(const ast::Batch& batch, const ast::Statements& statements);
    // The table variable that a function returns; it follows the parameters.
    void addResultTable(const ast::Batch& batch, const ast::CreateFunctionStatement& function);

    [[nodiscard]] std::size_t size() const { return variables_.size(); }
    [[nodiscard]] const Variable& operator[](std::size_t index) const { return variables_[index]; }
    // kNone when there is no such variable. Names compare without regard to case.
    [[nodiscard]] std::size_t find(std::string_view name) const;

private:
    void add(const ast::Batch& batch, Variable variable, SourceRange range);
    void addFrom(const ast::Batch& batch, const ast::Statement& statement);

    std::vector<Variable> variables_;
};

}  // namespace basalt::embedded
