// All that one call did, for people and programs that look on.
//
//   CallReport report = caller.call("CostLevel_GetNewCode", arguments, {});
//   std::cout << toDatum(report).toJson() << '\n';
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "ado/connection.h"
#include "package/datum.h"
#include "package/messages.h"
#include "package/programs.h"

namespace basalt::host {

// A query component that the call opened, closed, or wrote through, as it stood afterwards.
struct QueryReport {
    std::string name;
    std::string text;
    bool active = false;
    Datum::List rows;  // records, fields in column order
};

struct MessageReport {
    MessageRequest request;
    std::optional<int> answer;  // a TModalResult; none for messages without a question
};

// One entry of the user log.
struct EventReport {
    int part = 0;
    int permission = 0;
    std::string text;
};

struct CallError {
    std::string type;  // "DatabaseError", "UsageError" or "Error"
    std::string message;
};

struct CallReport {
    std::string function;
    Datum result;
    Datum::Fields out;  // every output parameter; null when the call did not set it
    std::vector<SentStatement> statements;
    std::vector<QueryReport> queries;
    std::vector<MessageReport> messages;
    std::vector<EventReport> events;
    std::vector<ProgramStart> programs;  // started through the host, in order; passwords of the connection as ***
    std::optional<CallError> error;
    bool started = false;  // false when the arguments did not fit and nothing was called
};

[[nodiscard]] CallError describeError(const std::exception& error);

// A record with the keys function, result, out, statements, queries, messages, events, started, error.
[[nodiscard]] Datum toDatum(const CallReport& report);

}  // namespace basalt::host
