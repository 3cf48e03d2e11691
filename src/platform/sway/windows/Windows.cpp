#include "platform/sway/windows/Windows.h"

#include "platform/freedesktop/Logging.h"
#include "platform/sway/ipc/IpcEvents.h"
#include "platform/sway/ipc/Json.h"

#include <algorithm>
#include <chrono>
#include <iterator>
#include <limits>
#include <unordered_set>
#include <utility>

#include <unistd.h>

namespace hollowfernpike::sway {

namespace {

constexpr std::int32_t ordinaryLayer = 0;

/// For a window of ours to come. A busy machine takes a second.
constexpr std::chrono::milliseconds longestWait{5000};

/// The process of a window, or a number that stands for a window without one.
std::optional<std::int32_t> ownerProcessOf(const TreeWindow& window) {
    if (window.facts.process) {
        return window.facts.process;
    }
    const bool fits =
        window.identifier > 0 && window.identifier <= std::numeric_limits<std::int32_t>::max();
    return fits ? std::optional(static_cast<std::int32_t>(-window.identifier)) : std::nullopt;
}

/// The one for which `isWanted` holds, rather a visible one, rather one that was used of late.
template <class Condition>
const TreeWindow* best(const std::vector<TreeWindow>& windows, Condition isWanted) {
    const TreeWindow* found = nullptr;
    for (const auto& window : windows) {
        if (isWanted(window) && (found == nullptr || (window.isVisible && !found->isVisible))) {
            found = &window;
        }
    }
    return found;
}

class WindowWatch final : public platform::Subscription {
public:
    WindowWatch(const std::string& path, platform::RunLoop& runLoop, std::function<void()> onChange)
        : onChange_(std::move(onChange)),
          events_(path, R"(["window"])", runLoop,
                  {.event = [this](const IpcMessage& event) { handle(event); }, .lost = [] {}}) {}

private:
    // The handler may destroy this object.
    void handle(const IpcMessage& event) const {
        const auto change = textMember(parse(event.payload), "change");
        if (change == "new" || change == "close") {
            const auto handler = onChange_;
            handler();
        }
    }

    std::function<void()> onChange_;
    IpcEvents events_;
};

} // namespace

Windows::Windows(platform::DesktopHost host, IpcClient& ipc) : host_(std::move(host)), ipc_(ipc) {}

std::optional<std::vector<platform::WindowInfo>> Windows::copyWindowInfo() {
    const auto* const windows = windowsOfThisTurn();
    if (windows == nullptr) {
        return std::nullopt;
    }
    std::vector<platform::WindowInfo> infos;
    for (const auto& window : *windows) {
        if (window.isVisible) {
            const auto& name = ownerOf(window).name;
            infos.push_back({.ownerName = name.empty() ? std::nullopt : std::optional(name),
                             .ownerProcess = ownerProcessOf(window),
                             .layer = ordinaryLayer});
        }
    }
    return infos;
}

// sway numbers its windows as they come.
std::vector<platform::ClientWindow> Windows::clientWindows() {
    const auto* const windows = windowsOfThisTurn();
    std::vector<const TreeWindow*> byAge;
    if (windows != nullptr) {
        std::ranges::transform(*windows, std::back_inserter(byAge),
                               [](const TreeWindow& window) { return &window; });
    }
    std::ranges::sort(byAge, {}, &TreeWindow::identifier);
    std::vector<platform::ClientWindow> result;
    for (const auto* const window : byAge) {
        result.push_back({.process = ownerProcessOf(*window), .owner = ownerOf(*window)});
    }
    return result;
}

bool Windows::bringToFront(std::int32_t processIdentifier) {
    const auto isOfProcess = [&](const TreeWindow& window) {
        return ownerProcessOf(window) == processIdentifier;
    };
    return (windows_ && focus(best(*windows_, isOfProcess))) ||
           (read() != nullptr && focus(best(*windows_, isOfProcess)));
}

bool Windows::bringOwnToFront(const std::string& title) {
    awaited_ = watch([this, title] {
        if (focusOwn(title)) {
            awaited_.reset();
        }
    });
    if (focusOwn(title) || !windows_) {
        awaited_.reset();
    } else {
        host_.mainQueue.asyncAfter(longestWait, [self = std::weak_ptr(self_), which = ++awaits_] {
            if (const auto windows = self.lock(); windows && (*windows)->awaits_ == which) {
                (*windows)->awaited_.reset();
            }
        });
    }
    return windows_.has_value();
}

bool Windows::focusOwn(const std::string& title) {
    const auto isIt = [&](const TreeWindow& window) {
        return window.facts.process == ::getpid() && window.title == title;
    };
    return read() != nullptr && focus(best(*windows_, isIt));
}

std::unique_ptr<platform::Subscription> Windows::watch(std::function<void()> onChange) {
    windows_.reset(); // a window that came after it and before the watch would be missed
    return std::make_unique<WindowWatch>(ipc_.path(), host_.runLoop,
                                         [this, onChange = std::move(onChange)] {
                                             windows_.reset();
                                             onChange();
                                         });
}

const std::vector<TreeWindow>* Windows::windowsOfThisTurn() {
    return windows_ ? &*windows_ : read();
}

// Forgotten before what arrives while sway answers: a press that came meanwhile asks anew.
const std::vector<TreeWindow>* Windows::read() {
    host_.mainQueue.async([self = std::weak_ptr(self_)] {
        if (const auto windows = self.lock()) {
            (*windows)->windows_.reset();
        }
    });
    const auto answer = ipc_.ask(IpcKind::getTree);
    windows_ = answer ? readTree(*answer) : std::nullopt;
    if (!windows_) {
        qCWarning(freedesktop::windowsLog, "sway does not tell its windows");
        return nullptr;
    }
    std::unordered_set<std::int64_t> present;
    for (const auto& window : *windows_) {
        present.insert(window.identifier);
    }
    owners_.forget([&](std::int64_t window) { return !present.contains(window); });
    return &*windows_;
}

const platform::WindowOwner& Windows::ownerOf(const TreeWindow& window) {
    return owners_.ownerOf(window.identifier, window.facts);
}

bool Windows::focus(const TreeWindow* window) {
    return window != nullptr &&
           ipc_.post("[con_id=" + std::to_string(window->identifier) + "] focus");
}

} // namespace hollowfernpike::sway
