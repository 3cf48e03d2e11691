#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace hollowfernpike::bench {

/// A build of the program. It reads the same file of shortcuts as this one does and, on sway, logs
/// as this one does what it has bound.
struct Build {
    std::string name;
    std::filesystem::path program;
};

/// The build that is measured, then another that is measured beside it, if one was named.
using Builds = std::vector<Build>;

} // namespace hollowfernpike::bench
