#pragma once

#include "platform/FileManager.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <optional>
#include <string>
#include <system_error>
#include <vector>

namespace hollowfernpike::test {

inline void putFile(const std::filesystem::path& path, const std::string& contents) {
    std::ofstream{path, std::ios::binary | std::ios::trunc} << contents;
}

inline std::string contentsOf(const std::filesystem::path& path) {
    std::ifstream stream{path, std::ios::binary};
    return {std::istreambuf_iterator<char>{stream}, {}};
}

/// The names in a folder, sorted.
inline std::vector<std::string> namesIn(const std::filesystem::path& folder) {
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator{folder}) {
        names.push_back(entry.path().filename());
    }
    std::ranges::sort(names);
    return names;
}

/// The code of the failure of an operation on files; none if it succeeds.
template <class Operation>
std::error_code failureOf(Operation operation) {
    try {
        operation();
        return {};
    } catch (const platform::FileError& error) {
        return error.code();
    }
}

} // namespace hollowfernpike::test
