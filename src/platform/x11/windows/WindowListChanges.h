#pragma once

#include "platform/MainQueue.h"
#include "platform/RunLoop.h"
#include "platform/x11/windows/WindowReader.h"

#include <functional>
#include <memory>
#include <vector>

namespace hollowfernpike::x11 {

/// Tells of changes of `_NET_CLIENT_LIST`. The connection is watched only while somebody listens.
/// Main thread only.
class WindowListChanges {
public:
    /// All arguments outlive this object, and this object outlives its subscriptions. `beforeAll`
    /// is called before the listeners.
    WindowListChanges(WindowReader& windows, platform::MainQueue& mainQueue,
                      platform::RunLoop& runLoop, std::function<void()> beforeAll);
    WindowListChanges(const WindowListChanges&) = delete;
    WindowListChanges& operator=(const WindowListChanges&) = delete;
    ~WindowListChanges();

    /// As platform::Windows::watch().
    std::unique_ptr<platform::Subscription> watch(std::function<void()> onChange);

private:
    class Listening;
    using Listener = std::shared_ptr<std::function<void()>>;

    void startWatching();
    void stopWatching();
    void selectRootEvents(bool selected);
    void onConnectionReadable();
    void onRootProperty(xcb_atom_t property);
    void tell();
    void remove(const Listener& listener);

    WindowReader& windows_;
    platform::MainQueue& mainQueue_;
    platform::RunLoop& runLoop_;
    std::function<void()> beforeAll_;
    std::shared_ptr<WindowListChanges*> self_ = std::make_shared<WindowListChanges*>(this);
    std::vector<Listener> listeners_;
    bool isTellingQueued_ = false;
    std::unique_ptr<platform::Subscription> connectionWatch_;
};

} // namespace hollowfernpike::x11
