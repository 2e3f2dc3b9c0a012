#include "host/services/process_identity.h"

#include <openssl/evp.h>

#include <array>
#include <stdexcept>

#include "host/services/cut_text.h"
#include "host/services/platform/process.h"

namespace basalt::host {

namespace {

constexpr std::size_t kMarkLength = 100;
constexpr std::size_t kHashBytes = 16;

std::string hashOf(const std::string& id) {
    // Other programs that hash the id have other results.
    const std::string text = "basalt workstation " + id;
    std::array<unsigned char, EVP_MAX_MD_SIZE> hash{};
    if (EVP_Digest(text.data(), text.size(), hash.data(), nullptr, EVP_sha256(), nullptr) != 1)
        throw std::runtime_error("the id of this machine could not be hashed");
    std::string digits;
    for (std::size_t i = 0; i < kHashBytes; ++i) {
        digits += "0123456789abcdef"[hash[i] / 16];
        digits += "0123456789abcdef"[hash[i] % 16];
    }
    return digits;
}

std::string thisMachine() {
    return machineMark(platform::machineName(), platform::machineId());
}

}  // namespace

std::string machineMark(const std::string& name, const std::string& id) {
    if (id.empty()) return cutText(name, kMarkLength);
    return cutText(name, kMarkLength - 1 - 2 * kHashBytes) + "#" + hashOf(id);
}

ProcessIdentity currentProcess() {
    return {thisMachine(), platform::currentProcessId(), platform::currentProcessMark()};
}

bool mayBeAlive(const ProcessIdentity& process) {
    return process.machine != thisMachine() || !platform::hasEnded(process.id, process.started);
}

}  // namespace basalt::host
