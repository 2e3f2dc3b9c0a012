// EXEC, the call escape, sp_executesql, INSERT ... EXEC, and the calls of the seam.
#include <algorithm>
#include <iterator>
#include <utility>

#include "ado/names.h"
#include "engines/embedded/binder/binder.h"
#include "engines/embedded/interpreter/interpreter.h"
#include "engines/embedded/interpreter/procedure_scope.h"
#include "engines/embedded/lexer/error_context.h"
#include "engines/embedded/parser/parser.h"
#include "engines/embedded/runtime/convert.h"
#include "engines/embedded/runtime/sql_error.h"

namespace basalt::embedded {

namespace {

// Texts of EXEC that keep their plans.
constexpr std::size_t kKeptTexts = 64;

[[noreturn]] void noProcedure(std::string_view name) {
    throwSqlError(2812, "Could not find stored procedure '" + std::string(name) + "'.");
}

TypedValue literalValue(const Literal& literal) {
    const auto length = [](std::size_t size, std::size_t longest) {
        return size > longest ? kMaxLength : static_cast<int>(std::max<std::size_t>(size, 1));
    };
    switch (literal.type) {
        case LiteralType::Int:
            return {literal.integer, SqlType::of(TypeKind::Int)};
        case LiteralType::Decimal:
            return {Decimal(literal.coefficient, literal.scale), SqlType::decimal(literal.precision, literal.scale)};
        case LiteralType::Float:
            return {literal.real, SqlType::of(TypeKind::Float)};
        case LiteralType::Money:
            return {Decimal(literal.coefficient, kMoneyScale), SqlType::of(TypeKind::Money)};
        case LiteralType::Varbinary:
            return {Bytes(literal.text.begin(), literal.text.end()),
                    SqlType::text(TypeKind::VarBinary, length(literal.text.size(), 8000))};
        case LiteralType::Varchar:
            return {std::string(literal.text), SqlType::text(TypeKind::VarChar, length(literal.text.size(), 8000))};
        case LiteralType::NVarchar:
            return {std::string(literal.text), SqlType::text(TypeKind::NVarChar, length(literal.text.size(), 4000))};
    }
    return {};
}

TypedValue textValue(std::string text) {
    const SqlType type = SqlType::text(TypeKind::NVarChar, kMaxLength);
    return {std::move(text), type};
}

void negate(TypedValue& value) {
    if (auto* integer = std::get_if<std::int64_t>(&value.value)) {
        *integer = -*integer;
    } else if (auto* real = std::get_if<double>(&value.value)) {
        *real = -*real;
    } else if (auto* decimal = std::get_if<Decimal>(&value.value)) {
        *decimal = Decimal(-decimal->coefficient(), decimal->scale());
    } else {
        throwSqlError(403, "Invalid operator for data type. Operator equals minus, type equals " +
                               std::string(value.type.baseName()) + ".");
    }
}

// What may stand for a default: a constant, a signed constant, NULL, or a bare word for its text.
TypedValue constantOf(const ast::Expression& expression, const LiteralTable& literals) {
    switch (expression.kind) {
        case ast::ExpressionKind::Literal:
            return literalValue(literals[ast::as<ast::LiteralExpression>(expression).literal]);
        case ast::ExpressionKind::Unary: {
            const auto& unary = ast::as<ast::UnaryExpression>(expression);
            TypedValue value = constantOf(*unary.operand, literals);
            if (unary.op == ast::UnaryOperator::Minus) negate(value);
            return value;
        }
        case ast::ExpressionKind::Column:
            return textValue(ast::as<ast::ColumnExpression>(expression).name.last());
        default:
            return {Null{}, SqlType::of(TypeKind::Int)};
    }
}

// A type that takes every value of the column.
SqlType typeOf(const ColumnInfo& info) {
    switch (info.type) {
        case FieldType::Boolean:
            return SqlType::of(TypeKind::Bit);
        case FieldType::TinyInt:
        case FieldType::SmallInt:
        case FieldType::Integer:
        case FieldType::BigInt:
            return SqlType::of(TypeKind::BigInt);
        case FieldType::Float:
            return SqlType::of(TypeKind::Float);
        case FieldType::Decimal:
            return SqlType::decimal(info.precision, info.scale);
        case FieldType::Text:
            return SqlType::text(
                info.typeName == "varchar" || info.typeName == "char" ? TypeKind::VarChar : TypeKind::NVarChar,
                kMaxLength);
        case FieldType::Binary:
            return SqlType::text(TypeKind::VarBinary, kMaxLength);
        case FieldType::Date:
            return SqlType::of(TypeKind::Date);
        case FieldType::DateTime:
            return SqlType::of(TypeKind::DateTime2);
    }
    return {};
}

// An argument as its parameter holds it. A failure names the types only, unlike that of a conversion in a statement.
Value passedValue(const Value& value, const SqlType& from, const SqlType& to) {
    try {
        return convert(value, from, to);
    } catch (const DatabaseError& failure) {
        if (failure.nativeCode() != error::kConversionFailed && failure.nativeCode() != error::kDateConversion) throw;
        throwSqlError(error::kConvertingType, "Error converting data type " + std::string(from.baseName()) + " to " +
                                                  std::string(to.baseName()) + ".");
    }
}

bool isPlainName(std::string_view name) {
    return !name.empty() && std::ranges::all_of(name, [](char c) {
        return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '_';
    });
}

std::string lastPartOf(std::string_view name) {
    if (isPlainName(name)) return std::string(name);
    // Through the parser, because a name may come with brackets and schemas.
    const ast::Batch batch = parse("EXEC " + std::string(name));
    const auto* execute =
        batch.statements.size() == 1 ? ast::tryAs<ast::ExecuteStatement>(batch.statements.front().get()) : nullptr;
    if (execute == nullptr || execute->procedure.empty()) noProcedure(name);
    return execute->procedure.last();
}

// The failure of a statement that the engine wrote for INSERT ... EXEC, at its place in the statement of the user's.
DatabaseError placedIn(const ast::InsertStatement& statement, const ast::Batch& batch, const DatabaseError& failure) {
    const std::string_view what = failure.what();
    const std::size_t place = what.find("\nLine ");
    if (place == std::string_view::npos) return failure;
    const std::string message(what.substr(0, place));
    const int number = failure.nativeCode();
    SourceRange range = statement.target.range;
    if (number != error::kInvalidObject) {
        for (const ast::Identifier& column : statement.columns) {
            if (message.find("'" + column.text + "'") != std::string::npos ||
                message.find("\"" + column.text + "\"") != std::string::npos) {
                range = column.range;
            }
        }
    }
    return statementError(failure.category(), number, message, batch.text, range);
}

}  // namespace

// Drops the temporary tables that a procedure has made when it ends, however it ends.
class Interpreter::TemporaryTables {
public:
    TemporaryTables(Interpreter& interpreter, Activation& activation)
        : interpreter_(interpreter), activation_(activation) {}
    TemporaryTables(const TemporaryTables&) = delete;
    TemporaryTables& operator=(const TemporaryTables&) = delete;
    ~TemporaryTables() {
        for (const std::string& name : activation_.temporaryTables) {
            try {
                // A rollback may have brought the caller's table back by itself.
                if (hides(name) && !interpreter_.executor_.hasHidden(hiddenAs(name))) continue;
                if (interpreter_.catalog_.table(name) != nullptr) interpreter_.executor_.dropTable(name);
                interpreter_.uncover(activation_, name);
            } catch (const DatabaseError&) {
                // A table that cannot be dropped now goes away with the session.
                continue;
            }
        }
    }

private:
    [[nodiscard]] std::string hiddenAs(const std::string& name) const {
        for (const auto& [shown, meanwhile] : activation_.hiddenTables) {
            if (sameName(shown, name)) return meanwhile;
        }
        return {};
    }
    [[nodiscard]] bool hides(const std::string& name) const { return !hiddenAs(name).empty(); }

