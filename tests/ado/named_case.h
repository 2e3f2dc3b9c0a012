// Table rows whose name is the name of the test.
#pragma once

#include <gtest/gtest.h>

#include <string>

namespace basalt {

struct NameOfCase {
    template <typename Info>
    std::string operator()(const Info& test) const {
        return test.param.name;
    }
};

}  // namespace basalt
