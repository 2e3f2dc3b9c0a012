#include "host/engines/tellable_words.h"

#include <gtest/gtest.h>

#include <vector>

namespace basalt::host {
namespace {

struct Case {
    std::vector<std::string> words;
    std::string text;
    std::string told;
};

TEST(TellableWords, connectionStringsAreCutToTheirPublicParts) {
    const std::string secret = "DRIVER=FreeTDS;SERVER=shop;Database=Basalt;UID=sa;PWD=top;";
    const std::string open = "SERVER=shop;Database=Basalt";
    const std::vector<Case> cases = {
        {{"sql", "--databse", "odbc:" + secret},
         "not expected: odbc:" + secret + " --databse",
         "not expected: odbc:" + open + " --databse"},
        {{"--databse=odbc:" + secret},
         "not expected: --databse=odbc:" + secret,
         "not expected: --databse=odbc:" + open},
        {{secret}, secret + " cannot be made, " + secret, open + " cannot be made, " + open},
        {{"odbc:DSN=shop"}, "odbc:DSN=shop twice", "odbc:DSN=shop twice"},
        {{"odbc:"}, "odbc: is none", "odbc: is none"},
        {{"select 'odbc:' as x from nope"}, "select 'odbc:' as x from nope", "select 'odbc:' as x from nope"},
        {{"select 1", "", "a=b"}, "select 1 a=b", "select 1 a=b"},
    };
    for (const Case& each : cases)
        EXPECT_EQ(withoutConnectionStrings(each.text, each.words), each.told);
}

}  // namespace
}  // namespace basalt::host
