#include "ado/query.h"

namespace basalt {

TADOQuery::TADOQuery(std::string name) : TDataSet(nullptr, std::move(name)), SQL([this] { statementChanged(); }) {}

TADOQuery::TADOQuery(TADOConnection& connection, std::string name)
    : TDataSet(&connection, std::move(name)), SQL([this] { statementChanged(); }) {}

TADOQuery::~TADOQuery() {
    announceLeaving();
}

RowSet TADOQuery::fetch() {
    if (SQL.empty()) fail("Open: the statement is empty; set SQL first");
    BatchResult batch = connected().run(Name(), "open", SQL.Text());
    return firstRows(batch);
}

std::int64_t TADOQuery::ExecSQL() {
    Close();
    if (SQL.empty()) fail("ExecSQL: the statement is empty; set SQL first");
    return affectedRows(connected().run(Name(), "exec", SQL.Text()));
}

}  // namespace basalt
