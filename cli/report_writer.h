// Tells people what a call did, as toDatum(CallReport) tells programs.
//
//   writeReport(std::cout, report, outputIsTerminal());
//
//   CostLevel_GetNewCode: 11
//   sent
//     Temp_Q7777UR open: select isnull(Max(Code),0)+1 from ...
#pragma once

#include <ostream>

#include "host/calls/call_report.h"

namespace basalt::cli {

// The error is left out: it goes to the standard error.
void writeReport(std::ostream& out, const host::CallReport& report, bool terminal);

}  // namespace basalt::cli
