#include "platform/freedesktop/bus/BusCalls.h"

#include "platform/freedesktop/entries/DesktopEntry.h"
#include "platform/freedesktop/owners/ApplicationUnit.h"

#include <QDBusArgument>
#include <QDBusMetaType>
#include <QDBusVariant>
#include <QList>
#include <QPair>
#include <QRegularExpression>
#include <QString>

#include <algorithm>

namespace hollowfernpike::freedesktop {

namespace {

using UnitProperty = QPair<QString, QDBusVariant>;         // (sv)
using AuxiliaryUnit = QPair<QString, QList<UnitProperty>>; // (sa(sv))

/// D-Bus Specification, "Valid Names": a well-known bus name.
bool isBusName(const std::string& name) {
    static const QRegularExpression form(
        R"(\A(?=.{1,255}\z)[A-Za-z_-][A-Za-z0-9_-]*(\.[A-Za-z_-][A-Za-z0-9_-]*)+\z)");
    return form.match(QString::fromStdString(name)).hasMatch();
}

QString objectPathOf(std::string busName) {
    std::ranges::replace(busName, '.', '/');
    std::ranges::replace(busName, '-', '_');
    return '/' + QString::fromStdString(busName);
}

void registerTypes() {
    qDBusRegisterMetaType<UnitProperty>();
    qDBusRegisterMetaType<QList<UnitProperty>>();
    qDBusRegisterMetaType<AuxiliaryUnit>();
    qDBusRegisterMetaType<QList<AuxiliaryUnit>>();
    qDBusRegisterMetaType<QList<uint>>();
}

} // namespace

QVariantMap platformData(const std::string& startupIdentifier) {
    if (startupIdentifier.empty()) {
        return {};
    }
    const auto identifier = QString::fromStdString(startupIdentifier);
    return {{"desktop-startup-id", identifier}, {"activation-token", identifier}};
}

bool isOpenedOverBus(const DesktopEntry& entry) {
    return entry.dbusActivatable && isBusName(entry.name);
}

QDBusMessage activationOf(const DesktopEntry& entry, const std::string& startupIdentifier) {
    auto call =
        QDBusMessage::createMethodCall(QString::fromStdString(entry.name), objectPathOf(entry.name),
                                       "org.freedesktop.Application", "Activate");
    call << platformData(startupIdentifier);
    return call;
}

std::optional<QDBusMessage> scopeFor(const DesktopEntry& entry, std::int32_t process) {
    const auto& identifier = entry.identifier.empty() ? entry.name : entry.identifier;
    const auto unit = applicationScope(identifier, process);
    if (unit.empty()) {
        return std::nullopt;
    }
    registerTypes();
    const auto property = [](const char* name, const auto& value) {
        return UnitProperty{name, QDBusVariant(QVariant::fromValue(value))};
    };
    const QList<UnitProperty> properties{
        property("Description", QString::fromStdString(entry.displayName)),
        property("Slice", QStringLiteral("app.slice")),
        property("CollectMode", QStringLiteral("inactive-or-failed")),
        property("PIDs", QList<uint>{static_cast<uint>(process)}),
    };
    auto call =
        QDBusMessage::createMethodCall("org.freedesktop.systemd1", "/org/freedesktop/systemd1",
                                       "org.freedesktop.systemd1.Manager", "StartTransientUnit");
    call << QString::fromStdString(unit) << QStringLiteral("fail")
         << QVariant::fromValue(properties) << QVariant::fromValue(QList<AuxiliaryUnit>{});
    call.setAutoStartService(false);
    return call;
}

} // namespace hollowfernpike::freedesktop
