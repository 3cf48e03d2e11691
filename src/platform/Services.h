#pragma once

#include "platform/FatalError.h"

#include <iosfwd>

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

} // namespace hollowfernpike::platform
