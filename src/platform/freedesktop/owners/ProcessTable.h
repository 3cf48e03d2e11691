#pragma once

#include "platform/freedesktop/entries/DesktopEntries.h"
#include "platform/freedesktop/owners/ProcessFacts.h"
#include "platform/posix/Descriptor.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include <unistd.h>

namespace hollowfernpike::freedesktop {

/// The number and status of a process.
struct LiveProcess {
    std::int32_t number = 0;
    ProcessStatus status;
};

/// The longest running first; those that have ended come last.
void sortByAge(std::vector<LiveProcess>& processes);

/// Which of a user's processes runs which application, by what the processes themselves reveal.
/// A process on another display counts as running none. What was learned of a process is kept:
/// asking again only reads new processes and the command lines of interpreters. Main thread only.
class ProcessTable {
public:
    /// The entries outlive this.
    explicit ProcessTable(DesktopEntries& entries, uid_t user = ::geteuid());

    /// The processes that run this application and descend from no other one that does, sorted by
    /// age.
    std::vector<LiveProcess> running(std::string_view identifier);

    /// The id of the application that the process runs; empty for none.
    std::string applicationOf(std::int32_t process);

private:
    struct Known {
        std::string identifier; ///< empty for a process that runs no application of ours
        ProcessStatus status;
        bool isUnsettled = false; ///< it may yet become another program, or tell more
        bool hasTold = false;     ///< whether its executable could be read before
        std::optional<std::uint64_t> missingSince; ///< when its environment began to be missing
        std::string command;     ///< of a shell or another interpreter; empty for other programs
        std::uint64_t inode = 0; ///< of its directory in /proc; 0 for none yet
        std::uint64_t scan = 0;
    };

    void refresh();
    void scan();
    void look(std::int32_t process, Known& known) const;
    static bool isMissingForAMoment(Known& known);
    static bool hasBecomeAnother(std::int32_t process, const Known& known);
    std::string applicationOf(const ProcessFacts& process) const;
    bool isHelper(const LiveProcess& process, const std::vector<LiveProcess>& candidates) const;

    DesktopEntries& entries_;
    uid_t user_;
    posix::Descriptor counter_;
    std::optional<std::int32_t> newest_; ///< the number that was given out last before the scan
    std::uint64_t generation_ = 0;
    std::uint64_t scans_ = 0;
    std::unordered_map<std::int32_t, Known> processes_;
};

} // namespace hollowfernpike::freedesktop
