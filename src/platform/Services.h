#pragma once

#include "platform/FatalError.h"

#include <iosfwd>
#include <memory>

namespace hollowfernpike::platform {

class AccessibilityTrust;
class Application;
class ApplicationBundles;
class EventTaps;
class FileManager;
class LoginItem;
class MainQueue;
class NotificationCenter;
class RunningApplications;
class StatusBar;
class TextComparison;
class UserDefaults;
class Windows;
class Workspace;

/// The desktop as the shared instances see it. The entry point chooses the backends and hands them
/// over once, before the first shared instance is used; they outlive the last use of any shared
/// instance.
struct Services {
    AccessibilityTrust& accessibilityTrust;
    Application& application;
    ApplicationBundles& applicationBundles;
    EventTaps& eventTaps;
    FileManager& fileManager;
    LoginItem& loginItem;
    MainQueue& mainQueue;
    NotificationCenter& notificationCenter;
    RunningApplications& runningApplications;
    StatusBar& statusBar;
    TextComparison& textComparison;
    UserDefaults& userDefaults;
    Windows& windows;
    Workspace& workspace;
    std::ostream& standardOutput; ///< diagnostics, one line each
};

namespace detail {
inline const Services* handedOver = nullptr;
}

/// Hands the services over; the caller keeps them alive. Null takes them back.
inline void setServices(const Services* services) {
    detail::handedOver = services;
}

inline const Services& services() {
    if (detail::handedOver == nullptr) {
        fatalError("a shared instance was used before the desktop's services were handed over");
    }
    return *detail::handedOver;
}

/// The one instance of `T` in the process: made from the services on first use, kept until the
/// process ends. `T` keeps its constructor private and befriends this class. Main thread only.
template <class T>
class SharedInstance {
public:
    static const std::shared_ptr<T>& get() {
        if (!slot()) {
            slot() = std::shared_ptr<T>(new T(services()));
        }
        return slot();
    }

    /// Forgets the instance, so that the next test starts with a new one.
    static void resetForTesting() { slot().reset(); }

    /// Whether the instance exists. Unlike get(), never makes one.
    static bool existsForTesting() { return slot() != nullptr; }

private:
    static std::shared_ptr<T>& slot() {
        static auto* const instance = new std::shared_ptr<T>;
        return *instance;
    }
};

} // namespace hollowfernpike::platform
