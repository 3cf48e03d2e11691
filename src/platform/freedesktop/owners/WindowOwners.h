#pragma once

#include "platform/WindowOwners.h"
#include "platform/freedesktop/entries/DesktopEntries.h"

namespace hollowfernpike::freedesktop {

/// Tells owners by the installed entries and by what /proc says of the window's process.
class WindowOwners final : public platform::WindowOwners {
public:
    /// The entries outlive this.
    explicit WindowOwners(DesktopEntries& entries) : entries_(entries) {}

    platform::WindowOwner ownerOf(const platform::WindowFacts& window) override;
    std::uint64_t generation() override { return entries_.generation(); }

private:
    DesktopEntries& entries_;
};

} // namespace hollowfernpike::freedesktop
