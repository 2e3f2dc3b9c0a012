// A session through FreeTDS' driver to a scripted server.
#pragma once

#include <gmock/gmock.h>

#include <functional>
#include <memory>

#include "drivers.h"
#include "engines/odbc/odbc_session.h"
#include "tds_responder.h"

namespace basalt::odbc::test {

// What the action throws.
inline DatabaseError errorOf(const std::function<void()>& action) {
    try {
        action();
    } catch (const DatabaseError& error) {
        return error;
    }
    ADD_FAILURE() << "no error";
    return {ErrorCategory::Other, "", 0, "no error"};
}

class FreeTds : public testing::Test {
protected:
    void SetUp() override {
        const auto driver = driverPart("libtdsodbc.so");
        if (!driver) GTEST_SKIP() << "FreeTDS' ODBC driver (libtdsodbc.so) is not installed";
        text_ = *driver + server_.connectionPart();
    }
    void TearDown() override { EXPECT_EQ(server_.leftovers(), 0U); }

    OdbcSession& session() {
        if (!session_) session_ = OdbcSession::open(text_, options_);
        return *session_;
    }
    // The texts of all requests so far.
    [[nodiscard]] std::vector<std::string> sent() const {
        std::vector<std::string> texts;
        for (const TdsRequest& request : server_.requests())
            texts.push_back(request.text);
        return texts;
    }

    TdsResponder server_;
    std::string text_;
    OdbcOptions options_;
    std::unique_ptr<OdbcSession> session_;
};

}  // namespace basalt::odbc::test
