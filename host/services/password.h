// Passwords as they are kept: "pbkdf2-sha256$ITERATIONS$SALT$HASH", salt and hash in base64.
#pragma once

#include <string>
#include <string_view>

namespace basalt::host {

// A new random salt each time. std::runtime_error when the system gives no random numbers.
[[nodiscard]] std::string hashPassword(std::string_view password);
// False also when the kept text is not of the form above.
[[nodiscard]] bool verifyPassword(std::string_view password, std::string_view kept);

}  // namespace basalt::host
