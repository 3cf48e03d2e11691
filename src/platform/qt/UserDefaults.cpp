#include "platform/qt/UserDefaults.h"

#include <QString>
#include <QVariant>

namespace hollowfernpike::qt {

// NativeFormat is INI here. With an organization and no application, the file is "<domain>.conf".
UserDefaults::UserDefaults(std::string_view domain)
    : settings_(QSettings::NativeFormat, QSettings::UserScope, QString::fromUtf8(domain)) {}

std::optional<std::string> UserDefaults::stringForKey(std::string_view key) {
    const QVariant value = settings_.value(QString::fromUtf8(key));
    return value.typeId() == QMetaType::QString ? std::optional(value.toString().toStdString())
                                                : std::nullopt;
}

platform::PropertyValue UserDefaults::objectForKey(std::string_view key) {
    QVariant value = settings_.value(QString::fromUtf8(key));
    return value.isValid() ? platform::PropertyValue(std::move(value)) : platform::PropertyValue();
}

void UserDefaults::setObject(const platform::PropertyValue& value, std::string_view key) {
    settings_.setValue(QString::fromUtf8(key), std::any_cast<const QVariant&>(value));
    settings_.sync(); // nothing is saved at exit
}

void UserDefaults::setString(std::string_view value, std::string_view key) {
    setObject(QVariant(QString::fromUtf8(value)), key);
}

std::optional<std::map<std::string, platform::PropertyValue>>
UserDefaults::persistentDomainForName(std::string_view name) {
    QSettings domain(QSettings::NativeFormat, QSettings::UserScope, QString::fromUtf8(name));
    domain.setFallbacksEnabled(false);
    const auto keys = domain.allKeys();
    if (keys.isEmpty()) {
        return std::nullopt;
    }
    std::map<std::string, platform::PropertyValue> entries;
    for (const QString& key : keys) {
        entries.emplace(key.toStdString(), domain.value(key));
    }
    return entries;
}

} // namespace hollowfernpike::qt
