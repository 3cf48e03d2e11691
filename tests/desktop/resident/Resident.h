#pragma once

#include "desktop/Story.h"
#include "desktop/resident/StatusMenu.h"

#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace hollowfernpike::test {

/// A private desktop on which the utility lives in a status bar, is started once more and called
/// by launchers.
class Resident {
public:
    Story story;
    StatusMenu menu{story.desktop};

    /// Calls the utility as launchers do. The method's name and arguments in GVariant's text form.
    std::string call(const std::string& method, const std::vector<std::string>& arguments);

    /// Starts the program once more, beside the one that runs.
    std::unique_ptr<ChildProcess> startAgain(const std::vector<std::string>& arguments = {},
                                             const Environment& changes = {});

    /// The utility's windows that the window manager shows, by their titles.
    std::vector<std::string> titles();

    /// Whether the utility has exactly one window and it has this title, after some waiting.
    testing::AssertionResult shows(const std::string& title);

    /// The utility's only window.
    xcb_window_t window();

    std::filesystem::path configuration(const std::string& name) const;

private:
    std::vector<xcb_window_t> windows();
};

/// The utility with one shortcut, whose application is not running.
class ResidentTest : public testing::Test {
protected:
    static constexpr auto japaneseTitle = "Hollowfernpike - ショートカット管理";
    static constexpr auto englishTitle = "Hollowfernpike - Manage Shortcuts";

    Resident resident;
    Story& story = resident.story;
    StatusMenu& menu = resident.menu;

    /// Starts the utility and waits until the combination is live.
    void start();

    /// Starts a panel first, and waits for the item on it.
    void startOnHost();
};

} // namespace hollowfernpike::test
