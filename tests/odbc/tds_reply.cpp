#include "tds_reply.h"

#include <bit>

#include "engines/odbc/utf16.h"

namespace basalt::odbc::test {

namespace {

// SQL_Latin1_General_CP1_CI_AS, the server's default.
constexpr std::string_view kLatin1("\x09\x04\xD0\x00\x34", 5);

std::string utf16Bytes(std::string_view text) {
    const std::u16string units = toUtf16(text);
    return {reinterpret_cast<const char*>(units.data()), units.size() * sizeof(char16_t)};
}

}  // namespace

void TdsReply::number(std::uint64_t value, int bytes) {
    for (int i = 0; i < bytes; ++i)
        bytes_ += static_cast<char>(value >> (8 * i));
}

// The length counts characters.
void TdsReply::text16(std::string_view text, int lengthBytes) {
    const std::string bytes = utf16Bytes(text);
    number(bytes.size() / sizeof(char16_t), lengthBytes);
    bytes_ += bytes;
}

void TdsReply::type(const TdsType& type) {
    switch (type.kind) {
        case TdsType::Bit:
            number(0x68, 1);
            return number(1, 1);
        case TdsType::Int:
            number(0x26, 1);
            return number(static_cast<unsigned>(type.size), 1);
        case TdsType::Float:
            number(0x6D, 1);
            return number(8, 1);
        case TdsType::Decimal:
            number(0x6A, 1);
            number(17, 1);
            number(static_cast<unsigned>(type.precision), 1);
            return number(static_cast<unsigned>(type.scale), 1);
        case TdsType::Money:
            number(0x6E, 1);
            return number(8, 1);
        case TdsType::Nvarchar:
        case TdsType::NvarcharMax:
            number(0xE7, 1);
            number(type.kind == TdsType::NvarcharMax ? 0xFFFF : static_cast<unsigned>(type.size) * 2, 2);
            bytes_ += kLatin1;
            return;
        case TdsType::Varchar:
            number(0xA7, 1);
            number(static_cast<unsigned>(type.size), 2);
            bytes_ += kLatin1;
            return;
        case TdsType::VarbinaryMax:
            number(0xA5, 1);
            return number(0xFFFF, 2);
        case TdsType::Datetime:
            number(0x6F, 1);
            return number(8, 1);
        case TdsType::Datetime2:
            number(0x2A, 1);
            return number(7, 1);
        case TdsType::Guid:
            number(0x24, 1);
            return number(16, 1);
        case TdsType::Variant:
            number(0x62, 1);
            return number(8009, 4);
    }
}

// Its type, the length of what describes the type, that, and the value.
void TdsReply::variantCell(const Value& value) {
    if (isNull(value)) return number(0, 4);
    TdsReply body;
    if (const auto* integer = std::get_if<std::int64_t>(&value)) {
        body.number(0x38, 1);
        body.number(0, 1);
        body.number(static_cast<std::uint64_t>(*integer), 4);
    } else if (const auto* given = std::get_if<std::string>(&value)) {
        const std::string bytes = utf16Bytes(*given);
        body.number(0xE7, 1);
        body.number(7, 1);
        body.bytes_ += kLatin1;
        body.number(bytes.size(), 2);
        body.bytes_ += bytes;
    } else {
        body.number(0x6A, 1);
        body.number(2, 1);
        const auto& decimal = std::get<basalt::Decimal>(value);
        body.number(38, 1);
        body.number(static_cast<unsigned>(decimal.scale()), 1);
        const TdsType plain{.kind = TdsType::Decimal, .size = 17, .precision = 38, .scale = decimal.scale()};
        TdsReply sized;
        sized.cell(plain, value);
        body.bytes_ += sized.bytes_.substr(1);
    }
    number(body.bytes_.size(), 4);
    bytes_ += body.bytes_;
}

void TdsReply::textCell(const TdsType& type, const Value& value) {
    std::string bytes;
    if (const auto* given = std::get_if<std::string>(&value)) {
        bytes = type.kind == TdsType::Varchar ? *given : utf16Bytes(*given);
    } else if (const auto* raw = std::get_if<Bytes>(&value)) {
        bytes.assign(raw->begin(), raw->end());
    }
    const bool inPieces = type.kind == TdsType::NvarcharMax || type.kind == TdsType::VarbinaryMax;
    if (!inPieces) {
        number(isNull(value) ? 0xFFFF : bytes.size(), 2);
        bytes_ += bytes;
        return;
    }
    if (isNull(value)) return number(~std::uint64_t{0}, 8);
    number(bytes.size(), 8);
    // Odd pieces, so that characters lie across their ends.
    constexpr std::size_t kPiece = 1001;
    for (std::size_t at = 0; at < bytes.size(); at += kPiece) {
        const std::string piece = bytes.substr(at, kPiece);
        number(piece.size(), 4);
        bytes_ += piece;
    }
    number(0, 4);
}

void TdsReply::cell(const TdsType& type, const Value& value) {
    if (type.kind == TdsType::Nvarchar || type.kind == TdsType::NvarcharMax || type.kind == TdsType::Varchar ||
        type.kind == TdsType::VarbinaryMax) {
        return textCell(type, value);
    }
    if (type.kind == TdsType::Variant) return variantCell(value);
    if (isNull(value)) return number(0, 1);
    switch (type.kind) {
        case TdsType::Bit:
            number(1, 1);
            return number(toBool(value) ? 1 : 0, 1);
        case TdsType::Int:
            number(static_cast<unsigned>(type.size), 1);
            return number(static_cast<std::uint64_t>(toInt64(value)), type.size);
        case TdsType::Float:
            number(8, 1);
            return number(std::bit_cast<std::uint64_t>(std::get<double>(value)), 8);
        case TdsType::Decimal: {
            const Int128 coefficient = std::get<basalt::Decimal>(value).rescaled(type.scale).coefficient();
            const auto magnitude = static_cast<unsigned __int128>(coefficient < 0 ? -coefficient : coefficient);
            number(17, 1);
            number(coefficient < 0 ? 0 : 1, 1);
            number(static_cast<std::uint64_t>(magnitude), 8);
            return number(static_cast<std::uint64_t>(magnitude >> 64), 8);
        }
        case TdsType::Money: {
            const auto units = static_cast<std::uint64_t>(std::get<basalt::Decimal>(value).rescaled(4).coefficient());
            number(8, 1);
            number(units >> 32, 4);
            return number(units, 4);
        }
        case TdsType::Datetime: {
            const CivilDateTime civil = toCivil(std::get<DateTime>(value));
            constexpr std::int64_t kTicksPerDay = 864'000'000'000;
            const std::int64_t origin = fromCivil({.year = 1900}).ticks / kTicksPerDay;
            const std::int64_t seconds = (civil.hour * 60 + civil.minute) * 60 + civil.second;
            number(8, 1);
            number(static_cast<std::uint64_t>(std::get<DateTime>(value).ticks / kTicksPerDay - origin), 4);
            return number(static_cast<std::uint64_t>(seconds * 300 + (civil.nanosecond / 1'000'000 * 3 + 5) / 10), 4);
        }
        case TdsType::Datetime2: {
            constexpr std::int64_t kTicksPerDay = 864'000'000'000;
            const std::int64_t ticks = std::get<DateTime>(value).ticks;
            number(8, 1);
            number(static_cast<std::uint64_t>(ticks % kTicksPerDay), 5);
            return number(static_cast<std::uint64_t>(ticks / kTicksPerDay), 3);
        }
        default: {
            const Bytes& raw = std::get<Bytes>(value);
            number(raw.size(), 1);
            bytes_.append(raw.begin(), raw.end());
        }
    }
}

TdsReply& TdsReply::columns(std::vector<TdsColumn> columns) {
    columns_ = std::move(columns);
    number(0x81, 1);
    number(columns_.size(), 2);
    for (const TdsColumn& column : columns_) {
        number(0, 4);
        number(1, 2);  // nullable
        type(column.type);
        text16(column.name, 1);
    }
    return *this;
}

TdsReply& TdsReply::row(const std::vector<Value>& cells) {
    number(0xD1, 1);
    for (std::size_t i = 0; i < columns_.size(); ++i)
        cell(columns_[i].type, cells.at(i));
    return *this;
}

void TdsReply::finish(unsigned token, unsigned status, std::int64_t count) {
    number(token, 1);
    number(status | (count >= 0 ? 0x10U : 0U), 2);
    number(0xC1, 2);
    number(count >= 0 ? static_cast<std::uint64_t>(count) : 0, 8);
}

TdsReply& TdsReply::done(std::int64_t count, bool more) {
    finish(0xFD, more ? 1 : 0, count);
    return *this;
}

TdsReply& TdsReply::doneInProcedure(std::int64_t count) {
    finish(0xFF, 1, count);
    return *this;
}

TdsReply& TdsReply::doneProcedure(bool failed) {
    finish(0xFE, failed ? 2 : 0, -1);
    return *this;
}

TdsReply& TdsReply::doneWithError(bool more) {
    finish(0xFD, more ? 3 : 2, -1);
    return *this;
}

TdsReply& TdsReply::cancelled() {
    finish(0xFD, 0x20, -1);
    return *this;
}

void TdsReply::message(unsigned token, int messageNumber, int severity, std::string_view text) {
    TdsReply body;
    body.number(static_cast<std::uint64_t>(messageNumber), 4);
    body.number(1, 1);
    body.number(static_cast<std::uint64_t>(severity), 1);
    body.text16(text, 2);
    body.text16("responder", 1);
    body.text16("", 1);
    body.number(1, 4);
    number(token, 1);
    number(body.bytes_.size(), 2);
    bytes_ += body.bytes_;
}

TdsReply& TdsReply::error(int number, int severity, std::string_view text) {
    message(0xAA, number, severity, text);
    return *this;
}

TdsReply& TdsReply::info(int number, std::string_view text) {
    message(0xAB, number, 0, text);
    return *this;
}

TdsReply& TdsReply::returnStatus(int value) {
    number(0x79, 1);
    number(static_cast<std::uint32_t>(value), 4);
    return *this;
}

TdsReply& TdsReply::returnValue(int ordinal, const TdsColumn& parameter, const Value& value) {
    number(0xAC, 1);
    number(static_cast<std::uint64_t>(ordinal), 2);
    text16(parameter.name, 1);
    number(1, 1);
    number(0, 4);
    number(1, 2);
    type(parameter.type);
    cell(parameter.type, value);
    return *this;
}

TdsReply& TdsReply::loginAccepted() {
    const auto changed = [&](unsigned what, std::string_view now) {
        TdsReply body;
        body.number(what, 1);
        body.text16(now, 1);
        body.text16("", 1);
        number(0xE3, 1);
        number(body.bytes_.size(), 2);
        bytes_ += body.bytes_;
    };
    changed(1, "Basalt");
    info(5701, "Changed database context to 'Basalt'.");
    changed(4, "4096");
    TdsReply acknowledgement;
    acknowledgement.number(1, 1);
    acknowledgement.bytes_ += std::string_view("\x74\x00\x00\x04", 4);
    acknowledgement.text16("Microsoft SQL Server", 1);
    acknowledgement.bytes_ += std::string_view("\x0B\x00\x0C\x38", 4);
    number(0xAD, 1);
    number(acknowledgement.bytes_.size(), 2);
    bytes_ += acknowledgement.bytes_;
    return done();
}

std::string cutShort(const TdsReply& reply, std::size_t bytes) {
    return reply.bytes().substr(0, bytes);
}

}  // namespace basalt::odbc::test
