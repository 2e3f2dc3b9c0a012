// A parsed text that is ready to run, again and again: its tree, its variables, and the plans of its statements.
//
//   Program batch(parse(sql), catalog);
//   Program procedure = Program::ofModule(parse(module.text), catalog);
//
// Each level of recursion has plans of its own, because a statement that is still being stepped cannot be run again.
#pragma once

#include <memory>
#include <vector>

#include "engines/embedded/ast/batch.h"
#include "engines/embedded/ast/definition_statement.h"
#include "engines/embedded/executor/plan.h"
#include "engines/embedded/interpreter/layout.h"

namespace basalt::embedded {

class Program {
public:
    // A batch.
    explicit Program(ast::Batch batch);
    // Of a text that holds one CREATE PROCEDURE or CREATE FUNCTION statement.
    static std::unique_ptr<Program> ofModule(ast::Batch batch, Catalog& catalog);

    [[nodiscard]] const ast::Batch& batch() const { return batch_; }
    [[nodiscard]] const Layout& layout() const { return layout_; }
    [[nodiscard]] const ast::Statements& body() const {
        return procedure_ ? procedure_->body : function_ ? function_->body : batch_.statements;
    }
    // Null for a batch and for a procedure.
    [[nodiscard]] const ast::CreateFunctionStatement* function() const { return function_; }
    // Only of a procedure or function.
    [[nodiscard]] const std::string& name() const {
        return function_ ? function_->name.last() : procedure_->name.last();
    }
    [[nodiscard]] const std::vector<ast::ParameterDefinition>& parameters() const {
        return function_ ? function_->parameters : procedure_->parameters;
    }
    // What a scalar function returns.
    [[nodiscard]] const SqlType& resultType() const { return resultType_; }

    // Held while the program runs.
    class Run {
    public:
        explicit Run(Program& program) : program_(program), depth_(program.depth_++) {
            if (program_.plans_.size() <= depth_) program_.plans_.push_back(std::make_unique<PlanSet>());
        }
        Run(const Run&) = delete;
        Run& operator=(const Run&) = delete;
        ~Run() { --program_.depth_; }
        [[nodiscard]] PlanSet& plans() const { return *program_.plans_[depth_]; }
        // 0 for the outermost.
        [[nodiscard]] std::size_t depth() const { return depth_; }

    private:
        Program& program_;
        std::size_t depth_;
    };
    // Being run at this moment; it must not go away.
    [[nodiscard]] bool running() const { return depth_ > 0; }
    // The plans of the outermost run, for a caller that runs a statement of the program itself.
    [[nodiscard]] PlanSet& plans();

private:
    struct ModuleTag {};
    Program(ModuleTag, ast::Batch batch, Catalog& catalog);

    ast::Batch batch_;
    const ast::CreateProcedureStatement* procedure_ = nullptr;
    const ast::CreateFunctionStatement* function_ = nullptr;
    SqlType resultType_;
    Layout layout_;
    std::vector<std::unique_ptr<PlanSet>> plans_;
    std::size_t depth_ = 0;
};

}  // namespace basalt::embedded
