#pragma once

#include "platform/LaunchFeedback.h"
#include "platform/MainQueue.h"
#include "platform/Windows.h"
#include "platform/Workspace.h"
#include "platform/freedesktop/entries/DesktopEntry.h"

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace hollowfernpike::freedesktop {

/// An application that was asked for and has not shown itself yet.
struct Launch {
    DesktopEntry entry;
    std::string startupIdentifier; ///< empty if there is none, or once its notice is taken back
    std::optional<std::int32_t> process;
    std::size_t windowsBefore = 0; ///< the application's windows at the request, less closed ones
    std::uint64_t hold = 0;        ///< LaunchFeedback::holdCount() when it was last asked for
    bool isRepeated = false;       ///< whether it was asked for more than once
    std::optional<platform::OpenResult> result;
    std::vector<platform::Workspace::OpenCompletion> waiting; ///< for the result
};

/// Keeps every launch from its request until a window of the application appears, so that requests
/// in between join it. Without a window, a launch lasts while the process that we started for it
/// lives, or for `limit` if we started none. Repeats of a combination that is held down join even
/// after the launch is over, however it ended.
///
/// The start-up identifier carries the time of the first request. So if the user asked again, and
/// for nothing else since, the window is brought forward when it appears. Main thread only.
class LaunchesUnderWay {
public:
    using Completion = platform::Workspace::OpenCompletion;

    /// Also the longest time that we show a start-up notice. Once a window has appeared, ending the
    /// notice is left to the application.
    static constexpr std::chrono::seconds limit{10};

    /// Called when a launch has no result after `limit`, in order to start it in another way or to
    /// settle it.
    using OnSilence = std::function<void(const std::shared_ptr<Launch>&)>;

    /// The services outlive this.
    LaunchesUnderWay(platform::Windows& windows, platform::LaunchFeedback& feedback,
                     platform::MainQueue& mainQueue, OnSilence onSilence)
        : windows_(windows), feedback_(feedback), mainQueue_(mainQueue),
          onSilence_(std::move(onSilence)) {}

    /// Joins a request for the entry in this file to an earlier launch; false if there is none. If
    /// it joins, nothing is to be started, and `completion` is called with the launch's result, at
    /// once if there is one already.
    bool join(const FileStamp& file, bool activates, const Completion& completion);

    /// Adds a new launch. Beyond the call, keep only a weak pointer to it, so that it is destroyed
    /// when the launch is over.
    std::shared_ptr<Launch> begin(const DesktopEntry& entry, bool activates,
                                  const Completion& completion);

    /// Calls all waiting completions. The launch goes on unless `result` is an error.
    void settle(Launch& launch, const platform::OpenResult& result);

    /// Starts to look for the application's window, and the time of `limit`. To be called when
    /// nothing urgent is left to do for the launch.
    void track(const std::shared_ptr<Launch>& launch);

    /// Ends the launch without a window, and its start-up notice.
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
    void limitTime(const std::shared_ptr<Launch>& launch);
    void giveUp(const std::shared_ptr<Launch>& launch);
    void takeNoticeBack(Launch& launch);
    void forget(const Launch& launch);

    platform::Windows& windows_;
    platform::LaunchFeedback& feedback_;
    platform::MainQueue& mainQueue_;
    OnSilence onSilence_;
    std::vector<std::shared_ptr<Launch>> launches_;
    std::vector<Outcome> outcomes_;
    std::unique_ptr<platform::Subscription> windowWatch_;
};

} // namespace hollowfernpike::freedesktop
