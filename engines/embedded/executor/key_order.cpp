#include "engines/embedded/executor/key_order.h"

#include "engines/embedded/catalog/catalog.h"

namespace basalt::embedded {

namespace {

constexpr std::string_view kScan = "SCAN ";
constexpr std::string_view kThrough = " USING INDEX ";  // not a covering one, which has all that is wanted of the rows

// The index that is the table's key, quoted; empty when the table is not stored by one. `table` is schema."name".
std::string keyIndex(SqliteDatabase& database, std::string_view table) {
    const std::size_t dot = table.find('.');
    if (dot == std::string_view::npos) return {};
    SqliteStatement indexes = database.prepare("PRAGMA " + std::string(table.substr(0, dot + 1)) + "index_list(" +
                                               std::string(table.substr(dot + 1)) + ")");
    while (indexes.step()) {
        if (indexes.textAt(3) == "pk") return sqlQuoted(indexes.textAt(1));
    }
    return {};
}

// The alias of a table that is read from end to end through an index; empty for other steps.
std::string_view scannedThrough(std::string_view step) {
    if (!step.starts_with(kScan)) return {};
    const std::size_t end = step.find(kThrough);
    return end == std::string_view::npos ? std::string_view() : step.substr(kScan.size(), end - kScan.size());
}

}  // namespace

bool keepKeyOrder(SqliteDatabase& database, SqlWriter& writer, const std::function<void(SqlWriter&)>& write) {
    if (!writer.joins() || writer.arranges()) return false;
    SqlWriter::Indexes keys;
    SqliteStatement steps = database.prepare("EXPLAIN QUERY PLAN " + writer.sql());
    while (steps.step()) {
        const std::string step = steps.textAt(3);
        const auto table = writer.tables().find(scannedThrough(step));
        if (table == writer.tables().end()) continue;
        if (std::string key = keyIndex(database, table->second); !key.empty())
            keys.emplace(table->first, std::move(key));
    }
    if (keys.empty()) return false;
    writer = SqlWriter(std::move(keys));
    write(writer);
    return true;
}

}  // namespace basalt::embedded
