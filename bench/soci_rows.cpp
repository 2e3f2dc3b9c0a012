#include "bench/soci_rows.h"

#include <ctime>
#include <vector>

namespace basalt::bench {

namespace {

struct SociColumn {
    std::vector<long long> integers;
    std::vector<double> reals;
    std::vector<std::string> texts;
    std::vector<std::tm> dates;
    std::vector<bool> nulls;
};

template <typename T>
void take(const soci::row& row, std::size_t i, bool null, std::vector<T>& into) {
    into.push_back(null ? T() : row.get<T>(i));
}

void take(const soci::row& row, std::size_t i, SociColumn& column) {
    const bool null = row.get_indicator(i) == soci::i_null;
    column.nulls.push_back(null);
    switch (row.get_properties(i).get_data_type()) {
        case soci::dt_integer:
            column.integers.push_back(null ? 0 : row.get<int>(i));
            break;
        case soci::dt_long_long:
        case soci::dt_unsigned_long_long:
            take(row, i, null, column.integers);
            break;
        case soci::dt_double:
            take(row, i, null, column.reals);
            break;
        case soci::dt_date:
            take(row, i, null, column.dates);
            break;
        default:
            take(row, i, null, column.texts);
            break;
    }
}

}  // namespace

std::size_t readRows(soci::session& session, const std::string& statement) {
    const soci::rowset<soci::row> rows = session.prepare << statement;
    std::vector<SociColumn> columns;
    std::size_t count = 0;
    for (const soci::row& row : rows) {
        columns.resize(row.size());
        for (std::size_t i = 0; i < row.size(); ++i)
            take(row, i, columns[i]);
        ++count;
    }
    return count;
}

}  // namespace basalt::bench
