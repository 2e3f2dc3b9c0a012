#include "engines/odbc/connection_string.h"

#include <algorithm>
#include <array>

#include "ado/names.h"

namespace basalt::odbc {

namespace {

std::string_view trimmed(std::string_view text) {
    while (!text.empty() && text.front() == ' ')
        text.remove_prefix(1);
    while (!text.empty() && text.back() == ' ')
        text.remove_suffix(1);
    return text;
}

// The length of a value in braces, braces included; a closing brace within is doubled.
std::size_t bracedLength(std::string_view text) {
    std::size_t i = 1;
    while (i < text.size()) {
        if (text[i++] != '}') continue;
        if (i >= text.size() || text[i] != '}') break;
        ++i;
    }
    return i;
}

// The length of a value in quotes, as other interfaces than ODBC write one; 0 when nothing ends with the second quote.
std::size_t quotedLength(std::string_view text) {
    const char quote = text.front();
    for (std::size_t end = text.find(quote, 1); end != std::string_view::npos; end = text.find(quote, end + 1)) {
        std::size_t behind = end + 1;
        while (behind < text.size() && text[behind] == ' ')
            ++behind;
        if (behind == text.size() || text[behind] == ';') return end + 1;
    }
    return 0;
}

std::string withoutBraces(std::string_view written) {
    if (!written.starts_with('{')) return std::string(written);
    std::string value;
    for (std::size_t i = 1; i < written.size(); ++i) {
        if (written[i] == '}') {
            if (i + 1 >= written.size() || written[i + 1] != '}') break;
            ++i;
        }
        value += written[i];
    }
    return value;
}

bool isPublic(std::string_view key) {
    constexpr std::array<std::string_view, 4> kPublic = {"server", "servername", "dsn", "database"};
    return std::any_of(kPublic.begin(), kPublic.end(), [&](std::string_view name) { return sameName(name, key); });
}

bool isSecret(std::string_view key) {
    const std::string folded = foldName(key);
    constexpr std::array<std::string_view, 4> kWords = {"pwd", "password", "secret", "token"};
    return std::any_of(kWords.begin(), kWords.end(),
                       [&](std::string_view word) { return folded.find(foldName(word)) != std::string::npos; });
}

// Of a word, in any script.
bool isLetter(char c) {
    const bool ascii = (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '_';
    return ascii || static_cast<unsigned char>(c) >= 0x80;
}

// Not the letters in the middle of a word.
bool standsAlone(std::string_view message, std::size_t at, std::size_t size) {
    const std::size_t end = at + size;
    const bool joinedBefore = at > 0 && isLetter(message[at - 1]) && isLetter(message[at]);
    const bool joinedBehind = end < message.size() && isLetter(message[end - 1]) && isLetter(message[end]);
    return !joinedBefore && !joinedBehind;
}

void blot(std::string& message, std::string_view secret) {
    if (secret.empty()) return;
    constexpr std::string_view kBlot = "***";
    // Fewer letters are parts of many words; of more, nothing but the secret itself consists.
    constexpr std::size_t kSurelySecret = 6;
    for (std::size_t at = 0; (at = message.find(secret, at)) != std::string::npos;) {
        if (secret.size() < kSurelySecret && !standsAlone(message, at, secret.size())) {
            ++at;
            continue;
        }
        message.replace(at, secret.size(), kBlot);
        at += kBlot.size();
    }
}

}  // namespace

ConnectionString::ConnectionString(std::string text) : text_(std::move(text)) {
    std::string_view rest = text_;
    while (!rest.empty()) {
        const std::size_t equals = rest.find('=');
        if (equals == std::string_view::npos) break;
        std::string_view key = rest.substr(0, equals);
        // Empty parts ("a=b;;c=d") belong to no key.
        if (const std::size_t last = key.rfind(';'); last != std::string_view::npos) key.remove_prefix(last + 1);
        rest.remove_prefix(equals + 1);
        while (!rest.empty() && rest.front() == ' ')
            rest.remove_prefix(1);
        const std::size_t braced = rest.starts_with('{') ? bracedLength(rest) : 0;
        const std::size_t end = std::min(rest.find(';', braced), rest.size());
        const std::string_view written = trimmed(rest.substr(0, end));
        const std::size_t at = text_.size() - rest.size();
        parts_.push_back({std::string(trimmed(key)), std::string(written), withoutBraces(written), at});
        rest.remove_prefix(std::min(end + 1, rest.size()));
    }
}

std::string ConnectionString::publicParts() const {
    std::string result;
    for (const Part& part : parts_) {
        if (!isPublic(part.key)) continue;
        if (!result.empty()) result += ';';
        result += part.key + "=" + part.written;
    }
    return result;
}

std::string ConnectionString::masked() const {
    std::string result;
    std::size_t told = 0;
    for (const Part& part : parts_) {
        if (!isSecret(part.key) || part.written.empty() || part.at < told) continue;
        std::size_t length = part.written.size();
        // What is a quote to the one is a letter to the other; the longer reading hides both.
        const std::string_view rest = std::string_view(text_).substr(part.at);
        if (rest.starts_with('"') || rest.starts_with('\'')) length = std::max(length, quotedLength(rest));
        result += text_.substr(told, part.at - told) + "***";
        told = part.at + length;
    }
    return result + text_.substr(told);
}

std::optional<std::string> ConnectionString::value(std::string_view key) const {
    const auto found =
        std::find_if(parts_.begin(), parts_.end(), [&](const Part& part) { return sameName(part.key, key); });
    if (found == parts_.end()) return std::nullopt;
    return found->value;
}

std::string ConnectionString::withoutSecrets(std::string message) const {
    for (const Part& part : parts_) {
        if (!isSecret(part.key)) continue;
        blot(message, part.written);
        blot(message, part.value);
    }
    return message;
}

}  // namespace basalt::odbc
