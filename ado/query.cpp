#include "ado/query.h"

#include "ado/rows_beside.h"

namespace basalt {

TADOQuery::TADOQuery(std::string name) : TDataSet(nullptr, std::move(name)), SQL([this] { statementChanged(); }) {}

TADOQuery::TADOQuery(TADOConnection& connection, std::string name)
    : TDataSet(&connection, std::move(name)), SQL([this] { statementChanged(); }) {}

TADOQuery::~TADOQuery() {
    announceLeaving();
}

BatchResult TADOQuery::run(std::string_view called, std::string_view action, const std::string& statement) {
    if (statement.empty()) fail(std::string(called) + ": the statement is empty; set SQL first");
    if (CommandTimeout.value_or(0) < 0) {
        fail(std::string(called) + ": CommandTimeout is " + std::to_string(*CommandTimeout) +
             "; it counts seconds, and 0 is no limit");
    }
    return connected().run(Name(), action, statement, CommandTimeout);
}

RowSet TADOQuery::fetch() {
    BatchResult batch = run("Open", "open", SQL.Text());
    return firstRows(batch);
}

void TADOQuery::OpenInstead(std::string statement) {
    finishRecord();
    RowSet rows = [&] {
        const RowsBeside beside(*this);
        BatchResult batch = run("OpenInstead", "open", statement);
        return firstRows(batch);
    }();
    showInstead(std::move(rows), [&] { SQL.text_ = std::move(statement); });
}

std::int64_t TADOQuery::ExecSQL() {
    Close();
    return affectedRows(run("ExecSQL", "exec", SQL.Text()));
}

}  // namespace basalt
