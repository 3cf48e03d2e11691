#pragma once

#include "platform/WindowOwners.h"

#include <cstdint>
#include <unordered_map>
#include <utility>

namespace hollowfernpike::freedesktop {

/// The owners of windows, each found once for as long as its window says the same of itself and no
/// entry is installed, changed or removed. Main thread only.
class OwnerCache {
public:
    /// `owners` outlives this object.
    explicit OwnerCache(platform::WindowOwners& owners) : owners_(owners) {}

    /// Forgets the windows for which `isGone` holds, and all of them if the entries have changed.
    /// To be called before the owners of a list of windows are asked for.
    template <class Condition>
    void forget(Condition isGone) {
        const auto generation = owners_.generation();
        if (std::exchange(generation_, generation) != generation) {
            known_.clear();
        }
        std::erase_if(known_, [&](const auto& entry) { return isGone(entry.first); });
    }

    /// `window` is a number that no other window of the session has. Valid until the next call.
    const platform::WindowOwner& ownerOf(std::int64_t window, const platform::WindowFacts& facts) {
        const auto known = known_.find(window);
        if (known != known_.end() && known->second.facts == facts) {
            return known->second.owner;
        }
        const Known found{.facts = facts, .owner = owners_.ownerOf(facts)};
        return known_.insert_or_assign(window, found).first->second.owner;
    }

private:
    struct Known {
        platform::WindowFacts facts;
        platform::WindowOwner owner;
    };

    platform::WindowOwners& owners_;
    std::uint64_t generation_ = 0;
    std::unordered_map<std::int64_t, Known> known_;
};

} // namespace hollowfernpike::freedesktop
