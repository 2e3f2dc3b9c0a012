#include "package/data_module.h"

#include <utility>

#include "package/services.h"

namespace basalt {

TDataModule::TDataModule(std::string name) : name_(std::move(name)), connection_(DM().ADOConnection1) {}

void TDataModule::open(TADOQuery& query, const std::string& statement) {
    query.SQL = statement;
    query.Open();
}

void TDataModule::execute(TADOQuery& query, const std::string& statement) {
    query.SQL = statement;
    query.ExecSQL();
}

}  // namespace basalt