    Interpreter& interpreter_;
    Activation& activation_;
};

namespace {

// A procedure has to leave as many transactions open as it has found.
class TransactionCount {
public:
    explicit TransactionCount(Executor& executor) : state_(executor.state()), before_(state_.tranCount) {}
    void check() const {
        if (state_.tranCount == before_) return;
        throwSqlError(266,
                      "Transaction count after EXECUTE indicates a mismatching number of BEGIN and COMMIT statements. "
                      "Previous count = " +
                          std::to_string(before_) + ", current count = " + std::to_string(state_.tranCount) + ".");
    }

private:
    const SessionState& state_;
    std::int64_t before_;
};

}  // namespace

std::shared_ptr<Program> Interpreter::findModule(std::string_view name, ModuleKind kind) {
    const Module* module = catalog_.module(name);
    if (module == nullptr || module->kind != kind) return nullptr;
    std::shared_ptr<Program>& kept = modules_[foldName(name)];
    // The text tells whether it is still the same one, whoever changed it.
    if (!kept || kept->batch().text != module->text) {
        kept = Program::ofModule(parse(module->text), catalog_);
    }
    return kept;
}

TypedValue Interpreter::constant(Activation& activation, const ast::Expression& expression) {
    switch (expression.kind) {
        case ast::ExpressionKind::Literal:
            return literalValue(activation.environment.literal(ast::as<ast::LiteralExpression>(expression).literal));
        case ast::ExpressionKind::Unary: {
            const auto& unary = ast::as<ast::UnaryExpression>(expression);
            TypedValue value = constant(activation, *unary.operand);
            if (unary.op == ast::UnaryOperator::Minus) negate(value);
            return value;
        }
        case ast::ExpressionKind::ParameterMarker: {
            const std::uint32_t ordinal = ast::as<ast::ParameterMarker>(expression).ordinal;
            if (ordinal < activation.environment.markers.size()) {
                return {activation.environment.markers[ordinal], activation.environment.markerTypes[ordinal]};
            }
            break;
        }
        case ast::ExpressionKind::Variable: {
            const std::string& name = ast::as<ast::VariableExpression>(expression).name;
            const SqlType* type = activation.frame.typeOf(name);
            if (type != nullptr) return {activation.frame.valueOf(name), *type};
            break;
        }
        case ast::ExpressionKind::Column:
            return textValue(ast::as<ast::ColumnExpression>(expression).name.last());
        default:
            break;
    }
    // System variables, and the errors of markers and variables that are not there.
    return evaluate(activation, expression);
}

std::vector<Interpreter::PassedArgument> Interpreter::passedArguments(Activation& activation,
                                                                      const ast::ExecuteStatement& statement) {
    std::vector<PassedArgument> arguments;
    arguments.reserve(statement.arguments.size());
    for (const ast::ExecuteArgument& argument : statement.arguments) {
        PassedArgument passed;
        passed.name = argument.name;
        passed.output = argument.output;
        if (argument.value->kind == ast::ExpressionKind::Default) {
            passed.isDefault = true;
        } else if (argument.value->kind != ast::ExpressionKind::Null) {
            TypedValue value = constant(activation, *argument.value);
            passed.value = std::move(value.value);
            passed.type = value.type;
        }
        if (const auto* variable = ast::tryAs<ast::VariableExpression>(argument.value.get())) {
            passed.variable = variable->name;
        } else if (argument.output && !statement.call) {
            throwSqlError(179, "Cannot use the OUTPUT option when passing a constant to a stored procedure.");
        }
        arguments.push_back(std::move(passed));
    }
    return arguments;
}

void Interpreter::execute(Activation& activation, const ast::ExecuteStatement& statement) {
    if (activation.function != nullptr) {
        throwSqlError(557,
                      "Only functions and some extended stored procedures can be executed from within a function.");
    }
    if (statement.text) {
        const TypedValue text = evaluate(activation, *statement.text);
        if (!isNull(text.value)) {
            runText(toText(convert(text.value, text.type, SqlType::text(TypeKind::NVarChar, kMaxLength))),
                    *activation.into);
        }
        return;
    }
    std::string name;
    if (!statement.procedureVariable.empty()) {
        if (activation.frame.typeOf(statement.procedureVariable) == nullptr) {
            throwSqlError(137, "Must declare the scalar variable \"" + statement.procedureVariable + "\".");
        }
        name = lastPartOf(toText(activation.frame.valueOf(statement.procedureVariable)));
    } else {
        name = statement.procedure.last();
    }
    std::vector<PassedArgument> arguments = passedArguments(activation, statement);
    TypedValue returned{Null{}, SqlType::of(TypeKind::Int)};
    if (const std::shared_ptr<Program> program = findModule(name, ModuleKind::Procedure)) {
        const CallOutcome outcome = callProgram(*program, arguments, *activation.into);
        returnOutputs(activation, *program, arguments, outcome);
        returned.value = outcome.returnValue;
    } else if (const std::shared_ptr<Program> function = findModule(name, ModuleKind::Function)) {
        returned = callFunction(*function, arguments);
    } else if (sameName(name, "sp_executesql")) {
        returned.value = executeSql(activation, std::move(arguments));
    } else {
        noProcedure(statement.procedure.empty() ? name : activation.batch.textOf(statement.procedure.range));
    }
    if (!statement.returnVariable.empty()) {
        const SqlType* type = activation.frame.typeOf(statement.returnVariable);
        if (type == nullptr)
            throwSqlError(137, "Must declare the scalar variable \"" + statement.returnVariable + "\".");
        activation.frame.assign(statement.returnVariable,
                                isNull(returned.value) ? Value(Null{}) : convert(returned.value, returned.type, *type));
    }
}

void Interpreter::returnOutputs(Activation& activation, const Program& program,
                                std::span<const PassedArgument> arguments, const CallOutcome& outcome) {
    for (std::size_t i = 0; i < arguments.size(); ++i) {
        const PassedArgument& argument = arguments[i];
        if (!argument.output || argument.variable.empty()) continue;
        const std::size_t position = argument.name.empty() ? i : program.layout().find(argument.name);
        const Value& value = outcome.parameters[position];
        const SqlType& to = *activation.frame.typeOf(argument.variable);
        activation.frame.assign(argument.variable,
                                isNull(value) ? Value(Null{}) : convert(value, program.layout()[position].type, to));
    }
}

void Interpreter::bindArguments(const Program& program, std::span<const PassedArgument> arguments, Frame& frame) {
    const auto& parameters = program.parameters();
    const std::string& name = program.name();
    if (arguments.size() > parameters.size()) {
        if (parameters.empty()) {
            throwSqlError(8146, "Procedure " + name + " has no parameters and arguments were supplied.");
        }
        throwSqlError(8144, "Procedure or function " + name + " has too many arguments specified.");
    }
    std::vector<bool> supplied(parameters.size());
    bool byName = false;
    for (std::size_t i = 0; i < arguments.size(); ++i) {
        const PassedArgument& argument = arguments[i];
        std::size_t position = i;
        if (!argument.name.empty()) {
            byName = true;
            position = program.layout().find(argument.name);
            if (position >= parameters.size()) {
                throwSqlError(8145, argument.name + " is not a parameter for procedure " + name + ".");
            }
        } else if (byName) {
            throwSqlError(
                119,
                "Must pass parameter number " + std::to_string(i + 1) +
                    " and subsequent parameters as '@name = value'. After the form '@name = value' has been used, all "
                    "subsequent parameters must be passed in the form '@name = value'.");
        }
        if (supplied[position]) {
            throwSqlError(8143, "Parameter '" + parameters[position].name + "' was supplied multiple times.");
        }
        if (argument.output && !parameters[position].output) {
            throwSqlError(
                8162,
                "The formal parameter \"" + parameters[position].name +
                    "\" was not declared as an OUTPUT parameter, but the actual parameter passed in requested output.");
        }
        if (argument.isDefault) continue;
        supplied[position] = true;
        if (isNull(argument.value)) continue;
        frame.set(position, passedValue(argument.value, argument.type, program.layout()[position].type));
    }
    for (std::size_t i = 0; i < parameters.size(); ++i) {
        if (supplied[i]) continue;
        if (!parameters[i].defaultValue) {
            throwSqlError(201, "Procedure or function '" + name + "' expects parameter '" + parameters[i].name +
                                   "', which was not supplied.");
        }
        const TypedValue value = constantOf(*parameters[i].defaultValue, program.batch().literals);
        if (!isNull(value.value)) frame.set(i, convert(value.value, value.type, program.layout()[i].type));
    }
}

Interpreter::CallOutcome Interpreter::callProgram(Program& program, std::span<const PassedArgument> arguments,
                                                  BatchResult& into) {
    const Program::Run run(program);
    Frame frame(program.layout());
    bindArguments(program, arguments, frame);
    const ProcedureScope scope(*this);
    Activation activation{.batch = program.batch(),
                          .plans = run.plans(),
                          .frame = frame,
                          .environment = {.table = &program.batch().literals, .variables = &frame},
                          .into = &into,
                          .procedure = program.name(),
                          .isText = sameName(program.name(), "sp_executesql"),
                          .depth = run.depth()};
    const TemporaryTables temporaryTables(*this, activation);
    {
        const TransactionCount count(executor_);
        runList(activation, program.body());
        count.check();
    }
    CallOutcome outcome;
    outcome.returnValue = activation.returnValue;
    for (std::size_t i = 0; i < program.parameters().size(); ++i)
        outcome.parameters.push_back(frame[i]);
    return outcome;
}

void Interpreter::runText(std::string_view text, BatchResult& into) {
    std::shared_ptr<Program> program;
    if (const auto found = texts_.find(text); found != texts_.end()) {
        program = found->second;
    } else {
        program = std::make_shared<Program>(parse(text));
        if (texts_.size() >= kKeptTexts) texts_.clear();
        texts_.emplace(text, program);
    }
    const Program::Run run(*program);
    const ProcedureScope scope(*this);
    Frame frame(program->layout());
    Activation activation{.batch = program->batch(),
                          .plans = run.plans(),
                          .frame = frame,
                          .environment = {.table = &program->batch().literals, .variables = &frame},
                          .into = &into,
                          .procedure = "EXEC",
                          .isText = true,
                          .depth = run.depth()};
    const TemporaryTables temporaryTables(*this, activation);
    const TransactionCount count(executor_);
    runList(activation, program->body());
    count.check();
}

std::int64_t Interpreter::executeSql(Activation& activation, std::vector<PassedArgument> arguments) {
    const auto textOf = [&](std::size_t index) -> std::string {
        if (index >= arguments.size()) return {};
        const PassedArgument& argument = arguments[index];
        if (!argument.type.isUnicode() && !isNull(argument.value)) {
            throwSqlError(214, std::string("Procedure expects parameter '") + (index == 0 ? "@statement" : "@params") +
                                   "' of type 'ntext/nchar/nvarchar'.");
        }
        return isNull(argument.value) ? std::string() : toText(argument.value);
    };
    if (arguments.empty())
        throwSqlError(201,
                      "Procedure or function 'sp_executesql' expects parameter '@statement', which was not supplied.");
    const std::string statement = textOf(0);
    const std::string declarations = textOf(1);
    if (declarations.find_first_not_of(" \t\r\n") == std::string::npos) {
        runText(statement, *activation.into);
        return executor_.state().error;
    }
    // The declarations are those of a procedure, so they are read as one; the statement becomes its body.
    const std::string key = declarations + '\0' + statement;
    std::shared_ptr<Program> program;
    if (const auto found = texts_.find(key); found != texts_.end()) {
        program = found->second;
    } else {
        program =
            Program::ofModule(parse("CREATE PROCEDURE sp_executesql " + declarations + " AS\n" + statement), catalog_);
        if (texts_.size() >= kKeptTexts) texts_.clear();
        texts_.emplace(key, program);
    }
    const std::span<const PassedArgument> values = std::span(arguments).subspan(2);
    for (const ast::ParameterDefinition& parameter : program->parameters()) {
        const auto position = static_cast<std::size_t>(&parameter - program->parameters().data());
        const bool named = std::ranges::any_of(
            values, [&](const PassedArgument& value) { return sameName(value.name, parameter.name); });
        const bool placed = position < values.size() && values[position].name.empty();
        if (named || placed || parameter.defaultValue != nullptr) continue;
        throwSqlError(8178, "The parameterized query '(" + declarations + ")" + statement +
                                "' expects the parameter '" + parameter.name + "', which was not supplied.");
    }
    const CallOutcome outcome = callProgram(*program, values, *activation.into);
    const std::int64_t last = executor_.state().error;
    returnOutputs(activation, *program, values, outcome);
    return last;
}

void Interpreter::insertExecute(Activation& activation, const ast::InsertStatement& statement) {
    catalog_.refresh();
    // Before the procedure changes anything for rows that nobody takes.
    if (statement.target.variable.empty() && catalog_.table(statement.target.name.last()) == nullptr &&
        catalog_.module(statement.target.name.last()) == nullptr) {
        throw statementError(categoryOf(error::kInvalidObject), error::kInvalidObject,
                             "Invalid object name '" + statement.target.name.last() + "'.", activation.batch.text,
                             statement.target.range);
    }
    if (rowsWanted_) throwSqlError(8164, "An INSERT EXEC statement cannot be nested.");
    BatchResult produced;
    BatchResult* const into = std::exchange(activation.into, &produced);
    rowsWanted_ = executor_.state().tranCount;
    try {
        execute(activation, *statement.execute);
    } catch (...) {
        rowsWanted_.reset();
        activation.into = into;
        throw;
    }
    rowsWanted_.reset();
    activation.into = into;
    for (std::string& message : produced.messages)
        into->say(std::move(message));
    std::int64_t count = 0;
    const bool temporary = !statement.target.variable.empty() || statement.target.name.isTemporary();
    executor_.atomically(temporary, [&] {
        for (const StatementResult& result : produced.results) {
            if (!result.rows) continue;
            insertRows(activation, statement, *result.rows);
            count += static_cast<std::int64_t>(result.rows->rowCount());
        }
    });
    executor_.state().rowCount = count;
    if (!executor_.state().noCount) into->results.push_back({std::nullopt, count});
}

void Interpreter::refuseEndOfTransaction(const ast::TransactionStatement& statement) const {
    if (!rowsWanted_) return;
    using Action = ast::TransactionStatement::Action;
    if (statement.action == Action::Rollback)
        throwSqlError(3915, "Cannot use the ROLLBACK statement within an INSERT-EXEC statement.");
    if (statement.action == Action::Commit && executor_.state().tranCount <= *rowsWanted_) {
        throwSqlError(
            3916,
            "Cannot use the COMMIT statement within an INSERT-EXEC statement unless BEGIN TRANSACTION is used "
            "first.");
    }
}

void Interpreter::insertRows(Activation& activation, const ast::InsertStatement& statement, const RowSet& rows) {
    if (!statement.columns.empty() && statement.columns.size() != rows.columnCount()) {
        throw statementError(categoryOf(213), 213,
                             "Column name or number of supplied values does not match table definition.",
                             activation.batch.text, statement.target.range);
    }
    // One ordinary INSERT for each row, so that everything that an INSERT looks at is looked at.
    std::string text = "INSERT INTO " + std::string(activation.batch.textOf(statement.target.range));
    std::string separator = " (";
    for (const ast::Identifier& column : statement.columns)
        text += std::exchange(separator, ", ") + quotedName(column.text);
    if (!statement.columns.empty()) text += ")";
    separator = " VALUES (";
    for (std::size_t i = 0; i < rows.columnCount(); ++i)
        text += std::exchange(separator, ", ") + "?";
    const ast::Batch insert = parse(text + ")");
    std::vector<SqlType> types;
    for (std::size_t i = 0; i < rows.columnCount(); ++i)
        types.push_back(typeOf(rows.column(i).info()));
    PlanSet plans;
    BatchResult ignored;
    std::vector<Value> values(rows.columnCount());
    Environment environment{
        .table = &insert.literals, .markers = values, .markerTypes = types, .variables = &activation.frame};
    for (std::size_t row = 0; row < rows.rowCount(); ++row) {
        for (std::size_t i = 0; i < values.size(); ++i)
            values[i] = rows.column(i).valueAt(row);
        try {
            executor_.execute(insert, *insert.statements.front(), plans, environment, ignored);
        } catch (const DatabaseError& failure) {
            throw placedIn(statement, activation.batch, failure);
        }
        ignored.results.clear();
    }
}

ProcedureInfo Interpreter::procedure(std::string_view name) {
    catalog_.refresh();
    const std::shared_ptr<Program> program = findModule(lastPartOf(name), ModuleKind::Procedure);
    if (!program) noProcedure(name);
    ProcedureInfo info;
    info.name = program->name();
    for (std::size_t i = 0; i < program->parameters().size(); ++i) {
        const ast::ParameterDefinition& parameter = program->parameters()[i];
        ParameterInfo described;
        described.name = parameter.name;
        described.direction = parameter.output ? ParameterDirection::InputOutput : ParameterDirection::Input;
        program->layout()[i].type.describe(described.type);
        described.type.name = parameter.name;
        described.hasDefault = parameter.defaultValue != nullptr;
        info.parameters.push_back(std::move(described));
    }
    return info;
}

CallResult Interpreter::call(std::string_view name, std::span<const Argument> arguments) {
    catalog_.refresh();
    startAfresh();
    const std::shared_ptr<Program> program = findModule(lastPartOf(name), ModuleKind::Procedure);
    if (!program) noProcedure(name);
    std::vector<PassedArgument> passed;
    for (const Argument& argument : arguments) {
        PassedArgument& next = passed.emplace_back();
        next.name = argument.name;
        next.value = argument.value;
        next.type = typeOfValue(argument.value);
        next.output = argument.output;
    }
    CallResult result;
    CallOutcome outcome;
    try {
        runToEnd([&] { outcome = callProgram(*program, passed, result.batch); });
    } catch (const DatabaseError& error) {
        throw withResults(error, std::move(result.batch));
    }
    result.returnValue = outcome.returnValue;
    for (std::size_t i = 0; i < passed.size(); ++i) {
        if (!passed[i].output) continue;
        const std::size_t position = passed[i].name.empty() ? i : program->layout().find(passed[i].name);
        result.outputs.push_back({passed[i].name, outcome.parameters[position], true});
    }
    return result;
}

}  // namespace basalt::embedded
