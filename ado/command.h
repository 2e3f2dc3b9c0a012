// A statement that gives no rows.
//
//   TADOCommand command(connection, "DM.SharedCommand");
//   command.CommandText = "update Goods set Active = 1 where Code = 7";
//   command.Execute();
#pragma once

#include <cstdint>
#include <string>

#include "ado/connection.h"

namespace basalt {

class TADOCommand {
public:
    explicit TADOCommand(std::string name = {});
    TADOCommand(TADOConnection& connection, std::string name);
    TADOCommand(const TADOCommand&) = delete;
    TADOCommand& operator=(const TADOCommand&) = delete;

    std::string CommandText;

    // Borrowed; must outlive the component's use of it.
    [[nodiscard]] TADOConnection* Connection() const { return connection_; }
    void Connection(TADOConnection* connection) { connection_ = connection; }
    [[nodiscard]] const std::string& Name() const { return name_; }

    // The rows that the last counting statement changed, or -1 when none counts. Result sets are dropped. UsageError
    // when the text is empty or there is no connection.
    std::int64_t Execute();

private:
    std::string name_;
    TADOConnection* connection_ = nullptr;
};

}  // namespace basalt
