#include "engines/embedded/catalog/null_guard.h"

#include "engines/embedded/catalog/catalog.h"

namespace basalt::embedded {

namespace {

// Files of former versions have several for an index, which are numbered from 1 and do not name the table.
constexpr std::string_view kPrefix = "basalt_null_";
constexpr std::string_view kNumber = "0_";

}  // namespace

std::string nullGuardName(std::string_view table, std::string_view index) {
    return std::string(kPrefix).append(kNumber).append(storedIndexName(table, index));
}

bool isNullGuard(std::string_view stored) {
    return stored.starts_with(kPrefix);
}

std::string guardedIndex(std::string_view table, std::string_view guard) {
    const std::string_view rest = guard.substr(kPrefix.size());
    if (rest.starts_with(kNumber)) return shownIndexName(table, rest.substr(kNumber.size()));
    return std::string(rest.substr(rest.find('_') + 1));
}

}  // namespace basalt::embedded
