#include "engines/embedded/embedded_session.h"

#include <algorithm>

#include "engines/embedded/backup.h"
#include "engines/embedded/catalog/catalog.h"
#include "engines/embedded/catalog/object_name.h"
#include "engines/embedded/executor/definition/schema_reader.h"
#include "engines/embedded/executor/executor.h"
#include "engines/embedded/integrity.h"
#include "engines/embedded/interpreter/interpreter.h"
#include "engines/embedded/lexer/error_context.h"
#include "engines/embedded/lexer/lexer.h"
#include "engines/embedded/open_database.h"
#include "engines/embedded/parser/parser.h"
#include "engines/embedded/plan_cache.h"
#include "engines/embedded/runtime/convert.h"
#include "engines/embedded/runtime/dates.h"
#include "engines/embedded/runtime/sql_error.h"

namespace basalt::embedded {

namespace {

// The type of a `?` as plans are kept by it: wide enough that texts and numbers of all sizes share one plan.
SqlType markerType(const Value& value) {
    const SqlType type = typeOfValue(value);
    if (type.isText()) return SqlType::text(TypeKind::NVarChar, type.length == kMaxLength ? kMaxLength : 4000);
    if (type.isBinary()) return SqlType::text(TypeKind::VarBinary, type.length == kMaxLength ? kMaxLength : 8000);
    if (type.isDecimal()) return SqlType::decimal(kMaxDecimalDigits, type.scale);
    if (type.isInteger() && type.kind != TypeKind::Bit) return SqlType::of(TypeKind::BigInt);
    return type;
}

// Instructions of SQLite's machine, a few milliseconds' worth.
constexpr int kStepsBetweenQuestions = 20'000;

}  // namespace

class EmbeddedSession::Core {
public:
    Core(const std::string& path, const EmbeddedOptions& options)
        : path_(path),
          database_(openDatabase(path, options)),
          catalog_(*database_),
          executor_(*database_, catalog_, options.clock ? options.clock : currentLocalTicks, options.busyTimeoutMs),
          interpreter_(executor_, catalog_),
          cache_(options.planCacheSize) {}

    BatchResult run(std::string_view sql, std::span<const Value> parameters) {
        lexer_.scan(sql);
        markerTypes_.clear();
        for (const Value& value : parameters)
            markerTypes_.push_back(markerType(value));
        BatchResult result;
        try {
            // A plan may turn out to be stale when it is used; the next round then plans anew.
            while (true) {
                CompiledBatch* found =
                    cache_.find(lexer_.key(), lexer_.literals(), markerTypes_, catalog_.generation());
                if (found == nullptr) {
                    ++statistics_.misses;
                    runNew(parameters, result);
                    return result;
                }
                if (runAgain(*found, parameters, result)) {
                    ++statistics_.hits;
                    return result;
                }
            }
        } catch (const DatabaseError& error) {
            throw withResults(withStatement(error, sql), std::move(result));
        }
    }

    void onProgress(std::function<bool()> goOn) {
        goOn_ = std::move(goOn);
        database_->onWait(goOn_);
        sqlite3_progress_handler(database_->handle(), kStepsBetweenQuestions, goOn_ ? &Core::ask : nullptr, this);
    }

    SqliteDatabase& database() { return *database_; }
    Catalog& catalog() { return catalog_; }
    Executor& executor() { return executor_; }
    Interpreter& interpreter() { return interpreter_; }
    [[nodiscard]] const std::string& path() const { return path_; }
    [[nodiscard]] const PlanStatistics& statistics() const { return statistics_; }

private:
    // Nothing may fly through SQLite; who fails to answer does not go on.
    static int ask(void* core) noexcept {
        try {
            return static_cast<Core*>(core)->goOn_() ? 0 : 1;
        } catch (...) {
            return 1;
        }
    }

    // Which of several statements it was. Errors of the parser and the binder tell their place themselves.
    [[nodiscard]] DatabaseError withPlace(const DatabaseError& error, const ast::Batch& batch) const {
        const std::optional<SourceRange>& place = interpreter_.failedAt();
        const bool only = batch.statements.size() == 1 && place && place->begin == batch.statements[0]->range.begin;
        if (!place || only || std::string_view(error.what()).find("\nLine ") != std::string_view::npos) return error;
        return {error.category(), error.sqlState(), error.nativeCode(),
                std::string(error.what()) + "\n" + renderContext(lexer_.text(), inThisText(*place, batch.text)),
                error.statement()};
    }

    // A plan that is used again was made from a text with other literals and blanks between the same tokens.
    [[nodiscard]] SourceRange inThisText(SourceRange range, const std::string& planned) const {
        Lexer other;
        other.scan(planned);
        SourceRange found;
        for (std::size_t i = 0; i < std::min(other.tokens().size(), lexer_.tokens().size()); ++i) {
            const SourceRange& token = other.tokens()[i].range;
            if (token.begin == range.begin) found.begin = lexer_.tokens()[i].range.begin;
            if (token.end <= range.end) found.end = lexer_.tokens()[i].range.end;
        }
        return found;
    }

    void runNew(std::span<const Value> parameters, BatchResult& result) {
        auto compiled = std::make_unique<CompiledBatch>();
        compiled->batch = parse(lexer_);
        compiled->markerTypes = markerTypes_;
        compiled->layout.addDeclarations(compiled->batch, compiled->batch.statements);
        compiled->plain = Interpreter::isPlain(compiled->batch);
        compiled->generation = catalog_.generation();
        CompiledBatch& kept = cache_.keep(lexer_.key(), std::move(compiled));
        try {
            const ast::Batch& batch = kept.batch;
            runStatements(kept, {.table = &batch.literals, .markers = parameters, .markerTypes = markerTypes_}, result);
            kept.complete = Interpreter::isStraight(batch);
            if (kept.complete && batch.statements.size() == 1)
                kept.single = kept.plans.find(batch.statements.front().get());
            kept.generation = catalog_.generation();
        } catch (...) {
            cache_.remove(&kept);
            throw;
        }
    }

