#include "package/InstalledEntry.h"

#include <fstream>
#include <sstream>

namespace hollowfernpike::test {

namespace {

constexpr auto mainGroup = "Desktop Entry";

std::vector<std::string> split(const std::string& text, char separator) {
    std::vector<std::string> parts;
    std::istringstream stream(text);
    for (std::string part; std::getline(stream, part, separator);) {
        parts.push_back(part);
    }
    return parts;
}

} // namespace

InstalledEntry::InstalledEntry() {
    std::ifstream file(path);
    std::string group;
    for (std::string line; std::getline(file, line);) {
        const auto equals = line.find('=');
        if (line.starts_with('[')) {
            group = line.substr(1, line.size() - 2);
        } else if (equals != std::string::npos) {
            groups_[group][line.substr(0, equals)] = line.substr(equals + 1);
        }
    }
}

std::string InstalledEntry::value(const std::string& key) const {
    return groups_.at(mainGroup).at(key);
}

std::string InstalledEntry::value(const std::string& action, const std::string& key) const {
    return groups_.at("Desktop Action " + action).at(key);
}

std::vector<std::string> InstalledEntry::actions() const {
    return split(value("Actions"), ';');
}

std::vector<std::string> InstalledEntry::command(const std::string& action) const {
    return split(action.empty() ? value("Exec") : value(action, "Exec"), ' ');
}

} // namespace hollowfernpike::test
