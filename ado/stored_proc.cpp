#include "ado/stored_proc.h"

#include "ado/names.h"

namespace basalt {

TADOStoredProc::TADOStoredProc(std::string name)
    : TDataSet(nullptr, std::move(name)), parameters_(Name(), [this] { return describe(); }) {}

TADOStoredProc::TADOStoredProc(TADOConnection& connection, std::string name)
    : TDataSet(&connection, std::move(name)), parameters_(Name(), [this] { return describe(); }) {}

TADOStoredProc::~TADOStoredProc() {
    announceLeaving();
}

void TADOStoredProc::ProcedureName(std::string name) {
    Close();
    parameters_.Clear();
    procedure_ = std::move(name);
    announceTouched();
}

// Numbered procedures are a single one in all but name: number 1 is the procedure itself.
std::string TADOStoredProc::calledName() const {
    if (procedure_.empty()) fail("ProcedureName: it is empty; set it first");
    return procedure_.substr(0, procedure_.size() - (procedure_.ends_with(";1") ? 2 : 0));
}

ProcedureInfo TADOStoredProc::describe() const {
    const std::string name = calledName();
    return connected().session().procedure(name);
}

CallResult TADOStoredProc::callProcedure() {
    const std::string name = calledName();
    std::vector<Argument> arguments;
    for (int i = 0; i < parameters_.Count(); ++i) {
        const TParameter& parameter = parameters_.Items(i);
        const bool output = parameter.Direction() == ParameterDirection::InputOutput;
        if (parameter.Direction() == ParameterDirection::ReturnValue) continue;
        if (parameter.assigned() || output) arguments.push_back({parameter.Name(), parameter.Value(), output});
    }
    CallResult result = connected().call(Name(), name, arguments);
    for (const Argument& output : result.outputs) {
        if (TParameter* parameter = parameters_.FindParam(output.name)) parameter->Received(output.value);
    }
    for (int i = 0; i < parameters_.Count(); ++i) {
        TParameter& parameter = parameters_.Items(i);
        if (parameter.Direction() == ParameterDirection::ReturnValue) parameter.Received(result.returnValue);
    }
    return result;
}

RowSet TADOStoredProc::fetch() {
    CallResult result = callProcedure();
    return firstRows(result.batch);
}

void TADOStoredProc::ExecProc() {
    Close();
    static_cast<void>(callProcedure());
}

}  // namespace basalt
