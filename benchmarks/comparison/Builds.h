#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace hollowfernpike::bench {

/// A build of the program.
struct Build {
    std::string name;
    std::filesystem::path program;
};

/// The build that is measured, then another that is measured beside it, if one was named.
using Builds = std::vector<Build>;

} // namespace hollowfernpike::bench
