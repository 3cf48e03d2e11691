#include "platform/freedesktop/BusCalls.h"

#include "platform/freedesktop/ApplicationUnit.h"
#include "platform/freedesktop/DesktopEntry.h"

#include <algorithm>

namespace hollowfernpike::freedesktop {

namespace {

std::string objectPathOf(const std::string& busName) {
    auto path = '/' + busName;
    std::ranges::replace(path, '.', '/');
    std::ranges::replace(path, '-', '_');
    return path;
}

int appendPlatformData(sd_bus_message* message, const std::string& startupIdentifier) {
    if (startupIdentifier.empty()) {
        return sd_bus_message_append(message, "a{sv}", 0);
    }
    const char* const identifier = startupIdentifier.c_str();
    return sd_bus_message_append(message, "a{sv}", 2, "desktop-startup-id", "s", identifier,
                                 "activation-token", "s", identifier);
}

} // namespace

bool isOpenedOverBus(const DesktopEntry& entry) {
    return entry.dbusActivatable && !entry.name.starts_with(':') &&
           sd_bus_service_name_is_valid(entry.name.c_str()) > 0;
}

BusCall activationOf(const DesktopEntry& entry, const std::string& startupIdentifier) {
    return {.destination = entry.name,
            .object = objectPathOf(entry.name),
            .interface = "org.freedesktop.Application",
            .method = "Activate",
            .appendArguments = [startupIdentifier](sd_bus_message* message) {
                return appendPlatformData(message, startupIdentifier);
            }};
}

std::optional<BusCall> scopeFor(const DesktopEntry& entry, std::int32_t process) {
    const auto& identifier = entry.identifier.empty() ? entry.name : entry.identifier;
    const auto unit = applicationScope(identifier, process);
    if (unit.empty()) {
        return std::nullopt;
    }
    return BusCall{.destination = "org.freedesktop.systemd1",
                   .object = "/org/freedesktop/systemd1",
                   .interface = "org.freedesktop.systemd1.Manager",
                   .method = "StartTransientUnit",
                   .appendArguments =
                       [unit, description = entry.displayName, process](sd_bus_message* message) {
                           return sd_bus_message_append(message, "ssa(sv)a(sa(sv))", unit.c_str(),
                                                        "fail", 4,                                //
                                                        "Description", "s", description.c_str(),  //
                                                        "Slice", "s", "app.slice",                //
                                                        "CollectMode", "s", "inactive-or-failed", //
                                                        "PIDs", "au", 1, process,                 //
                                                        0);
                       },
                   .startsService = false};
}

} // namespace hollowfernpike::freedesktop
