#include "engines/embedded/runtime/collation.h"

#include <unicode/uchar.h>
#include <unicode/ucol.h>
#include <unicode/utf8.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>
#include <stdexcept>

#include "engines/embedded/runtime/utf16.h"

namespace basalt::embedded {

namespace {

// The collator with the weights of the printable ASCII characters at hand, which spares most comparisons the collator.
class Collator {
public:
    explicit Collator(UColAttributeValue strength, bool caseCounts = false) {
        UErrorCode status = U_ZERO_ERROR;
        collator_ = ucol_open("", &status);
        if (U_FAILURE(status)) throw std::runtime_error("The Unicode collation data cannot be loaded.");
        ucol_setStrength(collator_, strength);
        // A level of its own for case, because the third one would look at more than case.
        if (caseCounts) ucol_setAttribute(collator_, UCOL_CASE_LEVEL, UCOL_ON, &status);
        if (U_FAILURE(status)) throw std::runtime_error("The Unicode collation data cannot tell case.");
        fillWeights();
    }
    Collator(const Collator&) = delete;
    Collator& operator=(const Collator&) = delete;
    ~Collator() { ucol_close(collator_); }

    [[nodiscard]] int compareSlow(std::string_view a, std::string_view b) const {
        UErrorCode status = U_ZERO_ERROR;
        const UCollationResult result = ucol_strcollUTF8(collator_, a.data(), static_cast<std::int32_t>(a.size()),
                                                         b.data(), static_cast<std::int32_t>(b.size()), &status);
        return result;
    }
    // 0 for a byte that only the collator can judge.
    [[nodiscard]] std::uint8_t weight(unsigned char byte) const { return weights_[byte]; }

    [[nodiscard]] std::string version() const {
        UVersionInfo version;
        ucol_getVersion(collator_, version);
        char text[U_MAX_VERSION_STRING_LENGTH];
        u_versionToString(version, text);
        return text;
    }

private:
    void fillWeights() {
        std::array<char, 95> characters;
        for (std::size_t i = 0; i < characters.size(); ++i)
            characters[i] = static_cast<char>(' ' + i);
        const auto less = [this](char a, char b) { return compareSlow({&a, 1}, {&b, 1}) < 0; };
        std::sort(characters.begin(), characters.end(), less);
        std::uint8_t rank = 1;
        for (std::size_t i = 0; i < characters.size(); ++i) {
            if (i > 0 && less(characters[i - 1], characters[i])) ++rank;
            weights_[static_cast<unsigned char>(characters[i])] = rank;
        }
    }

