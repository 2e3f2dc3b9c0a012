// A data set on a statement.
//
//   TADOQuery query(connection, "CostLevel_List_QUR");
//   query.Close();
//   query.SQL = "select Code, Name from CostLevel";
//   query.Open();
//   while (!query.Eof()) { use(query.FieldByName("Name").AsString()); query.Next(); }
//
//   query.SQL = "delete from CostLevel where Code = 7";
//   query.ExecSQL();
#pragma once

#include <optional>

#include "ado/data_set.h"
#include "ado/statement_text.h"

namespace basalt {

class TADOQuery : public TDataSet {
public:
    explicit TADOQuery(std::string name = {});
    TADOQuery(TADOConnection& connection, std::string name);
    ~TADOQuery() override;

    // Another text closes the data set.
    StatementText SQL;

    // How many seconds the statement may take, 0 for as long as it takes. Without a number it is for the session to
    // say, which an option of the workstation may limit. What a data set posts by itself keeps to the session's limit.
    // Opening and ExecSQL are a UsageError while it is below 0.
    std::optional<int> CommandTimeout;

    // Runs another statement and, once its rows are there, shows all of them in place of its own: a filter goes off.
    // Until then, and after a failure, the data set is what it was, its statement included, or closed where it had too
    // many rows (ado/rows_beside.h). Opens a closed one. UsageError when the statement is empty or gives no rows.
    void OpenInstead(std::string statement);

    // Runs the statement, whatever it is, and gives the rows that its last counting statement changed, or -1 when none
    // counts. The data set is closed first and stays closed. UsageError when the statement is empty.
    std::int64_t ExecSQL();

    [[nodiscard]] std::string statementText() const override { return SQL.Text(); }

protected:
    RowSet fetch() override;

private:
    // What is wrong with the query is told under the name of what was called.
    BatchResult run(std::string_view called, std::string_view action, const std::string& statement);
};

}  // namespace basalt
