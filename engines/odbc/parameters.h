// Values bound to the markers of a statement or of a procedure call.
//
//   Parameters parameters(traits);
//   parameters.addMarker(value);
//   parameters.bind(statement, sql);     // the buffers must outlive the execution
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "ado/rowset.h"
#include "engines/odbc/driver_traits.h"
#include "engines/odbc/odbc_api.h"

namespace basalt::odbc {

class Parameters {
public:
    explicit Parameters(const DriverTraits& traits) : traits_(&traits) {}

    // A value for a `?` whose place tells the server its type. A time travels as ISO text: compared with a datetime
    // column, a datetime2 parameter would never equal what was read from it. A null travels as a text, which every type
    // but the binary ones takes; data sets write it into the statement for these.
    void addMarker(const Value& value);
    // A procedure's parameter, with the procedure's own type. A value that the type cannot hold is left to the server
    // to refuse; that of an output parameter is DatabaseError (Conversion).
    void addArgument(const ColumnInfo& type, const Value& value, bool output, std::string name);
    void addReturnValue();

    // DatabaseError when the driver refuses.
    void bind(SQLHSTMT statement, std::string_view sql);

    // After all results have been read. `index` counts in the order of adding, from 0. Null when nothing came back.
    // DatabaseError (Truncation) when the value was longer than its room.
    [[nodiscard]] Value valueAt(std::size_t index) const;

private:
    struct Slot {
        SQLSMALLINT direction = SQL_PARAM_INPUT;
        SQLSMALLINT cType = SQL_C_WCHAR;
        SQLSMALLINT sqlType = SQL_WVARCHAR;
        SQLULEN size = 4000;
        SQLSMALLINT digits = 0;
        std::vector<std::byte> data = {};
        SQLLEN length = SQL_NULL_DATA;
        ColumnInfo type = {};  // of an argument
        std::string name = {};
    };

    void put(Slot& slot, const Value& value) const;
    void putText(Slot& slot, const std::string& text) const;
    static void putBytes(Slot& slot, const void* data, std::size_t size);
    void takeType(Slot& slot, const ColumnInfo& type) const;
    void takeLength(Slot& slot, SQLULEN length) const;
    void takeMax(Slot& slot) const;
    static void makeRoom(Slot& slot);

    const DriverTraits* traits_;
    std::vector<Slot> slots_;
};

}  // namespace basalt::odbc
