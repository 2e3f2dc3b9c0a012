// The statement that runs, for the functions that SQLite calls meanwhile.
#pragma once

#include "engines/embedded/executor/environment.h"

namespace basalt::embedded {

// Puts the statement's environment into the place, as long as it runs. A function of users that the statement calls may
// assign variables of its own meanwhile.
class Running {
public:
    Running(const Environment*& place, const Environment& environment) : place_(place), outer_(place) {
        place_ = &environment;
    }
    Running(const Running&) = delete;
    Running& operator=(const Running&) = delete;
    ~Running() { place_ = outer_; }

private:
    const Environment*& place_;
    const Environment* outer_;
};

}  // namespace basalt::embedded
