// What a function may not do: it computes, and changes nothing but its own table variables.
#include "engines/embedded/interpreter/interpreter.h"
#include "engines/embedded/lexer/error_context.h"

namespace basalt::embedded {

using ast::StatementKind;

namespace {

class FunctionRules {
public:
    explicit FunctionRules(const ast::Batch& batch) : batch_(batch) {}

    void check(const ast::Statements& statements) const {
        for (const ast::StatementPtr& statement : statements)
            check(*statement);
    }

private:
    void check(const ast::Statement& statement) const {
        switch (statement.kind) {
            case StatementKind::Insert: {
                const auto& insert = ast::as<ast::InsertStatement>(statement);
                if (insert.source == ast::InsertStatement::Source::Execute) refuse("INSERT EXEC", statement);
                return checkTarget(insert.target, "INSERT", statement);
            }
            case StatementKind::Update:
                return checkTarget(ast::as<ast::UpdateStatement>(statement).target, "UPDATE", statement);
            case StatementKind::Delete:
                return checkTarget(ast::as<ast::DeleteStatement>(statement).target, "DELETE", statement);
            case StatementKind::Select:
                return checkSelect(ast::as<ast::SelectStatement>(statement));
            case StatementKind::If: {
                const auto& branch = ast::as<ast::IfStatement>(statement);
                check(*branch.then);
                if (branch.otherwise) check(*branch.otherwise);
                return;
            }
            case StatementKind::While:
                return check(*ast::as<ast::WhileStatement>(statement).body);
            case StatementKind::Block:
                return check(ast::as<ast::BlockStatement>(statement).statements);
            case StatementKind::Declare:
            case StatementKind::SetVariable:
            case StatementKind::Break:
            case StatementKind::Continue:
            case StatementKind::Return:
            case StatementKind::Goto:
            case StatementKind::Label:
                return;
            case StatementKind::Execute:
                if (ast::as<ast::ExecuteStatement>(statement).text) refuse("EXECUTE STRING", statement);
                return;
            case StatementKind::Print:
                refuse("PRINT", statement);
            case StatementKind::RaisError:
                refuse("RAISERROR", statement);
            case StatementKind::Throw:
                refuse("THROW", statement);
            case StatementKind::TryCatch:
                refuse("BEGIN TRY", statement);
            case StatementKind::Transaction:
                refuse("BEGIN TRANSACTION", statement);
            case StatementKind::SetOption:
                refuse("SET OPTION ON", statement);
            case StatementKind::CreateTable:
                refuse("CREATE TABLE", statement);
            case StatementKind::CheckIdentity:
                refuse("DBCC", statement);
            case StatementKind::Truncate:
                refuse("TRUNCATE TABLE", statement);
            default:
                refuse("CREATE", statement);
        }
    }

    void checkTarget(const ast::TableTarget& target, const char* verb, const ast::Statement& statement) const {
        if (target.variable.empty()) refuse(verb, statement);
    }

    void checkSelect(const ast::SelectStatement& statement) const {
        const ast::Select& first = ast::firstSelect(*statement.query->body);
        if (!first.into.empty()) refuse("SELECT INTO", statement);
        for (const ast::SelectItem& item : first.items) {
            if (item.kind == ast::SelectItemKind::Assignment) continue;
            throwSyntaxError(444, "Select statements included within a function cannot return data to a client.",
                             batch_.text, statement.range);
        }
    }

    [[noreturn]] void refuse(const std::string& what, const ast::Statement& statement) const {
        throwSyntaxError(443, "Invalid use of a side-effecting operator '" + what + "' within a function.", batch_.text,
                         statement.range);
    }

    const ast::Batch& batch_;
};

}  // namespace

void Interpreter::checkFunction(const ast::Batch& batch, const ast::CreateFunctionStatement& function) {
    using Returns = ast::CreateFunctionStatement::Returns;
    Layout layout;
    layout.addParameters(batch, function.parameters);
    if (function.returns == Returns::InlineTable) return;
    if (function.returns == Returns::TableVariable) layout.addResultTable(batch, function);
    layout.addDeclarations(batch, function.body);
    FunctionRules(batch).check(function.body);
    const ast::Statement* last = function.body.back().get();
    if (last->kind != StatementKind::Return) {
        throwSyntaxError(455, "The last statement included within a function must be a return statement.", batch.text,
                         last->range);
    }
}

}  // namespace basalt::embedded
