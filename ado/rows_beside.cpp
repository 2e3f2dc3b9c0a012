#include "ado/rows_beside.h"

#include "ado/data_set.h"

namespace basalt {

RowsBeside::RowsBeside(TDataSet& shown) : arriving_(roomBeside(shown.rowSet().memory()), [&shown] { shown.Close(); }) {}

}  // namespace basalt
