#include "ado/connection.h"

#include <algorithm>

#include "ado/data_set.h"
#include "ado/names.h"

namespace basalt {

TADOConnection::TADOConnection(Session& session, std::string name) : session_(session), name_(std::move(name)) {}

TADOConnection::~TADOConnection() {
    for (TDataSet* dataSet : dataSets_)
        dataSet->connection_ = nullptr;
}

bool TADOConnection::InTransaction() const {
    return session_.inTransaction();
}

void TADOConnection::BeginTrans() {
    if (session_.inTransaction()) {
        throw UsageError(name_ + ".BeginTrans: a transaction has already begun, and transactions do not nest");
    }
    session_.begin();
    begun_ = true;
}

void TADOConnection::CommitTrans() {
    if (session_.inTransaction()) {
        session_.commit();
        begun_ = false;
        return;
    }
    if (!begun_) throw UsageError(name_ + ".CommitTrans: no transaction has begun");
    begun_ = false;
    throw DatabaseError(ErrorCategory::Other, "25000", 3902,
                        "the transaction was rolled back after an earlier failure; nothing of it was saved");
}

void TADOConnection::RollbackTrans() {
    const bool begun = begun_;
    begun_ = false;
    if (session_.inTransaction()) {
        session_.rollback();
    } else if (!begun) {
        throw UsageError(name_ + ".RollbackTrans: no transaction has begun");
    }
}

namespace {

// The time that one request may take; whatever comes after it has the session's own limit again.
class TimeLimit {
public:
    TimeLimit(Session& session, std::optional<int> seconds) : session_(seconds ? &session : nullptr) {
        if (session_ != nullptr) session_->limitTime(seconds);
    }
    ~TimeLimit() {
        if (session_ != nullptr) session_->limitTime(std::nullopt);
    }
    TimeLimit(const TimeLimit&) = delete;
    TimeLimit& operator=(const TimeLimit&) = delete;

private:
    Session* session_;
};

}  // namespace

BatchResult TADOConnection::run(const std::string& component, std::string_view action, std::string_view text,
                                std::optional<int> timeLimit) {
    if (!observers_.empty()) {
        const SentStatement sent{component, std::string(action), std::string(text), {}, {}};
        observers_.notify([&](StatementObserver& observer) { observer.sending(sent); });
    }
    const TimeLimit limit(session_, timeLimit);
    return session_.run(text);
}

BatchResult TADOConnection::run(const std::string& component, std::string_view action, std::string_view text,
                                std::span<const Value> parameters) {
    if (!observers_.empty()) {
        SentStatement sent{component, std::string(action), std::string(text), {}, {}};
        for (const Value& value : parameters) {
            sent.parameters.push_back({"@P" + std::to_string(sent.parameters.size() + 1), value, false});
        }
        observers_.notify([&](StatementObserver& observer) { observer.sending(sent); });
    }
    return session_.run(text, parameters);
}

CallResult TADOConnection::call(const std::string& component, const std::string& procedure,
                                std::span<const Argument> arguments) {
    if (!observers_.empty()) {
        const SentStatement sent{component, "call", {}, procedure, {arguments.begin(), arguments.end()}};
        observers_.notify([&](StatementObserver& observer) { observer.sending(sent); });
    }
    return session_.call(procedure, arguments);
}

const TableInfo& TADOConnection::table(const std::string& name) {
    std::string key = foldName(name);
    if (const auto found = tables_.find(key); found != tables_.end()) return found->second;
    return tables_.emplace(std::move(key), session_.table(name)).first->second;
}

void TADOConnection::forgetTable(const std::string& name) {
    tables_.erase(foldName(name));
}

void TADOConnection::attach(TDataSet& dataSet) {
    dataSets_.push_back(&dataSet);
}

void TADOConnection::detach(TDataSet& dataSet) {
    // Mostly the youngest: data sets live and die like the stores and functions that own them.
    const auto found = std::find(dataSets_.rbegin(), dataSets_.rend(), &dataSet);
    if (found != dataSets_.rend()) dataSets_.erase(std::next(found).base());
}

void TADOConnection::announceTouched(TDataSet& dataSet) {
    observers_.notify([&](StatementObserver& observer) { observer.touched(dataSet); });
}

void TADOConnection::announceLeaving(TDataSet& dataSet) {
    observers_.notify([&](StatementObserver& observer) { observer.leaving(dataSet); });
}

}  // namespace basalt
