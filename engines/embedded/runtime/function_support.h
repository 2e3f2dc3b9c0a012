// What the SQL functions of the engine have in common: registration, arguments, NULL, and errors that rise through
// SQLite to the caller as they were thrown.
//
//   addFunction(db, "t_len", 1, [](Call& call) { call.result(length(call.text(0))); });
//
// The functions are an internal vocabulary of the generator: arguments that describe types are SqlType::code().
#pragma once

#include <sqlite3.h>

#include <cstdint>
#include <string_view>

#include "ado/value.h"
#include "engines/embedded/runtime/decimal_codec.h"
#include "engines/embedded/runtime/sql_type.h"
#include "engines/embedded/runtime/sqlite.h"
#include "engines/embedded/runtime/value_codec.h"

namespace basalt::embedded {

// One call of a function. Arguments count from 0.
class Call {
public:
    Call(sqlite3_context* context, int count, sqlite3_value** arguments)
        : context_(context), count_(count), arguments_(arguments) {}

    [[nodiscard]] int count() const { return count_; }
    [[nodiscard]] bool isNull(int i) const { return sqlite3_value_type(arguments_[i]) == SQLITE_NULL; }
    [[nodiscard]] std::int64_t integer(int i) const { return sqlite3_value_int64(arguments_[i]); }
    [[nodiscard]] double real(int i) const { return sqlite3_value_double(arguments_[i]); }
    [[nodiscard]] std::string_view text(int i) const {
        const auto* data = reinterpret_cast<const char*>(sqlite3_value_text(arguments_[i]));
        return {data == nullptr ? "" : data, static_cast<std::size_t>(sqlite3_value_bytes(arguments_[i]))};
    }
    [[nodiscard]] Int128 coefficient(int i) const {
        const void* data = sqlite3_value_blob(arguments_[i]);
        return decodeDecimal(data, sqlite3_value_bytes(arguments_[i]));
    }
    [[nodiscard]] SqlType type(int i) const { return SqlType::fromCode(integer(i)); }
    [[nodiscard]] Value value(int i, const SqlType& type) const { return readValue(arguments_[i], type); }
    [[nodiscard]] sqlite3_value* raw(int i) const { return arguments_[i]; }

    void resultNull() { sqlite3_result_null(context_); }
    void result(std::int64_t number) { sqlite3_result_int64(context_, number); }
    void result(double number) { sqlite3_result_double(context_, number); }
    void result(std::string_view text) {
        sqlite3_result_text64(context_, text.data() == nullptr ? "" : text.data(), text.size(), SQLITE_TRANSIENT,
                              SQLITE_UTF8);
    }
    void result(const Value& value) { returnValue(context_, value); }
    void resultDecimal(Int128 coefficient) { returnDecimal(context_, coefficient); }
    void resultArgument(int i) { sqlite3_result_value(context_, arguments_[i]); }

private:
    sqlite3_context* context_;
    int count_;
    sqlite3_value** arguments_;
};

using ScalarFunction = void (*)(Call&);

enum class NullRule : std::uint8_t {
    Propagate,  // NULL in any argument gives NULL without a call
    Pass,       // the function sees NULLs
};

// `count` -1 takes any number of arguments. All functions are deterministic within a statement.
void addFunction(SqliteDatabase& database, const char* name, int count, ScalarFunction function,
                 NullRule nulls = NullRule::Propagate);

// Throws DatabaseError Limit for a value of more bytes than one may have; asked before it is built.
void requireRoom(std::size_t bytes);
// Throws DatabaseError 537, of a negative length for LEFT or SUBSTRING.
[[noreturn]] void refuseLength();

// Runs `body` and passes what it throws through SQLite.
template <typename Body>
void guarded(sqlite3_context* context, SqliteDatabase& database, Body body) noexcept {
    try {
        body();
    } catch (const DatabaseError& error) {
        database.setFunctionError(error);
        sqlite3_result_error(context, error.what(), -1);
    } catch (const std::bad_alloc&) {
        sqlite3_result_error_nomem(context);
    } catch (const std::exception& error) {
        sqlite3_result_error(context, error.what(), -1);
    }
}

void addConversionFunctions(SqliteDatabase& database);
void addArithmeticFunctions(SqliteDatabase& database);
void addTextFunctions(SqliteDatabase& database);
void addBinaryFunctions(SqliteDatabase& database);
void addMathFunctions(SqliteDatabase& database);
void addDateFunctions(SqliteDatabase& database);
void addAggregateFunctions(SqliteDatabase& database);
// The collations and all the functions.
void addRuntime(SqliteDatabase& database);

}  // namespace basalt::embedded
