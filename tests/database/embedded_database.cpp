// In memory, by the embedded engine.
#include "engines/embedded/embedded_session.h"
#include "tests/database/test_database.h"

namespace basalt::host {

struct TestDatabase::Parts {
    std::unique_ptr<Session> session = embedded::EmbeddedSession::open(":memory:", {.createIfMissing = true});
};

TestDatabase::TestDatabase() : parts_(std::make_unique<Parts>()) {}

TestDatabase::~TestDatabase() = default;

Session& TestDatabase::session() const {
    return *parts_->session;
}

}  // namespace basalt::host
