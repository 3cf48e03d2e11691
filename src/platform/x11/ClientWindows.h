#pragma once

#include "platform/ClientWindows.h"
#include "platform/RunLoop.h"
#include "platform/x11/Windows.h"

#include <functional>
#include <memory>
#include <vector>

namespace hollowfernpike::x11 {

/// The ordinary windows of `_NET_CLIENT_LIST`, and changes of that list. The connection is watched
/// only while somebody listens. Main thread only.
class ClientWindows final : public platform::ClientWindows {
public:
    /// Both outlive this object, and this object its subscriptions.
    ClientWindows(Windows& windows, platform::RunLoop& runLoop);
    ClientWindows(const ClientWindows&) = delete;
    ClientWindows& operator=(const ClientWindows&) = delete;
    ~ClientWindows() override;

    std::vector<platform::ClientWindow> clientWindows() override;
    std::unique_ptr<platform::Subscription> watch(std::function<void()> onChange) override;

private:
    class Listening;
    using Listener = std::shared_ptr<std::function<void()>>;

    void startWatching();
    void stopWatching();
    void selectRootEvents(bool selected);
    void onConnectionReadable();
    void onListChanged();
    void remove(const Listener& listener);

    Windows& windows_;
    platform::RunLoop& runLoop_;
    int changes_; ///< an eventfd, readable while a change waits to be told
    std::vector<Listener> listeners_;
    std::unique_ptr<platform::Subscription> connectionWatch_;
    std::unique_ptr<platform::Subscription> changesWatch_;
};

} // namespace hollowfernpike::x11
