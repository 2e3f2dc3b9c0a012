#include "host/services/deploy.h"

#include <regex>

#include "database/scripts.h"
#include "host/services/script_batches.h"
#include "host/services/sql_access.h"

namespace basalt::host {

namespace {

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

MissingObjects missingObjects(Session& session) {
    static const std::regex creation(R"(CREATE (?:TABLE|VIEW|FUNCTION|PROCEDURE) dbo\.(\w+|\[[^\]]+\]))");
    std::vector<std::string> names;
    std::string statement;
    for (const database::SqlScript& script : database::scripts()) {
        if (script.demo) continue;
        const std::string text(script.text);
        for (std::sregex_iterator match(text.begin(), text.end(), creation), end; match != end; ++match) {
            names.push_back((*match)[1]);
            statement += (statement.empty() ? "SELECT OBJECT_ID(N'dbo." : ", OBJECT_ID(N'dbo.") + names.back() + "')";
        }
    }
    const RowSet found = rowsOf(session, statement);
    MissingObjects missing;
    for (std::size_t i = 0; i < names.size(); ++i) {
        if (found.column(i).isNull(0)) missing.names.push_back(names[i]);
    }
    missing.all = missing.names.size() == names.size();
    return missing;
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
