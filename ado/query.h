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

    // Runs the statement, whatever it is, and gives the rows that its last counting statement changed, or -1 when none
    // counts. The data set is closed first and stays closed. UsageError when the statement is empty.
    std::int64_t ExecSQL();

    [[nodiscard]] std::string statementText() const override { return SQL.Text(); }

protected:
    RowSet fetch() override;
};

}  // namespace basalt
