#include "host/screens/display_format.h"

#include <algorithm>

namespace basalt::host {
namespace {

// The sections of a pattern; a semicolon between quotation marks separates nothing.
std::vector<std::string_view> sectionsOf(std::string_view pattern) {
    std::vector<std::string_view> sections;
    std::size_t start = 0;
    char quote = 0;
    for (std::size_t i = 0; i < pattern.size(); ++i) {
        const char character = pattern[i];
        if (quote != 0) {
            if (character == quote) quote = 0;
        } else if (character == '"' || character == '\'') {
            quote = character;
        } else if (character == ';') {
            sections.push_back(pattern.substr(start, i - start));
            start = i + 1;
        }
    }
    sections.push_back(pattern.substr(start));
    return sections;
}

std::string grouped(const std::string& digits) {
    std::string result;
    for (std::size_t i = 0; i < digits.size(); ++i) {
        if (i > 0 && (digits.size() - i) % 3 == 0) result += ',';
        result += digits[i];
    }
    return result;
}

}  // namespace

DisplayFormat::DisplayFormat(std::string_view pattern) {
    if (pattern.empty()) return;
    for (const std::string_view section : sectionsOf(pattern))
        sections_.push_back(parse(section));
}

DisplayFormat::Section DisplayFormat::parse(std::string_view pattern) {
    Section section;
    bool inFraction = false;
    char quote = 0;
    for (const char character : pattern) {
        if (quote != 0) {
            if (character == quote) {
                quote = 0;
            } else {
                (section.hasDigits ? section.suffix : section.prefix) += character;
            }
            continue;
        }
        switch (character) {
            case '"':
            case '\'':
                quote = character;
                break;
            case '#':
            case '0':
                section.hasDigits = true;
                if (inFraction) {
                    ++section.mostFractionDigits;
                    if (character == '0') section.leastFractionDigits = section.mostFractionDigits;
                } else if (character == '0' || section.leastIntegerDigits > 0) {
                    ++section.leastIntegerDigits;
                }
                break;
            case '.':
                section.hasDigits = true;
                inFraction = true;
                break;
            case ',':
                section.groups = true;
                break;
            default:
                (section.hasDigits ? section.suffix : section.prefix) += character;
        }
    }
    section.mostFractionDigits = std::min(section.mostFractionDigits, kMaxDecimalDigits);
    return section;
}

std::string DisplayFormat::fill(const Section& section, const Decimal& magnitude) {
    if (!section.hasDigits) return section.prefix;
    std::string digits = magnitude.toString();
    const std::size_t point = digits.find('.');
    std::string integer = digits.substr(0, point);
    std::string fraction = point == std::string::npos ? std::string() : digits.substr(point + 1);
    while (static_cast<int>(fraction.size()) > section.leastFractionDigits && fraction.ends_with('0'))
        fraction.pop_back();
    fraction.append(
        static_cast<std::size_t>(std::max(0, section.leastFractionDigits - static_cast<int>(fraction.size()))), '0');
    if (integer == "0" && section.leastIntegerDigits == 0) integer.clear();
    integer.insert(
        0, static_cast<std::size_t>(std::max(0, section.leastIntegerDigits - static_cast<int>(integer.size()))), '0');
    std::string result = section.prefix + (section.groups ? grouped(integer) : integer);
    if (!fraction.empty()) result += "." + fraction;
    return result + section.suffix;
}

std::string DisplayFormat::text(const Decimal& value) const {
    if (sections_.empty()) return value.toPlainString();
    const bool negative = value.coefficient() < 0;
    const bool ownNegative = negative && sections_.size() > 1 && sections_[1].hasDigits;
    const Section& section = ownNegative ? sections_[1] : sections_[0];
    // Rounding comes first, so that what is shown as zero is shown like zero. A number is left as it is when it has no
    // room to be widened.
    const Decimal rounded =
        value.scale() > section.mostFractionDigits ? value.rescaled(section.mostFractionDigits) : value;
    if (rounded.coefficient() == 0) return fill(sections_.size() > 2 ? sections_[2] : sections_[0], Decimal(0, 0));
    const Decimal magnitude(negative ? -rounded.coefficient() : rounded.coefficient(), rounded.scale());
    const std::string filled = fill(section, magnitude);
    return negative && !ownNegative ? "-" + filled : filled;
}

int DisplayFormat::decimals() const {
    return sections_.empty() ? -1 : sections_[0].mostFractionDigits;
}

}  // namespace basalt::host
