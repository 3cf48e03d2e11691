#pragma once

#include "platform/ApplicationBundles.h"
#include "platform/freedesktop/entries/DesktopEntries.h"

namespace hollowfernpike::freedesktop {

/// Applications by their desktop entries. A bundle's identifier is its desktop-file id without
/// ".desktop".
class ApplicationBundles final : public platform::ApplicationBundles {
public:
    /// The entries outlive this.
    explicit ApplicationBundles(DesktopEntries& entries) : entries_(entries) {}

    std::optional<platform::ApplicationBundle> bundleAt(const std::string& path) override;
    platform::FileIcon iconForFile(const std::string& path) override;
    platform::Standing standingOf(const std::string& path) override;
    std::vector<platform::InstalledApplication>
    installedApplications(std::string_view language) override;
    std::vector<std::string> applicationDirectories() override;

    /// The name of the application at `path` as people know it; empty if there is none to be read.
    static std::string displayName(const std::string& path, std::string_view language);

private:
    DesktopEntries& entries_;
};

} // namespace hollowfernpike::freedesktop
