#include "host/calls/call_recorder.h"

#include <algorithm>

#include "ado/data_set.h"
#include "engines/odbc/connection_string.h"

namespace basalt::host {

CallRecorder::CallRecorder(ReferenceHost& host) : host_(host) {
    host_.DM().ADOConnection1.addObserver(*this);
    host_.setObserver(this);
}

CallRecorder::~CallRecorder() {
    if (hostMessages_) host_.setMessages(*hostMessages_);
    host_.setObserver(nullptr);
    host_.DM().ADOConnection1.removeObserver(*this);
}

void CallRecorder::begin(MessageService& messages) {
    report_ = {};
    for (Watched& watched : watched_)
        watched.touched = false;
    shown_ = &messages;
    hostMessages_ = &host_.Messages();
    host_.setMessages(*this);
}

CallReport CallRecorder::end() {
    for (const Watched& watched : watched_) {
        if (watched.touched && watched.used) report(*watched.dataSet);
    }
    host_.setMessages(*std::exchange(hostMessages_, nullptr));
    shown_ = nullptr;
    return std::exchange(report_, {});
}

void CallRecorder::sending(const SentStatement& statement) {
    // Between calls the module works for others, as long as the program runs; none of that is kept.
    if (!hostMessages_) return;
    report_.statements.push_back(statement);
    // The one touched last bears the name now, when two stores have a query of the same name.
    const auto owner = std::find_if(watched_.rbegin(), watched_.rend(),
                                    [&](const Watched& w) { return w.dataSet->Name() == statement.component; });
    if (owner != watched_.rend()) owner->touched = owner->used = true;
}

void CallRecorder::touched(TDataSet& dataSet) {
    const auto known =
        std::find_if(watched_.begin(), watched_.end(), [&](const Watched& w) { return w.dataSet == &dataSet; });
    if (known == watched_.end()) {
        watched_.push_back({.dataSet = &dataSet, .touched = true, .used = false});
    } else {
        known->touched = true;
    }
}

void CallRecorder::leaving(TDataSet& dataSet) {
    const auto known =
        std::find_if(watched_.begin(), watched_.end(), [&](const Watched& w) { return w.dataSet == &dataSet; });
    if (known == watched_.end()) return;
    if (known->touched && known->used && hostMessages_) report(dataSet);
    watched_.erase(known);
}

void CallRecorder::userEvent(TSoftwarePart part, TPermission permission, const std::string& text) {
    if (hostMessages_) report_.events.push_back({part, permission, text});
}

// Another program may be handed the way to the database, and with it the password.
void CallRecorder::programStarting(const ProgramStart& program) {
    if (!hostMessages_) return;
    ProgramStart& told = report_.programs.emplace_back(program);
    const std::string& secret = host_.DM().ADOConnection1.ConnectionString;
    if (secret.empty()) return;
    const std::string masked = odbc::ConnectionString(secret).masked();
    for (std::size_t at = 0; (at = told.parameters.find(secret, at)) != std::string::npos; at += masked.size())
        told.parameters.replace(at, secret.size(), masked);
}

int CallRecorder::show(const MessageRequest& request) {
    const std::size_t index = report_.messages.size();
    report_.messages.push_back({request, std::nullopt});
    const int answer = shown_->show(request);
    if (request.isQuestion()) report_.messages[index].answer = answer;
    return answer;
}

void CallRecorder::report(TDataSet& dataSet) {
    // A stored procedure has no statement of its own and is reported as a call only.
    if (dataSet.statementText().empty()) return;
    QueryReport query{.name = dataSet.Name(), .text = dataSet.statementText(), .active = dataSet.Active(), .rows = {}};
    if (query.active) {
        const int fields = dataSet.FieldCount();
        for (std::int64_t row = 0; row < dataSet.RecordCount(); ++row) {
            Datum::Fields record;
            for (int field = 0; field < fields; ++field) {
                record.emplace_back(dataSet.fieldInfo(field).name, Datum::from(dataSet.valueAt(row, field)));
            }
            query.rows.push_back(Datum::record(std::move(record)));
        }
    }
    // A screen's query may leave and come back in one call; the last look is the one that counts.
    const auto before = std::find_if(report_.queries.begin(), report_.queries.end(),
                                     [&](const QueryReport& q) { return q.name == query.name; });
    if (before == report_.queries.end()) {
        report_.queries.push_back(std::move(query));
    } else {
        *before = std::move(query);
    }
}

}  // namespace basalt::host
