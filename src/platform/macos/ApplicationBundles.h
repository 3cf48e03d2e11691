#pragma once

#include "platform/ApplicationBundles.h"

namespace hollowfernpike::macos {

/// Applications as bundles, which are folders. Their names are in the language of the user's
/// session, whatever language is asked for; the system draws their icons.
class ApplicationBundles final : public platform::ApplicationBundles {
public:
    std::optional<platform::ApplicationBundle> bundleAt(const std::string& path) override;
    std::string displayName(const std::string& path, std::string_view language) override;
    platform::FileIcon iconForFile(const std::string& path) override;
    std::optional<platform::IconPixels> drawIcon(const std::string& file, int side) override;
    platform::Standing standingOf(const std::string& path) override;

    /// Those in the directories below and in folders of these.
    std::vector<platform::InstalledApplication>
    installedApplications(std::string_view language) override;

    platform::ApplicationFiles applicationFiles() override {
        return {.extension = ".app", .areFolders = true};
    }

    /// /Applications comes first.
    std::vector<std::string> applicationDirectories() override;

    /// We do not ask the system to tell.
    std::unique_ptr<platform::Subscription> watch(std::function<void()> /*onChange*/) override {
        return nullptr;
    }
};

} // namespace hollowfernpike::macos
