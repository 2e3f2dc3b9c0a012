#include "engines/odbc/odbc_session.h"

#include <algorithm>
#include <cctype>
#include <iterator>
#include <map>

#include "ado/names.h"
#include "engines/odbc/catalog.h"
#include "engines/odbc/connection.h"
#include "engines/odbc/procedure_call.h"

namespace basalt::odbc {

namespace {

bool isWordByte(char c) {
    return c == '_' || c == '@' || c == '#' || std::isalnum(static_cast<unsigned char>(c)) != 0;
}

// TRAN or TRANSACTION as a word: the batch may begin or end a transaction by itself.
bool mentionsTransaction(std::string_view sql) {
    const auto sameLetter = [](char a, char b) { return std::tolower(static_cast<unsigned char>(a)) == b; };
    constexpr std::string_view kBegin = "tran";
    constexpr std::string_view kRest = "saction";
    auto at = sql.begin();
    while ((at = std::search(at, sql.end(), kBegin.begin(), kBegin.end(), sameLetter)) != sql.end()) {
        const bool begins = at == sql.begin() || !isWordByte(*std::prev(at));
        at += kBegin.size();
        if (std::search(at, sql.end(), kRest.begin(), kRest.end(), sameLetter) == at) at += kRest.size();
        if (begins && (at == sql.end() || !isWordByte(*at))) return true;
    }
    return false;
}

}  // namespace

class OdbcSession::Core {
public:
    Core(const std::string& text, const OdbcOptions& options) : text_(text), options_(options) { connected(); }

    BatchResult run(std::string_view sql, std::span<const Value> values) {
        Parameters parameters(connected().traits());
        for (const Value& value : values)
            parameters.addMarker(value);
        BatchResult result = execute(sql, parameters);
        if (mentionsTransaction(sql)) askTransaction();
        return result;
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
            return call.finish(execute(call.text(), call.parameters()));
        } catch (const DatabaseError&) {
            // Perhaps it was altered since it was described.
            procedures_.erase(foldName(name));
            throw;
        }
    }

    TableInfo table(std::string_view name) { return readTable(execute(tableQuestion(name)), name); }

    void begin() {
        execute("BEGIN TRANSACTION");
        inTransaction_ = true;
    }

    void commit() {
        if (!inTransaction_) {
            throw DatabaseError(ErrorCategory::Other, "25000", 3902,
                                "there is no transaction to commit; nothing was saved");
        }
        execute("COMMIT TRANSACTION");
        inTransaction_ = false;
    }

    void rollback() {
        // What was lost with the connection has been rolled back.
        if (!inTransaction_) return;
        execute(rollbackText());
        inTransaction_ = false;
    }

    [[nodiscard]] bool inTransaction() const { return inTransaction_; }
    [[nodiscard]] const ConnectionString& text() const { return text_; }

private:
    // Connects anew after a loss, once a request.
    Connection& connected() {
        if (!connection_) connection_.emplace(text_, options_);
        return *connection_;
    }

    BatchResult execute(std::string_view sql) {
        Parameters none(connected().traits());
        return execute(sql, none);
    }

    // Every request passes here, and so one lost connection costs one request.
    BatchResult execute(std::string_view sql, Parameters& parameters) {
        try {
            return connected().execute(sql, parameters);
        } catch (const DatabaseError& error) {
            if (!connection_) throw;  // not even connected
            if (isLoss(error)) throwLoss(error);
            if (inTransaction_ || mentionsTransaction(sql)) askTransaction();
            throw;
        }
    }

    [[nodiscard]] bool isLoss(const DatabaseError& error) const {
        return error.category() == ErrorCategory::Connection || connection_->isDead();
    }

    [[noreturn]] void throwLoss(const DatabaseError& error) {
        connection_.reset();
        procedures_.clear();
        std::string context = "the connection to " + text_.publicParts() + " was lost";
        if (std::exchange(inTransaction_, false)) context += ", and the transaction with it";
        // FreeTDS has no state of its own for it.
        const std::string state = error.sqlState().starts_with("08") ? error.sqlState() : "08S01";
        DatabaseError loss(ErrorCategory::Connection, state, error.nativeCode(), context + ": " + error.what(),
                           error.statement());
        loss.setResults(error.results());
        throw loss;
    }

    // An error may have ended the transaction, or left it so that it can only be rolled back. A server that does not
    // answer leaves what is known as it is.
    void askTransaction() {
        if (!connection_->traits().speaksTransactSql) return;
        try {
            Parameters none(connection_->traits());
            const BatchResult answer = connection_->execute("SELECT @@TRANCOUNT, XACT_STATE()", none);
            if (answer.results.empty() || !answer.results.front().rows) return;
            const RowSet& state = *answer.results.front().rows;
            inTransaction_ = toInt64(state.column(0).valueAt(0)) > 0;
            if (toInt64(state.column(1).valueAt(0)) >= 0) return;
            connection_->execute(rollbackText(), none);
            inTransaction_ = false;
        } catch (const DatabaseError& error) {
            if (isLoss(error)) throwLoss(error);
        }
    }

    [[nodiscard]] std::string_view rollbackText() const {
        return connection_->traits().speaksTransactSql ? "IF @@TRANCOUNT > 0 ROLLBACK TRANSACTION" : "ROLLBACK";
    }

    ConnectionString text_;
    OdbcOptions options_;
    std::optional<Connection> connection_;  // none while lost
    std::map<std::string, ProcedureInfo> procedures_;
    bool inTransaction_ = false;
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

std::string OdbcSession::location() const {
    return core_->text().publicParts();
}

}  // namespace basalt::odbc
