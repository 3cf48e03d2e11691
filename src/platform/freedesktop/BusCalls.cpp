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

VariantPointer tuple(GVariant* floating) {
    return VariantPointer(g_variant_ref_sink(floating));
}

} // namespace

bool isOpenedOverBus(const DesktopEntry& entry) {
    return entry.dbusActivatable && g_dbus_is_name(entry.name.c_str()) != FALSE &&
           g_dbus_is_unique_name(entry.name.c_str()) == FALSE;
}

BusCall activationOf(const DesktopEntry& entry, const std::string& startupIdentifier) {
    GVariantBuilder platformData;
    g_variant_builder_init(&platformData, G_VARIANT_TYPE_VARDICT);
    if (!startupIdentifier.empty()) {
        for (const char* key : {"desktop-startup-id", "activation-token"}) {
            g_variant_builder_add(&platformData, "{sv}", key,
                                  g_variant_new_string(startupIdentifier.c_str()));
        }
    }
    return {.destination = entry.name,
            .object = objectPathOf(entry.name),
            .interface = "org.freedesktop.Application",
            .method = "Activate",
            .arguments = tuple(g_variant_new("(a{sv})", &platformData))};
}

std::optional<BusCall> scopeFor(const DesktopEntry& entry, std::int32_t process) {
    const auto& identifier = entry.identifier.empty() ? entry.name : entry.identifier;
    const auto unit = applicationScope(identifier, process);
    if (unit.empty()) {
        return std::nullopt;
    }
    GVariantBuilder properties;
    g_variant_builder_init(&properties, G_VARIANT_TYPE("a(sv)"));
    g_variant_builder_add(&properties, "(sv)", "Description",
                          g_variant_new_string(entry.displayName.c_str()));
    g_variant_builder_add(&properties, "(sv)", "Slice", g_variant_new_string("app.slice"));
    g_variant_builder_add(&properties, "(sv)", "CollectMode",
                          g_variant_new_string("inactive-or-failed"));
    const auto number = static_cast<guint32>(process);
    g_variant_builder_add(
        &properties, "(sv)", "PIDs",
        g_variant_new_fixed_array(G_VARIANT_TYPE_UINT32, &number, 1, sizeof number));
    return BusCall{.destination = "org.freedesktop.systemd1",
                   .object = "/org/freedesktop/systemd1",
                   .interface = "org.freedesktop.systemd1.Manager",
                   .method = "StartTransientUnit",
                   .arguments = tuple(g_variant_new("(ssa(sv)a(sa(sv)))", unit.c_str(), "fail",
                                                    &properties, nullptr)),
                   .startsService = false};
}

} // namespace hollowfernpike::freedesktop
