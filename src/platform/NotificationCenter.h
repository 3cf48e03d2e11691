#pragma once

#include "platform/RunLoop.h"

#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace hollowfernpike::platform {

/// Announcements by name, delivered synchronously in the order in which observers registered. No
/// sender, no payload. Main thread only. Must outlive its subscriptions.
class NotificationCenter {
public:
    using Handler = std::function<void()>;

    NotificationCenter() = default;
    NotificationCenter(const NotificationCenter&) = delete;
    NotificationCenter& operator=(const NotificationCenter&) = delete;
    ~NotificationCenter() = default;

    /// Calls `handler` for every later post of `name` until the subscription is destroyed.
    [[nodiscard]] std::unique_ptr<Subscription> observe(std::string_view name, Handler handler);

    /// Returns when every observer of `name` has run. Observers that come while it runs wait for
    /// the next post; those that go while it runs are not called any more.
    void post(std::string_view name);

private:
    struct Observer {
        std::string name;
        Handler handler;
    };
    class Observation;

    std::vector<std::weak_ptr<Observer>> observers_;
};

class NotificationCenter::Observation final : public Subscription {
public:
    explicit Observation(std::shared_ptr<Observer> observer) : observer_(std::move(observer)) {}

private:
    std::shared_ptr<Observer> observer_;
};

inline std::unique_ptr<Subscription> NotificationCenter::observe(std::string_view name,
                                                                 Handler handler) {
    auto observer = std::make_shared<Observer>(Observer{std::string{name}, std::move(handler)});
    std::erase_if(observers_, [](const auto& known) { return known.expired(); });
    observers_.push_back(observer);
    return std::make_unique<Observation>(std::move(observer));
}

inline void NotificationCenter::post(std::string_view name) {
    const auto observersAtPost = observers_;
    for (const auto& candidate : observersAtPost) {
        if (const auto observer = candidate.lock(); observer && observer->name == name) {
            observer->handler();
        }
    }
}

} // namespace hollowfernpike::platform
