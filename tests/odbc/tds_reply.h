// Writes what a server answers in TDS 7.4: tables, counts, messages and return values, as tokens.
//
//   TdsReply().columns({tds::integer("Code"), tds::nvarchar("Name", 50)}).row({1, "عمده"}).done(1).bytes()
#pragma once

#include <cstdint>
#include <initializer_list>
#include <string>
#include <string_view>
#include <vector>

#include "ado/value.h"

namespace basalt::odbc::test {

struct TdsType {
    enum Kind {
        Bit,
        Int,
        Float,
        Decimal,
        Money,
        Nvarchar,
        NvarcharMax,
        Varchar,
        VarbinaryMax,
        Datetime,
        Datetime2,
        Guid,
        Variant  // of the kind that its value has
    };
    Kind kind = Int;
    int size = 4;  // bytes of an integer, characters of a text
    int precision = 0;
    int scale = 0;
};

struct TdsColumn {
    std::string name;
    TdsType type;
};

namespace tds {
inline TdsColumn integer(std::string name, int bytes = 4) {
    return {std::move(name), {.kind = TdsType::Int, .size = bytes}};
}
inline TdsColumn bit(std::string name) {
    return {std::move(name), {.kind = TdsType::Bit, .size = 1}};
}
inline TdsColumn nvarchar(std::string name, int characters) {
    return {std::move(name), {.kind = TdsType::Nvarchar, .size = characters}};
}
inline TdsColumn decimal(std::string name, int precision, int scale) {
    return {std::move(name), {.kind = TdsType::Decimal, .size = 17, .precision = precision, .scale = scale}};
}
inline TdsColumn column(std::string name, TdsType::Kind kind, int size = 8, int scale = 0) {
    return {std::move(name), {.kind = kind, .size = size, .scale = scale}};
}
}  // namespace tds

class TdsReply {
public:
    TdsReply& columns(std::vector<TdsColumn> columns);
    TdsReply& row(const std::vector<Value>& cells);
    // The end of a statement; a negative count is none. `more` follows unless it is the last.
    TdsReply& done(std::int64_t count = -1, bool more = false);
    TdsReply& doneInProcedure(std::int64_t count = -1);
    TdsReply& doneProcedure(bool failed = false);
    TdsReply& doneWithError(bool more = false);
    TdsReply& error(int number, int severity, std::string_view message);
    TdsReply& info(int number, std::string_view message);
    TdsReply& returnStatus(int value);
    TdsReply& returnValue(int ordinal, const TdsColumn& parameter, const Value& value);
    // The answer to a client's attention.
    TdsReply& cancelled();
    TdsReply& loginAccepted();

    [[nodiscard]] const std::string& bytes() const { return bytes_; }

private:
    void number(std::uint64_t value, int bytes);
    void text16(std::string_view text, int lengthBytes);
    void type(const TdsType& type);
    void cell(const TdsType& type, const Value& value);
    void textCell(const TdsType& type, const Value& value);
    void variantCell(const Value& value);
    void message(unsigned token, int number, int severity, std::string_view text);
    void finish(unsigned token, unsigned status, std::int64_t count);

    std::string bytes_;
    std::vector<TdsColumn> columns_;
};

// A row of a result that is cut off after the first `bytes` bytes, for a server that goes away.
[[nodiscard]] std::string cutShort(const TdsReply& reply, std::size_t bytes);

}  // namespace basalt::odbc::test
