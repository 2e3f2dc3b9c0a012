#include "engines/odbc/procedure_call.h"

#include <algorithm>
#include <utility>

#include "ado/names.h"
#include "engines/odbc/column_types.h"

namespace basalt::odbc {

namespace {

std::size_t placeOf(const ProcedureInfo& procedure, const Argument& argument) {
    for (std::size_t i = 0; i < procedure.parameters.size(); ++i) {
        if (sameName(procedure.parameters[i].name, argument.name)) return i;
    }
    throw DatabaseError(ErrorCategory::NotFound, "42000", 8145,
                        argument.name + " is not a parameter for procedure " + procedure.name + ".");
}

// Takes the last result set out of the batch.
RowSet takeLastRows(BatchResult& batch) {
    for (auto result = batch.results.rbegin(); result != batch.results.rend(); ++result) {
        if (!result->rows) continue;
        RowSet rows = std::move(*result->rows);
        batch.results.erase(std::next(result).base());
        return rows;
    }
    return {};
}

}  // namespace

ProcedureCall::ProcedureCall(const ProcedureInfo& procedure, std::string_view name, std::span<const Argument> arguments,
                             const DriverTraits& traits)
    : arguments_(arguments), parameters_(traits) {
    for (const Argument& argument : arguments) {
        const std::size_t place = placeOf(procedure, argument);
        bound_.push_back({place, &argument, &procedure.parameters[place].type});
    }
    std::sort(bound_.begin(), bound_.end(), [](const Bound& a, const Bound& b) { return a.place < b.place; });
    byPlace_ = bound_.empty() || bound_.back().place == bound_.size() - 1;
    if (byPlace_) {
        callByPlace(name);
    } else {
        callByName(name);
    }
}

// The protocol's own call, with the arguments told by their places, which every driver can.
void ProcedureCall::callByPlace(std::string_view name) {
    text_ = "{? = call " + std::string(name);
    parameters_.addReturnValue();
    std::size_t slot = 0;
    for (Bound& each : bound_) {
        text_ += slot == 0 ? "(?" : ", ?";
        each.output = ++slot;
        parameters_.addArgument(*each.type, each.argument->value, each.argument->output, each.argument->name);
    }
    text_ += bound_.empty() ? "}" : ")}";
}

// An argument that is left out between others takes the procedure's default, and then only names tell which are given.
// FreeTDS can neither name the parameters of a call nor bring outputs back from a batch; variables do both.
void ProcedureCall::callByName(std::string_view name) {
    std::string declarations = "DECLARE @basalt_return int";
    std::string call = "EXEC @basalt_return = " + std::string(name);
    std::string answer = "SELECT @basalt_return";
    std::size_t outputs = 0;
    const auto add = [&](const Bound& each) {
        parameters_.addArgument(*each.type, each.argument->value, false, each.argument->name);
    };
    for (Bound& each : bound_) {
        if (!each.argument->output) continue;
        each.output = ++outputs;
        const std::string variable = "@basalt_" + std::to_string(outputs);
        declarations += ", " + variable + " " + declaredType(*each.type) + " = ?";
        answer += ", " + variable;
        add(each);
    }
    std::string separator = " ";
    for (const Bound& each : bound_) {
        const bool output = each.argument->output;
        call += std::exchange(separator, ", ") + each.argument->name + " = " +
                (output ? "@basalt_" + std::to_string(each.output) + " OUTPUT" : "?");
        if (!output) add(each);
    }
    text_ = declarations + "\n" + call + "\n" + answer;
}

CallResult ProcedureCall::finish(BatchResult batch) const {
    CallResult result;
    RowSet answer;
    if (!byPlace_) answer = takeLastRows(batch);
    result.batch = std::move(batch);
    const auto valueAt = [&](std::size_t index) {
        return byPlace_ ? parameters_.valueAt(index) : answer.column(index).valueAt(0);
    };
    if (!byPlace_ && answer.rowCount() != 1) {
        throw DatabaseError(ErrorCategory::Other, "HY000", 0, "the procedure's return value did not come back", text_);
    }
    result.returnValue = toInt64(valueAt(0));
    for (const Argument& argument : arguments_) {
        if (!argument.output) continue;
        const auto each = std::find_if(bound_.begin(), bound_.end(),
                                       [&](const Bound& candidate) { return candidate.argument == &argument; });
        result.outputs.push_back({argument.name, valueAt(each->output), true});
    }
    return result;
}

}  // namespace basalt::odbc
