#pragma once

#include "platform/LaunchFeedback.h"
#include "platform/MainQueue.h"
#include "platform/Windows.h"
#include "platform/Workspace.h"
#include "platform/freedesktop/entries/DesktopEntry.h"

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
    std::string startupIdentifier; ///< empty once the start-up notice is taken back
    std::optional<std::int32_t> process;
    std::size_t windowsBefore = 0; ///< the application's when it was asked for, as far as they stay
    std::uint64_t hold = 0;        ///< of the combination by which it was asked for last
    bool isRepeated = false;       ///< whether it was asked for more than once
    std::optional<platform::OpenResult> result;
    std::vector<platform::Workspace::OpenCompletion> waiting; ///< for the result
};

/// Keeps every launch from its request until a window of the application appears, so that requests
/// in between join it: as long as the process lives that was started for it, or for `limit` if we
/// started none. Repeats of a combination that is held down join also when the launch is over,
/// however it ended. The start-up identifier carries the time of the first request; if the last
/// thing that the user asked for is a later one, the window is brought forward when it appears.
/// Main thread only.
class LaunchesUnderWay {
public:
    using Completion = platform::Workspace::OpenCompletion;

    /// A start-up notice is shown no longer than this either, unless a window has appeared by then:
    /// the application ends it.
    static constexpr std::chrono::seconds limit{10};

    /// The services outlive this.
    LaunchesUnderWay(platform::Windows& windows, platform::LaunchFeedback& feedback,
                     platform::MainQueue& mainQueue)
        : windows_(windows), feedback_(feedback), mainQueue_(mainQueue) {}

    /// Whether a request for the entry in this file joined an earlier one and has nothing to start.
    /// Its `completion` is then called with the result, at once if there is one already.
    bool join(const FileStamp& file, bool activates, const Completion& completion);

    /// Keeps a new launch. Whoever holds on to it beyond the call does so weakly: a launch that is
    /// over is gone.
    std::shared_ptr<Launch> begin(const DesktopEntry& entry, bool activates,
                                  const Completion& completion);

    /// Answers all who wait. The launch goes on if the application was opened.
    void settle(Launch& launch, const platform::OpenResult& result);

    /// Starts to look for the application's window, and the clock. To be called when nothing urgent
    /// is left to do for the launch.
    void track(const std::shared_ptr<Launch>& launch);

    /// Lets the launch go without a window.
    void finish(Launch& launch);

private:
    /// What is left of a launch that is over.
    struct Outcome {
        FileStamp file;
        std::uint64_t hold;
        platform::OpenResult result;
    };

    std::shared_ptr<Launch> find(const FileStamp& file) const;
    void lookForWindows();
    void bringForward(const Launch& launch, const std::vector<platform::ClientWindow>& windows);
    void giveUp(Launch& launch);
    void takeNoticeBack(Launch& launch);
    void forget(const Launch& launch);

    platform::Windows& windows_;
    platform::LaunchFeedback& feedback_;
    platform::MainQueue& mainQueue_;
    std::vector<std::shared_ptr<Launch>> launches_;
    std::vector<Outcome> outcomes_;
    std::unique_ptr<platform::Subscription> windowWatch_;
};

} // namespace hollowfernpike::freedesktop
