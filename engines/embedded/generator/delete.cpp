#include "engines/embedded/generator/sql_writer.h"

namespace basalt::embedded {

void SqlWriter::remove(const BoundDelete& remove) {
    with(remove.with);
    const Table& table = *remove.table;
    *this << "DELETE FROM " << table.sqlName();
    if (remove.rows != nullptr) {
        *this << " WHERE (";
        *this << table.rowNumber;
        for (std::size_t i = 0; i < table.key.size() && table.rowNumber.empty(); ++i)
            *this << (i == 0 ? "" : ", ") << sqlQuoted(table.columns[table.key[i]].name);
        *this << ") IN (";
        query(*remove.rows);
        *this << ")";
    } else {
        *this << " AS " << remove.alias;
        if (remove.where != nullptr) {
            *this << " WHERE ";
            expression(*remove.where);
        }
    }
    returning(remove.returning);
}

}  // namespace basalt::embedded
