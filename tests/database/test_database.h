// An empty database for one test, on the engine that the test program brings: each links one implementation, so that
// the same cases run on every engine.
//
//   TestDatabase database;
//   deployDatabase(database.session());
#pragma once

#include <memory>

#include "ado/session.h"

namespace basalt::host {

class TestDatabase {
public:
    TestDatabase();
    ~TestDatabase();
    TestDatabase(const TestDatabase&) = delete;
    TestDatabase& operator=(const TestDatabase&) = delete;

    [[nodiscard]] Session& session() const;

private:
    struct Parts;
    std::unique_ptr<Parts> parts_;
};

}  // namespace basalt::host
