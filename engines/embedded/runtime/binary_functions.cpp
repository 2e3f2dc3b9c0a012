// Functions over binary values. Positions and lengths count bytes.
#include <algorithm>

#include "engines/embedded/runtime/function_support.h"

namespace basalt::embedded {

namespace {

std::string_view bytesAt(const Call& call, int i) {
    const auto* data = static_cast<const char*>(sqlite3_value_blob(call.raw(i)));
    return {data == nullptr ? "" : data, static_cast<std::size_t>(sqlite3_value_bytes(call.raw(i)))};
}

void giveBytes(Call& call, std::string_view bytes) {
    call.result(Value(Bytes(bytes.begin(), bytes.end())));
}

// t_join_bytes(a, b, the longest result)
void join(Call& call) {
    const std::string_view first = bytesAt(call, 0);
    const std::string_view second = bytesAt(call, 1);
    requireRoom(first.size() + second.size());
    Bytes joined(first.begin(), first.end());
    joined.insert(joined.end(), second.begin(), second.end());
    const std::int64_t longest = call.integer(2);
    if (longest >= 0 && joined.size() > static_cast<std::size_t>(longest))
        joined.resize(static_cast<std::size_t>(longest));
    call.result(Value(std::move(joined)));
}

// t_substring_b(bytes, start, length)
void substring(Call& call) {
    if (call.integer(2) < 0) refuseLength();
    const std::string_view bytes = bytesAt(call, 0);
    // Where it begins may lie in front of the value, and where it ends behind it.
    const Int128 begin = Int128{call.integer(1)} - 1;
    const auto inside = [&](Int128 at) {
        return static_cast<std::size_t>(std::clamp<Int128>(at, 0, static_cast<Int128>(bytes.size())));
    };
    const std::size_t from = inside(begin);
    giveBytes(call, bytes.substr(from, inside(begin + call.integer(2)) - from));
}

char lowerCase(char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c | 0x20) : c;
}

// t_charindex_b(needle, bytes, start, whether case does not matter)
void charIndex(Call& call) {
    const std::string_view needle = bytesAt(call, 0);
    const std::string_view bytes = bytesAt(call, 1);
    const std::int64_t start = std::max<std::int64_t>(call.integer(2), 1);
    if (needle.empty() || start > static_cast<std::int64_t>(bytes.size())) return call.result(std::int64_t{0});
    const bool folds = call.integer(3) != 0;
    const auto found = std::search(bytes.begin() + (start - 1), bytes.end(), needle.begin(), needle.end(),
                                   [folds](char a, char b) { return folds ? lowerCase(a) == lowerCase(b) : a == b; });
    call.result(found == bytes.end() ? std::int64_t{0} : static_cast<std::int64_t>(found - bytes.begin()) + 1);
}

}  // namespace

void addBinaryFunctions(SqliteDatabase& database) {
    addFunction(database, "t_join_bytes", 3, join);
    addFunction(database, "t_substring_b", 3, substring);
    addFunction(database, "t_charindex_b", 4, charIndex);
}

}  // namespace basalt::embedded
