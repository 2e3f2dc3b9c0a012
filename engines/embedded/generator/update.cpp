#include "engines/embedded/generator/sql_writer.h"

namespace basalt::embedded {

void SqlWriter::update(const BoundUpdate& update) {
    with(update.with);
    const Table& table = *update.table;
    *this << "UPDATE " << table.sqlName() << " AS " << update.alias << " SET ";
    const std::size_t keys = table.rowNumber.empty() ? table.key.size() : 1;
    for (std::size_t i = 0; i < update.columns.size(); ++i) {
        *this << (i == 0 ? "" : ", ") << sqlQuoted(table.columns[update.columns[i]].name) << " = ";
        if (update.rows != nullptr) {
            *this << "q.c" << std::to_string(keys + i + 1);
        } else {
            expression(*update.values[i]);
        }
    }
    if (update.rows != nullptr) {
        // The rows to change are worked out first, with their key and their new values.
        *this << " FROM (";
        query(*update.rows);
        *this << ") AS q WHERE ";
        for (std::size_t i = 0; i < keys; ++i) {
            const std::string name =
                table.rowNumber.empty() ? sqlQuoted(table.columns[table.key[i]].name) : table.rowNumber;
            *this << (i == 0 ? "" : " AND ") << update.alias << "." << name << " = q.c" << std::to_string(i + 1);
        }
    } else if (update.where != nullptr) {
        *this << " WHERE ";
        expression(*update.where);
    }
    returning(update.returning);
}

}  // namespace basalt::embedded
