#include "bench/value_bytes.h"

namespace basalt::bench {

std::size_t valueBytes(const RowSet& rows) {
    std::size_t bytes = 0;
    for (std::size_t i = 0; i < rows.columnCount(); ++i) {
        const Column& column = rows.column(i);
        switch (column.info().type) {
            case FieldType::Boolean:
            case FieldType::TinyInt:
                bytes += column.size();
                break;
            case FieldType::SmallInt:
                bytes += column.size() * 2;
                break;
            case FieldType::Integer:
            case FieldType::Date:
                bytes += column.size() * 4;
                break;
            case FieldType::Text:
            case FieldType::Binary:
                for (std::size_t row = 0; row < column.size(); ++row)
                    bytes += column.bytesAt(row).size();
                break;
            default:
                bytes += column.size() * 8;
        }
    }
    return bytes;
}

}  // namespace basalt::bench
