#pragma once

#include "desktop/FrontWatch.h"
#include "desktop/Story.h"
#include "show/Narrator.h"

#include <filesystem>
#include <map>
#include <string>

namespace hollowfernpike::show {

/// A combination, the application that it is bound to, and how both look to people.
struct Binding {
    std::string keys;
    test::Combination combination;
    std::string application;
    std::filesystem::path entry;
    std::string windowClass;
};

/// The utility from its start to its end, on a private desktop with two real applications, driven
/// by a keyboard alone.
class Show {
public:
    /// `pictures` is the folder for screenshots, made if it is missing.
    explicit Show(std::filesystem::path pictures);

    /// Tells the whole of it; true if everything was as it ought to be. Throws std::runtime_error
    /// where it cannot go on.
    bool run();

private:
    using Time = std::chrono::nanoseconds;

    void furnish();
    void bind(const Binding& binding);
    void start();
    void launch(const Binding& binding);
    void bringForward(const Binding& binding);
    void typeIntoTerminal();
    void restore(const Binding& binding);
    void end();

    Time strikeUntilInFront(const Binding& binding);
    void type(const Binding& into, const std::string& text);
    void picture(const std::string& name);

    std::filesystem::path pictures_;
    Narrator narrator_;
    const Binding terminal_{.keys = "⌃⌥X",
                            .combination = {7, test::control | test::option},
                            .application = "xterm",
                            .entry = "/usr/share/applications/debian-xterm.desktop",
                            .windowClass = "XTerm"};
    const Binding editor_{.keys = "⌃⌥E",
                          .combination = {14, test::control | test::option},
                          .application = "Mousepad",
                          .entry = "/usr/share/applications/org.xfce.mousepad.desktop",
                          .windowClass = "Mousepad"};
    test::Story story_;
    test::FrontWatch front_{story_.desktop.display()};
    std::map<std::string, xcb_window_t> windows_; ///< by window class
};

} // namespace hollowfernpike::show
