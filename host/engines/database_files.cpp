#include "host/engines/database_files.h"

#include <filesystem>
#include <system_error>

#include "ado/error.h"
#include "host/services/path_text.h"

namespace basalt::host {

namespace fs = std::filesystem;

namespace {

// Links followed as far as there is something.
fs::path resolved(const fs::path& path) {
    std::error_code failure;
    fs::path result = fs::weakly_canonical(fs::absolute(path, failure), failure);
    return failure ? path : result;
}

bool same(const fs::path& one, const fs::path& other) {
    std::error_code failure;
    return one == other || fs::equivalent(one, other, failure);
}

}  // namespace

void requireOtherFile(const DatabaseUrl& database, const std::string& file) {
    if (database.engine != EngineKind::Embedded || database.inMemory()) return;
    // The engine keeps its own beside the file itself, not beside a link to it.
    const fs::path main = resolved(pathFromText(database.target));
    const fs::path other = resolved(pathFromText(file));
    for (const char* suffix : {"", "-wal", "-shm", "-journal"}) {
        fs::path own = main;
        own += suffix;
        if (same(other, own))
            throw UsageError("the file " + file + " belongs to the database " + database.display() + " itself");
    }
}

}  // namespace basalt::host
