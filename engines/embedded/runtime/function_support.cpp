#include "engines/embedded/runtime/function_support.h"

#include <memory>
#include <string>

#include "engines/embedded/runtime/collation.h"
#include "engines/embedded/runtime/sql_error.h"
#include "engines/embedded/runtime/steps.h"
#include "engines/embedded/runtime/text_pieces.h"

namespace basalt::embedded {

namespace {

// SQLite hands a function one pointer; the wrapper below needs the function and the database.
struct Registration {
    SqliteDatabase* database;
    ScalarFunction function;
    NullRule nulls;
};

void invoke(sqlite3_context* context, int count, sqlite3_value** arguments) {
    auto* registration = static_cast<Registration*>(sqlite3_user_data(context));
    if (registration->nulls == NullRule::Propagate) {
        for (int i = 0; i < count; ++i) {
            if (sqlite3_value_type(arguments[i]) == SQLITE_NULL) return;
        }
    }
    Call call(context, count, arguments);
    guarded(context, *registration->database, [&] { registration->function(call); });
}

template <TextOrder order>
int compareCells(void*, int leftSize, const void* left, int rightSize, const void* right) {
    return compareTexts({static_cast<const char*>(left), static_cast<std::size_t>(leftSize)},
                        {static_cast<const char*>(right), static_cast<std::size_t>(rightSize)}, order);
}

template <TextOrder order>
void addCollation(SqliteDatabase& database) {
    const int code = sqlite3_create_collation_v2(database.handle(), sqliteCollation(order), SQLITE_UTF8, nullptr,
                                                 compareCells<order>, nullptr);
    if (code != SQLITE_OK) throw database.failure(code);
}

}  // namespace

void addFunction(SqliteDatabase& database, const char* name, int count, ScalarFunction function, NullRule nulls) {
    auto registration = std::make_unique<Registration>(Registration{&database, function, nulls});
    const int code = sqlite3_create_function_v2(
        database.handle(), name, count, SQLITE_UTF8 | SQLITE_DETERMINISTIC | SQLITE_INNOCUOUS, registration.release(),
        invoke, nullptr, nullptr, [](void* pointer) { delete static_cast<Registration*>(pointer); });
    if (code != SQLITE_OK) throw database.failure(code);
    knowStep(name, count, function, nulls);
}

void requireRoom(std::size_t bytes) {
    if (bytes <= static_cast<std::size_t>(kLongestValue)) return;
    throw tooLarge();
}

void refuseLength() {
    throwSqlError(537, "Invalid length parameter passed to the LEFT or SUBSTRING function.");
}

void addRuntime(SqliteDatabase& database) {
    addCollation<TextOrder::Database>(database);
    addCollation<TextOrder::Case>(database);
    addCollation<TextOrder::Letters>(database);
    addCollation<TextOrder::LettersAndCase>(database);
    addCollation<TextOrder::Codes>(database);
    addConversionFunctions(database);
    addArithmeticFunctions(database);
    addTextFunctions(database);
    addBinaryFunctions(database);
    addMathFunctions(database);
    addDateFunctions(database);
    addAggregateFunctions(database);
    addTextPieces(database);
    addSteps(database);
}

}  // namespace basalt::embedded
