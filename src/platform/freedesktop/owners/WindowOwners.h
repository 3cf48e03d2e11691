#pragma once

#include "platform/WindowOwners.h"
#include "platform/freedesktop/entries/DesktopEntries.h"
#include "platform/freedesktop/entries/EntryIndex.h"
#include "platform/freedesktop/owners/ProcessFacts.h"

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

/// Which installed application a window or a process belongs to, as far as plain facts tell. The
/// sources are asked from the most to the least trustworthy, and the first that names an installed
/// application decides: the sandbox around the process; the entry that the window names; its class
/// and instance against StartupWMClass, then against desktop-file ids; the application unit of the
/// service manager; the entry by which the process was launched; its program.
///
/// If a source leads to several entries, an entry is left out if the process runs its program but
/// lacks one of its arguments. Of the others, the entry is taken that shares the most words of its
/// command line with the process; among equals the one whose id is the name that was looked for,
/// then one that menus show, then the most important.

/// Null if no installed application answers for the window.
const DesktopEntry* applicationOf(const platform::WindowFacts& window, const ProcessFacts& process,
                                  const EntryIndex& index);

/// The same for a process of which no window is known.
const DesktopEntry* applicationOf(const ProcessFacts& process, const EntryIndex& index);

/// The owner as the desktop names it: after its entry, else after the window's class.
platform::WindowOwner ownerOf(const platform::WindowFacts& window, const ProcessFacts& process,
                              const EntryIndex& index);

} // namespace hollowfernpike::freedesktop
