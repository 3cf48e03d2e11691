#include "platform/freedesktop/owners/OwnerCache.h"

namespace hollowfernpike::freedesktop {

const platform::WindowOwner& OwnerCache::ownerOf(std::int64_t window,
                                                 const platform::WindowFacts& facts) {
    const auto known = known_.find(window);
    if (known != known_.end() && known->second.facts == facts) {
        return known->second.owner;
    }
    const Known found{.facts = facts, .owner = owners_.ownerOf(facts)};
    return known_.insert_or_assign(window, found).first->second.owner;
}

} // namespace hollowfernpike::freedesktop
