#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

namespace hollowfernpike::test {

/// The settings of this program as the system keeps them.
void emptySettings();
void setNumberInSettings(const std::string& key, long number);
void setListInSettings(const std::string& key, const std::vector<std::string>& texts);

/// Empty if there is no list.
std::vector<std::string> listInSettings(const std::string& key);

/// Makes another program's settings.
void setOtherDomain(const std::string& name, const std::string& key, const std::string& text);

/// A view of ours, in a window.
std::uintptr_t nativeView();

/// Where the user's own applications lie as long as this lives.
class HomeOfApplications {
public:
    HomeOfApplications();
    HomeOfApplications(const HomeOfApplications&) = delete;
    HomeOfApplications& operator=(const HomeOfApplications&) = delete;
    ~HomeOfApplications();

    const std::filesystem::path& applications() const { return applications_; }

private:
    std::filesystem::path applications_;
};

} // namespace hollowfernpike::test
