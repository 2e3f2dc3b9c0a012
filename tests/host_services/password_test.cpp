#include "host/services/password.h"

#include <gtest/gtest.h>

namespace basalt::host {
namespace {

TEST(Password, fitsItsOwnHashOnly) {
    const std::string kept = hashPassword("رمز۱۲۳");
    EXPECT_TRUE(verifyPassword("رمز۱۲۳", kept));
    EXPECT_FALSE(verifyPassword("رمز123", kept));
    EXPECT_FALSE(verifyPassword("", kept));
}

TEST(Password, isSaltedAnewEachTime) {
    EXPECT_NE(hashPassword("manager"), hashPassword("manager"));
    EXPECT_EQ(hashPassword("manager").find("manager"), std::string::npos);
}

TEST(Password, emptyPasswordsWorkLikeOthers) {
    const std::string kept = hashPassword("");
    EXPECT_TRUE(verifyPassword("", kept));
    EXPECT_FALSE(verifyPassword(" ", kept));
}

// PBKDF2-HMAC-SHA256 of "password" with salt "salt": the published vectors for 1 and 4096 rounds.
TEST(Password, isPbkdf2AsPublished) {
    EXPECT_TRUE(verifyPassword("password", "pbkdf2-sha256$1$c2FsdA==$Eg+2z/z4syxD5yJSVsT4N6hlSMkszDVICAWYfLcL4Xs="));
    EXPECT_TRUE(verifyPassword("password", "pbkdf2-sha256$4096$c2FsdA==$xeR41ZKIyEGqUw22hFxMjZYok6ABzk4RpJY4c6qYE0o="));
}

TEST(Password, damagedTextsFitNothing) {
    for (const char* kept :
         {"", "password", "pbkdf2-sha256", "pbkdf2-sha256$1$c2FsdA==$", "pbkdf2-sha256$x$c2FsdA==$AAAA",
          "pbkdf2-sha256$0$c2FsdA==$Eg+2z/z4syxD5yJSVsT4N6hlSMkszDVICAWYfLcL4Xs=",
          "pbkdf2-sha256$2000000000$c2FsdA==$Eg+2z/z4syxD5yJSVsT4N6hlSMkszDVICAWYfLcL4Xs=",
          "md5$1$c2FsdA==$Eg+2z/z4syxD5yJSVsT4N6hlSMkszDVICAWYfLcL4Xs=",
          "pbkdf2-sha256$1$c2F$Eg+2z/z4syxD5yJSVsT4N6hlSMkszDVICAWYfLcL4Xs=",
          "pbkdf2-sha256$1$c2FsdA==$Eg+2z/z4syxD5yJSVsT4N6hlSMkszDVICAWYfLcL4X"}) {
        EXPECT_FALSE(verifyPassword("password", kept)) << kept;
    }
}

}  // namespace
}  // namespace basalt::host
