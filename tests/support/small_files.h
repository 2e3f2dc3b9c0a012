// A disk that has no more room, for one process.
#pragma once

#include <sys/resource.h>

#include <csignal>

namespace basalt::test {

// As long as it lives no file of this process grows beyond the size, as on a disk that has no more room.
class SmallFiles {
public:
    explicit SmallFiles(rlim_t bytes) : signal_(std::signal(SIGXFSZ, SIG_IGN)) {
        getrlimit(RLIMIT_FSIZE, &before_);
        rlimit smaller = before_;
        smaller.rlim_cur = bytes;
        setrlimit(RLIMIT_FSIZE, &smaller);
    }
    ~SmallFiles() {
        setrlimit(RLIMIT_FSIZE, &before_);
        static_cast<void>(std::signal(SIGXFSZ, signal_));
    }
    SmallFiles(const SmallFiles&) = delete;
    SmallFiles& operator=(const SmallFiles&) = delete;

private:
    rlimit before_{};
    void (*signal_)(int);
};

}  // namespace basalt::test
