#pragma once

#include "platform/Windows.h"
#include "support/fakes/CallLog.h"

#include <functional>
#include <memory>
#include <set>
#include <string>
#include <utility>
#include <vector>

namespace hollowfernpike::test {

/// The windows that the test says there are. Every process comes to the front but those that the
/// test names as windowless.
class FakeWindows final : public platform::Windows {
public:
    explicit FakeWindows(CallLog& log) : log_(log) {}

    std::function<void()> onCopy;  ///< runs, if any, in the middle of every copyWindowInfo()
    std::function<void()> onBring; ///< runs, if any, in the middle of every bringToFront()
    std::optional<std::vector<platform::WindowInfo>> visible{std::in_place}; ///< front to back
    std::set<std::int32_t> windowless;

    std::optional<std::vector<platform::WindowInfo>> copyWindowInfo() override {
        log_.record("windows.copyWindowInfo");
        if (onCopy) {
            onCopy();
        }
        return visible;
    }

    std::vector<platform::ClientWindow> clientWindows() override { return clients_; }

    bool bringToFront(std::int32_t processIdentifier) override {
        log_.record("windows.bringToFront " + std::to_string(processIdentifier));
        if (onBring) {
            onBring();
        }
        return !windowless.contains(processIdentifier);
    }

    std::unique_ptr<platform::Subscription> watch(std::function<void()> onChange) override {
        *handler_ = std::move(onChange);
        return std::make_unique<Watch>(handler_);
    }

    bool isWatched() const { return *handler_ != nullptr; }

    /// Lets a client window appear and tells whoever watches.
    void show(platform::ClientWindow window) {
        showSilently(std::move(window));
        tell();
    }

    void showSilently(platform::ClientWindow window) { clients_.push_back(std::move(window)); }

    void closeAll() {
        clients_.clear();
        tell();
    }

private:
    using Handler = std::shared_ptr<std::function<void()>>;

    class Watch final : public platform::Subscription {
    public:
        explicit Watch(Handler handler) : handler_(std::move(handler)) {}
        Watch(const Watch&) = delete;
        Watch& operator=(const Watch&) = delete;
        ~Watch() override { *handler_ = nullptr; }

    private:
        Handler handler_;
    };

    void tell() {
        if (const auto handler = *handler_) {
            handler();
        }
    }

    CallLog& log_;
    std::vector<platform::ClientWindow> clients_;
    Handler handler_ = std::make_shared<std::function<void()>>();
};

} // namespace hollowfernpike::test
