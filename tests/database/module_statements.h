// The statements that the module sends, with plausible values in them, and what they find in the demo company: one
// table for every engine.
//
//   for (const ModuleStatement& each : tagStatements()) session.run(each.text);
#pragma once

#include <cstdint>
#include <ostream>
#include <vector>

#include "ado/session.h"

namespace basalt::host {

inline constexpr std::int64_t kNoRows = -1;  // a command

struct ModuleStatement {
    const char* name;
    const char* text;
    std::int64_t rows;  // of its last result, or kNoRows

    friend void PrintTo(const ModuleStatement& statement, std::ostream* out) { *out << statement.text; }
};

// The rows of the batch's last result set; kNoRows when it has none.
[[nodiscard]] inline std::int64_t lastRowCount(const BatchResult& batch) {
    std::int64_t rows = kNoRows;
    for (const StatementResult& result : batch.results) {
        if (result.rows) rows = static_cast<std::int64_t>(result.rows->rowCount());
    }
    return rows;
}

[[nodiscard]] std::vector<ModuleStatement> priceStatements();
[[nodiscard]] std::vector<ModuleStatement> categoryStatements();
[[nodiscard]] std::vector<ModuleStatement> tagStatements();
[[nodiscard]] std::vector<ModuleStatement> selectedListStatements();
[[nodiscard]] std::vector<ModuleStatement> goodStatements();
[[nodiscard]] std::vector<ModuleStatement> goodDetailStatements();
[[nodiscard]] std::vector<ModuleStatement> personStatements();
[[nodiscard]] std::vector<ModuleStatement> voucherStatements();

}  // namespace basalt::host
