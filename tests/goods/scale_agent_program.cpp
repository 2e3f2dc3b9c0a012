// A scale agent for tests: writes its arguments, one a line, to the file that SCALE_AGENT_OUTPUT names, and into
// another beside it (.open) how many files it was started with beside the standard ones.
#include <fcntl.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>

int main(int count, char** arguments) {
    int inherited = 0;
    for (int each = 3; each < 1024; ++each)
        inherited += fcntl(each, F_GETFD) != -1 ? 1 : 0;
    const char* name = std::getenv("SCALE_AGENT_OUTPUT");
    if (name == nullptr) return 1;
    const std::filesystem::path half = std::string(name) + ".half";
    {
        std::ofstream file(half, std::ios::binary);
        for (int i = 1; i < count; ++i)
            file << arguments[i] << '\n';
    }
    std::ofstream(std::string(name) + ".open") << inherited;
    // There at once or not at all, for those who wait for it.
    std::filesystem::rename(half, name);
    return 0;
}
