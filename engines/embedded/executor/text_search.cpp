// Whether a query reads texts through or looks them up depends on the patterns of each run: it is planned both ways.
#include "engines/embedded/executor/executor.h"
#include "engines/embedded/generator/sql_writer.h"

namespace basalt::embedded {

namespace {

// From so many texts on, reading in the table's order is no slower than going from one to the other.
constexpr const char* kTooMany = "1000";

}  // namespace

void Executor::planTextSearch(Plan& plan, const BoundQuery& query, const SqlWriter& written) {
    if (written.textSearches().empty()) return;
    SqlWriter writer(SqlWriter::Texts::LookUp);
    writer.query(query);
    auto search = std::make_unique<TextSearch>();
    search->statement = database_.prepare(writer.sql());
    search->slots = writer.takeSlots();
    for (const BoundExpression* like : written.textSearches()) {
        const std::string counted = "(SELECT count(*) FROM (SELECT 1 FROM " + like->search->pieces +
                                    " WHERE piece >= t_needle(?1) AND piece < t_needle_end(?1) LIMIT " + kTooMany +
                                    ")) < " + kTooMany;
        search->probes.push_back(
            {database_.prepare("SELECT t_needle(?1) IS NOT NULL AND " + counted), like->arguments[1]->slot});
    }
    plan.search = std::move(search);
}

void Executor::chooseTextSearch(Plan& plan, const Environment& environment) {
    TextSearch& search = *plan.search;
    bool few = true;
    for (std::size_t i = 0; few && i < search.probes.size(); ++i) {
        TextSearch::Probe& probe = search.probes[i];
        bindSlot(probe.statement, 1, probe.pattern, environment);
        sqlite3_stmt* statement = probe.statement.handle();
        // What keeps it from counting (the pieces may be gone) is nothing to the query, which can do without.
        few = sqlite3_step(statement) == SQLITE_ROW && sqlite3_column_int(statement, 0) != 0;
        sqlite3_reset(statement);
    }
    if (few == search.inUse) return;
    std::swap(plan.statement, search.statement);
    std::swap(plan.slots, search.slots);
    search.inUse = few;
}

}  // namespace basalt::embedded
