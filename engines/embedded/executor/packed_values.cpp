#include "engines/embedded/executor/packed_values.h"

#include <cstring>
#include <string>
#include <string_view>

#include "engines/embedded/runtime/function_support.h"

namespace basalt::embedded {

namespace {

// A value is the octet of its SQLite type, then eight octets: the number itself, or how many octets follow. The bytes
// do not leave the process, so its own order of octets will do.
constexpr std::size_t kHead = 1 + sizeof(std::int64_t);

template <typename Number>
void append(std::string& bytes, Number number) {
    static_assert(sizeof(number) == sizeof(std::int64_t));
    bytes.append(reinterpret_cast<const char*>(&number), sizeof number);
}

void append(std::string& bytes, sqlite3_value* value) {
    const int type = sqlite3_value_type(value);
    bytes += static_cast<char>(type);
    if (type == SQLITE_INTEGER) return append(bytes, sqlite3_value_int64(value));
    if (type == SQLITE_FLOAT) return append(bytes, sqlite3_value_double(value));
    const auto* data = static_cast<const char*>(
        type == SQLITE_TEXT ? static_cast<const void*>(sqlite3_value_text(value)) : sqlite3_value_blob(value));
    const auto size = static_cast<std::size_t>(sqlite3_value_bytes(value));
    append(bytes, std::int64_t{sqlite3_value_bytes(value)});
    if (size > 0) bytes.append(data, size);
}

template <typename Number>
Number numberIn(std::string_view head) {
    Number number{};
    std::memcpy(&number, head.data() + 1, sizeof number);
    return number;
}

}  // namespace

void addPackedValues(SqliteDatabase& database) {
    addFunction(
        database, "t_packed", -1,
        [](Call& call) {
            std::string bytes;
            for (int i = 0; i < call.count(); ++i) {
                requireRoom(bytes.size() + kHead + static_cast<std::size_t>(sqlite3_value_bytes(call.raw(i))));
                append(bytes, call.raw(i));
            }
            call.result(Value(Bytes(bytes.begin(), bytes.end())));
        },
        NullRule::Pass);
}

std::vector<HeldValue> unpacked(SqliteDatabase& database, std::span<sqlite3_value* const> packs) {
    std::vector<HeldValue> values;
    // SQLite makes values only in a statement.
    SqliteStatement maker = database.prepare("SELECT ?1");
    for (sqlite3_value* pack : packs) {
        const auto* data = static_cast<const char*>(sqlite3_value_blob(pack));
        std::string_view rest(data == nullptr ? "" : data, static_cast<std::size_t>(sqlite3_value_bytes(pack)));
        while (!rest.empty()) {
            const int type = rest.front();
            const auto number = numberIn<std::int64_t>(rest.substr(0, kHead));
            std::size_t size = 0;
            if (type == SQLITE_INTEGER) {
                maker.bind(1, number);
            } else if (type == SQLITE_FLOAT) {
                maker.bind(1, numberIn<double>(rest.substr(0, kHead)));
            } else if (type == SQLITE_NULL) {
                maker.bindNull(1);
            } else {
                size = static_cast<std::size_t>(number);
                if (type == SQLITE_TEXT)
                    maker.bind(1, rest.substr(kHead, size));
                else
                    maker.bindBytes(1, rest.data() + kHead, size);
            }
            maker.step();
            values.push_back(maker.held(0));
            maker.reset();
            rest.remove_prefix(kHead + size);
        }
    }
    return values;
}

}  // namespace basalt::embedded
