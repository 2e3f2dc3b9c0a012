#include "engines/odbc/odbc_session.h"

#include <algorithm>
#include <map>

#include "ado/names.h"
#include "engines/odbc/catalog.h"
#include "engines/odbc/connection.h"
#include "engines/odbc/diagnostics.h"

namespace basalt::odbc {

namespace {

// A batch that may begin or end a transaction by itself; better asked once too often.
bool mentionsTransaction(std::string_view sql) {
    constexpr std::string_view kWord = "tran";
    const auto sameLetter = [](char a, char b) { return (a | 0x20) == b; };
    return std::search(sql.begin(), sql.end(), kWord.begin(), kWord.end(), sameLetter) != sql.end();
}

std::string callText(std::string_view name, std::size_t arguments) {
    std::string text = "{? = call " + std::string(name);
    for (std::size_t i = 0; i < arguments; ++i)
        text += i == 0 ? "(?" : ", ?";
    return text += arguments == 0 ? "}" : ")}";
}

}  // namespace

class OdbcSession::Core {
public:
    Core(const std::string& text, const OdbcOptions& options) : text_(text), options_(options) { connect(); }

    BatchResult run(std::string_view sql, std::span<const Value> values) {
        Parameters parameters;
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
    ProcedureInfo describe(std::string_view name) {
        Parameters none;
        return readProcedure(execute(procedureQuestion(name), none), name);
    }

    CallResult call(std::string_view name, std::span<const Argument> arguments) {
        const ProcedureInfo& described = procedure(name);
        Parameters parameters;
        parameters.addReturnValue();
        for (const Argument& argument : arguments)
            parameters.addArgument(typeOf(described, argument), argument.value, argument.output, argument.name);
        CallResult result;
        try {
            result.batch = execute(callText(name, arguments.size()), parameters);
        } catch (const DatabaseError&) {
            // Perhaps it was altered since it was described.
            procedures_.erase(foldName(name));
            throw;
        }
        result.returnValue = toInt64(parameters.valueAt(0));
        for (std::size_t i = 0; i < arguments.size(); ++i) {
            if (!arguments[i].output) continue;
            result.outputs.push_back({arguments[i].name, parameters.valueAt(i + 1), true});
        }
        return result;
    }

    TableInfo table(std::string_view name) {
        Parameters none;
        return readTable(execute(tableQuestion(name), none), name);
    }

    void begin() {
        Parameters none;
        execute("BEGIN TRANSACTION", none);
        inTransaction_ = true;
    }

    void commit() {
        if (!inTransaction_) {
            throw DatabaseError(ErrorCategory::Other, "25000", 3902,
                                "there is no transaction to commit; nothing was saved");
        }
        Parameters none;
        execute("COMMIT TRANSACTION", none);
        inTransaction_ = false;
    }

    void rollback() {
        // What was lost with the connection has been rolled back.
        if (!inTransaction_) return;
        Parameters none;
        execute(rollbackText(), none);
        inTransaction_ = false;
    }

    [[nodiscard]] bool inTransaction() const { return inTransaction_; }
    [[nodiscard]] const ConnectionString& text() const { return text_; }

private:
    void connect() { connection_.emplace(text_, options_); }

    // Every request passes here, and so one lost connection costs one request.
    BatchResult execute(std::string_view sql, Parameters& parameters) {
        if (!connection_) connect();
        try {
            return connection_->execute(sql, parameters);
        } catch (const DatabaseError& error) {
            if (error.category() == ErrorCategory::Connection || connection_->isDead()) throwLoss(error);
            if (inTransaction_ || mentionsTransaction(sql)) askTransaction();
            throw;
        }
    }

    [[noreturn]] void throwLoss(const DatabaseError& error) {
        connection_.reset();
        procedures_.clear();
        std::string context = "the connection to " + text_.publicParts() + " was lost";
        if (std::exchange(inTransaction_, false)) context += ", and the transaction with it";
        throw DatabaseError(ErrorCategory::Connection, error.sqlState(), error.nativeCode(),
                            context + ": " + error.what(), error.statement());
    }

    // An error may have ended the transaction, or left it so that it can only be rolled back.
    void askTransaction() {
        if (!connection_->traits().speaksTransactSql) return;
        Parameters none;
        BatchResult answer;
        try {
            answer = connection_->execute("SELECT @@TRANCOUNT, XACT_STATE()", none);
        } catch (const DatabaseError& error) {
            if (error.category() == ErrorCategory::Connection || connection_->isDead()) throwLoss(error);
            throw;
        }
        const RowSet& state = answer.results.at(0).rows.value();
        inTransaction_ = toInt64(state.column(0).valueAt(0)) > 0;
        if (toInt64(state.column(1).valueAt(0)) < 0) rollback();
    }

    [[nodiscard]] std::string_view rollbackText() const {
        return !connection_ || connection_->traits().speaksTransactSql ? "IF @@TRANCOUNT > 0 ROLLBACK TRANSACTION"
                                                                       : "ROLLBACK";
    }

    [[nodiscard]] static ColumnInfo typeOf(const ProcedureInfo& procedure, const Argument& argument) {
        for (const ParameterInfo& parameter : procedure.parameters) {
            if (sameName(parameter.name, argument.name)) return parameter.type;
        }
        throw DatabaseError(ErrorCategory::NotFound, "42000", 8145,
                            argument.name + " is not a parameter for procedure " + procedure.name + ".");
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
