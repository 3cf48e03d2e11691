#pragma once

#include <QDBusMessage>
#include <QVariantMap>

#include <cstdint>
#include <optional>
#include <string>

namespace hollowfernpike::freedesktop {

struct DesktopEntry;

/// Whether the entry's application is to be opened over the bus (Desktop Entry Specification,
/// "D-Bus Activation"): the entry says so and its name can be a name on the bus.
bool isOpenedOverBus(const DesktopEntry& entry);

/// What tells the other side by which start-up notice it was asked (Desktop Entry Specification,
/// "D-Bus Activation"); empty without one.
QVariantMap platformData(const std::string& startupIdentifier);

/// org.freedesktop.Application.Activate, which shows the application and starts it if need be.
QDBusMessage activationOf(const DesktopEntry& entry, const std::string& startupIdentifier);

/// Asks the user's service manager to put a process of ours into a scope of its own, named after
/// the application. Absent if the application's name makes no unit name.
std::optional<QDBusMessage> scopeFor(const DesktopEntry& entry, std::int32_t process);

} // namespace hollowfernpike::freedesktop
