// Finds the ODBC drivers of this machine by their files, so that no configuration of the driver manager is needed.
#pragma once

#include <filesystem>
#include <optional>
#include <string>

namespace basalt::odbc::test {

// "DRIVER=/usr/lib/.../libsqlite3odbc.so;" for "libsqlite3odbc.so"; nullopt when there is no such file.
inline std::optional<std::string> driverPart(const std::string& file) {
    namespace fs = std::filesystem;
    for (const char* root : {"/usr/lib", "/usr/local/lib"}) {
        std::error_code ignored;
        for (const auto& entry : fs::directory_iterator(root, ignored)) {
            for (const fs::path& candidate : {entry.path() / "odbc" / file, entry.path() / file}) {
                if (fs::exists(candidate, ignored)) return "DRIVER=" + candidate.string() + ";";
            }
        }
    }
    return std::nullopt;
}

}  // namespace basalt::odbc::test
