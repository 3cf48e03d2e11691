#pragma once

#include <fstream>
#include <sstream>
#include <string>
#include <vector>

namespace hollowfernpike::test {

/// What the program's desktop entry gives it on its command line.
inline std::vector<std::string> argumentsInEntry() {
    const std::string key = "Exec=@program@ ";
    std::ifstream entry(HFP_DESKTOP_ENTRY);
    std::vector<std::string> arguments;
    for (std::string line; arguments.empty() && std::getline(entry, line);) {
        if (line.starts_with(key)) {
            std::istringstream words(line.substr(key.size()));
            for (std::string word; words >> word;) {
                arguments.push_back(word);
            }
        }
    }
    return arguments;
}

} // namespace hollowfernpike::test
