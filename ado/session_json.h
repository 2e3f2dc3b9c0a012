// What passes through a Session, as JSON and back, without loss: decimals keep their scale, integers all 64 bits,
// floats every bit, texts that are not UTF-8 their bytes.
//
// Null, truth values, integers and texts are themselves; the rest is an object of one member: {"decimal":"12.50"},
// {"float":"0.1"}, {"datetime":"2024-02-29 07:05:00"}, {"bytes":"00FF"}, {"rawText":"C3"}.
#pragma once

#include <nlohmann/json.hpp>
#include <span>
#include <string_view>

#include "ado/session.h"

namespace basalt::session_json {

using Json = nlohmann::ordered_json;

// What every recording begins with; the number of its form follows.
inline constexpr std::string_view recordingHead = R"({"recording":)";

// The requests, which a replay compares as text.
[[nodiscard]] Json simpleRequest(const char* kind);
[[nodiscard]] Json statementRequest(std::string_view sql);
[[nodiscard]] Json namedRequest(const char* kind, std::string_view name);

[[nodiscard]] Json fromValues(std::span<const Value> values);
[[nodiscard]] Json fromArguments(std::span<const Argument> arguments);
[[nodiscard]] Json fromBatch(const BatchResult& batch);
[[nodiscard]] Json fromCall(const CallResult& call);
[[nodiscard]] Json fromProcedure(const ProcedureInfo& procedure);
[[nodiscard]] Json fromTable(const TableInfo& table);
[[nodiscard]] Json fromError(const DatabaseError& error);

// Json exceptions and UsageError for what was not written by the functions above.
[[nodiscard]] Value toValue(const Json& json);
[[nodiscard]] BatchResult toBatch(const Json& json);
[[nodiscard]] CallResult toCall(const Json& json);
[[nodiscard]] ProcedureInfo toProcedure(const Json& json);
[[nodiscard]] TableInfo toTable(const Json& json);
[[nodiscard]] DatabaseError toError(const Json& json);

}  // namespace basalt::session_json
