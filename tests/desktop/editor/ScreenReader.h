#pragma once

#include "desktop/editor/AccessibilityBus.h"
#include "desktop/windows/Screen.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace hollowfernpike::test {

/// A part of a window as programs hand it to assistive technology.
struct Accessible {
    std::string program; ///< the program's name on the accessibility bus
    std::string path;
    std::string role; ///< as AT-SPI calls it in English ("push button")
    std::string name;

    bool operator==(const Accessible&) const = default;
};

/// Somebody who neither sees the screen nor uses keys and mouse, but finds the parts of windows by
/// role and name and acts on them, all over the accessibility bus (AT-SPI 2).
class ScreenReader {
public:
    /// The session bus, as for `AccessibilityBus`.
    explicit ScreenReader(const std::string& sessionBus);

    /// Waits for a part with this role and name that is on the screen, in a window of any program,
    /// and returns the outermost, the first of several. Throws std::runtime_error with a list of
    /// all parts if there is none.
    Accessible find(std::string_view role, std::string_view name);

    /// The same within a part, such as a window.
    Accessible find(const Accessible& whole, std::string_view role, std::string_view name);

    /// All parts within it that are on the screen, to any depth, in order.
    std::vector<Accessible> partsOf(const Accessible& whole);

    /// The windows of all programs that are on the screen.
    std::vector<Accessible> windows();

    /// Whether it is on the screen now.
    bool isShown(const Accessible& part);
    /// Whether the program takes this window of its for the one that has the keys.
    bool isActive(const Accessible& window);

    bool isEnabled(const Accessible& part);
    bool isFocused(const Accessible& part);
    bool isSelected(const Accessible& part);

    /// Whether a part within it with this role and name is selected. Rows of a list that changes
    /// are not the same parts as before.
    bool hasSelected(const Accessible& whole, std::string_view role, std::string_view name);

    std::string description(const Accessible& part);

    /// Where it is on the screen.
    Place placeOf(const Accessible& part);

    /// The middle of it on the screen.
    struct Point {
        int x = 0;
        int y = 0;
    };
    Point middleOf(const Accessible& part);

    /// The names of what can be done with it.
    std::vector<std::string> actions(const Accessible& part);

    /// Does what it calls by this name. Throws std::runtime_error if it cannot be done.
    void act(const Accessible& part, std::string_view action);
    void press(const Accessible& button) { act(button, "Press"); }

    /// Replaces its text. Throws std::runtime_error if it takes none.
    void write(const Accessible& field, const std::string& text);
    std::string text(const Accessible& field);

private:
    AccessibilityBus::Value call(const Accessible& part, const char* interface, const char* method,
                                 GVariant* arguments = nullptr);
    bool hasState(const Accessible& part, std::uint32_t state);
    std::vector<Accessible> childrenOf(const Accessible& whole);
    bool isReached(const Accessible& part);
    std::optional<Accessible> nearest(const Accessible& whole, const Accessible& wanted);
    void collect(const Accessible& whole, std::vector<Accessible>& parts);

    AccessibilityBus bus_;
};

} // namespace hollowfernpike::test
