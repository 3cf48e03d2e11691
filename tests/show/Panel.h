#pragma once

#include "desktop/windows/WindowUser.h"

#include <memory>

namespace hollowfernpike::show {

/// How much of the screen the panel takes from the top, in pixels of the utility.
inline constexpr int panelHeight = 30;

/// A panel in the upper right corner of a desktop, just large enough for the utility's symbol, and
/// somebody who uses the menu there. Throws std::runtime_error if something that is to be seen does
/// not appear.
class Panel {
public:
    /// Starts the panel; the utility may be there already or come later.
    Panel(test::Story& story, test::WindowUser& user, int scale);

    /// Waits until the symbol is there.
    void showsSymbol();

    /// Clicks the symbol and waits for the menu.
    void openMenu();

    /// In the open menu: opens the submenu of languages.
    void openLanguages();

    /// In the open submenu of languages: chooses English.
    void chooseEnglish();

    /// Closes what is open of the menu.
    void closeMenu();

    /// In a closed menu: chooses an entry by its place, separators left out.
    void choose(int entry);

private:
    void strike(const std::vector<std::string>& keys);
    void isClosed();

    /// Points at the menu's first entry; once that shows, the menu takes keys, too.
    void goToFirst();

    test::Story& story_;
    test::WindowUser& user_;
    std::unique_ptr<test::ChildProcess> panel_;
};

} // namespace hollowfernpike::show
