// Carries out statements of a parsed batch: binds each once, keeps its plan, runs it with the values at hand.
//
//   Executor executor(db, catalog, options);
//   PlanSet plans;                                  lives as long as the batch
//   Environment environment{.table = &batch.literals};
//   executor.execute(batch, *batch.statements[0], plans, environment, result);
//
// Everything that reads or changes the database is here; variables, flow of control and procedures are the
// interpreter's, which runs their statements and values through this class.
#pragma once

#include <functional>
#include <map>
#include <optional>
#include <set>
#include <string>

#include "ado/session.h"
#include "engines/embedded/ast/batch.h"
#include "engines/embedded/ast/control_statement.h"
#include "engines/embedded/ast/data_statement.h"
#include "engines/embedded/ast/definition_statement.h"
#include "engines/embedded/executor/environment.h"
#include "engines/embedded/executor/function_caller.h"
#include "engines/embedded/executor/plan.h"
#include "engines/embedded/executor/row_source.h"
#include "engines/embedded/runtime/random.h"

namespace basalt::embedded {

struct TypedValue {
    Value value;
    SqlType type;
};

class Executor {
public:
    // `clock` tells the moment for GETDATE() in ticks. A lock is waited for `longestWaitMs` where the server would wait
    // without end, because a program that hangs would stop everybody else for good.
    Executor(SqliteDatabase& database, Catalog& catalog, std::function<std::int64_t()> clock, int longestWaitMs);
    Executor(const Executor&) = delete;
    Executor& operator=(const Executor&) = delete;
    ~Executor();

    // SELECT, INSERT, UPDATE, DELETE, TRUNCATE, DBCC CHECKIDENT, definitions, BEGIN/COMMIT/ROLLBACK/SAVE TRANSACTION,
    // SET options. True for the kinds that execute() takes.
    [[nodiscard]] static bool takes(ast::StatementKind kind);
    // Whether the statement keeps a plan that serves other literals too.
    [[nodiscard]] static bool isPlanned(ast::StatementKind kind);

    // Appends the statement's results to `into`. A statement that fails changes nothing; the error carries no statement
    // text yet. Errors that lose the transaction (Connection, Corrupt, DiskFull) have rolled it back.
    void execute(const ast::Batch& batch, const ast::Statement& statement, PlanSet& plans,
                 const Environment& environment, BatchResult& into);
    // The value of an expression outside of a statement: SET @v = ..., RETURN ..., an argument.
    [[nodiscard]] TypedValue evaluate(const ast::Batch& batch, const ast::Expression& expression, PlanSet& plans,
                                      const Environment& environment);
    // The condition of IF and WHILE; unknown counts as false.
    [[nodiscard]] bool test(const ast::Batch& batch, const ast::Expression& condition, PlanSet& plans,
                            const Environment& environment);
    // A plan that run() can carry out again and again; null when the statement keeps none.
    Plan* planOf(const ast::Batch& batch, const ast::Statement& statement, PlanSet& plans,
                 const Environment& environment);
    void run(Plan& plan, const Environment& environment, BatchResult& into);
    // Whether SQLite has prepared the plan's statement anew since, because the schema changed.
    [[nodiscard]] static bool isStale(const Plan& plan) {
        return plan.outdated || sqlite3_stmt_status(plan.statement.handle(), SQLITE_STMTSTATUS_REPREPARE, 0) != 0;
    }

    // How long a lock of another program is waited for, as SET LOCK_TIMEOUT says it.
    void setLockTimeout(int milliseconds);

    void begin();
    void commit();
    void rollback();
    [[nodiscard]] bool inTransaction() const { return database_.inTransaction(); }
    // Whether the transaction can only be rolled back. It does not outlive its batch.
    [[nodiscard]] bool isDoomed() const { return state_.doomed && state_.tranCount > 0; }
    // Whether the error takes the transaction with it: it fails a conversion, or XACT_ABORT is on.
    [[nodiscard]] bool dooms(const DatabaseError& error) const;
    // For a statement that is its whole batch: rolls the transaction back when the error takes it along.
    void endBatch(const DatabaseError& error);

