#include "host/transfer/database_load.h"

#include "host/services/numbered_error.h"
#include "host/services/script_batches.h"
#include "host/services/script_lines.h"
#include "host/services/sql_access.h"

namespace basalt::host {

namespace {

void runBatch(Session& session, const BatchSplitter::Batch& batch, const std::string& name) {
    const std::string place =
        (name.empty() ? "" : name + ": ") + "in the batch that begins at line " + std::to_string(batch.firstLine);
    try {
        static_cast<void>(session.run(batch.text));
    } catch (const DatabaseError& error) {
        throw DatabaseError(error.category(), error.sqlState(), error.nativeCode(),
                            place + ": " + numbered(error).what(), error.statement());
    }
    if (!session.inTransaction()) throw UsageError(place + ": the script may not end the transaction that it runs in");
}

}  // namespace

std::size_t loadScript(Session& session, std::istream& script, const std::string& name) {
    HostTransaction whole(session);
    BatchSplitter splitter;
    std::size_t count = 0;
    const auto run = [&](const std::optional<BatchSplitter::Batch>& batch) {
        for (std::size_t i = 0; batch && i < batch->times; ++i) {
            runBatch(session, *batch, name);
            ++count;
        }
    };
    ScriptLines lines(script);
    for (std::string line; lines.next(line);)
        run(splitter.add(line));
    run(splitter.finish());
    if (integerAt(rowsOf(session, "SELECT @@TRANCOUNT"), 0, 0) > 1)
        throw UsageError((name.empty() ? "" : name + ": ") + "the script begins a transaction and does not end it");
    whole.commit();
    return count;
}

}  // namespace basalt::host