    UCollator* collator_ = nullptr;
    std::array<std::uint8_t, 256> weights_{};
};

const Collator& collator() {
    static const Collator instance(UCOL_SECONDARY);
    return instance;
}

const Collator& collatorOf(TextOrder order) {
    static const Collator byCase(UCOL_SECONDARY, true);
    static const Collator byLetters(UCOL_PRIMARY);
    static const Collator byLettersAndCase(UCOL_PRIMARY, true);
    switch (order) {
        case TextOrder::Case:
            return byCase;
        case TextOrder::Letters:
            return byLetters;
        case TextOrder::LettersAndCase:
            return byLettersAndCase;
        default:
            return collator();
    }
}

int compared(char32_t a, char32_t b) {
    if (a == b) return 0;
    // By UTF-16 units: those beyond the first plane begin with a unit from 0xD800 on.
    const auto unit = [](char32_t c) { return c > 0xFFFF ? 0xD7C0 + (c >> 10) : c; };
    if (unit(a) != unit(b)) return unit(a) < unit(b) ? -1 : 1;
    return a < b ? -1 : 1;
}

// The shorter text counts as filled up with blanks.
int compareCodes(std::string_view a, std::string_view b) {
    std::size_t i = 0;
    std::size_t j = 0;
    while (i < a.size() || j < b.size()) {
        const char32_t left = i < a.size() ? nextCharacter(a, i) : U' ';
        const char32_t right = j < b.size() ? nextCharacter(b, j) : U' ';
        if (const int result = compared(left, right); result != 0) return result;
    }
    return 0;
}

std::string_view withoutTrailingBlanks(std::string_view text) {
    while (!text.empty() && text.back() == ' ')
        text.remove_suffix(1);
    return text;
}

struct Utf8Character {
    char bytes[4];
    std::size_t size;
};

Utf8Character encode(char32_t c) {
    Utf8Character result{};
    std::int32_t length = 0;
    UBool failed = false;
    U8_APPEND(reinterpret_cast<std::uint8_t*>(result.bytes), length, 4, static_cast<UChar32>(c), failed);
    result.size = failed ? 0 : static_cast<std::size_t>(length);
    return result;
}

}  // namespace

int compareTexts(std::string_view a, std::string_view b) {
    a = withoutTrailingBlanks(a);
    b = withoutTrailingBlanks(b);
    if (a.size() == b.size() && std::memcmp(a.data(), b.data(), a.size()) == 0) return 0;
    const Collator& order = collator();
    const std::size_t common = std::min(a.size(), b.size());
    for (std::size_t i = 0; i < common; ++i) {
        const std::uint8_t left = order.weight(static_cast<unsigned char>(a[i]));
        const std::uint8_t right = order.weight(static_cast<unsigned char>(b[i]));
        // A character that follows may combine with this one, so the collator judges from the start.
        if (left == 0 || right == 0) return order.compareSlow(a, b);
        if (left != right) {
            const auto plainNext = [&](std::string_view text) {
                return i + 1 == text.size() || order.weight(static_cast<unsigned char>(text[i + 1])) != 0;
            };
            if (!plainNext(a) || !plainNext(b)) return order.compareSlow(a, b);
            return left < right ? -1 : 1;
        }
    }
    if (a.size() == b.size()) return 0;
    const std::string_view rest = a.size() > b.size() ? a.substr(common) : b.substr(common);
    if (order.weight(static_cast<unsigned char>(rest.front())) == 0) return order.compareSlow(a, b);
    return a.size() < b.size() ? -1 : 1;
}

int compareTexts(std::string_view a, std::string_view b, TextOrder order) {
    if (order == TextOrder::Database) return compareTexts(a, b);
    if (order == TextOrder::Codes) return compareCodes(a, b);
    return collatorOf(order).compareSlow(withoutTrailingBlanks(a), withoutTrailingBlanks(b));
}

const char* sqliteCollation(TextOrder order) {
    switch (order) {
        case TextOrder::Case:
            return "TSQL_CASE";
        case TextOrder::Letters:
            return "TSQL_LETTERS";
        case TextOrder::LettersAndCase:
            return "TSQL_LETTERS_CASE";
        case TextOrder::Codes:
            return "TSQL_CODES";
        default:
            return "TSQL";
    }
}

char32_t foldedCharacter(char32_t character) {
    if (character < 128) return character >= 'A' && character <= 'Z' ? character + 32 : character;
    return static_cast<char32_t>(u_foldCase(static_cast<UChar32>(character), U_FOLD_CASE_DEFAULT));
}

bool sameCharacter(char32_t a, char32_t b) {
    return a == b || foldedCharacter(a) == foldedCharacter(b);
}

bool sameCharacter(char32_t a, char32_t b, TextOrder order) {
    if (order == TextOrder::Database) return sameCharacter(a, b);
    if (order == TextOrder::Codes || order == TextOrder::Case) return a == b;
    return compareCharacters(a, b, order) == 0;
}

int compareCharacters(char32_t a, char32_t b, TextOrder order) {
    if (a == b) return 0;
    if (order == TextOrder::Codes) return compared(a, b);
    const Utf8Character left = encode(a);
    const Utf8Character right = encode(b);
    return collatorOf(order).compareSlow({left.bytes, left.size}, {right.bytes, right.size});
}

std::string collationVersion() {
    return collator().version();
}

}  // namespace basalt::embedded