    // Who runs the functions of users; it outlives its use here.
    void setFunctionCaller(FunctionCaller* caller) { functions_ = caller; }
    // All rows of a table, each with all its columns.
    [[nodiscard]] std::vector<std::vector<Value>> rowsOf(const std::string& table);

    [[nodiscard]] SessionState& state() { return state_; }
    [[nodiscard]] Catalog& catalog() { return catalog_; }
    // Creates the table of a table variable under the name; the caller drops it by dropTable.
    void createTable(const std::string& name, const ast::TableDefinition& definition, const ast::Batch& batch,
                     const Environment& environment);
    void dropTable(const std::string& name);
    // Renames a temporary table with all that is known of it. A name that begins with basalt_hidden_ is no name of a
    // statement's.
    void renameTemporary(const std::string& from, const std::string& to);
    [[nodiscard]] bool hasHidden(const std::string& name);
    // Whether the table of a table variable is there.
    [[nodiscard]] bool hasVariable(const std::string& name);
    // Removes all rows of a table variable's table.
    void clearTable(const std::string& name);
    // What a table variable holds, to be put back when a rollback has taken it away; the table is there then.
    struct TableContents {
        std::vector<HeldValue> cells;
        std::optional<IdentityState> identity;
    };
    [[nodiscard]] TableContents contentsOf(const std::string& name);
    void putBack(const std::string& name, const TableContents& contents);
    // Runs `change`, which may be several statements, and undoes all of it when it throws. `temporary`: it changes
    // temporary tables only.
    void atomically(bool temporary, const std::function<void()>& change);

private:
    class StatementGuard;
    struct IdentityRun;

    std::unique_ptr<Plan> plan(const ast::Batch& batch, const ast::Statement& statement,
                               const Environment& environment);
    // `called` takes the functions of users that it runs.
    std::unique_ptr<Plan> planOnce(const ast::Batch& batch, const ast::Statement& statement,
                                   const Environment& environment, std::set<std::string>& called);
    // Makes what these functions need, and those in the texts of T-SQL. True when that makes plans stale.
    bool makeReady(const std::set<std::string>& called, std::span<const std::string> texts);
    std::unique_ptr<Plan> prepared(class SqlWriter& writer);
    // With its tables read by their keys (key_order.h); `write` writes the statement once more.
    std::unique_ptr<Plan> preparedByKey(SqlWriter& writer, const std::function<void(SqlWriter&)>& write);
    void describe(Plan& plan, const std::vector<OutputColumn>& columns);
    // text_search.cpp
    void planTextSearch(Plan& plan, const BoundQuery& query, const class SqlWriter& written);
    void chooseTextSearch(Plan& plan, const Environment& environment);
    void bind(Plan& plan, const Environment& environment);
    void bindSlot(SqliteStatement& statement, int index, const Slot& slot, const Environment& environment);
    [[nodiscard]] Value systemValue(SystemValue value);
    void runSelect(Plan& plan, BatchResult& into, const Environment& environment);
    // Plans the INSERT of OUTPUT ... INTO, which fails here and not with the first row; nothing when the clause has no
    // INTO.
    void planTarget(Plan& plan, const ast::Batch& batch, const std::optional<ast::OutputClause>& clause,
                    const Environment& environment);
    // The statement that changes one row of those that the plan reads.
    void planEach(Plan& plan, SqlWriter& writer, const std::vector<OutputColumn>& outputs);
    // What the INSERT of OUTPUT ... INTO sees; `values` are those of a row.
    static Environment outputEnvironment(const Plan& plan, std::span<const Value> values,
                                         const Environment& environment);
    void insertOutput(Plan& plan, const RowSet& rows, const Environment& environment);
    void startIdentity(const std::string& table);
    // Keeps the numbers that a change has taken, whether it lasts or not.
    void keepIdentity(const std::string& table);
    void runChange(Plan& plan, BatchResult& into, const Environment& environment);
    // Gives how many rows there are.
    std::int64_t runByRow(Plan& plan, RowSet* output, const Environment& environment);
    bool step(Plan& plan);
    // The first step of a query: an index that its text names may be gone since, and the query does without it then.
    bool firstStep(Plan& plan, const Environment& environment);
    // Whether the result code of a step brings a row; fails for those of failures.
    bool hasRow(Plan& plan, int code);
    void readRow(const Plan& plan, RowSet& rows);
    void assignRow(const Plan& plan, const Environment& environment);
    [[nodiscard]] DatabaseError failureOf(const Plan& plan, int code);
    void afterFailure(const DatabaseError& error);
    void requireCommittable() const;

