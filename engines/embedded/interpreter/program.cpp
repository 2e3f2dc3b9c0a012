#include "engines/embedded/interpreter/program.h"

#include "engines/embedded/binder/binder.h"
#include "engines/embedded/lexer/error_context.h"

namespace basalt::embedded {

Program::Program(ast::Batch batch) : batch_(std::move(batch)) {
    layout_.addDeclarations(batch_, batch_.statements);
}

Program::Program(ModuleTag /*tag*/, ast::Batch batch, Catalog& catalog) : batch_(std::move(batch)) {
    if (batch_.statements.size() == 1) {
        procedure_ = ast::tryAs<ast::CreateProcedureStatement>(batch_.statements.front().get());
        function_ = ast::tryAs<ast::CreateFunctionStatement>(batch_.statements.front().get());
    }
    if (!procedure_ && !function_) throwUnsupported("This procedure", batch_.text, {0, 0});
    layout_.addParameters(batch_, parameters());
    if (function_ && function_->returns == ast::CreateFunctionStatement::Returns::TableVariable) {
        layout_.addResultTable(batch_, *function_);
    }
    if (function_ && function_->returns == ast::CreateFunctionStatement::Returns::Scalar) {
        resultType_ = Binder(catalog, {.text = batch_.text, .literals = &batch_.literals}).dataType(function_->type);
    }
    layout_.addDeclarations(batch_, body());
}

std::unique_ptr<Program> Program::ofModule(ast::Batch batch, Catalog& catalog) {
    return std::unique_ptr<Program>(new Program(ModuleTag{}, std::move(batch), catalog));
}

PlanSet& Program::plans() {
    if (plans_.empty()) plans_.push_back(std::make_unique<PlanSet>());
    return *plans_.front();
}

}  // namespace basalt::embedded
