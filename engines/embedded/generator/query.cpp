#include <algorithm>

#include "engines/embedded/catalog/catalog.h"
#include "engines/embedded/executor/row_source.h"
#include "engines/embedded/generator/sql_writer.h"
#include "engines/embedded/runtime/sql_error.h"

namespace basalt::embedded {

namespace {

constexpr std::string_view kUnionAll = "UNION ALL";
constexpr std::size_t kMostTerms = 400;

}  // namespace

void SqlWriter::with(const std::vector<BoundCommonTable>& tables) {
    if (tables.empty()) return;
    // T-SQL has no word RECURSIVE; SQLite takes it for tables that are not recursive too.
    *this << "WITH RECURSIVE ";
    for (std::size_t i = 0; i < tables.size(); ++i) {
        if (i > 0) *this << ", ";
        commonTables_.push_back(tables[i].name);
        *this << tables[i].name << "(";
        for (std::size_t c = 0; c < tables[i].query->columns.size(); ++c)
            *this << (c == 0 ? "c" : ", c") << std::to_string(c + 1);
        *this << (tables[i].materialized ? ") AS MATERIALIZED (" : ") AS (");
        query(*tables[i].query);
        *this << ")";
    }
    *this << " ";
}

void SqlWriter::query(const BoundQuery& query) {
    with(query.with);
    arranges_ = arranges_ || !query.orderBy.empty();
    if (query.withTies) return queryWithTies(query);
    body(*query.body);
    for (std::size_t i = 0; i < query.orderBy.size(); ++i) {
        *this << (i == 0 ? " ORDER BY " : ", ");
        const BoundOrdering& order = query.orderBy[i];
        if (order.position != 0) {
            *this << std::to_string(order.position);
        } else {
            collated(*order.expression);
        }
        if (order.descending) *this << " DESC";
    }
    if (query.limit != nullptr && query.percent) {
        *this << " LIMIT (SELECT t_percent(count(*), ";
        expression(*query.limit);
        *this << ") FROM (";
        body(*query.body);
        *this << "))";
    } else if (query.limit != nullptr) {
        *this << " LIMIT ";
        expression(*query.limit);
    } else if (query.offset != nullptr) {
        *this << " LIMIT -1";
    }
    if (query.offset != nullptr) {
        *this << " OFFSET ";
        expression(*query.offset);
    }
}

void SqlWriter::body(const BoundBody& body) {
    if (body.select != nullptr) {
        if (body.select->limit == nullptr) return select(*body.select);
        *this << "SELECT * FROM (";
        select(*body.select);
        *this << " LIMIT ";
        expression(*body.select->limit);
        *this << ")";
        return;
    }
    if (body.operation == kUnionAll) return unionAll(body);
    arranges_ = true;
    // SQLite reads set operations from left to right, all of one rank.
    this->body(*body.left);
    *this << " " << body.operation << " ";
    term(*body.right);
}

void SqlWriter::term(const BoundBody& body) {
    if (body.select != nullptr) return this->body(body);
    *this << "SELECT * FROM (";
    this->body(body);
    *this << ")";
}

// SQLite takes 500 terms in a row, so that more of them are joined in groups.
void SqlWriter::unionAll(const BoundBody& body) {
    std::vector<const BoundBody*> terms;
    const BoundBody* first = &body;
    for (; first->operation == kUnionAll; first = first->left.get())
        terms.push_back(first->right.get());
    std::reverse(terms.begin(), terms.end());
    const bool grouped = terms.size() >= kMostTerms;
    if (grouped) *this << "SELECT * FROM (";
    this->body(*first);
    for (std::size_t i = 0; i < terms.size(); ++i) {
        *this << (grouped && (i + 1) % kMostTerms == 0 ? ") UNION ALL SELECT * FROM (" : " UNION ALL ");
        term(*terms[i]);
    }
    if (grouped) *this << ")";
}

// The rows that come before or with the last one by their rank.
void SqlWriter::queryWithTies(const BoundQuery& query) {
    const std::size_t count = query.body->select->items.size();
    *this << "SELECT ";
    for (std::size_t i = 1; i <= count; ++i)
        *this << (i == 1 ? "c" : ", c") << std::to_string(i);
    *this << " FROM (SELECT *, rank() OVER (ORDER BY ";
    for (std::size_t i = 0; i < query.orderBy.size(); ++i) {
        const std::size_t position = query.orderBy[i].position;
        *this << (i == 0 ? "" : ", ") << (position != 0 ? "c" : "k") << std::to_string(position != 0 ? position : i + 1)
              << (query.orderBy[i].descending ? " DESC" : "");
    }
    *this << ") AS r FROM (";
    select(*query.body->select, query.orderBy);
    *this << ")) WHERE r <= ";
    expression(*query.limit);
    *this << " ORDER BY r";
}

void SqlWriter::select(const BoundSelect& select, const std::vector<BoundOrdering>& more) {
    if (select.from != nullptr) renameJoined(*select.from);
    *this << (select.distinct ? "SELECT DISTINCT " : "SELECT ");
    arranges_ = arranges_ || select.distinct || select.aggregated || !select.groupBy.empty();
    // HAVING makes one group of all rows, for SQLite only when an item aggregates.
    const bool oneGroup = select.having != nullptr && select.groupBy.empty();
    for (std::size_t i = 0; i < select.items.size(); ++i) {
        if (i > 0) *this << ", ";
        const bool aggregates = oneGroup && i == 0;
        if (aggregates) {
            *this << "CASE WHEN count(*) >= 0 THEN ";
            expression(*select.items[i].expression);
            *this << " END";
            if (select.items[i].expression->type.isText())
                *this << " COLLATE " << sqliteCollation(select.items[i].expression->order);
        } else {
            collated(*select.items[i].expression);
        }
        *this << " AS c" << std::to_string(i + 1);
    }
    for (std::size_t i = 0; i < more.size(); ++i) {
        if (more[i].expression == nullptr) continue;
        *this << ", ";
        collated(*more[i].expression);
        *this << " AS k" << std::to_string(i + 1);
    }
    if (select.from != nullptr) {
        *this << " FROM ";
        source(*select.from);
    }
    if (select.where != nullptr) {
        *this << " WHERE ";
        expression(*select.where);
    }
    for (std::size_t i = 0; i < select.groupBy.size(); ++i) {
        *this << (i == 0 ? " GROUP BY " : ", ");
        collated(*select.groupBy[i]);
    }
    if (select.having != nullptr) {
        *this << " HAVING ";
        expression(*select.having);
    }
}

void SqlWriter::source(const BoundSource& source) {
    switch (source.kind) {
        case SourceKind::Table:
        case SourceKind::CommonTable:
            if (outer_ != nullptr && source.kind == SourceKind::CommonTable &&
                std::find(commonTables_.begin(), commonTables_.end(), source.table) == commonTables_.end()) {
                throwSqlError(40517, "A common table expression cannot be used inside of APPLY in this database.");
            }
            *this << source.table << " AS " << source.alias;
            if (source.kind == SourceKind::Table) tables_.emplace(source.alias, source.table);
            if (const auto index = indexes_.find(source.alias); index != indexes_.end())
                *this << " INDEXED BY " << index->second;
            return;
        case SourceKind::Query:
            *this << "(";
            query(*source.query);
            *this << ") AS " << source.alias;
            return;
        case SourceKind::Values:
            *this << "(VALUES ";
            for (std::size_t i = 0; i < source.rows.size(); ++i) {
                *this << (i == 0 ? "(" : ", (");
                list(source.rows[i]);
                *this << ")";
            }
            *this << ") AS " << source.alias;
            return;
        case SourceKind::Rows:
            return rowSource(source);
        case SourceKind::Join: {
            joins_ = true;
            if (source.join == "FULL JOIN") return fullJoin(source);
            this->source(*source.left);
            // SQLite's CROSS JOIN would forbid the planner to choose the order of the tables.
            *this << " " << (source.join == "CROSS JOIN" ? "JOIN" : source.join) << " ";
            const bool nested = source.right->kind == SourceKind::Join && source.right->join != "FULL JOIN";
            if (nested) *this << "(";
            this->source(*source.right);
            if (nested) *this << ")";
            if (source.condition != nullptr) {
                *this << " ON ";
                expression(*source.condition);
            }
            return;
        }
    }
}

void SqlWriter::rowSource(const BoundSource& source) {
    readsUnseen_ = true;
    SqlWriter inner;
    std::string text = source.table;
    if (source.query != nullptr) {
        inner.outer_ = &source.outer;
        inner.query(*source.query);
        text = inner.sql_;
        if (inner.lifted_.size() > kMostRowArguments)
            throwSqlError(40517, "This APPLY takes more values from outside than this database supports.");
    }
    std::vector<const BoundExpression*> arguments;
    for (const BoundPtr& argument : source.arguments)
        arguments.push_back(argument.get());
    arguments.insert(arguments.end(), inner.lifted_.begin(), inner.lifted_.end());
    const bool packed = arguments.size() > kMostPlainArguments;
    *this << (packed ? "t_many_rows(" : "t_rows(") << sqlText(source.rowKind) << ", " << sqlText(text);
    for (std::size_t i = 0; i < arguments.size(); ++i) {
        const bool begins = packed && i % kPackedTogether == 0;
        const bool ends = packed && ((i + 1) % kPackedTogether == 0 || i + 1 == arguments.size());
        *this << ", " << (begins ? "t_packed(" : "");
        expression(*arguments[i]);
        if (ends) *this << ")";
    }
    *this << ") AS " << source.alias;
}

void SqlWriter::returning(const std::vector<BoundItem>& items) {
    for (std::size_t i = 0; i < items.size(); ++i) {
        *this << (i == 0 ? " RETURNING " : ", ");
        expression(*items[i].expression);
    }
}

}  // namespace basalt::embedded
