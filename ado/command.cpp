#include "ado/command.h"

namespace basalt {

TADOCommand::TADOCommand(std::string name) : name_(std::move(name)) {}

TADOCommand::TADOCommand(TADOConnection& connection, std::string name)
    : name_(std::move(name)), connection_(&connection) {}

std::int64_t TADOCommand::Execute() {
    if (connection_ == nullptr) throw UsageError(name_ + ".Execute: there is no connection");
    if (CommandText.empty()) throw UsageError(name_ + ".Execute: the statement is empty; set CommandText first");
    return affectedRows(connection_->run(name_, "exec", CommandText));
}

}  // namespace basalt
