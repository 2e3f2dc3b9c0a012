// The parameters of a stored-procedure component.
//
//   proc.Parameters().Refresh();
//   proc.Parameters()["@GoodCode"] = 7;
//   proc.Parameters().ParamByName("GoodCode").Value()      // the @ may be left out, case does not matter
#pragma once

#include <concepts>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <functional>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>

#include "ado/field_text.h"
#include "ado/session.h"

namespace basalt {

class TParameter {
public:
    explicit TParameter(ParameterInfo info) : info_(std::move(info)) {}
    TParameter(const TParameter&) = default;

    [[nodiscard]] const std::string& Name() const { return info_.name; }
    [[nodiscard]] const ParameterInfo& info() const { return info_; }
    [[nodiscard]] ParameterDirection Direction() const { return info_.direction; }
    void Direction(ParameterDirection direction) { info_.direction = direction; }
    void Type(ColumnInfo type) { info_.type = std::move(type); }

    // Null while nothing was assigned. After a run, what the procedure left in an output parameter.
    [[nodiscard]] const basalt::Value& Value() const { return value_; }
    [[nodiscard]] bool IsNull() const { return basalt::isNull(value_); }
    [[nodiscard]] int AsInteger() const;
    [[nodiscard]] std::int64_t AsInt64() const { return toInt64(value_); }
    [[nodiscard]] Extended AsFloat() const { return toExtended(value_); }
    [[nodiscard]] bool AsBoolean() const { return toBool(value_); }
    [[nodiscard]] std::string AsString() const { return fieldText(value_); }

    // An assigned null is sent as null; a parameter with no assignment takes the procedure's default.
    [[nodiscard]] bool assigned() const { return assigned_; }
    void Value(basalt::Value value) {
        value_ = std::move(value);
        assigned_ = true;
    }
    // Rounded to the decimals of a decimal parameter.
    void SetExtended(Extended value);
    // What a run left in it; not an assignment for the next run.
    void Received(basalt::Value value) { value_ = std::move(value); }

    TParameter& operator=(const TParameter& other) { return assign(other.value_); }
    TParameter& operator=(basalt::Value value) { return assign(std::move(value)); }
    TParameter& operator=(bool value) { return assign(basalt::Value(value)); }
    template <std::integral T>
    TParameter& operator=(T value) {
        return assign(basalt::Value(static_cast<std::int64_t>(value)));
    }
    template <typename T>
    requires std::is_enum_v<T> TParameter& operator=(T value) {
        return assign(basalt::Value(static_cast<std::int64_t>(value)));
    }
    TParameter& operator=(Extended value) {
        SetExtended(value);
        return *this;
    }
    TParameter& operator=(double value) { return assign(basalt::Value(value)); }
    TParameter& operator=(const Decimal& value) { return assign(basalt::Value(value)); }
    TParameter& operator=(const DateTime& value) { return assign(basalt::Value(value)); }
    TParameter& operator=(std::string value) { return assign(basalt::Value(std::move(value))); }
    TParameter& operator=(std::string_view value) { return assign(basalt::Value(std::string(value))); }
    TParameter& operator=(const char* value) { return assign(basalt::Value(std::string(value))); }

private:
    TParameter& assign(basalt::Value value) {
        Value(std::move(value));
        return *this;
    }

    ParameterInfo info_;
    basalt::Value value_;
    bool assigned_ = false;
};

class TParameters {
public:
    using Source = std::function<ProcedureInfo()>;
    // component: the owner's name, for messages.
    TParameters(std::string component, Source source) : component_(std::move(component)), source_(std::move(source)) {}
    TParameters(const TParameters&) = delete;
    TParameters& operator=(const TParameters&) = delete;

    // Asks the server. All values are lost. @RETURN_VALUE comes first. DatabaseError (NotFound) when there is no such
    // procedure; the parameters are unchanged then.
    void Refresh();
    void Clear() { items_.clear(); }
    // For a procedure whose parameters are known beforehand.
    TParameter& CreateParameter(std::string_view name, ParameterDirection direction, basalt::Value value = {});

    [[nodiscard]] int Count() const { return static_cast<int>(items_.size()); }
    [[nodiscard]] TParameter& Items(int index);  // from 0; UsageError beyond
    // nullptr when there is none.
    [[nodiscard]] TParameter* FindParam(std::string_view name);
    // UsageError that lists the known ones when there is none.
    [[nodiscard]] TParameter& ParamByName(std::string_view name);
    [[nodiscard]] TParameter& operator[](std::string_view name) { return ParamByName(name); }

private:
    std::string component_;
    Source source_;
    std::deque<TParameter> items_;  // references stay good while parameters are added
};

}  // namespace basalt
