#include "engines/embedded/interpreter/interpreter.h"

#include <algorithm>
#include <utility>

#include "ado/names.h"
#include "engines/embedded/catalog/object_name.h"
#include "engines/embedded/interpreter/raised_error.h"
#include "engines/embedded/lexer/error_context.h"
#include "engines/embedded/runtime/convert.h"
#include "engines/embedded/runtime/sql_error.h"

namespace basalt::embedded {

using ast::StatementKind;

namespace {

const ast::NullExpression kNothing{};

bool isStraightStatement(const ast::Statement& statement) {
    switch (statement.kind) {
        case StatementKind::Insert:
            return ast::as<ast::InsertStatement>(statement).source != ast::InsertStatement::Source::Execute;
        case StatementKind::Select:
            return ast::firstSelect(*ast::as<ast::SelectStatement>(statement).query->body).into.empty();
        case StatementKind::Update:
        case StatementKind::Delete:
        case StatementKind::SetVariable:
        case StatementKind::Print:
            return true;
        case StatementKind::Execute:
            return !ast::as<ast::ExecuteStatement>(statement).text;
        case StatementKind::Declare: {
            const auto& variables = ast::as<ast::DeclareStatement>(statement).variables;
            return std::ranges::none_of(variables, [](const auto& variable) { return variable.table.has_value(); });
        }
        default:
            return false;
    }
}

// All that a table variable's definition says.
std::string_view textOf(const ast::TableDefinition& table, const ast::Batch& batch) {
    SourceRange range = table.columns.empty() ? SourceRange{} : table.columns.front().range;
    for (const ast::ColumnDefinition& column : table.columns)
        range.end = std::max(range.end, column.range.end);
    for (const ast::Constraint& constraint : table.constraints)
        range.end = std::max(range.end, constraint.range.end);
    return batch.textOf(range);
}

// The temporary table that the statement makes or drops; null when it does neither.
const std::string* temporaryIn(const ast::Statement& statement) {
    const ast::ObjectName* name = nullptr;
    if (statement.kind == StatementKind::CreateTable) {
        name = &ast::as<ast::CreateTableStatement>(statement).name;
    } else if (statement.kind == StatementKind::Select) {
        name = &ast::firstSelect(*ast::as<ast::SelectStatement>(statement).query->body).into;
    } else if (statement.kind == StatementKind::Drop) {
        const auto& drop = ast::as<ast::DropStatement>(statement);
        if (drop.type == ast::ObjectType::Table && drop.items.size() == 1) name = &drop.items.front().name;
    }
    const bool temporary = name != nullptr && name->isTemporary() && !name->last().starts_with("##");
    return temporary ? &name->last() : nullptr;
}

}  // namespace

bool Interpreter::isPlain(const ast::Batch& batch) {
    return batch.statements.empty() ||
           (batch.statements.size() == 1 && Executor::isPlanned(batch.statements.front()->kind) &&
            isStraightStatement(*batch.statements.front()));
}

bool Interpreter::isStraight(const ast::Batch& batch) {
    return std::ranges::all_of(batch.statements,
                               [](const ast::StatementPtr& statement) { return isStraightStatement(*statement); });
}

void Interpreter::run(const ast::Batch& batch, const Layout& layout, PlanSet& plans, const Environment& environment,
                      BatchResult& into) {
    Frame frame(layout);
    Activation activation{.batch = batch, .plans = plans, .frame = frame, .environment = environment, .into = &into};
    activation.environment.variables = &frame;
    startAfresh();
    outermost_ = &batch;
    runToEnd([&] { runList(activation, batch.statements); });
}

void Interpreter::startAfresh() {
    // A run that failed may have left these.
    pending_ = nullptr;
    outermost_ = nullptr;
    failedAt_.reset();
    located_ = nullptr;
    functionFailed_ = false;
    tries_ = 0;
    calls_ = 0;
    rowsWanted_.reset();
    statements_ = 0;
    executor_.state().caught = nullptr;
    executor_.state().nestLevel = 0;
}

void Interpreter::runList(Activation& activation, const ast::Statements& statements,
                          const std::function<void()>& atEnd) {
    createTableVariables(activation);
    struct Active {
        std::vector<Activation*>& all;
        Active(std::vector<Activation*>& list, Activation& own) : all(list) { all.push_back(&own); }
        ~Active() { all.pop_back(); }
    } const active(active_, activation);
    const Flow flow = runStatements(activation, statements);
    if (atEnd) atEnd();
    emptyTableVariables(activation);
    if (flow == Flow::Goto) {
        throwSqlError(133, "A GOTO statement references the label '" + activation.label +
                               "' but the label has not been declared.");
    }
}

Interpreter::Flow Interpreter::runStatements(Activation& activation, const ast::Statements& statements) {
    for (std::size_t i = 0; i < statements.size(); ++i) {
        const Flow flow = runStatement(activation, *statements[i]);
        if (flow == Flow::Next) continue;
        if (flow != Flow::Goto) return flow;
        const auto target = std::ranges::find_if(statements, [&](const ast::StatementPtr& statement) {
            const auto* label = ast::tryAs<ast::LabelStatement>(statement.get());
            return label != nullptr && sameName(label->label.text, activation.label);
        });
        // A label further out is found by the lists around this one.
        if (target == statements.end()) return flow;
        i = static_cast<std::size_t>(target - statements.begin());
    }
    return Flow::Next;
}

Interpreter::Flow Interpreter::runStatement(Activation& activation, const ast::Statement& statement) {
    struct Depth {
        int& count;
        ~Depth() { --count; }
    } const depth{++statements_};
    if (statements_ > kDeepestStatement) {
        throw DatabaseError(
            ErrorCategory::Limit, "42000", 217,
            "Statements and procedures are nested more than " + std::to_string(kDeepestStatement) + " deep.");
    }
    try {
        return dispatch(activation, statement);
    } catch (const DatabaseError& error) {
        if (!goesOn(activation, statement, error)) throw;
        return Flow::Next;
    }
}

Interpreter::Flow Interpreter::dispatch(Activation& activation, const ast::Statement& statement) {
    switch (statement.kind) {
        case StatementKind::Declare:
            declare(activation, ast::as<ast::DeclareStatement>(statement));
            return Flow::Next;
        case StatementKind::SetVariable: {
            const auto& set = ast::as<ast::SetVariableStatement>(statement);
            assign(activation, set.name, *set.value);
            executor_.state().error = 0;
            executor_.state().rowCount = 1;
            return Flow::Next;
        }
        case StatementKind::If:
            return runIf(activation, ast::as<ast::IfStatement>(statement));
        case StatementKind::While:
            return runWhile(activation, ast::as<ast::WhileStatement>(statement));
        case StatementKind::Block:
            return runStatements(activation, ast::as<ast::BlockStatement>(statement).statements);
        case StatementKind::Break:
            return Flow::Break;
        case StatementKind::Continue:
            return Flow::Continue;
        case StatementKind::Return:
            if (const ast::ExpressionPtr& value = ast::as<ast::ReturnStatement>(statement).value) {
                if (activation.function != nullptr) {
                    TypedValue result = evaluate(activation, *value);
                    const SqlType& type = activation.function->resultType();
                    activation.result = isNull(result.value) ? Value(Null{}) : convert(result.value, result.type, type);
                    return Flow::Return;
                }
                const TypedValue result = evaluate(activation, *value);
                // A procedure returns a number; NULL counts as 0.
                if (isNull(result.value)) {
                    activation.into->say("The '" + activation.procedure +
                                         "' procedure attempted to return a status of NULL, which is not allowed. A "
                                         "status of 0 will be returned instead.");
                }
                const Value number = isNull(result.value)
                                         ? Value(std::int64_t{0})
                                         : convert(result.value, result.type, SqlType::of(TypeKind::Int));
                activation.returnValue = toInt64(number);
            }
            return Flow::Return;
        case StatementKind::Goto:
            // A jump by itself runs nothing in the database, which is where a request that is given up ends.
            static_cast<void>(evaluate(activation, kNothing));
            activation.label = ast::as<ast::GotoStatement>(statement).label.text;
            return Flow::Goto;
        case StatementKind::Label:
            return Flow::Next;
        case StatementKind::Print:
            print(activation, ast::as<ast::PrintStatement>(statement));
            return Flow::Next;
        case StatementKind::RaisError:
            raise(activation, ast::as<ast::RaisErrorStatement>(statement));
            return Flow::Next;
        case StatementKind::Throw:
            throwError(activation, ast::as<ast::ThrowStatement>(statement));
            return Flow::Next;
        case StatementKind::TryCatch:
            return runTryCatch(activation, ast::as<ast::TryCatchStatement>(statement));
        case StatementKind::Execute:
            execute(activation, ast::as<ast::ExecuteStatement>(statement));
            return Flow::Next;
        case StatementKind::Insert:
            if (const auto& insert = ast::as<ast::InsertStatement>(statement);
                insert.source == ast::InsertStatement::Source::Execute) {
                insertExecute(activation, insert);
                return Flow::Next;
            }
            break;
        case StatementKind::CreateProcedure: {
            // What its variables get wrong is said now, not at the first call.
            const auto& procedure = ast::as<ast::CreateProcedureStatement>(statement);
            Layout layout;
            layout.addParameters(activation.batch, procedure.parameters);
            layout.addDeclarations(activation.batch, procedure.body);
            break;
        }
        case StatementKind::Transaction:
            refuseEndOfTransaction(ast::as<ast::TransactionStatement>(statement));
            try {
                transaction(activation, ast::as<ast::TransactionStatement>(statement));
            } catch (const DatabaseError& error) {
                // Without its transaction the rest of the batch would be something else. A server waits for locks
                // further on and never fails here.
                if (error.category() != ErrorCategory::Busy) throw;
                CaughtError busy;
                busy.number = error.nativeCode();
                busy.line = kNowhere;
                busy.message = error.what();
                throw RaisedError(error.category(), error.sqlState(), busy, true);
            }
            return Flow::Next;
        case StatementKind::CreateFunction:
            checkFunction(activation.batch, ast::as<ast::CreateFunctionStatement>(statement));
            break;
        default:
            break;
    }
    const std::string* temporary = activation.procedure.empty() ? nullptr : temporaryIn(statement);
    if (temporary != nullptr) {
        runTemporary(activation, statement, *temporary);
    } else {
        executor_.execute(activation.batch, statement, activation.plans, activation.environment, *activation.into);
    }
    return Flow::Next;
}

Interpreter::Flow Interpreter::runIf(Activation& activation, const ast::IfStatement& statement) {
    const bool holds = executor_.test(activation.batch, *statement.condition, activation.plans, activation.environment);
    executor_.state().rowCount = 0;
    if (holds) return runStatement(activation, *statement.then);
    return statement.otherwise ? runStatement(activation, *statement.otherwise) : Flow::Next;
}

Interpreter::Flow Interpreter::runWhile(Activation& activation, const ast::WhileStatement& statement) {
    while (executor_.test(activation.batch, *statement.condition, activation.plans, activation.environment)) {
        executor_.state().rowCount = 0;
        const Flow flow = runStatement(activation, *statement.body);
        if (flow == Flow::Break) break;
        if (flow == Flow::Return || flow == Flow::Goto) return flow;
    }
    return Flow::Next;
}

TypedValue Interpreter::evaluate(Activation& activation, const ast::Expression& expression) {
    return executor_.evaluate(activation.batch, expression, activation.plans, activation.environment);
}

void Interpreter::assign(Activation& activation, const std::string& variable, const ast::Expression& value) {
    const std::size_t index = activation.frame.layout().find(variable);
    if (index == Layout::kNone || activation.frame.layout()[index].table != nullptr) {
        throwSqlError(137, "Must declare the scalar variable \"" + variable + "\".");
    }
    TypedValue result = evaluate(activation, value);
    const SqlType& type = activation.frame.layout()[index].type;
    activation.frame.set(index, isNull(result.value) ? Value(Null{}) : convert(result.value, result.type, type));
}

void Interpreter::declare(Activation& activation, const ast::DeclareStatement& statement) {
    for (const ast::DeclareStatement::Variable& variable : statement.variables) {
        if (!variable.initial) continue;
        assign(activation, variable.name, *variable.initial);
        executor_.state().rowCount = 1;
    }
}

void Interpreter::createTableVariables(Activation& activation) {
    const Layout& layout = activation.frame.layout();
    for (std::size_t i = 0; i < layout.size(); ++i) {
        if (layout[i].table == nullptr) continue;
        createTableVariable(layout[i], activation.depth, activation.batch, activation.environment);
        activation.frame.setTable(i, tableVariables_[{layout[i].table, activation.depth}].name);
    }
    // A run that failed may have left rows.
    emptyTableVariables(activation);
}

bool Interpreter::createTableVariable(const Layout::Variable& variable, std::size_t depth, const ast::Batch& batch,
                                      const Environment& environment) {
    // The table of an earlier run is used again, because a new table would make every plan stale.
    TableVariable& table = tableVariables_[{variable.table, depth}];
    const std::string_view text = textOf(*variable.table, batch);
    // The definition may be another one by now, at the place of one that is gone.
    if (table.definition != text) {
        if (executor_.hasVariable(table.name)) executor_.dropTable(table.name);
        table.name = variableTableName(++nextTableNumber_, variable.name);
    }
    if (executor_.hasVariable(table.name)) return false;
    executor_.createTable(table.name, *variable.table, batch, environment);
    table.definition = text;
    return true;
}

void Interpreter::emptyTableVariables(Activation& activation) {
    for (std::size_t i = 0; i < activation.frame.layout().size(); ++i) {
        if (!activation.frame.table(i).empty()) executor_.clearTable(activation.frame.table(i));
    }
}

void Interpreter::transaction(Activation& activation, const ast::TransactionStatement& statement) {
    const auto run = [&] {
        executor_.execute(activation.batch, statement, activation.plans, activation.environment, *activation.into);
    };
    if (statement.action != ast::TransactionStatement::Action::Rollback) return run();
    // Table variables are no part of the transaction. Their tables are, and get back what they held.
    struct Kept {
        Activation* owner;
        std::size_t index;
        Executor::TableContents contents;
    };
    std::vector<Kept> kept;
    for (Activation* each : active_) {
        for (std::size_t i = 0; i < each->frame.layout().size(); ++i) {
            if (!each->frame.table(i).empty()) kept.push_back({each, i, executor_.contentsOf(each->frame.table(i))});
        }
    }
    run();
    if (kept.empty()) return;
    executor_.atomically(true, [&] {
        for (const Kept& each : kept) {
            const std::string& name = each.owner->frame.table(each.index);
            if (catalog_.table(name) == nullptr) {
                executor_.createTable(name, *each.owner->frame.layout()[each.index].table, each.owner->batch,
                                      each.owner->environment);
            }
            executor_.putBack(name, each.contents);
        }
    });
}

void Interpreter::runTemporary(Activation& activation, const ast::Statement& statement, const std::string& name) {
    const auto own = [&] {
        return std::ranges::find_if(activation.temporaryTables,
                                    [&](const std::string& each) { return sameName(each, name); });
    };
    const bool makes = statement.kind != StatementKind::Drop;
    // A table of the same name that the caller has made comes back when this one is gone.
    const bool hides = makes && own() == activation.temporaryTables.end() && catalog_.table(name) != nullptr;
    if (hides) {
        activation.hiddenTables.emplace_back(name, "basalt_hidden_" + std::to_string(++nextHiddenNumber_));
        executor_.renameTemporary(name, activation.hiddenTables.back().second);
    }
    try {
        executor_.execute(activation.batch, statement, activation.plans, activation.environment, *activation.into);
    } catch (...) {
        if (hides) uncover(activation, name);
        throw;
    }
    if (makes) {
        activation.temporaryTables.push_back(name);
    } else if (const auto made = own(); made != activation.temporaryTables.end()) {
        activation.temporaryTables.erase(made);
        uncover(activation, name);
    }
}

void Interpreter::uncover(Activation& activation, const std::string& name) {
    const auto hidden =
        std::ranges::find_if(activation.hiddenTables, [&](const auto& each) { return sameName(each.first, name); });
    if (hidden == activation.hiddenTables.end()) return;
    executor_.renameTemporary(hidden->second, hidden->first);
    activation.hiddenTables.erase(hidden);
}

}  // namespace basalt::embedded
