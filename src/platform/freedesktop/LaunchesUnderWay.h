#pragma once

#include "platform/ClientWindows.h"
#include "platform/LaunchFeedback.h"
#include "platform/MainQueue.h"
#include "platform/ProcessActivation.h"
#include "platform/Workspace.h"
#include "platform/freedesktop/DesktopEntry.h"

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace hollowfernpike::freedesktop {

/// An application that was asked for and has not shown itself yet.
struct Launch {
    DesktopEntry entry;
    std::string startupIdentifier;
    std::optional<std::int32_t> process;
    std::size_t windowsBefore = 0; ///< the application's windows when it was asked for
    std::uint64_t repeatedBy = 0;  ///< the press by which it was asked for once more; 0 for none
    std::optional<platform::OpenResult> result;
    std::vector<platform::Workspace::OpenCompletion> waiting; ///< for the result
};

/// Keeps every launch from its request until a window of the application appears, its process has
/// done what it was started for, or `limit` has passed, so that a request in between joins it. The
/// start-up identifier carries the time of the first request; if the last thing that the user asked
/// for is a later one, the window is brought forward when it appears. Main thread only.
class LaunchesUnderWay {
public:
    static constexpr std::chrono::seconds limit{10};

    /// The services outlive this.
    LaunchesUnderWay(platform::ClientWindows& windows, platform::LaunchFeedback& feedback,
                     platform::ProcessActivation& activation, platform::MainQueue& mainQueue)
        : windows_(windows), feedback_(feedback), activation_(activation), mainQueue_(mainQueue) {}

    /// The launch of the entry in this file; null if there is none.
    std::shared_ptr<Launch> find(const FileStamp& file) const;

    /// Keeps a new launch. Whoever holds on to it beyond the call does so weakly: a launch that is
    /// over is gone.
    std::shared_ptr<Launch> begin(const DesktopEntry& entry, bool activates);

    /// Notes that the user asked for the application once more.
    void repeat(Launch& launch) { launch.repeatedBy = feedback_.holdCount(); }

    /// Calls `completion` with the launch's result, at once if there is one already.
    static void join(Launch& launch, platform::Workspace::OpenCompletion completion);

    /// Answers all who wait. The launch goes on if the application was opened.
    void settle(Launch& launch, const platform::OpenResult& result);

    /// Starts to look for the application's window, and the clock. To be called when nothing urgent
    /// is left to do for the launch.
    void track(const std::shared_ptr<Launch>& launch);

    /// Lets the launch go without a window: its start-up notice is taken back.
    void finish(const Launch& launch);

private:
    void lookForWindows();
    void bringForward(const Launch& launch, const std::vector<platform::ClientWindow>& windows);
    void giveUp(Launch& launch);
    void forget(const Launch& launch);

    platform::ClientWindows& windows_;
    platform::LaunchFeedback& feedback_;
    platform::ProcessActivation& activation_;
    platform::MainQueue& mainQueue_;
    std::vector<std::shared_ptr<Launch>> launches_;
    std::unique_ptr<platform::Subscription> windowWatch_;
};

} // namespace hollowfernpike::freedesktop
