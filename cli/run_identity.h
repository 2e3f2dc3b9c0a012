// When and as which process the host of a run acts: what its statements depend on beside the database.
//
// A recording keeps it, so that the replayed run sends the same statements to the letter.
#pragma once

#include <string>

#include "ado/value.h"
#include "host/services/process_identity.h"

namespace basalt::cli {

struct RunIdentity {
    CivilDateTime moment;
    host::ProcessIdentity process;
    std::string workstationName;  // empty: the one of the option file

    [[nodiscard]] static RunIdentity ofThisRun();
    // UsageError when the text is no such thing.
    [[nodiscard]] static RunIdentity fromJson(const std::string& text);
    [[nodiscard]] std::string toJson() const;
};

}  // namespace basalt::cli
