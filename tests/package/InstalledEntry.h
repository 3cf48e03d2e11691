#pragma once

#include <map>
#include <string>
#include <vector>

namespace hollowfernpike::test {

/// The utility's desktop entry as it is installed, read as launchers do.
class InstalledEntry {
public:
    static constexpr auto path =
        "/usr/share/applications/app.hollowfernpike.Hollowfernpike.desktop";

    InstalledEntry();

    /// The value of a key in the main group, or in an action's; throws std::out_of_range.
    std::string value(const std::string& key) const;
    std::string value(const std::string& action, const std::string& key) const;

    std::vector<std::string> actions() const;

    /// The command line of an action; of the entry itself if the name is empty.
    std::vector<std::string> command(const std::string& action = {}) const;

private:
    std::map<std::string, std::map<std::string, std::string>> groups_;
};

} // namespace hollowfernpike::test
