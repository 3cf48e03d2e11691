#include "platform/x11/windows/WindowListChanges.h"

#include <algorithm>
#include <utility>

namespace hollowfernpike::x11 {

class WindowListChanges::Listening final : public platform::Subscription {
public:
    Listening(WindowListChanges& owner, Listener listener)
        : owner_(owner), listener_(std::move(listener)) {}
    Listening(const Listening&) = delete;
    Listening& operator=(const Listening&) = delete;
    ~Listening() override { owner_.remove(listener_); }

private:
    WindowListChanges& owner_;
    Listener listener_;
};

WindowListChanges::WindowListChanges(WindowReader& windows, platform::MainQueue& mainQueue,
                                     platform::RunLoop& runLoop, std::function<void()> beforeAll)
    : windows_(windows), mainQueue_(mainQueue), runLoop_(runLoop),
      beforeAll_(std::move(beforeAll)) {
    windows_.events().setRootPropertyHandler(
        [this](xcb_atom_t property) { onRootProperty(property); });
}

WindowListChanges::~WindowListChanges() {
    windows_.events().setRootPropertyHandler(nullptr);
    stopWatching();
}

std::unique_ptr<platform::Subscription> WindowListChanges::watch(std::function<void()> onChange) {
    if (listeners_.empty()) {
        startWatching();
    }
    auto listener = std::make_shared<std::function<void()>>(std::move(onChange));
    listeners_.push_back(listener);
    return std::make_unique<Listening>(*this, std::move(listener));
}

void WindowListChanges::startWatching() {
    selectRootEvents(true);
    connectionWatch_ = runLoop_.watchReadable(windows_.connection().descriptor(),
                                              [this] { onConnectionReadable(); });
}

void WindowListChanges::stopWatching() {
    if (connectionWatch_) {
        selectRootEvents(false);
        connectionWatch_.reset();
    }
}

void WindowListChanges::selectRootEvents(bool selected) {
    const auto& connection = windows_.connection();
    const std::uint32_t events =
        selected ? XCB_EVENT_MASK_PROPERTY_CHANGE : XCB_EVENT_MASK_NO_EVENT;
    xcb_change_window_attributes(connection.get(), connection.root(), XCB_CW_EVENT_MASK, &events);
    xcb_flush(connection.get());
}

void WindowListChanges::onConnectionReadable() {
    windows_.events().drain();
    if (windows_.connection().isLost()) {
        connectionWatch_.reset(); // it would be readable for ever
    }
}

// The change may be read off the connection during a wait for a reply. Listeners must not be called
// there, and the connection does not become readable for it again. So they are told from the main
// queue.
void WindowListChanges::onRootProperty(xcb_atom_t property) {
    if (property != windows_.atoms().clientList || listeners_.empty() ||
        std::exchange(isTellingQueued_, true)) {
        return;
    }
    mainQueue_.async([self = std::weak_ptr(self_)] {
        if (const auto changes = self.lock()) {
            (*changes)->tell();
        }
    });
}

void WindowListChanges::tell() {
    isTellingQueued_ = false;
    beforeAll_();
    const auto listeners = listeners_;
    for (const auto& listener : listeners) {
        if (std::ranges::find(listeners_, listener) != listeners_.end()) {
            (*listener)();
        }
    }
}

void WindowListChanges::remove(const Listener& listener) {
    std::erase(listeners_, listener);
    if (listeners_.empty()) {
        stopWatching();
    }
}

} // namespace hollowfernpike::x11
