#include "engines/embedded/generator/sql_writer.h"

namespace basalt::embedded {

void SqlWriter::insert(const BoundInsert& insert) {
    with(insert.with);
    const Table& table = *insert.table;
    *this << "INSERT INTO " << table.sqlName();
    if (insert.columns.empty() && !insert.generatesIdentity) {
        *this << " DEFAULT VALUES";
        returning(insert.returning);
        return;
    }
    *this << "(";
    for (std::size_t i = 0; i < insert.columns.size(); ++i)
        *this << (i == 0 ? "" : ", ") << sqlQuoted(table.columns[insert.columns[i]].name);
    if (insert.generatesIdentity)
        *this << (insert.columns.empty() ? "" : ", ") << sqlQuoted(table.identityColumn()->name);
    *this << ") ";
    const auto values = [&](const std::vector<BoundPtr>& row) {
        list(row);
        if (insert.generatesIdentity) *this << (row.empty() ? "" : ", ") << "t_identity()";
    };
    if (insert.query != nullptr) {
        *this << "SELECT ";
        values(insert.values);
        *this << " FROM (";
        query(*insert.query);
        *this << ") AS q";
    } else {
        for (std::size_t i = 0; i < insert.rows.size(); ++i) {
            *this << (i == 0 ? "VALUES (" : ", (");
            values(insert.rows[i]);
            *this << ")";
        }
    }
    returning(insert.returning);
}

}  // namespace basalt::embedded
