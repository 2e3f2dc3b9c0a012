// Runs whole batches and procedures: variables, flow of control, errors and calls. Single statements are the
// executor's.
//
//   Interpreter interpreter(executor, catalog);
//   Layout layout;
//   layout.addDeclarations(batch, batch.statements);       once a batch
//   interpreter.run(batch, layout, plans, environment, result);     each time it runs
//
// Errors follow SQL Server. Outside of TRY, one that ends only its statement (a broken key, RAISERROR, division by
// zero) lets the statements after it run and is thrown when the batch has ended; one that ends the batch (a failed
// conversion, a table that is not there, THROW, any with XACT_ABORT on) is thrown at once, and a failed conversion or
// any error with XACT_ABORT on rolls the transaction back; inside of TRY these leave it to CATCH, but nothing can be
// written or committed any more until ROLLBACK, and the end of the batch rolls back. In both cases the caller gets the
// first error of the batch, and the results of the batch are lost with it. Errors that lose the connection or the
// transaction are thrown at once and pass by every CATCH; those that RAISERROR gives a severity of 20 or more are of
// these, as the server would hang up.
#pragma once

#include <exception>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "ado/session.h"
#include "engines/embedded/executor/executor.h"
#include "engines/embedded/executor/function_caller.h"
#include "engines/embedded/interpreter/frame.h"
#include "engines/embedded/interpreter/program.h"

namespace basalt::embedded {

// As in SQL Server.
inline constexpr int kDeepestCall = 32;
// Statements inside each other, through all procedures that are being called; each takes stack.
inline constexpr int kDeepestStatement = 1000;

class Interpreter : private FunctionCaller {
public:
    Interpreter(Executor& executor, Catalog& catalog) : executor_(executor), catalog_(catalog) {
        executor_.setFunctionCaller(this);
    }
    Interpreter(const Interpreter&) = delete;
    Interpreter& operator=(const Interpreter&) = delete;
    ~Interpreter() override { executor_.setFunctionCaller(nullptr); }

    // Whether the executor alone can run the batch: nothing but statements of its own, and one at most, so that no
    // statement has to run after a failed one.
    [[nodiscard]] static bool isPlain(const ast::Batch& batch);
    // Whether the batch runs all its statements in their order, each planned after the first run, so that it may run
    // again with other literals.
    [[nodiscard]] static bool isStraight(const ast::Batch& batch);

    // `environment` brings the literals and the markers; its variables are ignored.
    void run(const ast::Batch& batch, const Layout& layout, PlanSet& plans, const Environment& environment,
             BatchResult& into);

    // The seam's procedure() and call().
    [[nodiscard]] ProcedureInfo procedure(std::string_view name);
    [[nodiscard]] CallResult call(std::string_view name, std::span<const Argument> arguments);
    // The statement of the batch that the error of the last run() came from; nothing when it was raised on purpose,
    // because then its text is meant as it is.
    [[nodiscard]] const std::optional<SourceRange>& failedAt() const { return failedAt_; }

private:
    // How a statement ended, and where to go on.
    enum class Flow : std::uint8_t { Next, Break, Continue, Return, Goto };

    // One run of a batch or procedure.
    struct Activation {
        const ast::Batch& batch;
        PlanSet& plans;
        Frame& frame;
        Environment environment;
        BatchResult* into;
        std::string procedure = {};  // empty for a batch
        bool isText = false;         // of EXEC or sp_executesql, which errors do not name
        std::int64_t returnValue = 0;
        std::string label = {};                         // where Flow::Goto goes
        std::size_t depth = 0;                          // of recursion into the same program
        std::vector<std::string> temporaryTables = {};  // made here, dropped at the end of a procedure
        // Tables of the caller that make way for those of the same name made here: name, name meanwhile.
        std::vector<std::pair<std::string, std::string>> hiddenTables = {};
        const Program* function = nullptr;  // when it is one that runs
        Value result = Null{};              // of a scalar function
    };

    struct PassedArgument {
        std::string name;  // with the leading @; empty when passed by position
        Value value;
        SqlType type;
        bool isDefault = false;
        bool output = false;
        std::string variable;  // of the caller, that takes the output
    };

    struct CallOutcome {
        std::int64_t returnValue = 0;
        std::vector<Value> parameters;  // final values, in the order of the parameters
    };

    // The table behind a table variable.
    struct TableVariable {
        std::string name;
        std::string definition;  // its text
    };

    class TemporaryTables;
    class ProcedureScope;
    class FunctionScope;

    // interpreter.cpp
    // All of a batch or procedure, with its table variables. `atEnd` runs while these still have their rows.
    void runList(Activation& activation, const ast::Statements& statements, const std::function<void()>& atEnd = {});
    Flow runStatements(Activation& activation, const ast::Statements& statements);
    Flow runStatement(Activation& activation, const ast::Statement& statement);
    Flow dispatch(Activation& activation, const ast::Statement& statement);
    Flow runIf(Activation& activation, const ast::IfStatement& statement);
    Flow runWhile(Activation& activation, const ast::WhileStatement& statement);
    void declare(Activation& activation, const ast::DeclareStatement& statement);
    void createTableVariables(Activation& activation);
    // The table of a table variable at a depth of recursion, made when it is not there yet. True when it was made.
    bool createTableVariable(const Layout::Variable& variable, std::size_t depth, const ast::Batch& batch,
                             const Environment& environment);
    void emptyTableVariables(Activation& activation);
    void transaction(Activation& activation, const ast::TransactionStatement& statement);
    // A statement that makes or drops a temporary table, in a procedure.
    void runTemporary(Activation& activation, const ast::Statement& statement, const std::string& name);
    void uncover(Activation& activation, const std::string& name);
    void assign(Activation& activation, const std::string& variable, const ast::Expression& value);
    [[nodiscard]] TypedValue evaluate(Activation& activation, const ast::Expression& expression);

