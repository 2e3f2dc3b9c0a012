// Calls of functions that users have written: dbo.F(1, DEFAULT) as a value, and FROM dbo.F(1).
#include "engines/embedded/binder/binder.h"
#include "engines/embedded/binder/reads_rows.h"
#include "engines/embedded/binder/type_rules.h"
#include "engines/embedded/parser/parser.h"
#include "engines/embedded/runtime/sql_error.h"

namespace basalt::embedded {

namespace {

std::string joined(const ast::ObjectName& name) {
    std::string result;
    for (const ast::Identifier& part : name.parts)
        result += (result.empty() ? "" : ".") + part.text;
    return result;
}

// Null when the text is no function's.
const ast::CreateFunctionStatement* definitionIn(const ast::Batch& batch) {
    return batch.statements.empty() ? nullptr
                                    : ast::tryAs<ast::CreateFunctionStatement>(batch.statements.front().get());
}

}  // namespace

std::vector<BoundPtr> Binder::userArguments(const ast::CreateFunctionStatement& function, const ast::Batch& definition,
                                            const std::vector<ast::ExpressionPtr>& arguments,
                                            const ast::ObjectName& name, Scope* scope, SourceRange range) {
    if (arguments.size() < function.parameters.size()) {
        fail(313,
             "An insufficient number of arguments were supplied for the procedure or function " + joined(name) + ".",
             range);
    }
    if (arguments.size() > function.parameters.size()) {
        fail(8144, "Procedure or function " + joined(name) + " has too many arguments specified.", range);
    }
    Binder inner(catalog_, inputOf(definition));
    std::vector<BoundPtr> values;
    for (std::size_t i = 0; i < arguments.size(); ++i) {
        const ast::ParameterDefinition& parameter = function.parameters[i];
        const SqlType type = inner.dataType(parameter.type);
        BoundPtr value;
        if (arguments[i]->kind != ast::ExpressionKind::Default) {
            value = expression(*arguments[i], scope);
        } else if (parameter.defaultValue != nullptr) {
            value = inner.expression(*parameter.defaultValue, nullptr);
        } else {
            fail(
                313,
                "An insufficient number of arguments were supplied for the procedure or function " + joined(name) + ".",
                arguments[i]->range);
        }
        if (!convertsImplicitly(value->type, type)) {
            fail(206,
                 "Operand type clash: " + std::string(value->type.baseName()) + " is incompatible with " +
                     std::string(type.baseName()),
                 arguments[i]->range);
        }
        values.push_back(cast(std::move(value), type));
    }
    return values;
}

BoundPtr Binder::userFunction(const ast::FunctionExpression& call, Scope* scope) {
    const Module* module = catalog_.module(call.name.last());
    const bool known = module != nullptr && module->kind == ModuleKind::Function;
    const ast::Batch batch = known ? parse(module->text) : ast::Batch{};
    const ast::CreateFunctionStatement* function = definitionIn(batch);
    if (!known || function == nullptr || function->returns != ast::CreateFunctionStatement::Returns::Scalar) {
        fail(4121,
             "Cannot find either column \"" + call.name.parts.front().text +
                 "\" or the user-defined function or aggregate \"" + joined(call.name) +
                 "\", or the name is ambiguous.",
             call.name.range);
    }
    std::vector<BoundPtr> arguments = userArguments(*function, batch, call.arguments, call.name, scope, call.range);
    const std::string name = module->name;
    if (input_.called != nullptr) input_.called->insert(name);
    arguments.insert(arguments.begin(), boundConstant(name, SqlType::text(TypeKind::NVarChar, 128)));
    const Binder inner(catalog_, {.text = batch.text, .literals = &batch.literals});
    BoundPtr result = makeCall(kCallUserFunction, inner.dataType(function->type), std::move(arguments));
    result->nullable = true;
    return result;
}

}  // namespace basalt::embedded
