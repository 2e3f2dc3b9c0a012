// A stored procedure, with or without rows.
//
//   TADOStoredProc proc(connection, "DM.SharedProc");
//   proc.Close();
//   proc.ProcedureName("GoodStockInfo");
//   proc.Parameters().Refresh();
//   proc.Parameters()["@GoodCode"] = 7;
//   proc.Open();                                       // or ExecProc
//   proc.Parameters()["@RETURN_VALUE"].AsInteger()
#pragma once

#include "ado/data_set.h"
#include "ado/parameters.h"

namespace basalt {

class TADOStoredProc : public TDataSet {
public:
    explicit TADOStoredProc(std::string name = {});
    TADOStoredProc(TADOConnection& connection, std::string name);
    ~TADOStoredProc() override;

    [[nodiscard]] const std::string& ProcedureName() const { return procedure_; }
    // Closes the data set and forgets the parameters. A version number ("Name;1") is accepted and not sent.
    void ProcedureName(std::string name);

    [[nodiscard]] TParameters& Parameters() { return parameters_; }

    // Runs it and drops its result sets. Outputs and @RETURN_VALUE are readable afterwards; after a failure they are as
    // they were.
    void ExecProc();

    [[nodiscard]] std::string statementText() const override { return {}; }

protected:
    RowSet fetch() override;

private:
    CallResult callProcedure();
    [[nodiscard]] std::string calledName() const;
    [[nodiscard]] ProcedureInfo describe() const;

    std::string procedure_;
    TParameters parameters_;
};

}  // namespace basalt
