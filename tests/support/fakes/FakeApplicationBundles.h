#pragma once

#include "platform/ApplicationBundles.h"
#include "platform/NotificationCenter.h"

#include <map>
#include <set>
#include <string>
#include <utility>
#include <vector>

namespace hollowfernpike::test {

/// Applications as the test lists them.
class FakeApplicationBundles final : public platform::ApplicationBundles {
public:
    std::map<std::string, platform::ApplicationBundle> bundles;
    std::map<std::string, platform::FileIcon> icons;
    std::map<std::pair<std::string, std::string>, std::string>
        displayNames;                                    ///< by path and language
    std::map<std::string, platform::Standing> standings; ///< of those that are not fine
    std::vector<platform::InstalledApplication> installed;
    std::vector<std::string> directories;
    platform::ApplicationFiles files{.extension = ".desktop"};
    std::map<std::string, platform::IconPixels> drawings;
    std::string askedLanguage;             ///< of the latest listing
    std::multiset<std::string> namesAsked; ///< the paths, each time they were asked for
    std::multiset<std::string> iconsAsked; ///< the paths, each time they were asked for

    std::optional<platform::ApplicationBundle> bundleAt(const std::string& path) override {
        const auto found = bundles.find(path);
        return found == bundles.end() ? std::nullopt : std::optional(found->second);
    }

    std::string displayName(const std::string& path, std::string_view language) override {
        namesAsked.insert(path);
        const auto found = displayNames.find({path, std::string{language}});
        return found == displayNames.end() ? std::string{} : found->second;
    }

    platform::FileIcon iconForFile(const std::string& path) override {
        iconsAsked.insert(path);
        const auto found = icons.find(path);
        return found == icons.end() ? platform::FileIcon{} : found->second;
    }

    std::optional<platform::IconPixels> drawIcon(const std::string& file, int side) override {
        const auto found = drawings.find(file);
        return found == drawings.end() || found->second.side != side ? std::nullopt
                                                                     : std::optional(found->second);
    }

    platform::Standing standingOf(const std::string& path) override {
        const auto found = standings.find(path);
        return found == standings.end() ? platform::Standing::fine : found->second;
    }

    std::vector<platform::InstalledApplication>
    installedApplications(std::string_view language) override {
        askedLanguage = language;
        return installed;
    }

    platform::ApplicationFiles applicationFiles() override { return files; }

    std::vector<std::string> applicationDirectories() override { return directories; }

    std::unique_ptr<platform::Subscription> watch(std::function<void()> onChange) override {
        return observers_.observe("change", std::move(onChange));
    }

    /// Tells those who watch.
    void change() { observers_.post("change"); }

private:
    platform::NotificationCenter observers_;
};

} // namespace hollowfernpike::test
