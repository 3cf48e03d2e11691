#include "platform/freedesktop/bus/BusCalls.h"

#include "platform/freedesktop/entries/DesktopEntry.h"
#include "platform/freedesktop/owners/ApplicationUnit.h"

#include <QDBusArgument>
#include <QDBusMetaType>
#include <QDBusVariant>
#include <QList>
#include <QString>

#include <algorithm>
#include <string_view>

namespace hollowfernpike::freedesktop {

namespace {

/// (sv)
struct UnitProperty {
    QString name;
    QDBusVariant value;
};

/// (sa(sv))
struct AuxiliaryUnit {
    QString name;
    QList<UnitProperty> properties;
};

QDBusArgument& operator<<(QDBusArgument& argument, const UnitProperty& property) {
    argument.beginStructure();
    argument << property.name << property.value;
    argument.endStructure();
    return argument;
}

const QDBusArgument& operator>>(const QDBusArgument& argument, UnitProperty& property) {
    argument.beginStructure();
    argument >> property.name >> property.value;
    argument.endStructure();
    return argument; // NOLINT(bugprone-return-const-ref-from-parameter): as the toolkit has it
}

QDBusArgument& operator<<(QDBusArgument& argument, const AuxiliaryUnit& unit) {
    argument.beginStructure();
    argument << unit.name << unit.properties;
    argument.endStructure();
    return argument;
}

const QDBusArgument& operator>>(const QDBusArgument& argument, AuxiliaryUnit& unit) {
    argument.beginStructure();
    argument >> unit.name >> unit.properties;
    argument.endStructure();
    return argument; // NOLINT(bugprone-return-const-ref-from-parameter): as the toolkit has it
}

constexpr std::size_t longestBusName = 255;

bool isNamePart(std::string_view part) {
    const auto isDigit = [](char letter) { return letter >= '0' && letter <= '9'; };
    const auto isAllowed = [&](char letter) {
        return isDigit(letter) || (letter >= 'A' && letter <= 'Z') ||
               (letter >= 'a' && letter <= 'z') || letter == '_' || letter == '-';
    };
    return !part.empty() && !isDigit(part.front()) && std::ranges::all_of(part, isAllowed);
}

/// D-Bus Specification, "Valid Names": a well-known bus name.
bool isBusName(std::string_view name) {
    if (name.size() > longestBusName || name.find('.') == std::string_view::npos) {
        return false;
    }
    for (;;) {
        const auto dot = name.find('.');
        if (!isNamePart(name.substr(0, dot))) {
            return false;
        }
        if (dot == std::string_view::npos) {
            return true;
        }
        name.remove_prefix(dot + 1);
    }
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
