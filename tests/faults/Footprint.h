#pragma once

#include "desktop/Pager.h"

#include <cstddef>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <ostream>
#include <stdexcept>
#include <string>

#include <sys/types.h>

namespace hollowfernpike::test {

/// What a process takes up.
struct Footprint {
    std::size_t memory = 0; ///< bytes of anonymous memory
    std::size_t threads = 0;
    std::size_t descriptors = 0;
    std::size_t displayClients = 0;
};

inline std::size_t numberIn(const std::filesystem::path& file, const std::string& name) {
    std::ifstream stream(file);
    std::size_t number = 0;
    for (std::string word; stream >> word;) {
        if (word == name && stream >> number) {
            return number;
        }
    }
    throw std::runtime_error(name + " is not in " + file.string());
}

inline Footprint footprintOf(pid_t process, Pager& pager) {
    const auto folder = std::filesystem::path("/proc") / std::to_string(process);
    Footprint result;
    result.memory = numberIn(folder / "smaps_rollup", "Anonymous:") * 1024;
    result.threads = numberIn(folder / "status", "Threads:");
    const std::filesystem::directory_iterator descriptors(folder / "fd");
    result.descriptors = static_cast<std::size_t>(std::distance(begin(descriptors), {}));
    result.displayClients = pager.clients(process);
    return result;
}

inline std::ostream& operator<<(std::ostream& stream, const Footprint& footprint) {
    return stream << footprint.memory << " bytes of memory, " << footprint.threads << " threads, "
                  << footprint.descriptors << " descriptors, " << footprint.displayClients
                  << " connections to the display";
}

} // namespace hollowfernpike::test
