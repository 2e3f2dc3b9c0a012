// A file by which a program says that it is at work: others see it held for exactly as long as the program lives.
//
//   FileHold hold = FileHold::make(folder / "held");     // the maker
//   if (FileHold::take(folder / "held").held()) ...       // anybody else, when the maker has gone
#pragma once

#include <cstdint>
#include <filesystem>
#include <utility>

namespace basalt::host::platform {

class FileHold {
public:
    FileHold() = default;
    FileHold(FileHold&& other) noexcept : handle_(std::exchange(other.handle_, kNone)) {}
    FileHold& operator=(FileHold&& other) noexcept {
        if (this == &other) return *this;
        release();
        handle_ = std::exchange(other.handle_, kNone);
        return *this;
    }
    ~FileHold() { release(); }

    // Makes the file and holds it. Check held(): the file may have been swept away at that moment, or the folder be
    // gone, or the file system know no holds, and then there is no such file.
    [[nodiscard]] static FileHold make(const std::filesystem::path& file);
    // Holds the file that somebody made; held() is false when there is none, or its maker or somebody else holds it.
    [[nodiscard]] static FileHold take(const std::filesystem::path& file);

    [[nodiscard]] bool held() const { return handle_ != kNone; }
    void release() noexcept;

private:
    static constexpr std::intptr_t kNone = -1;
    explicit FileHold(std::intptr_t handle) : handle_(handle) {}

    std::intptr_t handle_ = kNone;
};

}  // namespace basalt::host::platform