    // raise.cpp
    Flow runTryCatch(Activation& activation, const ast::TryCatchStatement& statement);
    void print(Activation& activation, const ast::PrintStatement& statement);
    void raise(Activation& activation, const ast::RaisErrorStatement& statement);
    void throwError(Activation& activation, const ast::ThrowStatement& statement);
    // Whether the batch goes on behind a statement that failed so; the error is kept for its end then.
    bool goesOn(Activation& activation, const ast::Statement& statement, const DatabaseError& error);
    void throwPending();
    // Runs a batch, at whose end a transaction that cannot be committed is rolled back; an error (3998) when nothing
    // else has failed.
    void runToEnd(const std::function<void()>& batch);

    // execute.cpp
    void execute(Activation& activation, const ast::ExecuteStatement& statement);
    void insertExecute(Activation& activation, const ast::InsertStatement& statement);
    // The transaction of an INSERT ... EXEC is not that of what it executes.
    void refuseEndOfTransaction(const ast::TransactionStatement& statement) const;
    [[nodiscard]] std::vector<PassedArgument> passedArguments(Activation& activation,
                                                              const ast::ExecuteStatement& statement);
    [[nodiscard]] TypedValue constant(Activation& activation, const ast::Expression& expression);
    CallOutcome callProgram(Program& program, std::span<const PassedArgument> arguments, BatchResult& into);
    void bindArguments(const Program& program, std::span<const PassedArgument> arguments, Frame& frame);
    void runText(std::string_view text, BatchResult& into);
    void insertRows(Activation& activation, const ast::InsertStatement& statement, const RowSet& rows);
    std::int64_t executeSql(Activation& activation, std::vector<PassedArgument> arguments);
    [[nodiscard]] std::shared_ptr<Program> findModule(std::string_view name, ModuleKind kind);
    void returnOutputs(Activation& activation, const Program& program, std::span<const PassedArgument> arguments,
                       const CallOutcome& outcome);
    void startAfresh();

    // function.cpp
    [[nodiscard]] Value callScalar(std::string_view name, std::span<sqlite3_value* const> arguments) override;
    [[nodiscard]] std::vector<std::vector<Value>> callTable(std::string_view name,
                                                            std::span<sqlite3_value* const> arguments) override;
    [[nodiscard]] bool makeReady(const std::set<std::string>& functions, std::span<const std::string> texts) override;
    [[nodiscard]] std::shared_ptr<Program> requireFunction(std::string_view name);
    void runFunction(Program& program, const std::function<void(Frame&)>& fill,
                     const std::function<void(Activation&)>& read);
    // EXEC of a scalar function.
    TypedValue callFunction(Program& program, std::span<const PassedArgument> arguments);
    void runFunction(Program& program, std::span<sqlite3_value* const> arguments,
                     const std::function<void(Activation&)>& read);
    // function_rules.cpp: throws for what a function may not do.
    void checkFunction(const ast::Batch& batch, const ast::CreateFunctionStatement& function);

    Executor& executor_;
    Catalog& catalog_;
    std::map<std::string, std::shared_ptr<Program>, std::less<>> modules_;  // by folded name
    std::map<std::string, std::shared_ptr<Program>, std::less<>> texts_;    // of EXEC and sp_executesql, by text
    int statements_ = 0;                                                    // inside each other
    // The transactions that were open when an INSERT ... EXEC began; nothing when none runs.
    std::optional<std::int64_t> rowsWanted_;
    int calls_ = 0;                          // procedures inside each other
    int tries_ = 0;                          // TRY blocks inside each other
    const ast::Batch* outermost_ = nullptr;  // what run() runs
    std::optional<SourceRange> failedAt_;
    std::exception_ptr pending_;     // the first error that did not end the batch
    const void* located_ = nullptr;  // the error whose place is known
    int errorLine_ = 0;
    const Activation* unknownIn_ = nullptr;  // where it is that it is about a name that means nothing; null when not
    bool functionFailed_ = false;            // the error that was located last is that of a function
    bool endsAll_ = false;  // it came with XACT_ABORT on, which a procedure sets for itself alone: the whole batch ends
    std::string errorProcedure_;
    std::vector<Activation*> active_;  // the runs that have begun and not ended, from the outermost on
    std::uint64_t nextTableNumber_ = 0;
    std::uint64_t nextHiddenNumber_ = 0;
    // The tables behind table variables, by definition and depth of recursion.
    std::map<std::pair<const void*, std::size_t>, TableVariable> tableVariables_;
};

}  // namespace basalt::embedded
