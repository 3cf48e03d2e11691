#pragma once

#include "platform/MainQueue.h"
#include "support/WaitUntil.h"

#include <atomic>
#include <condition_variable>
#include <map>
#include <mutex>
#include <optional>
#include <utility>

namespace hollowfernpike::test {

/// A main queue in real time that the test's own thread drives: work runs inside runUntil().
class PumpedMainQueue final : public platform::MainQueue {
public:
    void async(Work work) override {
        ++handedOver_;
        schedule(0ms, std::move(work));
    }
    void asyncAfter(std::chrono::milliseconds delay, Work work) override {
        schedule(delay, std::move(work));
    }

    /// Runs work as it becomes due until `condition` holds; false if it does not within `longest`.
    /// The condition is asked after each piece of work and every few milliseconds.
    template <class Condition>
    [[nodiscard]] bool runUntil(Condition condition, std::chrono::milliseconds longest = patience) {
        const auto deadline = Clock::now() + longest;
        while (!condition()) {
            if (Clock::now() >= deadline) {
                return false;
            }
            runNext();
        }
        return true;
    }

    /// From now on work for later becomes due by advance() alone.
    void stopClock() {
        const std::scoped_lock lock(mutex_);
        stopped_ = Clock::now();
    }

    /// Makes all waiting work due that much earlier.
    void advance(std::chrono::milliseconds time) {
        const std::scoped_lock lock(mutex_);
        decltype(waiting_) earlier;
        for (auto& [due, work] : waiting_) {
            earlier.emplace(due - time, std::move(work));
        }
        waiting_ = std::move(earlier);
    }

    /// How often async() was called so far: how often the main thread was woken for something.
    unsigned handedOver() const { return handedOver_; }

private:
    using Clock = std::chrono::steady_clock;

    Clock::time_point now() const { return stopped_.value_or(Clock::now()); }

    void schedule(std::chrono::milliseconds delay, Work work) {
        const std::scoped_lock lock(mutex_);
        waiting_.emplace(now() + delay, std::move(work));
        arrival_.notify_one();
    }

    Work takeDue() {
        const std::scoped_lock lock(mutex_);
        if (waiting_.empty() || waiting_.begin()->first > now()) {
            return {};
        }
        return std::move(waiting_.extract(waiting_.begin()).mapped());
    }

    void runNext() {
        if (const auto work = takeDue()) {
            work();
            return;
        }
        std::unique_lock lock(mutex_);
        arrival_.wait_for(lock, 2ms);
    }

    std::atomic<unsigned> handedOver_ = 0;
    std::mutex mutex_;
    std::condition_variable arrival_;
    std::multimap<Clock::time_point, Work> waiting_;
    std::optional<Clock::time_point> stopped_;
};

} // namespace hollowfernpike::test
