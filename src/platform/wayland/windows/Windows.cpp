#include "platform/wayland/windows/Windows.h"

#include <algorithm>
#include <unordered_set>
#include <utility>

namespace hollowfernpike::wayland {

namespace {

constexpr std::int32_t ordinaryLayer = 0;
constexpr std::string_view windowsChanged = "windowsChanged";

/// The process of a window, or a number that stands for a window without one.
std::int32_t ownerProcessOf(const MirroredWindow& window) {
    return window.facts.process.value_or(static_cast<std::int32_t>(-window.number));
}

} // namespace

Windows::Windows(const platform::DesktopHost& host, WindowMirror& mirror)
    : mainQueue_(host.mainQueue), mirror_(mirror), owners_(host.windowOwners) {
    mirror_.onChange = [this] { tellLater(); };
}

Windows::~Windows() {
    mirror_.onChange = {};
}

std::optional<std::vector<platform::WindowInfo>> Windows::copyWindowInfo() {
    if (!mirror_.isGranted()) {
        return std::nullopt;
    }
    std::vector<platform::WindowInfo> infos;
    for (const auto& window : read()) {
        if (window.isVisible()) {
            const auto& name = ownerOf(window).name;
            infos.push_back({.ownerName = name.empty() ? std::nullopt : std::optional(name),
                             .ownerProcess = ownerProcessOf(window),
                             .layer = ordinaryLayer});
        }
    }
    return infos;
}

std::vector<platform::ClientWindow> Windows::clientWindows() {
    auto windows = read();
    std::ranges::sort(windows, {}, &MirroredWindow::number);
    std::vector<platform::ClientWindow> result;
    for (const auto& window : windows) {
        result.push_back({.process = ownerProcessOf(window), .owner = ownerOf(window)});
    }
    return result;
}

// There is no request that raises a window without giving it the keys.
bool Windows::bringToFront(std::int32_t processIdentifier) {
    auto windows = read();
    std::erase_if(windows,
                  [&](const auto& window) { return ownerProcessOf(window) != processIdentifier; });
    if (windows.empty()) {
        return false;
    }
    if (std::ranges::none_of(windows, &MirroredWindow::isVisible)) {
        const auto best = std::ranges::find_if_not(windows, &MirroredWindow::isMinimised);
        mirror_.activate((best == windows.end() ? windows.begin() : best)->number);
        return true;
    }
    for (auto window = windows.rbegin(); window != windows.rend(); ++window) {
        if (window->isVisible()) {
            mirror_.activate(window->number);
        }
    }
    return true;
}

std::unique_ptr<platform::Subscription> Windows::watch(std::function<void()> onChange) {
    return changes_.observe(windowsChanged, std::move(onChange));
}

std::vector<MirroredWindow> Windows::read() {
    auto windows = mirror_.windows();
    std::unordered_set<std::int64_t> present;
    for (const auto& window : windows) {
        present.insert(window.number);
    }
    owners_.forget([&](std::int64_t window) { return !present.contains(window); });
    return windows;
}

const platform::WindowOwner& Windows::ownerOf(const MirroredWindow& window) {
    return owners_.ownerOf(window.number, window.facts);
}

void Windows::tellLater() {
    if (!std::exchange(isToTell_, true)) {
        mainQueue_.async([self = std::weak_ptr(self_)] {
            if (const auto windows = self.lock()) {
                (*windows)->isToTell_ = false;
                (*windows)->changes_.post(windowsChanged);
            }
        });
    }
}

} // namespace hollowfernpike::wayland
