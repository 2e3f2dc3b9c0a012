// Links the data functions and nothing else, so that their link closure can be looked at.
#include <cstdio>

#include "package/numbers.h"

int main() {
    std::puts(basalt::FloatToStr_VRO(12500.5L).c_str());
    return 0;
}
