#pragma once

#include "platform/Interface.h"
#include "platform/Menu.h"

#include <memory>
#include <string_view>

namespace hollowfernpike::platform {

/// Our item in the desktop's status bar, as wide as its image. It appears whenever there is a bar
/// to show it, and again with the next one, until it is destroyed. Main thread only.
class StatusItem : public Interface {
public:
    /// `symbolName` is one of our symbols; the description is for screen readers and the tooltip.
    virtual void setImage(std::string_view symbolName,
                          std::string_view accessibilityDescription) = 0;

    /// Replaces the whole menu. Items are shown as they are now; of later changes only those of
    /// the check mark are told, by `menuItemDidChange`.
    virtual void setMenu(const Menu& menu) = 0;

    /// `item` belongs to the present menu and has another check mark now.
    virtual void menuItemDidChange(const MenuItem& item) = 0;
};

class StatusBar : public Interface {
public:
    /// Never null, with or without a bar on the desktop.
    virtual std::unique_ptr<StatusItem> createStatusItem() = 0;
};

} // namespace hollowfernpike::platform
