#pragma once

#include <filesystem>

namespace hollowfernpike::test {

/// What Mesa has compiled for a compositor that draws without a graphics card, which takes a third
/// of the compositor's start. Sessions begin with what one before them has left.
class KeptShaders {
public:
    /// For a session that begins in this home, which outlives the compositor.
    explicit KeptShaders(const std::filesystem::path& home);
    KeptShaders(const KeptShaders&) = delete;
    KeptShaders& operator=(const KeptShaders&) = delete;
    ~KeptShaders();

private:
    std::filesystem::path ofSession_;
};

} // namespace hollowfernpike::test
