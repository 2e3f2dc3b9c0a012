#include "engines/embedded/integrity.h"

#include <map>

#include "engines/embedded/catalog/catalog.h"
#include "engines/embedded/catalog/text_search.h"

namespace basalt::embedded {

namespace {

// SQLite 3.40 misreads the columns that follow a key of several columns in a table stored by its key, and finds NULL
// where there is none. The rows themselves decide; typeof, because IS NULL on such a column is not even evaluated.
class NullReports {
public:
    explicit NullReports(SqliteDatabase& database) : database_(database) {}

    // Whether the line tells of a NULL in a column that holds none.
    bool isMistaken(const std::string& line) {
        constexpr std::string_view prefix = "NULL value in ";
        if (!line.starts_with(prefix)) return false;
        const std::string place = line.substr(prefix.size());
        const auto known = mistaken_.find(place);
        if (known != mistaken_.end()) return known->second;
        return mistaken_[place] = !holdsNull(place);
    }

private:
    // Names may hold points themselves, so every division of the place that names a column is looked at.
    bool holdsNull(const std::string& place) {
        bool found = false;
        for (std::size_t dot = place.find('.'); dot != std::string::npos; dot = place.find('.', dot + 1)) {
            const std::string table = place.substr(0, dot);
            const std::string column = place.substr(dot + 1);
            SqliteStatement known =
                database_.prepare("SELECT 1 FROM pragma_table_xinfo(" + sqlText(table) + ") WHERE name = ?1");
            known.bind(1, std::string_view(column));
            if (!known.step()) continue;
            found = true;
            SqliteStatement rows = database_.prepare("SELECT 1 FROM main." + sqlQuoted(table) + " WHERE typeof(" +
                                                     sqlQuoted(column) + ") = 'null' LIMIT 1");
            if (rows.step()) return true;
        }
        return !found;
    }

    SqliteDatabase& database_;
    std::map<std::string, bool> mistaken_;  // by table and column
};

// As many as a person can use; the rest are of the same kind.
constexpr std::size_t kMostProblems = 100;

}  // namespace

std::vector<std::string> findProblems(SqliteDatabase& database) {
    std::vector<std::string> problems;
    try {
        NullReports nulls(database);
        // Without a bound of its own, which mistaken reports would use up.
        SqliteStatement check = database.prepare("PRAGMA integrity_check(2000000000)");
        while (problems.size() < kMostProblems && check.step()) {
            const std::string line = check.textAt(0);
            if (line != "ok" && !nulls.isMistaken(line)) problems.push_back(line);
        }
        check.reset();
        // References of damaged tables would only repeat what is known.
        if (!problems.empty()) return problems;
        SqliteStatement references = database.prepare("PRAGMA foreign_key_check");
        while (problems.size() < kMostProblems && references.step()) {
            problems.push_back("A row of " + references.textAt(0) + " refers to a row of " + references.textAt(2) +
                               " that is not there");
        }
        references.reset();
        Catalog catalog(database);
        checkTextSearch(database, catalog, problems);
    } catch (const DatabaseError& error) {
        if (error.category() != ErrorCategory::Corrupt) throw;
        problems.emplace_back(error.what());
    }
    return problems;
}

}  // namespace basalt::embedded