    // False when the schema turned out to have changed under the plans.
    bool runAgain(CompiledBatch& compiled, std::span<const Value> parameters, BatchResult& result) {
        if (compiled.single == nullptr) {
            if (catalog_.refresh()) return false;
            // A batch that is not planned throughout was found by its literals, all of them.
            const std::vector<Literal>* scanned = compiled.complete ? &lexer_.literals() : nullptr;
            runStatements(compiled,
                          {.scanned = scanned,
                           .table = &compiled.batch.literals,
                           .markers = parameters,
                           .markerTypes = markerTypes_},
                          result);
            compiled.generation = catalog_.generation();
            return true;
        }
        Plan& plan = *compiled.single;
        if (plan.writes() && catalog_.refresh()) return false;
        try {
            executor_.run(plan, {.scanned = &lexer_.literals(), .markers = parameters, .markerTypes = markerTypes_},
                          result);
        } catch (const DatabaseError& error) {
            executor_.endBatch(error);
            throw;
        }
        if (!Executor::isStale(plan)) return true;
        if (plan.writes()) {
            // Done is done: only what is kept for the next time is stale.
            catalog_.invalidate();
            return true;
        }
        // SQLite has prepared the statement anew by itself: another program has changed the schema, and the rows were
        // read by a plan that knew the old one.
        catalog_.invalidate();
        result = {};
        return false;
    }

    void runStatements(CompiledBatch& compiled, const Environment& environment, BatchResult& result) {
        const ast::Batch& batch = compiled.batch;
        if (!compiled.plain) {
            try {
                return interpreter_.run(batch, compiled.layout, compiled.plans, environment, result);
            } catch (const DatabaseError& error) {
                throw withPlace(error, batch);
            }
        }
        try {
            for (const ast::StatementPtr& statement : batch.statements)
                executor_.execute(batch, *statement, compiled.plans, environment, result);
        } catch (const DatabaseError& error) {
            executor_.endBatch(error);
            throw;
        }
    }

    std::string path_;
    std::unique_ptr<SqliteDatabase> database_;
    Catalog catalog_;
    Executor executor_;
    Interpreter interpreter_;
    PlanCache cache_;
    Lexer lexer_;
    std::vector<SqlType> markerTypes_;
    PlanStatistics statistics_;
    std::function<bool()> goOn_;
};

EmbeddedSession::EmbeddedSession(std::unique_ptr<Core> core) : core_(std::move(core)) {}

EmbeddedSession::~EmbeddedSession() = default;

std::unique_ptr<EmbeddedSession> EmbeddedSession::open(const std::string& path, const EmbeddedOptions& options) {
    return std::unique_ptr<EmbeddedSession>(new EmbeddedSession(std::make_unique<Core>(path, options)));
}

BatchResult EmbeddedSession::run(std::string_view sql) {
    return core_->run(sql, {});
}

BatchResult EmbeddedSession::run(std::string_view sql, std::span<const Value> parameters) {
    return core_->run(sql, parameters);
}

ProcedureInfo EmbeddedSession::procedure(std::string_view name) {
    return core_->interpreter().procedure(name);
}

CallResult EmbeddedSession::call(std::string_view name, std::span<const Argument> arguments) {
    return core_->interpreter().call(name, arguments);
}

void EmbeddedSession::begin() {
    core_->executor().begin();
}

void EmbeddedSession::commit() {
    core_->executor().commit();
}

void EmbeddedSession::rollback() {
    core_->executor().rollback();
}

bool EmbeddedSession::inTransaction() const {
    return core_->executor().inTransaction();
}

TableInfo EmbeddedSession::table(std::string_view name) {
    core_->catalog().refresh();
    const Table& table = core_->catalog().requireTable(objectPart(name));
    TableInfo result;
    result.name = table.name;
    for (const TableColumn& column : table.columns) {
        ColumnInfo info;
        info.name = column.name;
        column.type.describe(info);
        info.nullable = column.nullable;
        info.identity = column.identity;
        info.baseTable = table.name;
        info.baseColumn = column.name;
        result.columns.push_back(std::move(info));
    }
    for (const std::size_t position : table.key)
        result.key.push_back(table.columns[position].name);
    return result;
}

std::string EmbeddedSession::location() const {
    return core_->path();
}

void EmbeddedSession::onProgress(std::function<bool()> goOn) {
    core_->onProgress(std::move(goOn));
}

PlanStatistics EmbeddedSession::planStatistics() const {
    return core_->statistics();
}

std::vector<std::string> EmbeddedSession::integrityCheck() {
    return findProblems(core_->database());
}

DatabaseSchema EmbeddedSession::schema() {
    return readSchema(core_->database(), core_->catalog());
}

void EmbeddedSession::backUp(const std::string& path) {
    backUpDatabase(core_->database(), path);
}

void EmbeddedSession::flush() {
    SqliteDatabase& database = core_->database();
    const int code = sqlite3_wal_checkpoint_v2(database.handle(), "main", SQLITE_CHECKPOINT_TRUNCATE, nullptr, nullptr);
    if (code != SQLITE_OK) throw database.failure(code);
}

int EmbeddedSession::schemaVersion() {
    const std::string text = core_->catalog().property(kSchemaVersionProperty);
    return text.empty() ? 0 : std::stoi(text);
}

void EmbeddedSession::setSchemaVersion(int version) {
    core_->catalog().setProperty(kSchemaVersionProperty, std::to_string(version));
}

}  // namespace basalt::embedded
