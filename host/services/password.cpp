#include "host/services/password.h"

#include <openssl/crypto.h>
#include <openssl/evp.h>
#include <openssl/rand.h>

#include <array>
#include <charconv>
#include <optional>
#include <stdexcept>
#include <vector>

namespace basalt::host {

namespace {

constexpr std::string_view kScheme = "pbkdf2-sha256";
constexpr int kIterations = 120'000;
constexpr int kMostIterations = 10'000'000;  // a damaged row must not keep the program busy for hours
constexpr std::size_t kSaltSize = 16;
constexpr std::size_t kHashSize = 32;

using Octets = std::vector<unsigned char>;

std::string toBase64(const Octets& bytes) {
    std::string text((bytes.size() + 2) / 3 * 4 + 1, '\0');
    const int size =
        EVP_EncodeBlock(reinterpret_cast<unsigned char*>(text.data()), bytes.data(), static_cast<int>(bytes.size()));
    text.resize(static_cast<std::size_t>(size));
    return text;
}

std::optional<Octets> fromBase64(std::string_view text) {
    if (text.empty() || text.size() % 4 != 0) return std::nullopt;
    Octets bytes(text.size() / 4 * 3);
    const int size = EVP_DecodeBlock(bytes.data(), reinterpret_cast<const unsigned char*>(text.data()),
                                     static_cast<int>(text.size()));
    if (size < 0) return std::nullopt;
    std::size_t padding = 0;
    while (padding < 2 && text[text.size() - 1 - padding] == '=')
        ++padding;
    bytes.resize(static_cast<std::size_t>(size) - padding);
    return bytes;
}

Octets derive(std::string_view password, const Octets& salt, int iterations) {
    Octets hash(kHashSize);
    if (PKCS5_PBKDF2_HMAC(password.data(), static_cast<int>(password.size()), salt.data(),
                          static_cast<int>(salt.size()), iterations, EVP_sha256(), static_cast<int>(hash.size()),
                          hash.data()) != 1) {
        throw std::runtime_error("the password could not be hashed");
    }
    return hash;
}

// The part before the next "$", which is removed with it.
std::string_view takePart(std::string_view& text) {
    const std::size_t end = text.find('$');
    const std::string_view part = text.substr(0, end);
    text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
    return part;
}

}  // namespace

std::string hashPassword(std::string_view password) {
    Octets salt(kSaltSize);
    if (RAND_bytes(salt.data(), static_cast<int>(salt.size())) != 1) {
        throw std::runtime_error("the system gave no random numbers for a password");
    }
    return std::string(kScheme) + "$" + std::to_string(kIterations) + "$" + toBase64(salt) + "$" +
           toBase64(derive(password, salt, kIterations));
}

bool verifyPassword(std::string_view password, std::string_view kept) {
    if (takePart(kept) != kScheme) return false;
    const std::string_view count = takePart(kept);
    int iterations = 0;
    const auto [end, failure] = std::from_chars(count.data(), count.data() + count.size(), iterations);
    if (failure != std::errc{} || end != count.data() + count.size() || iterations < 1 ||
        iterations > kMostIterations) {
        return false;
    }
    const auto salt = fromBase64(takePart(kept));
    const auto hash = fromBase64(kept);
    if (!salt || !hash || hash->size() != kHashSize) return false;
    const Octets given = derive(password, *salt, iterations);
    return CRYPTO_memcmp(given.data(), hash->data(), kHashSize) == 0;
}

}  // namespace basalt::host
