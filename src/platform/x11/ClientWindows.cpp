#include "platform/x11/ClientWindows.h"

#include "platform/x11/WindowTypes.h"

#include <algorithm>
#include <utility>

#include <sys/eventfd.h>
#include <unistd.h>

namespace hollowfernpike::x11 {

class ClientWindows::Listening final : public platform::Subscription {
public:
    Listening(ClientWindows& owner, Listener listener)
        : owner_(owner), listener_(std::move(listener)) {}
    Listening(const Listening&) = delete;
    Listening& operator=(const Listening&) = delete;
    ~Listening() override { owner_.remove(listener_); }

private:
    ClientWindows& owner_;
    Listener listener_;
};

// A change may be read off the connection while somebody waits for a reply, when listeners must not
// be called and after which the connection is not readable any more. So it goes through a
// descriptor of its own.
ClientWindows::ClientWindows(Windows& windows, platform::RunLoop& runLoop)
    : windows_(windows), runLoop_(runLoop), changes_(::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)) {
    windows_.events().setRootPropertyHandler([this](xcb_atom_t property) {
        if (property == windows_.atoms().clientList && !listeners_.empty()) {
            ::eventfd_write(changes_, 1);
        }
    });
}

ClientWindows::~ClientWindows() {
    windows_.events().setRootPropertyHandler(nullptr);
    stopWatching();
    ::close(changes_);
}

std::vector<platform::ClientWindow> ClientWindows::clientWindows() {
    std::vector<platform::ClientWindow> result;
    const auto* snapshot = windows_.takeOfThisPress(SnapshotUse::listing);
    if (snapshot == nullptr) {
        snapshot = windows_.read(SnapshotUse::listing);
    }
    if (snapshot == nullptr) {
        return result;
    }
    for (const auto* record : snapshot->byAge()) {
        if (record->identity->layer == ordinaryLayer) {
            result.push_back(
                {.process = record->identity->facts.process, .owner = windows_.ownerOf(*record)});
        }
    }
    return result;
}

std::unique_ptr<platform::Subscription> ClientWindows::watch(std::function<void()> onChange) {
    if (listeners_.empty()) {
        startWatching();
    }
    auto listener = std::make_shared<std::function<void()>>(std::move(onChange));
    listeners_.push_back(listener);
    return std::make_unique<Listening>(*this, std::move(listener));
}

void ClientWindows::startWatching() {
    selectRootEvents(true);
    connectionWatch_ = runLoop_.watchReadable(windows_.connection().descriptor(),
                                              [this] { onConnectionReadable(); });
    changesWatch_ = runLoop_.watchReadable(changes_, [this] { onListChanged(); });
}

void ClientWindows::stopWatching() {
    if (changesWatch_) {
        selectRootEvents(false);
        changesWatch_.reset();
        connectionWatch_.reset();
    }
}

void ClientWindows::selectRootEvents(bool selected) {
    const auto& connection = windows_.connection();
    const std::uint32_t events =
        selected ? XCB_EVENT_MASK_PROPERTY_CHANGE : XCB_EVENT_MASK_NO_EVENT;
    xcb_change_window_attributes(connection.get(), connection.root(), XCB_CW_EVENT_MASK, &events);
    xcb_flush(connection.get());
}

void ClientWindows::onConnectionReadable() {
    windows_.events().drain();
    if (windows_.connection().isLost()) {
        connectionWatch_.reset(); // it would be readable for ever
    }
}

void ClientWindows::onListChanged() {
    eventfd_t count = 0;
    ::eventfd_read(changes_, &count);
    const auto listeners = listeners_;
    for (const auto& listener : listeners) {
        if (std::ranges::find(listeners_, listener) != listeners_.end()) {
            (*listener)();
        }
    }
}

void ClientWindows::remove(const Listener& listener) {
    std::erase(listeners_, listener);
    if (listeners_.empty()) {
        stopWatching();
    }
}

} // namespace hollowfernpike::x11
