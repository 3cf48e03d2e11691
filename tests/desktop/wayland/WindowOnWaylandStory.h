#pragma once

#include "desktop/wayland/WaylandStory.h"

#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

namespace hollowfernpike::test {

/// The utility's windows on a Wayland desktop, used by keyboard alone; in Japanese, as in every new
/// home.
class WindowOnWaylandStory {
    std::unique_ptr<WaylandStory> story_;

public:
    explicit WindowOnWaylandStory(std::unique_ptr<WaylandStory> place = makeStory())
        : story_(std::move(place)), story(*story_) {}
    WindowOnWaylandStory(const WindowOnWaylandStory&) = delete;
    WindowOnWaylandStory& operator=(const WindowOnWaylandStory&) = delete;
    ~WindowOnWaylandStory() = default;

    WaylandStory& story;
    Application& front = story.open("Front");
    Application& target = story.install("Target");

    static constexpr auto managementTitle = "Hollowfernpike - ショートカット管理";
    static constexpr auto editTitle = "ショートカット編集";
    static constexpr auto addTitle = "ショートカット追加";

    /// Starts the utility with one shortcut, `bound` for the application Target, where the desktop
    /// has a combination of its own.
    void startUtility();

    /// Starts the program a second time, as people do from a menu; waits for the window with this
    /// title, which may be a dialog that is before all others.
    testing::AssertionResult openWindow(const std::string& title = managementTitle);

    /// Whether, after some waiting, our window with this title has the focus.
    testing::AssertionResult isFocused(const std::string& title);

    /// Whether a window of ours has this title.
    bool hasWindow(const std::string& title) const;

    /// Whether, after some waiting, none has it.
    testing::AssertionResult isGone(const std::string& title);

    /// Presses Tab so often, then the space bar.
    void chooseAfter(int tabs);

    /// How often the log has told that it records, and has the desktop's combinations as well.
    std::size_t recordings() { return timesTold(recordingBegins); }

    /// Whether, after some waiting, it has told so more often than that.
    testing::AssertionResult records(std::size_t before);

    /// Whether, after some waiting, it records no longer.
    testing::AssertionResult hasRecorded();

    /// The combination that the desktop carries out itself. To be called after startUtility().
    const Combination& own() const { return own_; }

    /// Whether the desktop carries it out, struck again if need be: it does not while we record,
    /// and the log may tell that we have ended before the desktop knows.
    testing::AssertionResult desktopHasItsOwn();

    /// The combinations in the file of shortcuts.
    std::vector<Combination> saved() const;

private:
    static constexpr std::string_view recordingBegins =
        "our window gets the compositor's combinations";
    static constexpr std::string_view recordingEnds =
        "our window gives the compositor's combinations back";

    std::vector<PagerWindow> ours() const;
    std::size_t timesTold(std::string_view line);

    Combination own_;
};

} // namespace hollowfernpike::test
