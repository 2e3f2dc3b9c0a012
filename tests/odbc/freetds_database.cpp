// Through FreeTDS' driver, on a server in this process. Without the driver all tests of the program are skipped.
#include <gtest/gtest.h>

#include "drivers.h"
#include "engines/odbc/odbc_session.h"
#include "stand_in_server.h"
#include "tests/database/test_database.h"

namespace basalt::host {

namespace {

std::optional<std::string> driver() {
    return odbc::test::driverPart("libtdsodbc.so");
}

class FreeTdsIsInstalled : public ::testing::Environment {
    void SetUp() override {
        if (!driver()) GTEST_SKIP() << "FreeTDS' ODBC driver (libtdsodbc.so) is not installed";
    }
};

[[maybe_unused]] const ::testing::Environment* const environment =
    ::testing::AddGlobalTestEnvironment(new FreeTdsIsInstalled);

}  // namespace

struct TestDatabase::Parts {
    odbc::test::StandInServer server{":memory:"};
    std::unique_ptr<odbc::OdbcSession> session = odbc::OdbcSession::open(driver().value() + server.connectionPart());
};

TestDatabase::TestDatabase() : parts_(std::make_unique<Parts>()) {}

TestDatabase::~TestDatabase() = default;

Session& TestDatabase::session() const {
    return *parts_->session;
}

}  // namespace basalt::host
