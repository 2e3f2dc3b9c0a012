// The connection that components run on: one session, its transaction, and those who watch what is sent.
//
//   TADOConnection connection(session);
//   connection.BeginTrans();
//   ...
//   connection.CommitTrans();
//
// Prefer Transaction (ado/transaction.h), which rolls back by itself when an exception passes.
#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "ado/listener_list.h"
#include "ado/session.h"

namespace basalt {

class TDataSet;

// One statement or procedure call, as it leaves.
struct SentStatement {
    std::string component;  // the component's name, for instance "DM.SharedQuery"
    std::string action;     // "open", "exec", "post" or "call"
    std::string text;       // the statement; empty for a procedure call
    std::string procedure;  // the procedure; empty for a statement
    std::vector<Argument>
        parameters;  // the named arguments of a call, or the values of the `?` markers as @P1, @P2, ...
};

class StatementObserver {
public:
    virtual ~StatementObserver() = default;
    // Before the statement is sent, so a statement that fails is seen too.
    virtual void sending(const SentStatement& statement) = 0;
    // A data set was opened, closed, or given another statement.
    virtual void touched(TDataSet& dataSet) { static_cast<void>(dataSet); }
    // A data set is going away: the last chance to look at it. Only its name, statement and rows may be read.
    virtual void leaving(TDataSet& dataSet) { static_cast<void>(dataSet); }
};

class TADOConnection {
public:
    // The session is borrowed and must outlive the connection; the connection neither opens nor closes it.
    explicit TADOConnection(Session& session, std::string name = "ADOConnection1");
    // Components that still name this connection lose it.
    ~TADOConnection();
    TADOConnection(const TADOConnection&) = delete;
    TADOConnection& operator=(const TADOConnection&) = delete;

    [[nodiscard]] Session& session() { return session_; }
    [[nodiscard]] const std::string& Name() const { return name_; }

    // How programs beside this one reach the same database. The connection itself does not read it; it may hold a
    // password and is therefore never recorded or shown.
    std::string ConnectionString;

    // UsageError when a transaction is already begun, since transactions do not nest.
    void BeginTrans();
    // UsageError when none is begun. DatabaseError when the database has already rolled it back by itself.
    void CommitTrans();
    // UsageError when none is begun. Does nothing when the database has already rolled it back by itself (a lost
    // connection, a full disk), so that the handler of that failure may call it.
    void RollbackTrans();
    [[nodiscard]] bool InTransaction() const;

    // Borrowed; to be removed before they go away.
    void addObserver(StatementObserver& observer) { observers_.add(observer); }
    void removeObserver(StatementObserver& observer) { observers_.remove(observer); }

    // For the components: announces and runs one statement or call.
    // A limit of time in seconds, where there is one, is for this request alone and stands above the session's own.
    BatchResult run(const std::string& component, std::string_view action, std::string_view text,
                    std::optional<int> timeLimit = std::nullopt);
    BatchResult run(const std::string& component, std::string_view action, std::string_view text,
                    std::span<const Value> parameters);
    CallResult call(const std::string& component, const std::string& procedure, std::span<const Argument> arguments);
    // Columns and key of a table, asked for once. The reference is good until forgetTable or the connection's end.
    [[nodiscard]] const TableInfo& table(const std::string& name);
    // A statement on the table has failed: perhaps the table is no longer what it was.
    void forgetTable(const std::string& name);

    void attach(TDataSet& dataSet);
    void detach(TDataSet& dataSet);
    void announceTouched(TDataSet& dataSet);
    void announceLeaving(TDataSet& dataSet);

private:
    Session& session_;
    std::string name_;
    bool begun_ = false;
    ListenerList<StatementObserver> observers_;
    std::map<std::string, TableInfo> tables_;  // by folded name
    std::vector<TDataSet*> dataSets_;
};

}  // namespace basalt
