// One field of a data set's current record.
//
//   int code = query.FieldByName("Code").AsInteger();
//   query.Edit();
//   query.FieldByName("Name") = "عمده";
//   query.Post();
//
// A field is a view: it shows the record that the data set is on at the moment of the call. References to fields are
// good until the data set is closed. An empty data set reads as null.
#pragma once

#include <concepts>
#include <cstdint>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>

#include "ado/rowset.h"

namespace basalt {

class TDataSet;

// What a data set knows of a field before it is opened.
struct FieldDeclaration {
    std::string name;
    FieldType type = FieldType::Text;
    int size = 0;       // Text: longest length in characters
    int precision = 0;  // Decimal
    int scale = 0;      // Decimal
    bool readOnly = false;
    bool currency = false;
};

class TField {
public:
    TField(const TField&) = delete;

    // Reading. Null reads as 0, false or the empty text. DatabaseError (Conversion) when the value is no such thing.
    [[nodiscard]] int AsInteger() const;  // also when it does not fit 32 bits
    [[nodiscard]] std::int64_t AsInt64() const;
    [[nodiscard]] Extended AsFloat() const;
    [[nodiscard]] bool AsBoolean() const;
    [[nodiscard]] std::string AsString() const;  // as fieldText
    [[nodiscard]] Value AsValue() const;
    [[nodiscard]] bool IsNull() const;

    // Writing, into the record being edited. UsageError when the data set is not in edit or insert state, and for a
    // field that is calculated or read only. DatabaseError when the value cannot be converted to the field's type or is
    // out of its range (Conversion), or is longer than the field (Truncation, with the lengths). The record is
    // unchanged after an error.
    void SetValue(const Value& value);
    void SetExtended(Extended value);  // rounded to the decimals of a decimal field
    void Clear() { SetValue(Null{}); }

    TField& operator=(const TField& other);  // the other field's value
    TField& operator=(const Value& value) { return assign(value); }
    TField& operator=(bool value) { return assign(Value(value)); }
    template <std::integral T>
    TField& operator=(T value) {
        return assign(Value(static_cast<std::int64_t>(value)));
    }
    template <typename T>
    requires std::is_enum_v<T> TField& operator=(T value) { return assign(Value(static_cast<std::int64_t>(value))); }
    TField& operator=(Extended value) {
        SetExtended(value);
        return *this;
    }
    TField& operator=(double value) { return assign(Value(value)); }
    TField& operator=(const Decimal& value) { return assign(Value(value)); }
    TField& operator=(const DateTime& value) { return assign(Value(value)); }
    TField& operator=(std::string value) { return assign(Value(std::move(value))); }
    TField& operator=(std::string_view value) { return assign(Value(std::string(value))); }
    TField& operator=(const char* value) { return assign(Value(std::string(value))); }

    [[nodiscard]] const std::string& FieldName() const { return info().name; }
    [[nodiscard]] int Index() const { return index_; }  // from 0
    [[nodiscard]] const ColumnInfo& info() const;
    [[nodiscard]] bool Calculated() const;
    // As declared (TDataSet::DeclareField). ReadOnly: cannot be assigned. Currency: a number that is an amount of
    // money.
    [[nodiscard]] bool ReadOnly() const;
    [[nodiscard]] bool Currency() const;
    [[nodiscard]] TDataSet& DataSet() const { return *dataSet_; }

private:
    friend class TDataSet;
    // Lets the data set keep its fields side by side in one vector.
    friend struct FieldSlot;
    TField(TDataSet& dataSet, int index) : dataSet_(&dataSet), index_(index) {}
    TField& assign(const Value& value) {
        SetValue(value);
        return *this;
    }

    TDataSet* dataSet_;
    int index_;
};

// How a data set stores its fields: movable, which a field as its users see it is not.
struct FieldSlot {
    FieldSlot(TDataSet& dataSet, int index) : field(dataSet, index) {}
    FieldSlot(FieldSlot&& other) noexcept : field(*other.field.dataSet_, other.field.index_) {}
    FieldSlot& operator=(FieldSlot&& other) noexcept {
        field.dataSet_ = other.field.dataSet_;
        field.index_ = other.field.index_;
        return *this;
    }
    ~FieldSlot() = default;

    TField field;
};

}  // namespace basalt
