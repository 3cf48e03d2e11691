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

/// The argument that passes the start-up identifier to the other side (Desktop Entry Specification,
/// "D-Bus Activation"); empty if there is no identifier.
QVariantMap platformData(const std::string& startupIdentifier);

/// org.freedesktop.Application.Activate, which shows the application and starts it if need be.
QDBusMessage activationOf(const DesktopEntry& entry, const std::string& startupIdentifier);

/// The call that asks the user's service manager to put a process that we started into a scope of
/// its own, named after the application. Absent if that name is too long for a unit.
std::optional<QDBusMessage> scopeFor(const DesktopEntry& entry, std::int32_t process);

} // namespace hollowfernpike::freedesktop
