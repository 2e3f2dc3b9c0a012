#include "host/calls/call_report.h"

#include <algorithm>

#include "ado/error.h"
#include "host/calls/answer.h"

namespace basalt::host {

namespace {

Datum toDatum(const SentStatement& statement) {
    Datum::Fields fields = {{"component", statement.component}, {"action", statement.action}};
    if (statement.procedure.empty()) {
        fields.emplace_back("text", statement.text);
    } else {
        fields.emplace_back("procedure", statement.procedure);
    }
    if (!statement.procedure.empty() || !statement.parameters.empty()) {
        Datum::Fields parameters;
        for (const Argument& argument : statement.parameters)
            parameters.emplace_back(argument.name, Datum::from(argument.value));
        fields.emplace_back("parameters", Datum::record(std::move(parameters)));
    }
    return Datum::record(std::move(fields));
}

Datum toDatum(const QueryReport& query) {
    return Datum::record({{"text", query.text}, {"active", query.active}, {"rows", Datum::list(query.rows)}});
}

Datum kindName(MessageKind kind) {
    switch (kind) {
        case MessageKind::Confirmation:
            return "confirmation";
        case MessageKind::Notification:
            return "notification";
        case MessageKind::Error:
            return "error";
        case MessageKind::None:
            break;
    }
    return nullptr;
}

Datum toDatum(const MessageReport& message) {
    Datum::List arguments(message.request.arguments.begin(), message.request.arguments.end());
    return Datum::record({{"operation", message.request.operation},
                          {"kind", kindName(message.request.kind)},
                          {"number", message.request.number == 0 ? Datum() : Datum(message.request.number)},
                          {"arguments", Datum::list(std::move(arguments))},
                          {"answer", message.answer ? Datum(answerName(*message.answer)) : Datum()}});
}

Datum toDatum(const EventReport& event) {
    return Datum::record({{"part", event.part}, {"permission", event.permission}, {"text", event.text}});
}

Datum toDatum(const ProgramStart& program) {
    return Datum::record(
        {{"verb", program.verb}, {"file", program.file}, {"parameters", program.parameters}, {"show", program.show}});
}

template <class Item>
Datum toList(const std::vector<Item>& items) {
    Datum::List list;
    for (const Item& item : items)
        list.push_back(toDatum(item));
    return Datum::list(std::move(list));
}

}  // namespace

CallError describeError(const std::exception& error) {
    const char* type = dynamic_cast<const DatabaseError*>(&error) ? "DatabaseError"
                       : dynamic_cast<const UsageError*>(&error)  ? "UsageError"
                                                                  : "Error";
    return {type, error.what()};
}

Datum toDatum(const CallReport& report) {
    Datum::Fields queries;
    for (const QueryReport& query : report.queries)
        queries.emplace_back(query.name, toDatum(query));
    Datum error;
    if (report.error) error = Datum::record({{"type", report.error->type}, {"message", report.error->message}});
    return Datum::record({{"function", report.function},
                          {"result", report.result},
                          {"out", Datum::record(report.out)},
                          {"statements", toList(report.statements)},
                          {"queries", Datum::record(std::move(queries))},
                          {"messages", toList(report.messages)},
                          {"events", toList(report.events)},
                          {"started", toList(report.programs)},
                          {"error", error}});
}

}  // namespace basalt::host
