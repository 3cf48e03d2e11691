#pragma once

#include <cstddef>
#include <filesystem>

namespace hollowfernpike::bench {

/// Where programs write and we read as they do. Anybody may write, because not all contestants run
/// as our user.
class Fifo {
public:
    /// Makes it. Throws std::system_error if it cannot be made.
    explicit Fifo(std::filesystem::path path);
    Fifo(const Fifo&) = delete;
    Fifo& operator=(const Fifo&) = delete;
    ~Fifo();

    const std::filesystem::path& path() const { return path_; }

    /// Sleeps until there is something to read; false after some waiting.
    bool wait() const;

    /// Reads what is there, so many bytes at most, and returns how many; 0 if there is nothing.
    std::size_t read(void* bytes, std::size_t size) const;

private:
    std::filesystem::path path_;
    int descriptor_ = -1;
};

} // namespace hollowfernpike::bench
