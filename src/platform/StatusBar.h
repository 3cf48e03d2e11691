#pragma once

#include "platform/Interface.h"
#include "platform/Menu.h"

#include <memory>
#include <string_view>

namespace hollowfernpike::platform {

/// Our item in the desktop's status bar, as wide as its image. It appears whenever the desktop has
/// a bar, and again when another bar replaces that one, until the item is destroyed. Main thread
/// only.
class StatusItem : public Interface {
public:
    /// `symbolName` is one of our symbols; the description is for screen readers and the tooltip.
    virtual void setImage(std::string_view symbolName,
                          std::string_view accessibilityDescription) = 0;

    /// Replaces the whole menu. Items are shown as they are now. Of later changes only those of a
    /// check mark can be shown, by calling `menuItemDidChange`.
    virtual void setMenu(const Menu& menu) = 0;

    /// `item` belongs to the present menu and its check mark has changed.
    virtual void menuItemDidChange(const MenuItem& item) = 0;
};

class StatusBar : public Interface {
public:
    /// Never null, with or without a bar on the desktop.
    virtual std::unique_ptr<StatusItem> createStatusItem() = 0;
};

} // namespace hollowfernpike::platform
