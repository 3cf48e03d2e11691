#pragma once

#include "platform/RunLoop.h"
#include "support/WaitUntil.h"

#include <cerrno>
#include <map>
#include <memory>
#include <utility>
#include <vector>

#include <poll.h>

namespace hollowfernpike::test {

/// A main loop that the test's own thread drives: handlers run inside runUntil().
class PolledRunLoop final : public platform::RunLoop {
public:
    std::unique_ptr<platform::Subscription>
    watchReadable(int descriptor, std::function<void()> onReadable) override {
        const int key = ++lastKey_;
        watches_->emplace(key, Watch{descriptor, std::move(onReadable)});
        return std::make_unique<Entry>(watches_, key);
    }

    /// Serves descriptors until `condition` holds; false if it does not within `longest`. The
    /// condition is asked after each round and every few milliseconds.
    template <class Condition>
    [[nodiscard]] bool runUntil(Condition condition, std::chrono::milliseconds longest = patience) {
        const auto deadline = std::chrono::steady_clock::now() + longest;
        while (!condition()) {
            if (std::chrono::steady_clock::now() >= deadline) {
                return false;
            }
            runOnce(2);
        }
        return true;
    }

    std::size_t watched() const { return watches_->size(); }

    /// How often a handler was called.
    std::size_t served() const { return served_; }

private:
    struct Watch {
        int descriptor;
        std::function<void()> onReadable;
    };
    using Watches = std::map<int, Watch>;

    class Entry final : public platform::Subscription {
    public:
        Entry(std::shared_ptr<Watches> watches, int key)
            : watches_(std::move(watches)), key_(key) {}
        Entry(const Entry&) = delete;
        Entry& operator=(const Entry&) = delete;
        ~Entry() override { watches_->erase(key_); }

    private:
        std::shared_ptr<Watches> watches_;
        int key_;
    };

    void runOnce(int milliseconds) {
        std::vector<pollfd> descriptors;
        std::vector<int> keys;
        for (const auto& [key, watch] : *watches_) {
            descriptors.push_back({watch.descriptor, POLLIN, 0});
            keys.push_back(key);
        }
        ::poll(descriptors.data(), descriptors.size(), milliseconds);
        for (std::size_t at = 0; at < keys.size(); ++at) {
            const auto watch = watches_->find(keys[at]);
            if (descriptors[at].revents != 0 && watch != watches_->end()) {
                const auto handler = watch->second.onReadable;
                ++served_;
                handler();
            }
        }
    }

    std::shared_ptr<Watches> watches_ = std::make_shared<Watches>();
    int lastKey_ = 0;
    std::size_t served_ = 0;
};

} // namespace hollowfernpike::test
