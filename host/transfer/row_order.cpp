#include "host/transfer/row_order.h"

#include <map>

#include "ado/names.h"

namespace basalt::host {

namespace {

// The parents of each row by the references of the table to itself.
class Parents {
public:
    Parents(const TableSchema& table, const RowSet& rows) : rows_(rows), parents_(rows.rowCount()) {
        for (const ForeignKeySchema& reference : table.foreignKeys) {
            if (sameName(reference.referencedTable, table.name)) add(reference);
        }
    }

    [[nodiscard]] const std::vector<std::size_t>& of(std::size_t row) const { return parents_[row]; }

private:
    void add(const ForeignKeySchema& reference) {
        const std::vector<std::size_t> referenced = columnsOf(reference.referencedColumns);
        const std::vector<std::size_t> referring = columnsOf(reference.columns);
        std::map<std::string, std::size_t> byKey;
        for (std::size_t row = 0; row < rows_.rowCount(); ++row)
            byKey.emplace(keyOf(referenced, row), row);
        for (std::size_t row = 0; row < rows_.rowCount(); ++row) {
            const auto parent = byKey.find(keyOf(referring, row));
            if (parent != byKey.end() && parent->second != row) parents_[row].push_back(parent->second);
        }
    }

    [[nodiscard]] std::vector<std::size_t> columnsOf(const std::vector<std::string>& names) const {
        std::vector<std::size_t> columns;
        for (const std::string& name : names) {
            const int index = rows_.indexOf(name);
            if (index >= 0) columns.push_back(static_cast<std::size_t>(index));
        }
        return columns;
    }

    // Texts refer to each other without regard to case.
    [[nodiscard]] std::string keyOf(const std::vector<std::size_t>& columns, std::size_t row) const {
        std::string key;
        for (const std::size_t column : columns) {
            if (rows_.column(column).isNull(row)) return "null";
            key += foldName(toText(rows_.column(column).valueAt(row))) + '\0';
        }
        return key;
    }

    const RowSet& rows_;
    std::vector<std::vector<std::size_t>> parents_;
};

}  // namespace

std::vector<std::size_t> rowOrder(const TableSchema& table, const RowSet& rows) {
    const Parents parents(table, rows);
    std::vector<std::size_t> order;
    order.reserve(rows.rowCount());
    std::vector<bool> entered(rows.rowCount());
    struct Step {
        std::size_t row;
        std::size_t nextParent;
    };
    std::vector<Step> path;  // not a recursion: a chain of rows may be as long as the table
    for (std::size_t start = 0; start < rows.rowCount(); ++start) {
        if (entered[start]) continue;
        entered[start] = true;
        path.push_back({start, 0});
        while (!path.empty()) {
            Step& step = path.back();
            const std::vector<std::size_t>& ahead = parents.of(step.row);
            if (step.nextParent == ahead.size()) {
                order.push_back(step.row);
                path.pop_back();
                continue;
            }
            const std::size_t parent = ahead[step.nextParent++];
            if (entered[parent]) continue;
            entered[parent] = true;
            path.push_back({parent, 0});
        }
    }
    return order;
}

}  // namespace basalt::host
