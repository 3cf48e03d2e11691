#include "platform/wayland/windows/Windows.h"

#include <algorithm>
#include <unordered_set>
#include <utility>

namespace hollowfernpike::wayland {

namespace {

constexpr std::int32_t ordinaryLayer = 0;
constexpr std::string_view windowsChanged = "windowsChanged";

/// The process of a window, or a number that stands for a window without one.
std::int32_t ownerProcessOf(const ListedWindow& window) {
    return window.facts.process.value_or(static_cast<std::int32_t>(-window.number));
}

} // namespace

class Windows::Watch final : public platform::Subscription {
public:
    Watch(std::shared_ptr<void> interest, std::unique_ptr<platform::Subscription> subscription)
        : interest_(std::move(interest)), subscription_(std::move(subscription)) {}

private:
    std::shared_ptr<void> interest_;
    std::unique_ptr<platform::Subscription> subscription_;
};

Windows::Windows(const platform::DesktopHost& host, WindowSource& source)
    : mainQueue_(host.mainQueue), source_(source), owners_(host.windowOwners) {
    source_.onChange = [this] { tellLater(); };
}

Windows::~Windows() {
    source_.onChange = {};
}

std::optional<std::vector<platform::WindowInfo>> Windows::copyWindowInfo() {
    const auto windows = read();
    if (!windows) {
        return std::nullopt;
    }
    std::vector<platform::WindowInfo> infos;
    for (const auto& window : *windows) {
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
    auto windows = read().value_or(std::vector<ListedWindow>{});
    std::ranges::sort(windows, {}, &ListedWindow::number);
    std::vector<platform::ClientWindow> result;
    for (const auto& window : windows) {
        result.push_back({.process = ownerProcessOf(window), .owner = ownerOf(window)});
    }
    return result;
}

bool Windows::bringToFront(std::int32_t processIdentifier) {
    auto windows = windowsOf(processIdentifier);
    if (windows.empty()) {
        source_.refresh();
        windows = windowsOf(processIdentifier);
    }
    if (windows.empty()) {
        return false;
    }
    std::vector<std::int64_t> numbers;
    for (auto window = windows.rbegin(); window != windows.rend(); ++window) {
        if (window->isVisible()) {
            numbers.push_back(window->number);
        }
    }
    if (numbers.empty()) {
        const auto best = std::ranges::find_if_not(windows, &ListedWindow::isMinimised);
        numbers.push_back((best == windows.end() ? windows.begin() : best)->number);
    }
    source_.activate(numbers);
    return true;
}

std::unique_ptr<platform::Subscription> Windows::watch(std::function<void()> onChange) {
    auto interest = watches_.lock();
    if (!interest) {
        source_.watch(true);
        interest = {&source_, [self = std::weak_ptr(self_)](WindowSource* source) {
                        if (!self.expired()) {
                            source->watch(false);
                        }
                    }};
        watches_ = interest;
    }
    return std::make_unique<Watch>(std::move(interest),
                                   changes_.observe(windowsChanged, std::move(onChange)));
}

std::optional<std::vector<ListedWindow>> Windows::read() {
    auto windows = source_.windows();
    if (!windows) {
        return std::nullopt;
    }
    std::unordered_set<std::int64_t> present;
    for (const auto& window : *windows) {
        present.insert(window.number);
    }
    owners_.forget([&](std::int64_t window) { return !present.contains(window); });
    return windows;
}

std::vector<ListedWindow> Windows::windowsOf(std::int32_t processIdentifier) {
    auto windows = source_.windows().value_or(std::vector<ListedWindow>{});
    std::erase_if(windows,
                  [&](const auto& window) { return ownerProcessOf(window) != processIdentifier; });
    return windows;
}

const platform::WindowOwner& Windows::ownerOf(const ListedWindow& window) {
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
