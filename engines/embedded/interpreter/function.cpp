// Functions that users have written, called by statements while they run.
#include "engines/embedded/interpreter/interpreter.h"
#include "engines/embedded/interpreter/procedure_scope.h"
#include "engines/embedded/runtime/convert.h"
#include "engines/embedded/runtime/sql_error.h"
#include "engines/embedded/runtime/value_codec.h"

namespace basalt::embedded {

// What a function leaves untouched in the session: it only computes.
class Interpreter::FunctionScope {
public:
    explicit FunctionScope(Executor& executor)
        : state_(executor.state()), rowCount_(state_.rowCount), error_(state_.error) {
        ++state_.functionDepth;
    }
    FunctionScope(const FunctionScope&) = delete;
    FunctionScope& operator=(const FunctionScope&) = delete;
    ~FunctionScope() {
        --state_.functionDepth;
        state_.rowCount = rowCount_;
        state_.error = error_;
    }

private:
    SessionState& state_;
    std::int64_t rowCount_;
    std::int64_t error_;
};

void Interpreter::runFunction(Program& program, std::span<sqlite3_value* const> arguments,
                              const std::function<void(Activation&)>& read) {
    runFunction(
        program,
        [&](Frame& frame) {
            for (std::size_t i = 0; i < program.parameters().size() && i < arguments.size(); ++i)
                frame.set(i, readValue(arguments[i], program.layout()[i].type));
        },
        read);
}

void Interpreter::runFunction(Program& program, const std::function<void(Frame&)>& fill,
                              const std::function<void(Activation&)>& read) {
    const Program::Run run(program);
    const ProcedureScope scope(*this);
    const FunctionScope functionScope(executor_);
    Frame frame(program.layout());
    fill(frame);
    // Nothing that a function does is shown.
    BatchResult unseen;
    Activation activation{.batch = program.batch(),
                          .plans = run.plans(),
                          .frame = frame,
                          .environment = {.table = &program.batch().literals, .variables = &frame},
                          .into = &unseen,
                          .procedure = program.name(),
                          .depth = run.depth(),
                          .function = &program};
    runList(activation, program.body(), [&] { read(activation); });
}

std::shared_ptr<Program> Interpreter::requireFunction(std::string_view name) {
    std::shared_ptr<Program> program = findModule(name, ModuleKind::Function);
    if (!program) throwSqlError(4121, "Cannot find the user-defined function \"dbo." + std::string(name) + "\".");
    return program;
}

Value Interpreter::callScalar(std::string_view name, std::span<sqlite3_value* const> arguments) {
    const std::shared_ptr<Program> program = requireFunction(name);
    Value result;
    runFunction(*program, arguments, [&](Activation& activation) { result = std::move(activation.result); });
    return result;
}

TypedValue Interpreter::callFunction(Program& program, std::span<const PassedArgument> arguments) {
    if (program.function()->returns != ast::CreateFunctionStatement::Returns::Scalar) {
        throwSqlError(2809, "The request for procedure '" + program.name() + "' failed because '" + program.name() +
                                "' is a table valued function object.");
    }
    static_cast<void>(makeReady({program.name()}, {}));
    TypedValue result{Null{}, program.resultType()};
    runFunction(
        program, [&](Frame& frame) { bindArguments(program, arguments, frame); },
        [&](Activation& activation) { result.value = std::move(activation.result); });
    return result;
}

std::vector<std::vector<Value>> Interpreter::callTable(std::string_view name,
                                                       std::span<sqlite3_value* const> arguments) {
    const std::shared_ptr<Program> program = requireFunction(name);
    std::vector<std::vector<Value>> rows;
    runFunction(*program, arguments, [&](Activation& activation) {
        rows = executor_.rowsOf(activation.frame.table(program->parameters().size()));
    });
    return rows;
}

}  // namespace basalt::embedded
