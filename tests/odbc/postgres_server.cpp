#include "postgres_server.h"

#include <pwd.h>
#include <unistd.h>

#include <cstdlib>

namespace basalt::odbc::test {

namespace fs = std::filesystem;

namespace {

// The server refuses to run as root.
constexpr const char* kUser = "postgres";

fs::path findPrograms() {
    std::error_code ignored;
    for (const auto& entry : fs::directory_iterator("/usr/lib/postgresql", ignored)) {
        if (fs::exists(entry.path() / "bin" / "initdb", ignored)) return entry.path() / "bin";
    }
    return {};
}

}  // namespace

PostgresServer::PostgresServer() : programs_(findPrograms()) {
    if (programs_.empty()) {
        problem_ = "PostgreSQL's server (initdb) is not installed";
        return;
    }
    if (geteuid() == 0) {
        const passwd* user = getpwnam(kUser);
        if (user == nullptr || chown(folder_.path().c_str(), user->pw_uid, user->pw_gid) != 0) {
            problem_ = "there is no user to run PostgreSQL's server as";
            return;
        }
    }
    const std::string data = folder_.file("data");
    if (!run("initdb", "-D " + data + " -U tester -A trust --no-sync -E UTF8 --locale=C.UTF-8")) {
        problem_ = "PostgreSQL's initdb fails";
        return;
    }
    started_ = run("pg_ctl", "start -w -D " + data + " -l " + folder_.file("log") + " -o \"-k " +
                                 folder_.path().string() + " -c listen_addresses='' -c fsync=off\"");
    if (!started_) problem_ = "PostgreSQL's server does not start";
}

PostgresServer::~PostgresServer() {
    if (started_) static_cast<void>(run("pg_ctl", "stop -m immediate -D " + folder_.file("data")));
}

std::string PostgresServer::connectionPart() const {
    return "SERVER=" + folder_.path().string() + ";PORT=5432;DATABASE=postgres;UID=tester;PWD=hidden;BoolsAsChar=0;";
}

bool PostgresServer::run(const std::string& program, const std::string& arguments) const {
    std::string command = "cd / && ";
    if (geteuid() == 0) command += std::string("runuser -u ") + kUser + " -- ";
    command += (programs_ / program).string() + " " + arguments + " >/dev/null 2>&1";
    return std::system(command.c_str()) == 0;
}

}  // namespace basalt::odbc::test
