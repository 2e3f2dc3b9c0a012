// SUBSTRING once more, written so that it shares nothing with the one that it judges: the text is taken apart into its
// UTF-16 units, each position is asked for by itself, and the units are put together again.
//
//   substringOf("2812345", 0, 3)   "28"
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace basalt::fuzz {

// nullopt for what is not UTF-8.
inline std::optional<std::vector<unsigned>> unitsOf(std::string_view text) {
    std::vector<unsigned> units;
    for (std::size_t i = 0; i < text.size();) {
        const unsigned lead = static_cast<unsigned char>(text[i++]);
        unsigned more = 0;
        unsigned least = 0;
        unsigned code = lead;
        if (lead >= 0xF0 && lead < 0xF8) {
            more = 3, least = 0x10000, code = lead - 0xF0;
        } else if (lead >= 0xE0 && lead < 0xF0) {
            more = 2, least = 0x800, code = lead - 0xE0;
        } else if (lead >= 0xC0 && lead < 0xE0) {
            more = 1, least = 0x80, code = lead - 0xC0;
        } else if (lead >= 0x80) {
            return std::nullopt;
        }
        for (; more > 0; --more) {
            if (i == text.size()) return std::nullopt;
            const unsigned next = static_cast<unsigned char>(text[i++]);
            if (next / 64 != 2) return std::nullopt;
            code = code * 64 + next % 64;
        }
        if (code < least || code > 0x10FFFF || code / 2048 == 27) return std::nullopt;
        if (code > 0xFFFF) {
            units.push_back(0xD800 + (code - 0x10000) / 1024);
            units.push_back(0xDC00 + (code - 0x10000) % 1024);
        } else {
            units.push_back(code);
        }
    }
    return units;
}

// Half a pair becomes U+FFFD.
inline std::string textOf(const std::vector<unsigned>& units) {
    std::string text;
    const auto put = [&text](unsigned byte) { text.push_back(static_cast<char>(byte)); };
    for (std::size_t i = 0; i < units.size(); ++i) {
        unsigned code = units[i];
        if (code / 1024 == 54 && i + 1 < units.size() && units[i + 1] / 1024 == 55) {
            code = 0x10000 + code % 1024 * 1024 + units[++i] % 1024;
        } else if (code / 2048 == 27) {
            code = 0xFFFD;
        }
        if (code < 0x80) {
            put(code);
        } else if (code < 0x800) {
            put(0xC0 + code / 64), put(0x80 + code % 64);
        } else if (code < 0x10000) {
            put(0xE0 + code / 4096), put(0x80 + code / 64 % 64), put(0x80 + code % 64);
        } else {
            put(0xF0 + code / 262144), put(0x80 + code / 4096 % 64), put(0x80 + code / 64 % 64), put(0x80 + code % 64);
        }
    }
    return text;
}

// The units whose positions, from 1, are one of the count positions from start; nullopt for what is not UTF-8.
inline std::optional<std::string> substringOf(std::string_view text, long long start, long long count) {
    const auto units = unitsOf(text);
    if (!units) return std::nullopt;
    std::vector<unsigned> kept;
    for (std::size_t i = 0; i < units->size(); ++i) {
        const long long place = static_cast<long long>(i) + 1 - start;  // in the cut, from 0
        if (place >= 0 && place < count) kept.push_back((*units)[i]);
    }
    return textOf(kept);
}

}  // namespace basalt::fuzz