    void selectInto(const ast::Batch& batch, const ast::SelectStatement& statement, const Environment& environment,
                    BatchResult& into);
    void checkIdentity(const ast::Batch& batch, const ast::CheckIdentityStatement& statement,
                       const Environment& environment, BatchResult& into);
    void truncate(const ast::Batch& batch, const ast::TruncateStatement& statement);
    void transaction(const ast::Batch& batch, const ast::TransactionStatement& statement,
                     const Environment& environment);
    void setOption(const ast::Batch& batch, const ast::SetOptionStatement& statement, const Environment& environment);
    void setLockTimeout(const ast::Batch& batch, const ast::SetOptionStatement& statement,
                        const Environment& environment);
    void define(const ast::Batch& batch, const ast::Statement& statement, const Environment& environment);

    void createView(const ast::Batch& batch, const ast::CreateViewStatement& statement, const Environment& environment);
    void createModule(const ast::Batch& batch, const ast::Statement& statement, const ast::ObjectName& name,
                      ast::DefinitionMode mode, ModuleKind kind);
    void createIndex(const ast::Batch& batch, const ast::CreateIndexStatement& statement);
    void alterTable(const ast::Batch& batch, const ast::AlterTableStatement& statement);
    void drop(const ast::Batch& batch, const ast::DropStatement& statement);
    // 3705 when the name is that of an object of another kind.
    void refuseOtherKind(const ast::Batch& batch, ast::ObjectType wanted, const ast::ObjectName& name);
    void requireFreeName(const ast::Batch& batch, const ast::ObjectName& name);
    void requireTableName(const ast::Batch& batch, const ast::ObjectName& name);

    void registerFunctions();
    [[nodiscard]] std::unique_ptr<RowSource> openRows(std::string_view kind, std::string_view text,
                                                      std::span<sqlite3_value* const> arguments);
    [[nodiscard]] BinderInput binderInput(const ast::Batch& batch, const Environment& environment,
                                          std::set<std::string>* called = nullptr) const;

    SqliteDatabase& database_;
    Catalog& catalog_;
    std::function<std::int64_t()> clock_;
    int longestWaitMs_;
    SessionState state_;
    std::unique_ptr<IdentityRun> identity_;
    RandomNumbers random_;
    // The last identity numbers of changes that may yet be undone, by folded table name: they are not given again.
    std::map<std::string, std::int64_t> usedIdentities_;
    FunctionCaller* functions_ = nullptr;
    const Environment* running_ = nullptr;  // of the SELECT that assigns variables
    std::vector<std::string> savepoints_;   // names of SAVE TRANSACTION
    std::string transactionName_;           // of the outermost BEGIN TRANSACTION, folded; empty when it has none
    StatementPool applied_;                 // statements of APPLY
    SqliteStatement savepoint_, release_, rollbackTo_, beginImmediate_, beginDeferred_, commit_, rollback_;
};

}  // namespace basalt::embedded
