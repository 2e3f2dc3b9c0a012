#include "cli/run_identity.h"

#include "ado/error.h"
#include "cli/workstation.h"
#include "host/services/clock.h"
#include "package/datum.h"

namespace basalt::cli {

RunIdentity RunIdentity::ofThisRun() {
    CivilDateTime moment = host::SystemClock().now();
    moment.nanosecond = 0;  // the recorded text has none
    return {
        .moment = moment, .process = host::currentProcess(), .workstationName = workstationOptions().workstationName};
}

RunIdentity RunIdentity::fromJson(const std::string& text) {
    const Datum record = Datum::parseJson(text);
    const std::optional<DateTime> moment = parseDateTime(record["moment"].asText());
    if (!moment) throw UsageError("\"" + record["moment"].asText() + "\" is not the moment of a recorded run");
    return {.moment = toCivil(*moment),
            .process = {.machine = record["machine"].asText(),
                        .id = record["process"].asInteger(),
                        .started = record["started"].asText()},
            .workstationName = record["workstation"].asText()};
}

std::string RunIdentity::toJson() const {
    return Datum::record({{"moment", toText(Value(fromCivil(moment)))},
                          {"machine", process.machine},
                          {"process", process.id},
                          {"started", process.started},
                          {"workstation", workstationName}})
        .toJson();
}

}  // namespace basalt::cli
