#include "host/services/deploy.h"

#include <algorithm>
#include <cctype>

#include "database/scripts.h"
#include "host/services/sql_access.h"

namespace basalt::host {

namespace {

// Walks a script and knows where texts, names and comments begin and end.
class ScriptReader {
public:
    explicit ScriptReader(std::string_view text) : text_(text) {}

    [[nodiscard]] bool atEnd() const { return at_ >= text_.size(); }
    [[nodiscard]] std::size_t position() const { return at_; }
    [[nodiscard]] bool insideText() const { return state_ != State::Plain; }

    // Past the end of this line.
    void skipLine() {
        while (!atEnd()) {
            const char c = text_[at_];
            step();
            if (c == '\n') return;
        }
    }

private:
    enum class State { Plain, Quoted, Bracketed, DoubleQuoted, LineComment, BlockComment };

    [[nodiscard]] bool sees(std::string_view word) const { return text_.substr(at_, word.size()) == word; }

    void step() {
        const char c = text_[at_];
        std::size_t length = 1;
        switch (state_) {
            case State::Plain:
                if (c == '\'') state_ = State::Quoted;
                if (c == '[') state_ = State::Bracketed;
                if (c == '"') state_ = State::DoubleQuoted;
                if (sees("--")) state_ = State::LineComment;
                if (sees("/*")) {
                    state_ = State::BlockComment;
                    depth_ = 1;
                    length = 2;
                }
                break;
            // A doubled end mark closes and opens again, which comes to the same.
            case State::Quoted:
                if (c == '\'') state_ = State::Plain;
                break;
            case State::Bracketed:
                if (c == ']') state_ = State::Plain;
                break;
            case State::DoubleQuoted:
                if (c == '"') state_ = State::Plain;
                break;
            case State::LineComment:
                if (c == '\n') state_ = State::Plain;
                break;
            case State::BlockComment:
                if (sees("/*")) {
                    ++depth_;
                    length = 2;
                } else if (sees("*/")) {
                    if (--depth_ == 0) state_ = State::Plain;
                    length = 2;
                }
                break;
        }
        at_ += length;
    }

    std::string_view text_;
    std::size_t at_ = 0;
    State state_ = State::Plain;
    int depth_ = 0;
};

std::string_view trimmed(std::string_view text) {
    while (!text.empty() && std::isspace(static_cast<unsigned char>(text.front())))
        text.remove_prefix(1);
    while (!text.empty() && std::isspace(static_cast<unsigned char>(text.back())))
        text.remove_suffix(1);
    return text;
}

bool isSeparator(std::string_view line) {
    line = trimmed(line);
    return line.size() == 2 && (line[0] == 'g' || line[0] == 'G') && (line[1] == 'o' || line[1] == 'O');
}

DatabaseError inScript(const DatabaseError& error, std::string_view name) {
    return DatabaseError(error.category(), error.sqlState(), error.nativeCode(),
                         std::string(name) + ": " + error.what(), error.statement());
}

void runScript(Session& session, const database::SqlScript& script) {
    try {
        HostTransaction transaction(session);
        for (const std::string& batch : splitBatches(script.text))
            session.run(batch);
        transaction.commit();
    } catch (const DatabaseError& error) {
        throw inScript(error, script.name);
    }
}

// The highest version that was deployed; 0 when there is none.
int deployedVersion(Session& session) {
    const RowSet table = rowsOf(session, "SELECT OBJECT_ID(N'dbo.HostSchemaVersion', N'U')");
    if (table.column(0).isNull(0)) return 0;
    const RowSet rows = rowsOf(session, "SELECT ISNULL(MAX(Version), 0) FROM dbo.HostSchemaVersion");
    return static_cast<int>(integerAt(rows, 0, 0));
}

}  // namespace

std::vector<std::string> splitBatches(std::string_view script) {
    std::vector<std::string> batches;
    std::size_t begin = 0;
    const auto add = [&](std::size_t end) {
        const std::string_view batch = script.substr(begin, end - begin);
        if (!trimmed(batch).empty()) batches.emplace_back(batch);
    };
    ScriptReader reader(script);
    while (!reader.atEnd()) {
        const std::size_t line = reader.position();
        const bool insideText = reader.insideText();
        reader.skipLine();
        if (insideText || !isSeparator(script.substr(line, reader.position() - line))) continue;
        add(line);
        begin = reader.position();
    }
    add(script.size());
    return batches;
}

SchemaState schemaState(Session& session) {
    const int version = deployedVersion(session);
    if (version > kSchemaVersion) {
        throw DatabaseError(ErrorCategory::Version, "HY000", 0,
                            "The database has version " + std::to_string(version) +
                                ", this program knows versions up to " + std::to_string(kSchemaVersion));
    }
    if (version == 0) return SchemaState::Missing;
    return version < kSchemaVersion ? SchemaState::Older : SchemaState::Current;
}

bool holdsDemoData(Session& session) {
    return rowsOf(session, "SELECT Value FROM dbo.HostSettings WHERE Name = N'DemoData'").rowCount() > 0;
}

std::vector<std::string> deployDatabase(Session& session, DeployOptions options) {
    static_cast<void>(schemaState(session));  // refuses a newer one before anything is changed
    std::vector<std::string> done;
    for (const database::SqlScript& script : database::scripts()) {
        if (script.demo && !options.demo) continue;
        runScript(session, script);
        done.emplace_back(script.name);
    }
    const Value version = std::int64_t{kSchemaVersion};
    execute(session,
            "INSERT INTO dbo.HostSchemaVersion (Version) SELECT ? "
            "WHERE NOT EXISTS (SELECT 1 FROM dbo.HostSchemaVersion WHERE Version = ?)",
            {version, version});
    return done;
}

}  // namespace basalt::host
