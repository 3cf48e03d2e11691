#pragma once

#include "platform/MainQueue.h"

#include <chrono>
#include <cstddef>
#include <map>
#include <utility>

namespace hollowfernpike::test {

/// A main queue in virtual time, which passes only when the test says so. One thread.
class FakeMainQueue final : public platform::MainQueue {
public:
    void async(Work work) override { asyncAfter(std::chrono::milliseconds{0}, std::move(work)); }

    void asyncAfter(std::chrono::milliseconds delay, Work work) override {
        pending_.emplace(now_ + delay, std::move(work));
    }

    /// Runs all that becomes due within `duration`, also what that work schedules in turn.
    void advance(std::chrono::milliseconds duration) {
        const auto end = now_ + duration;
        while (!pending_.empty() && pending_.begin()->first <= end) {
            auto next = pending_.extract(pending_.begin());
            now_ = next.key();
            next.mapped()();
        }
        now_ = end;
    }

    /// Runs what is due by now.
    void runDue() { advance(std::chrono::milliseconds{0}); }

    std::size_t pending() const { return pending_.size(); }

private:
    std::chrono::milliseconds now_{0};
    std::multimap<std::chrono::milliseconds, Work> pending_;
};

} // namespace hollowfernpike::test
