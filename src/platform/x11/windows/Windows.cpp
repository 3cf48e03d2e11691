#include "platform/x11/windows/Windows.h"

#include "platform/freedesktop/Logging.h"
#include "platform/x11/windows/WindowRaising.h"

#include <utility>

namespace hollowfernpike::x11 {

namespace {

class NothingToWatch final : public platform::Subscription {};

} // namespace

Windows::Windows(platform::DesktopHost host, const UserTime& userTime, std::string displayName)
    : host_(std::move(host)), userTime_(userTime), displayName_(std::move(displayName)) {}

WindowReader* Windows::reader() {
    if (!reader_) {
        auto connection = Connection::open(displayName_);
        if (!connection) {
            qCDebug(freedesktop::windowsLog, "the X server does not answer");
            return nullptr;
        }
        reader_.emplace(std::move(connection), host_.windowOwners);
        changes_.emplace(*reader_, host_.mainQueue, host_.runLoop, [this] { snapshot_ = nullptr; });
    }
    return &*reader_;
}

std::optional<std::vector<platform::WindowInfo>> Windows::copyWindowInfo() {
    const auto* snapshot = snapshotOfThisTurn();
    if (snapshot == nullptr) {
        return std::nullopt;
    }
    std::vector<platform::WindowInfo> infos;
    for (const auto& record : snapshot->windows) {
        if (!record.isHidden && snapshot->isHere(record)) {
            infos.push_back(infoOf(record));
        }
    }
    return infos;
}

std::vector<platform::ClientWindow> Windows::clientWindows() {
    const auto* snapshot = snapshotOfThisTurn();
    std::vector<platform::ClientWindow> windows;
    if (snapshot == nullptr) {
        return windows;
    }
    for (const auto* record : snapshot->byAge()) {
        if (record->identity->layer == ordinaryLayer) {
            windows.push_back(
                {.process = record->identity->facts.process, .owner = reader_->ownerOf(*record)});
        }
    }
    return windows;
}

bool Windows::bringToFront(std::int32_t processIdentifier) {
    return raise(snapshot_, processIdentifier) || raise(read(), processIdentifier);
}

std::unique_ptr<platform::Subscription> Windows::watch(std::function<void()> onChange) {
    if (reader() == nullptr) {
        return std::make_unique<NothingToWatch>();
    }
    snapshot_ = nullptr; // a window that came after it and before the watch would be missed
    return changes_->watch(std::move(onChange));
}

const Snapshot* Windows::snapshotOfThisTurn() {
    return snapshot_ != nullptr ? snapshot_ : read();
}

// Forgotten before what arrives while the server answers: a press that came meanwhile asks anew.
const Snapshot* Windows::read() {
    host_.mainQueue.async([self = std::weak_ptr(self_)] {
        if (const auto windows = self.lock()) {
            (*windows)->snapshot_ = nullptr;
        }
    });
    auto* const known = reader();
    snapshot_ = known == nullptr ? nullptr : known->read();
    return snapshot_;
}

bool Windows::raise(const Snapshot* snapshot, std::int32_t process) {
    if (snapshot == nullptr) {
        return false;
    }
    const auto pressed = userTime_.time();
    const auto time = pressed != XCB_CURRENT_TIME ? pressed : reader_->events().serverTime();
    return raiseProcess(*reader_, *snapshot, process, time);
}

platform::WindowInfo Windows::infoOf(const WindowRecord& record) {
    const auto& name = reader_->ownerOf(record).name;
    return {
        .ownerName = name.empty() ? std::nullopt : std::optional(name),
        .ownerProcess = record.identity->facts.process,
        .layer = record.identity->layer,
    };
}

} // namespace hollowfernpike::x11
