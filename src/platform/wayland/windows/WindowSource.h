#pragma once

#include "platform/Interface.h"
#include "platform/WindowOwners.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace hollowfernpike::wayland {

/// A window that has been shown, as its desktop describes it.
struct ListedWindow {
    std::int64_t number = 0; ///< later windows have higher ones
    platform::WindowFacts facts;
    bool isMinimised = false;
    bool isOnShownWorkspace = true;

    bool isVisible() const { return isOnShownWorkspace && !isMinimised; }
};

/// A desktop's own way to its windows. Main thread only.
class WindowSource : public platform::Interface {
public:
    /// From front to back, minimised ones and those of other workspaces included. Absent if the
    /// desktop cannot be asked.
    virtual std::optional<std::vector<ListedWindow>> windows() = 0;

    /// The next list is to be asked for anew, if the desktop is asked at all.
    virtual void refresh() {}

    /// Brings these windows forward one after the other and gives the last one the keys. The
    /// desktop shows it if it is minimised and switches to its workspace.
    virtual void activate(std::span<const std::int64_t> numbers) = 0;

    /// Whether `onChange` is to be called. It may be called even if not.
    virtual void watch(bool /*wanted*/) {}

    /// Called when a window has come or gone.
    std::function<void()> onChange;

protected:
    void tellChange() const {
        if (onChange) {
            onChange();
        }
    }
};

/// No text that identifies an application is longer; a client may send any.
inline constexpr std::size_t longestText = 1024;

inline std::string boundedText(std::string_view text) {
    return std::string(text.substr(0, longestText));
}

} // namespace hollowfernpike::wayland
