#pragma once

#include "desktop/Story.h"

#include <memory>
#include <string>
#include <vector>

namespace hollowfernpike::test {

/// An entry of the utility's menu as its panel sees it.
struct MenuEntry {
    int id = 0;
    std::string label;
    bool isOn = false; ///< carries a check mark
};

/// A private desktop on which the utility lives in a status bar: panels come and go, and somebody
/// uses its menu.
class Resident {
public:
    Story story;

    /// Starts a panel and waits until it is there: a host of status notifier items, or a tray of
    /// the older kind.
    ChildProcess& startHost();
    ChildProcess& startTray();
    void endPanel() { panel_.reset(); }

    /// Whether the host shows the utility's item, after some waiting.
    testing::AssertionResult showsItem();

    /// The whole menu, entries of submenus behind the one that opens them; separators are empty.
    std::vector<MenuEntry> menu();
    std::vector<std::string> labels();
    MenuEntry entry(const std::string& label);

    /// Whether the menu has this entry, with this mark, after some waiting.
    testing::AssertionResult becomes(const std::string& label, bool isOn);

    /// Chooses the entry with this label. Throws if there is none.
    void choose(const std::string& label);

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
    static std::string contents(const std::filesystem::path& file);

private:
    std::string bus(const std::vector<std::string>& arguments);
    std::vector<xcb_window_t> windows();

    std::unique_ptr<ChildProcess> panel_;
    std::string item_;
};

} // namespace hollowfernpike::test
