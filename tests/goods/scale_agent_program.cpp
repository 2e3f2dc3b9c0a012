// A scale agent for tests: writes its arguments, one a line, to the file that SCALE_AGENT_OUTPUT names.
#include <cstdlib>
#include <filesystem>
#include <fstream>

int main(int count, char** arguments) {
    const char* name = std::getenv("SCALE_AGENT_OUTPUT");
    if (name == nullptr) return 1;
    const std::filesystem::path half = std::string(name) + ".half";
    {
        std::ofstream file(half, std::ios::binary);
        for (int i = 1; i < count; ++i)
            file << arguments[i] << '\n';
    }
    // There at once or not at all, for those who wait for it.
    std::filesystem::rename(half, name);
    return 0;
}
