#pragma once

#include "platform/freedesktop/files/DirectoryWatch.h"

#include <QSocketNotifier>
#include <QTimer>

#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

namespace hollowfernpike::freedesktop {

/// Tells when entries of applications, or icons that came with them, may have changed: five times a
/// second at most, because a package brings many files. Silent while the kernel would not watch.
/// Main thread only.
class ApplicationsWatch {
public:
    /// `directories` are those for entries; those for icons lie beside them.
    ApplicationsWatch(std::vector<std::filesystem::path> directories,
                      std::function<void()> onChange);

    /// Asks the kernel once more if it would not watch. If it does now, tells soon that there may
    /// have been changes.
    void tryAgain();

private:
    void begin();
    void look();
    void addEntries(const std::filesystem::path& directory);
    void addIcons(const std::filesystem::path& directory);

    std::vector<std::filesystem::path> directories_;
    std::function<void()> onChange_;
    std::optional<DirectoryWatch> watch_;
    std::unique_ptr<QSocketNotifier> readable_; ///< destroyed before the watch
    QTimer pause_;
};

} // namespace hollowfernpike::freedesktop
