#pragma once

#include "platform/ApplicationBundles.h"
#include "platform/NotificationCenter.h"
#include "platform/freedesktop/entries/ApplicationsWatch.h"
#include "platform/freedesktop/entries/DesktopEntries.h"

#include <map>
#include <string>

namespace hollowfernpike::freedesktop {

/// Applications by their desktop entries. A bundle's identifier is its desktop-file id without
/// ".desktop"; the file name likewise if it is not installed.
class ApplicationBundles final : public platform::ApplicationBundles {
public:
    /// The entries outlive this.
    explicit ApplicationBundles(DesktopEntries& entries) : entries_(entries) {}

    std::optional<platform::ApplicationBundle> bundleAt(const std::string& path) override;
    std::string displayName(const std::string& path, std::string_view language) override;
    platform::FileIcon iconForFile(const std::string& path) override;
    platform::ApplicationFiles applicationFiles() override { return {.extension = ".desktop"}; }
    platform::Standing standingOf(const std::string& path) override;
    std::vector<platform::InstalledApplication>
    installedApplications(std::string_view language) override;
    std::vector<std::string> applicationDirectories() override;
    std::unique_ptr<platform::Subscription> watch(std::function<void()> onChange) override;

private:
    /// A name that was read, and from what.
    struct KnownName {
        FileStamp stamp;
        std::string language;
        std::string name;
    };

    DesktopEntries& entries_;
    std::map<std::string, KnownName> names_; ///< by path; for lists that are built again and again
    platform::NotificationCenter observers_;
    std::optional<ApplicationsWatch> watch_; ///< from the first observer on
};

} // namespace hollowfernpike::freedesktop
