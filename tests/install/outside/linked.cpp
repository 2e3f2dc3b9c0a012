// A host that is linked with the module: the contract's headers come with it.
#include <cstdio>

#include "package/module.h"

extern "C" basalt::Module* Basalt_Module();

int main() {
    std::printf("version %s\n", Basalt_Module()->version() == basalt::kModuleVersion ? "as in the headers" : "differs");
    return 0;
}
