#include "engines/odbc/odbc_session.h"

#include <map>

#include "ado/names.h"
#include "engines/odbc/catalog.h"
#include "engines/odbc/connection.h"
#include "engines/odbc/diagnostics.h"
#include "engines/odbc/procedure_call.h"
#include "engines/odbc/transaction_words.h"

namespace basalt::odbc {

class OdbcSession::Core {
public:
    Core(const std::string& text, const OdbcOptions& options) : text_(text), options_(options) { connected(); }

    BatchResult run(std::string_view sql, std::span<const Value> values) {
        if (lost_ > 0) {
            // Whoever works in texts ends a transaction in texts.
            const TransactionEnd end = transactionEnd(sql);
            if (end == TransactionEnd::Commit) commit();
            if (end == TransactionEnd::Rollback) rollback();
            if (end != TransactionEnd::None) return {};
        }
        Parameters parameters(connected().traits());
        for (const Value& value : values)
            parameters.addMarker(value);
        everyBatchTells_ = everyBatchTells_ || mayChangeImplicitTransactions(sql);
        const Effect effect = everyBatchTells_ || mayBeginTransaction(sql) ? Effect::MayBegin
                              : mayChangeTransaction(sql)                  ? Effect::Unknown
                                                                           : Effect::None;
        return execute(sql, parameters, effect);
    }

    const ProcedureInfo& procedure(std::string_view name) {
        std::string key = foldName(name);
        if (const auto found = procedures_.find(key); found != procedures_.end()) return found->second;
        return procedures_.emplace(std::move(key), describe(name)).first->second;
    }

    // Afresh: the procedure may have been altered since.
    ProcedureInfo describe(std::string_view name) { return readProcedure(execute(procedureQuestion(name)), name); }

    CallResult call(std::string_view name, std::span<const Argument> arguments) {
        ProcedureCall call(procedure(name), name, arguments, connected().traits());
        try {
            return call.finish(execute(call.text(), call.parameters(), Effect::Unknown));
        } catch (const DatabaseError&) {
            // Perhaps it was altered since it was described.
            procedures_.erase(foldName(name));
            throw;
        }
    }

    TableInfo table(std::string_view name) { return readTable(execute(tableQuestion(name)), name); }

    void begin() {
        execute("BEGIN TRANSACTION");
        ++transactions_;
    }

    void commit() {
        if (lost_ > 0) {
            --lost_;
            throw DatabaseError(
                ErrorCategory::Connection, "25S03", 3902,
                "the transaction was lost with the connection to " + text_.publicParts() + "; nothing of it was saved");
        }
        const bool open = inTransaction();
        tellLoss();
        if (!open) {
            throw DatabaseError(ErrorCategory::Other, "25000", 3902,
                                "there is no transaction to commit; nothing was saved");
        }
        execute("COMMIT TRANSACTION", Effect::Commits);
        --transactions_;
    }

    void rollback() {
        // What was lost with the connection has been rolled back.
        if (std::exchange(lost_, 0) > 0) return;
        if (transactions_ == 0 && !uncertain_) return;
        execute(rollbackText(), Effect::RollsBack);
        setTransactions(0);
    }

    bool inTransaction() {
        if (uncertain_) {
            try {
                askTransaction();
            } catch (const DatabaseError& error) {
                // Whoever asks is often on the way out of a failure. The request after this one must hear of it: it may
                // count on a transaction that the procedure before it had begun.
                if (lost_ == 0) untoldLoss_ = error;
            }
        }
        // One that was lost is its beginner's until he has ended it: till then nobody works without one unawares.
        return transactions_ > 0 || lost_ > 0;
    }

    void limitTime(std::optional<int> seconds) { timeLimit_ = seconds; }

    [[nodiscard]] const ConnectionString& text() const { return text_; }

private:
    // What a request does to the transaction.
    enum class Effect : std::uint8_t { None, Commits, RollsBack, Unknown, MayBegin };

    // Connects anew after a loss, once a request.
    Connection& connected() {
        tellLoss();
        refuseWithoutTransaction();
        if (!connection_) connection_.emplace(text_, options_);
        return *connection_;
    }

    void tellLoss() {
        if (untoldLoss_) throw *std::exchange(untoldLoss_, std::nullopt);
    }

    void refuseWithoutTransaction() const {
        if (lost_ == 0) return;
        throw DatabaseError(ErrorCategory::Connection, "25S03", 0,
                            std::string(lossIsSure_ ? "the transaction was" : "a transaction may have been") +
                                " lost with the connection to " + text_.publicParts() +
                                "; nothing is done before it has been rolled back");
    }

    BatchResult execute(std::string_view sql, Effect effect = Effect::None) {
        Parameters none(connected().traits());
        return execute(sql, none, effect);
    }

    // Every request passes here, and so one lost connection costs one request.
    BatchResult execute(std::string_view sql, Parameters& parameters, Effect effect) {
        try {
            BatchResult result = connected().execute(sql, parameters, timeLimit_ ? timeLimit_ : ownTimeLimit());
            doubt(effect);
            return result;
        } catch (const DatabaseError& error) {
            if (!connection_) throw;  // not even connected
            doubt(effect);
            if (isLoss(error)) throwLoss(error, effect);
            // An error may have ended the transaction, or left it so that it can only be rolled back.
            if (transactions_ > 0) askTransaction();
            throw;
        }
    }

