#include "ado/parameters.h"

#include "ado/names.h"

namespace basalt {

namespace {

std::string withAt(std::string_view name) {
    std::string full;
    if (name.empty() || name.front() != '@') full += '@';
    return full.append(name);
}

}  // namespace

int TParameter::AsInteger() const {
    const std::int64_t value = AsInt64();
    if (value != static_cast<int>(value)) {
        throw DatabaseError(ErrorCategory::Conversion, "22003", 8115,
                            Name() + ": the value " + std::to_string(value) + " is out of range for a 32-bit integer");
    }
    return static_cast<int>(value);
}

void TParameter::SetExtended(Extended value) {
    if (info_.type.type == FieldType::Decimal) {
        if (const auto decimal = Decimal::fromExtended(value, info_.type.scale)) return Value(*decimal);
    }
    Value(static_cast<double>(value));
}

void TParameters::Refresh() {
    ProcedureInfo procedure = source_();
    items_.clear();
    CreateParameter("@RETURN_VALUE", ParameterDirection::ReturnValue);
    items_.back().Type({.type = FieldType::Integer});
    for (ParameterInfo& parameter : procedure.parameters)
        items_.emplace_back(std::move(parameter));
}

TParameter& TParameters::CreateParameter(std::string_view name, ParameterDirection direction, basalt::Value value) {
    ParameterInfo info;
    info.name = withAt(name);
    info.direction = direction;
    TParameter& parameter = items_.emplace_back(std::move(info));
    if (!isNull(value)) parameter.Value(std::move(value));
    return parameter;
}

TParameter& TParameters::Items(int index) {
    if (index < 0 || index >= Count()) {
        throw UsageError(component_ + ": there is no parameter " + std::to_string(index) + "; there are " +
                         std::to_string(Count()));
    }
    return items_[static_cast<std::size_t>(index)];
}

TParameter* TParameters::FindParam(std::string_view name) {
    const std::string wanted = withAt(name);
    for (TParameter& parameter : items_) {
        if (sameName(parameter.Name(), wanted)) return &parameter;
    }
    return nullptr;
}

TParameter& TParameters::ParamByName(std::string_view name) {
    if (TParameter* found = FindParam(name)) return *found;
    std::string message = component_ + ": there is no parameter " + withAt(name) + "; ";
    if (items_.empty()) {
        message += "call Parameters().Refresh() first";
    } else {
        message += "there are ";
        const char* separator = "";
        for (const TParameter& parameter : items_) {
            message += separator + parameter.Name();
            separator = ", ";
        }
    }
    throw UsageError(message);
}

}  // namespace basalt
