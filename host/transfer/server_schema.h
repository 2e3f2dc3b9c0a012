// What a database on SQL Server is made of, read from its catalog views.
//
//   const DatabaseSchema schema = readServerSchema(session);
#pragma once

#include "ado/schema.h"
#include "ado/session.h"

namespace basalt::host {

// The schema dbo, without what the server itself has made there. DatabaseError as the session throws it. Triggers
// and storage are left out: nothing of them changes what statements mean.
[[nodiscard]] DatabaseSchema readServerSchema(Session& session);

}  // namespace basalt::host
