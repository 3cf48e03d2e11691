#pragma once

#include <filesystem>
#include <fstream>
#include <string>

namespace hollowfernpike::test {

/// Writes a file, and makes its folder first.
inline void writeFile(const std::filesystem::path& file, const std::string& text) {
    std::filesystem::create_directories(file.parent_path());
    std::ofstream{file} << text;
}

} // namespace hollowfernpike::test
