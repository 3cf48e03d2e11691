#pragma once

#include "platform/Interface.h"

#include <any>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace hollowfernpike::platform {

class ActionTarget;
struct MenuItem;

/// Items from top to bottom. Shared, because an item of a replaced menu may still be used until the
/// new menu is on the screen.
using MenuItemPointer = std::shared_ptr<MenuItem>;
using Menu = std::vector<MenuItemPointer>;

struct MenuItem {
    std::string title;
    std::string action;             ///< what its target is asked to perform; empty for none
    char keyEquivalent = '\0';      ///< pressed with the platform's key for commands; 0 for none
    ActionTarget* target = nullptr; ///< null: the application's delegate performs the action
    std::any representedObject;     ///< a value that the item carries for its action
    std::optional<bool> isOn;       ///< its check mark; absent for an item that never has one
    bool isChoice = false;          ///< one of the neighbours for which this holds is on
    Menu submenu;
    bool isSeparator = false;
};

/// Performs actions by their names: those of menu items, and those that the desktop offers for us
/// elsewhere, such as in a launcher's menu. Main thread only.
class ActionTarget : public Interface {
public:
    /// `sender` is null if the action does not come from a menu item. Unknown actions are ignored.
    virtual void performAction(std::string_view action, const MenuItem* sender) = 0;
};

} // namespace hollowfernpike::platform
