#pragma once

#include "platform/ClientWindows.h"

#include <memory>
#include <utility>
#include <vector>

namespace hollowfernpike::test {

/// The windows that the test says there are.
class FakeClientWindows final : public platform::ClientWindows {
public:
    std::vector<platform::ClientWindow> clientWindows() override { return windows_; }

    std::unique_ptr<platform::Subscription> watch(std::function<void()> onChange) override {
        *handler_ = std::move(onChange);
        return std::make_unique<Watch>(handler_);
    }

    bool isWatched() const { return *handler_ != nullptr; }

    /// Lets a window appear and tells whoever watches.
    void show(platform::ClientWindow window) {
        showSilently(std::move(window));
        tell();
    }

    void showSilently(platform::ClientWindow window) { windows_.push_back(std::move(window)); }

    void closeAll() {
        windows_.clear();
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

    std::vector<platform::ClientWindow> windows_;
    Handler handler_ = std::make_shared<std::function<void()>>();
};

} // namespace hollowfernpike::test
