#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <vector>

namespace hollowfernpike::test {

/// A key-down on its way to a tap, by the numbers of its fields.
struct MacEvent {
    std::map<std::uint32_t, std::int64_t> fields;
    std::uint64_t flags = 0;
};

/// An event tap as the system knows it.
struct MacTap {
    std::uint32_t location = 0;
    std::uint32_t placement = 0;
    std::uint32_t options = 0;
    std::uint64_t mask = 0;
    void* callback = nullptr;
    void* userInfo = nullptr;
    bool isEnabled = true; ///< as the system makes them
    bool isValid = true;
    std::set<std::string> modes; ///< of the main loop, in which its source is attached
};

/// A window in the list of the window server. What is absent is not in its dictionary.
struct MacWindow {
    std::optional<std::string> ownerName;
    std::optional<std::int64_t> ownerProcess;
    std::optional<std::int64_t> layer;
    std::string oddity = {}; ///< a key whose value is of another type than it should be
};

struct MacApplication {
    std::int32_t process = 0;
    std::string bundleIdentifier = {};
    bool isTerminated = false;
    bool hasSerialNumber = true;
    bool comesForward = true;   ///< when asked by its serial number
    bool takesAttribute = true; ///< comes forward when asked by the accessibility attribute
    bool activates = true;      ///< comes forward when asked to activate itself
};

/// What platform/macos finds where the system should be. It is empty at the beginning of each test.
class FakeMac {
public:
    static FakeMac& shared();

    /// Forgets all that the test has done.
    static void reset();

    // Accessibility.
    bool trusted = true;
    int prompts = 0;

    // Keys.
    bool refusesActive = false;
    bool refusesListenOnly = false;
    std::vector<MacTap*> taps; ///< those that are still held by somebody

    /// Presses a key with some menu open or not. True if the application in front gets it.
    bool press(MacTap& tap, std::int64_t keyCode, std::uint64_t flags, bool isMenuOpen = false);

    /// Gives any event to the tap's callback. True if it is passed on.
    static bool deliver(const MacTap& tap, std::uint32_t type, const MacEvent& event);

    // Windows and applications.
    std::optional<std::vector<MacWindow>> windows{std::in_place}; ///< front to back
    bool listsSomethingElse = false;                              ///< than dictionaries
    std::vector<std::uint32_t> windowListOptions;                 ///< each time it was asked
    std::vector<MacApplication> running;

    /// What was asked for in order, such as "serial number 42" or "open /a.app activating".
    std::vector<std::string> requests;

    MacApplication* application(std::int32_t process);

    // Opening applications.
    std::vector<std::function<void(std::int32_t process, const std::string& error)>> opening;

    // Login item, as the system numbers its states.
    long loginItemStatus = 0;
    std::string loginItemError; ///< of the next changes

    // Our own windows.
    std::optional<long> activationPolicy;

    // What the caller owns: grows with each Create, Copy and retain, shrinks with each release.
    long owed = 0;

    /// Objects of classes that the fakes define.
    long alive = 0;
};

} // namespace hollowfernpike::test
