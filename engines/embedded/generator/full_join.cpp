// FULL JOIN. SQLite 3.40 has one of its own, but loses conditions beside it in some queries, and looks nothing up for
// it. So both sides are worked out first, then their LEFT JOIN, and the rows are those and then the rows of the right
// side that are not among them:
//
//   (WITH s3l(c1, ...) AS MATERIALIZED (SELECT s1."K", ... FROM T AS s1),
//         s3r(c1, ..., n) AS MATERIALIZED (SELECT s2."K", ..., row_number() OVER () FROM U AS s2),
//         s3q(c1, ..., n) AS MATERIALIZED (SELECT s3l.*, s3r.* FROM s3l LEFT JOIN s3r ON condition),
//         s3p(c1, ...) AS MATERIALIZED (SELECT c1, ... FROM s3q UNION ALL
//           SELECT NULL, ..., c1, ... FROM s3r WHERE n NOT IN (SELECT n FROM s3q WHERE n IS NOT NULL))
//    SELECT * FROM s3p) AS s3
//
// Expressions that name s1."K" have to say s3.c1 instead, and in the condition s3l.c1.
//
// SQLite reads a common table anew at each place that names it, with all that it names in turn. A join that holds many
// others is therefore left to SQLite's own FULL JOIN, which does no harm between two tables that are worked out before
// and in one that is worked out after it.
#include <utility>

#include "engines/embedded/generator/sql_writer.h"
#include "engines/embedded/runtime/sql_error.h"

namespace basalt::embedded {

namespace {

// As many as the tables that SQLite joins by itself.
constexpr std::size_t kMostFullJoins = 64;
constexpr std::size_t kMostOfOwn = 5;

std::size_t fullJoinsIn(const BoundSource& source) {
    if (source.kind != SourceKind::Join) return 0;
    return fullJoinsIn(*source.left) + fullJoinsIn(*source.right) + (source.join == "FULL JOIN" ? 1 : 0);
}

// c1, c2, ...
std::string columnList(std::size_t count) {
    std::string list;
    for (std::size_t i = 1; i <= count; ++i)
        list += (i == 1 ? "c" : ", c") + std::to_string(i);
    return list;
}

}  // namespace

void SqlWriter::rename(const std::vector<SourceColumnName>& columns, const std::string& table, std::size_t first) {
    for (std::size_t i = 0; i < columns.size(); ++i)
        renamed_[columns[i].table + "." + columns[i].name] = table + ".c" + std::to_string(first + i);
}

void SqlWriter::renameJoined(const BoundSource& source) {
    if (source.kind != SourceKind::Join) return;
    if (source.join == "FULL JOIN") {
        rename(source.leftColumns, source.alias, 1);
        rename(source.rightColumns, source.alias, source.leftColumns.size() + 1);
        return;
    }
    renameJoined(*source.left);
    renameJoined(*source.right);
}

void SqlWriter::fullJoinSide(const BoundSource& side, const std::vector<SourceColumnName>& columns,
                             const std::string& name, bool numbered) {
    *this << name << "(" << columnList(columns.size()) << (numbered ? ", n" : "") << ") AS MATERIALIZED (SELECT ";
    // What is renamed outside of the join goes by its own name in here, unless a FULL JOIN in here renames it.
    for (const SourceColumnName& column : columns)
        renamed_.erase(column.table + "." + column.name);
    renameJoined(side);
    for (std::size_t i = 0; i < columns.size(); ++i) {
        const std::string plain = columns[i].table + "." + columns[i].name;
        const auto renamed = renamed_.find(plain);
        *this << (i == 0 ? "" : ", ") << (renamed == renamed_.end() ? plain : renamed->second);
    }
    *this << (numbered ? ", row_number() OVER () FROM " : " FROM ");
    source(side);
    *this << ")";
}

// Also those of the FULL JOINs inside of it, ahead of it: in each other they would soon be too deep for SQLite.
void SqlWriter::fullJoinTables(const BoundSource& source) {
    if (source.kind != SourceKind::Join) return;
    fullJoinTables(*source.left);
    fullJoinTables(*source.right);
    if (source.join != "FULL JOIN") return;
    if (fullJoins_.size() == kMostFullJoins)
        throwSqlError(8631,
                      "A query joins too many tables: " + std::to_string(kMostFullJoins) + " FULL JOINs at most.");
    const std::string left = source.alias + "l";
    const std::string right = source.alias + "r";
    const std::size_t leftCount = source.leftColumns.size();
    const std::string all = columnList(leftCount + source.rightColumns.size());
    const bool own = fullJoinsIn(source) <= kMostOfOwn;
    *this << (fullJoins_.empty() ? "" : ", ");
    fullJoinSide(*source.left, source.leftColumns, left, false);
    *this << ", ";
    fullJoinSide(*source.right, source.rightColumns, right, own);
    rename(source.leftColumns, left, 1);
    rename(source.rightColumns, right, 1);
    *this << ", " << source.alias << (own ? "q(" : "p(") << all << (own ? ", n" : "") << ") AS MATERIALIZED (SELECT "
          << left << ".*, " << right << ".* FROM " << left << (own ? " LEFT JOIN " : " FULL JOIN ") << right << " ON ";
    expression(*source.condition);
    *this << ")";
    if (own) {
        *this << ", " << source.alias << "p(" << all << ") AS MATERIALIZED (SELECT " << all << " FROM " << source.alias
              << "q UNION ALL SELECT ";
        for (std::size_t i = 0; i < leftCount; ++i)
            *this << "NULL, ";
        *this << columnList(source.rightColumns.size()) << " FROM " << right << " WHERE n NOT IN (SELECT n FROM "
              << source.alias << "q WHERE n IS NOT NULL))";
    }
    fullJoins_.insert(source.alias);
}

void SqlWriter::fullJoin(const BoundSource& join) {
    if (fullJoins_.find(join.alias) != fullJoins_.end()) {
        *this << join.alias << "p AS " << join.alias;
        return;
    }
    const std::set<std::string, std::less<>> around = std::exchange(fullJoins_, {});
    *this << "(WITH ";
    fullJoinTables(join);
    *this << " SELECT * FROM " << join.alias << "p) AS " << join.alias;
    renameJoined(join);
    fullJoins_ = around;
}

}  // namespace basalt::embedded
