#include "engines/embedded/catalog/catalog.h"
#include "engines/embedded/generator/sql_writer.h"

namespace basalt::embedded {

void SqlWriter::with(const std::vector<BoundCommonTable>& tables) {
    if (tables.empty()) return;
    // T-SQL has no word RECURSIVE; SQLite takes it for tables that are not recursive too.
    *this << "WITH RECURSIVE ";
    for (std::size_t i = 0; i < tables.size(); ++i) {
        if (i > 0) *this << ", ";
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
    if (query.limit != nullptr) {
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
    // SQLite reads set operations from left to right, all of one rank.
    this->body(*body.left);
    *this << " " << body.operation << " ";
    if (body.right->select != nullptr) return this->body(*body.right);
    *this << "SELECT * FROM (";
    this->body(*body.right);
    *this << ")";
}

void SqlWriter::select(const BoundSelect& select) {
    *this << (select.distinct ? "SELECT DISTINCT " : "SELECT ");
    for (std::size_t i = 0; i < select.items.size(); ++i) {
        if (i > 0) *this << ", ";
        collated(*select.items[i].expression);
        *this << " AS c" << std::to_string(i + 1);
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
            *this << source.table << " AS " << source.alias;
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
        case SourceKind::Join: {
            this->source(*source.left);
            // SQLite's CROSS JOIN would forbid the planner to choose the order of the tables.
            *this << " " << (source.join == "CROSS JOIN" ? "JOIN" : source.join) << " ";
            const bool nested = source.right->kind == SourceKind::Join;
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

void SqlWriter::returning(const std::vector<BoundItem>& items) {
    for (std::size_t i = 0; i < items.size(); ++i) {
        *this << (i == 0 ? " RETURNING " : ", ");
        expression(*items[i].expression);
    }
}

}  // namespace basalt::embedded
