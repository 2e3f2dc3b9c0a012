// t_cast(x, from, to, style), t_try_cast(...), and t_fit(x, type, table, column) for values on their way into a column.
#include "engines/embedded/runtime/convert.h"
#include "engines/embedded/runtime/decimal_math.h"
#include "engines/embedded/runtime/function_support.h"

namespace basalt::embedded {

namespace {

void cast(Call& call) {
    const SqlType from = call.type(1);
    const SqlType to = call.type(2);
    // The commonest conversions without a detour over values.
    if (to.storage() == Storage::Decimal && to.kind == TypeKind::Decimal) {
        if (from.isInteger()) return call.resultDecimal(fitted({call.integer(0), 0}, from, to).coefficient());
        if (from.isDecimal())
            return call.resultDecimal(fitted({call.coefficient(0), from.scale}, from, to).coefficient());
    }
    call.result(convert(call.value(0, from), from, to, static_cast<int>(call.integer(3))));
}

void tryCast(Call& call) {
    try {
        cast(call);
    } catch (const DatabaseError& error) {
        if (error.category() != ErrorCategory::Conversion || error.nativeCode() == 529) throw;
        call.resultNull();
    }
}

void fitColumn(Call& call) {
    const SqlType type = call.type(1);
    // No UTF-8 text has more UTF-16 units than bytes.
    if (!type.isFixedText() && type.kind != TypeKind::Binary && sqlite3_value_bytes(call.raw(0)) <= type.length)
        return call.resultArgument(0);
    const Value value = call.value(0, type);
    requireLength(value, type, call.text(2), call.text(3));
    call.result(convert(value, type, type));
}

}  // namespace

void addConversionFunctions(SqliteDatabase& database) {
    addFunction(database, "t_cast", 4, cast);
    addFunction(database, "t_try_cast", 4, tryCast);
    addFunction(database, "t_fit", 4, fitColumn);
}

}  // namespace basalt::embedded
