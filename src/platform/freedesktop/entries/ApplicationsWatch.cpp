#include "platform/freedesktop/entries/ApplicationsWatch.h"

#include "platform/freedesktop/files/BaseDirectories.h"

#include <chrono>
#include <system_error>
#include <utility>

namespace hollowfernpike::freedesktop {

namespace {

namespace fs = std::filesystem;

constexpr std::chrono::milliseconds pauseAfterChange{200};
constexpr auto anyFile = "";

} // namespace

ApplicationsWatch::ApplicationsWatch(std::vector<fs::path> directories,
                                     std::function<void()> onChange)
    : directories_(std::move(directories)), onChange_(std::move(onChange)) {
    pause_.setSingleShot(true);
    QObject::connect(&pause_, &QTimer::timeout, [this] {
        begin();
        onChange_();
    });
    begin();
}

void ApplicationsWatch::tryAgain() {
    if (!watch_->isBlind()) {
        return;
    }
    begin();
    if (!watch_->isBlind()) {
        pause_.start(pauseAfterChange);
    }
}

// Anew after each change, because directories may have come.
void ApplicationsWatch::begin() {
    readable_.reset();
    watch_.emplace();
    for (const auto& directory : directories_) {
        addEntries(directory);
        addIcons(directory.parent_path() / "icons");
        watch_->add(directory.parent_path() / "pixmaps", anyFile);
    }
    if (const auto home = homeDirectory()) {
        addIcons(*home / ".icons");
    }
    if (!watch_->isBlind()) {
        readable_ = std::make_unique<QSocketNotifier>(watch_->descriptor(), QSocketNotifier::Read);
        QObject::connect(readable_.get(), &QSocketNotifier::activated, [this] { look(); });
        look();
    }
}

void ApplicationsWatch::look() {
    if (watch_->hasChanged()) {
        readable_->setEnabled(false);
        pause_.start(pauseAfterChange);
    }
}

void ApplicationsWatch::addEntries(const fs::path& directory) {
    watch_->add(directory);
    std::error_code error;
    for (fs::recursive_directory_iterator file(directory, error), end; !error && file != end;
         file.increment(error)) {
        if (std::error_code unknown; file->is_directory(unknown)) {
            watch_->add(file->path());
        }
    }
}

// Applications install icons for every theme into "hicolor".
void ApplicationsWatch::addIcons(const fs::path& directory) {
    const auto theme = directory / "hicolor";
    watch_->add(directory, anyFile);
    watch_->add(theme, anyFile);
    std::error_code error;
    for (fs::directory_iterator size(theme, error), end; !error && size != end;
         size.increment(error)) {
        if (std::error_code unknown; size->is_directory(unknown)) {
            watch_->add(size->path() / "apps", anyFile);
        }
    }
}

} // namespace hollowfernpike::freedesktop
