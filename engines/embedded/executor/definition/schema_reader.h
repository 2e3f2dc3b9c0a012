// The tables and modules of the database for tools outside of the engine.
#pragma once

#include "ado/schema.h"
#include "engines/embedded/catalog/catalog.h"
#include "engines/embedded/catalog/index_condition.h"

namespace basalt::embedded {

// Without temporary tables and the engine's own.
[[nodiscard]] DatabaseSchema readSchema(SqliteDatabase& database, Catalog& catalog);

}  // namespace basalt::embedded
