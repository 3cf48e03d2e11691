#include "platform/freedesktop/owners/WindowOwners.h"

#include "platform/freedesktop/owners/OwnerResolution.h"

namespace hollowfernpike::freedesktop {

platform::WindowOwner WindowOwners::ownerOf(const platform::WindowFacts& window) {
    const auto process = window.process ? processFacts(*window.process) : ProcessFacts{};
    return freedesktop::ownerOf(window, process, entries_.index());
}

} // namespace hollowfernpike::freedesktop
