#include "engines/embedded/runtime/value_codec.h"

#include "engines/embedded/runtime/decimal_codec.h"

namespace basalt::embedded {

Value readValue(sqlite3_value* cell, const SqlType& type) {
    if (sqlite3_value_type(cell) == SQLITE_NULL) return Null{};
    switch (type.storage()) {
        case Storage::Integer:
            if (type.kind == TypeKind::Bit) return sqlite3_value_int64(cell) != 0;
            return static_cast<std::int64_t>(sqlite3_value_int64(cell));
        case Storage::Real:
            return sqlite3_value_double(cell);
        case Storage::Decimal: {
            const void* data = sqlite3_value_blob(cell);
            return Decimal(decodeDecimal(data, sqlite3_value_bytes(cell)), type.scale);
        }
        case Storage::Text: {
            const auto* text = reinterpret_cast<const char*>(sqlite3_value_text(cell));
            return std::string(text, static_cast<std::size_t>(sqlite3_value_bytes(cell)));
        }
        case Storage::Blob: {
            const auto* data = static_cast<const std::uint8_t*>(sqlite3_value_blob(cell));
            return Bytes(data, data + sqlite3_value_bytes(cell));
        }
        case Storage::Ticks:
            return DateTime{sqlite3_value_int64(cell)};
    }
    return Null{};
}

void returnDecimal(sqlite3_context* context, Int128 coefficient) {
    const EncodedDecimal encoded = encodeDecimal(coefficient);
    sqlite3_result_blob(context, encoded.bytes.data(), encoded.size, SQLITE_TRANSIENT);
}

void returnValue(sqlite3_context* context, const Value& value) {
    struct Visitor {
        sqlite3_context* context;
        void operator()(Null) const { sqlite3_result_null(context); }
        void operator()(bool flag) const { sqlite3_result_int(context, flag ? 1 : 0); }
        void operator()(std::int64_t number) const { sqlite3_result_int64(context, number); }
        void operator()(double number) const { sqlite3_result_double(context, number); }
        void operator()(const Decimal& number) const { returnDecimal(context, number.coefficient()); }
        void operator()(const std::string& text) const {
            sqlite3_result_text64(context, text.data(), text.size(), SQLITE_TRANSIENT, SQLITE_UTF8);
        }
        void operator()(const Bytes& bytes) const {
            sqlite3_result_blob64(context, bytes.empty() ? static_cast<const void*>("") : bytes.data(), bytes.size(),
                                  SQLITE_TRANSIENT);
        }
        void operator()(DateTime time) const { sqlite3_result_int64(context, time.ticks); }
    };
    std::visit(Visitor{context}, value);
}

}  // namespace basalt::embedded
