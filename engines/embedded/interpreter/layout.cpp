#include "engines/embedded/interpreter/layout.h"

#include "ado/names.h"
#include "engines/embedded/catalog/data_type.h"
#include "engines/embedded/lexer/error_context.h"

namespace basalt::embedded {

using ast::StatementKind;

void Layout::addParameters(const ast::Batch& batch, const std::vector<ast::ParameterDefinition>& parameters) {
    for (const ast::ParameterDefinition& parameter : parameters) {
        if (parameter.readOnly) throwUnsupported("READONLY", batch.text, parameter.range);
        add(batch, {parameter.name, declaredTypeOf(parameter.type, size() + 1, batch.text), nullptr}, parameter.range);
    }
}

void Layout::addDeclarations(const ast::Batch& batch, const ast::Statements& statements) {
    for (const ast::StatementPtr& statement : statements)
        addFrom(batch, *statement);
}

void Layout::addResultTable(const ast::Batch& batch, const ast::CreateFunctionStatement& function) {
    add(batch, {function.variable, {}, &function.table}, function.range);
}

void Layout::addFrom(const ast::Batch& batch, const ast::Statement& statement) {
    switch (statement.kind) {
        case StatementKind::Declare: {
            for (const auto& variable : ast::as<ast::DeclareStatement>(statement).variables) {
                if (variable.table) {
                    add(batch, {variable.name, {}, &*variable.table}, variable.range);
                } else {
                    add(batch, {variable.name, declaredTypeOf(variable.type, size() + 1, batch.text), nullptr},
                        variable.range);
                }
            }
            break;
        }
        case StatementKind::If: {
            const auto& node = ast::as<ast::IfStatement>(statement);
            addFrom(batch, *node.then);
            if (node.otherwise) addFrom(batch, *node.otherwise);
            break;
        }
        case StatementKind::While:
            addFrom(batch, *ast::as<ast::WhileStatement>(statement).body);
            break;
        case StatementKind::Block:
            addDeclarations(batch, ast::as<ast::BlockStatement>(statement).statements);
            break;
        case StatementKind::TryCatch:
            addDeclarations(batch, ast::as<ast::TryCatchStatement>(statement).tries);
            addDeclarations(batch, ast::as<ast::TryCatchStatement>(statement).catches);
            break;
        default:
            break;
    }
}

void Layout::add(const ast::Batch& batch, Variable variable, SourceRange range) {
    if (find(variable.name) != kNone) {
        throwSyntaxError(
            134,
            "The variable name '" + variable.name +
                "' has already been declared. Variable names must be unique within a query batch or stored "
                "procedure.",
            batch.text, range);
    }
    variables_.push_back(std::move(variable));
}

std::size_t Layout::find(std::string_view name) const {
    // Nearly always the name is spelt as it was declared.
    for (std::size_t i = 0; i < variables_.size(); ++i) {
        if (variables_[i].name == name) return i;
    }
    for (std::size_t i = 0; i < variables_.size(); ++i) {
        if (sameName(variables_[i].name, name)) return i;
    }
    return kNone;
}

}  // namespace basalt::embedded