    // The server is asked when somebody wants to know, not after each call of a procedure.
    void doubt(Effect effect) {
        if (!connection_->traits().speaksTransactSql) return;
        mayHaveBegun_ = mayHaveBegun_ || effect == Effect::MayBegin;
        uncertain_ = uncertain_ || effect == Effect::Unknown || effect == Effect::MayBegin;
    }

    void setTransactions(std::int64_t count) {
        transactions_ = count;
        uncertain_ = false;
        mayHaveBegun_ = false;
    }

    // The levels of a transaction that are to be ended after a loss.
    [[nodiscard]] std::int64_t lostLevels(Effect effect) const {
        switch (effect) {
            case Effect::RollsBack:
                return 0;
            case Effect::Commits:
                return transactions_ - 1;
            default:
                // A procedure that leaves one open is rare, and its callers know of none that they could end.
                return transactions_ > 0 ? transactions_ : mayHaveBegun_ ? 1 : 0;
        }
    }

    [[nodiscard]] bool isLoss(const DatabaseError& error) const {
        // A statement may fail with the number of a refused login, that of a linked server.
        return connection_->isDead() ||
               (error.category() == ErrorCategory::Connection && categoryOf(error.sqlState(), 0) == error.category() &&
                !error.sqlState().starts_with("28"));
    }

    [[noreturn]] void throwLoss(const DatabaseError& error, Effect effect = Effect::None) {
        std::string context = "the connection to " + text_.publicParts() + " was lost";
        if (effect == Effect::Commits) {
            context += "; whether the transaction was saved before is not known";
        } else if (uncertain_) {
            context += ", and with it the transaction if one was open";
        } else if (transactions_ > 0) {
            context += ", and the transaction with it";
        }
        connection_.reset();
        procedures_.clear();
        lost_ = lostLevels(effect);
        lossIsSure_ = transactions_ > 0 && !uncertain_;
        setTransactions(0);
        everyBatchTells_ = false;
        // FreeTDS has no state of its own for it.
        const std::string state = error.sqlState().starts_with("08") ? error.sqlState() : "08S01";
        DatabaseError loss(ErrorCategory::Connection, state, error.nativeCode(), context + ": " + error.what(),
                           error.statement());
        loss.setResults(error.results());
        throw loss;
    }

    // A server that does not answer leaves what is known as it is. Throws a loss only.
    void askTransaction() {
        if (!connection_->traits().speaksTransactSql) return;
        try {
            Parameters none(connection_->traits());
            const BatchResult answer = connection_->execute("SELECT @@TRANCOUNT, XACT_STATE()", none, ownTimeLimit());
            if (answer.results.empty() || !answer.results.front().rows) return;
            const RowSet& state = *answer.results.front().rows;
            if (state.columnCount() < 2 || state.rowCount() == 0) return;
            if (toInt64(state.column(1).valueAt(0)) < 0) {
                connection_->execute(rollbackText(), none, ownTimeLimit());
                setTransactions(0);
            } else {
                setTransactions(toInt64(state.column(0).valueAt(0)));
            }
        } catch (const DatabaseError& error) {
            if (isLoss(error)) throwLoss(error);
        }
    }

    [[nodiscard]] std::optional<int> ownTimeLimit() const {
        return options_.queryTimeoutSeconds > 0 ? std::optional(options_.queryTimeoutSeconds) : std::nullopt;
    }

    [[nodiscard]] std::string_view rollbackText() const {
        return connection_->traits().speaksTransactSql ? "IF @@TRANCOUNT > 0 ROLLBACK TRANSACTION" : "ROLLBACK";
    }

    ConnectionString text_;
    OdbcOptions options_;
    std::optional<Connection> connection_;  // none while lost
    std::map<std::string, ProcedureInfo> procedures_;
    std::int64_t transactions_ = 0;  // the server's count, unless
    bool uncertain_ = false;         // a batch since then may have changed it
    bool mayHaveBegun_ = false;      // and one that says so
    std::int64_t lost_ = 0;          // the count of a transaction that was lost and nobody has ended yet
    bool lossIsSure_ = false;        // that there was one
    bool everyBatchTells_ = false;   // implicit transactions may be on
    std::optional<DatabaseError> untoldLoss_;
    std::optional<int> timeLimit_;  // of the requests of the moment, in place of the options'
};

OdbcSession::OdbcSession(std::unique_ptr<Core> core) : core_(std::move(core)) {}

OdbcSession::~OdbcSession() = default;

std::unique_ptr<OdbcSession> OdbcSession::open(const std::string& connectionString, const OdbcOptions& options) {
    return std::unique_ptr<OdbcSession>(new OdbcSession(std::make_unique<Core>(connectionString, options)));
}

BatchResult OdbcSession::run(std::string_view sql) {
    return core_->run(sql, {});
}

BatchResult OdbcSession::run(std::string_view sql, std::span<const Value> parameters) {
    return core_->run(sql, parameters);
}

ProcedureInfo OdbcSession::procedure(std::string_view name) {
    return core_->describe(name);
}

CallResult OdbcSession::call(std::string_view name, std::span<const Argument> arguments) {
    return core_->call(name, arguments);
}

void OdbcSession::begin() {
    core_->begin();
}

void OdbcSession::commit() {
    core_->commit();
}

void OdbcSession::rollback() {
    core_->rollback();
}

bool OdbcSession::inTransaction() const {
    return core_->inTransaction();
}

TableInfo OdbcSession::table(std::string_view name) {
    return core_->table(name);
}

void OdbcSession::limitTime(std::optional<int> seconds) {
    core_->limitTime(seconds);
}

std::string OdbcSession::location() const {
    return core_->text().publicParts();
}

}  // namespace basalt::odbc
