#pragma once

#include "desktop/editor/EditorStory.h"

#include <memory>
#include <string>
#include <string_view>

namespace hollowfernpike::test {

/// Somebody who uses the program by one means alone: the keyboard, the mouse, or the accessibility
/// bus. The panel with the older kind of tray opens its menu for the mouse only, so it is clicked
/// open, and pointed at, for those who then use the keys; and as the accessibility bus brings no
/// window forward, a task bar does. Throws std::runtime_error if something that is to be seen does
/// not appear.
class Means {
public:
    Means() = default;
    Means(const Means&) = delete;
    Means& operator=(const Means&) = delete;
    virtual ~Means() = default;

    /// Presses a button of the window that has the keys.
    virtual void press(const Accessible& button) = 0;

    /// Chooses a row of the list that has the focus.
    virtual void choose(const Accessible& row) = 0;

    /// Asks once for a window of the program in front of all others. `isTrusted` says whether the
    /// program itself can ask for that when it is started again.
    virtual void askForFront(xcb_window_t window, bool isTrusted) = 0;

    /// Starts a panel, unless there is one, and waits until it shows the program's symbol.
    virtual void startPanel() = 0;
    virtual void panelShowsSymbol() = 0;

    /// These choose from the menu of the symbol, the last two once that is English.
    virtual void chooseEnglish() = 0;
    virtual void chooseManage() = 0;
    virtual void chooseQuit() = 0;
};

/// The story outlives what is returned. `name` is "keyboard", "mouse" or "accessibilityBus".
std::unique_ptr<Means> makeMeans(std::string_view name, EditorStory& story);

} // namespace hollowfernpike::test
