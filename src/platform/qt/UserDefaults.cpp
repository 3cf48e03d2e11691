#include "platform/qt/UserDefaults.h"

#include "platform/freedesktop/files/BaseDirectories.h"

#include <QFile>
#include <QString>
#include <QVariant>

#include <algorithm>
#include <filesystem>
#include <system_error>
#include <vector>

#include <sys/stat.h>

namespace hollowfernpike::qt {

namespace {

/// Whether reading a file of this name in one of these directories could wait for somebody, because
/// it is a pipe or a device.
bool mayWait(const std::vector<std::filesystem::path>& directories, std::string_view domain) {
    return std::ranges::any_of(directories, [&](const std::filesystem::path& directory) {
        const auto file = directory / (std::string{domain} + ".conf");
        std::error_code unknown;
        const auto status = std::filesystem::status(file, unknown);
        return std::filesystem::exists(status) && !std::filesystem::is_regular_file(status);
    });
}

/// What is made meanwhile is for the user alone. Programs that we launch have the user's mask, so
/// it is not for long.
class PrivateToTheUser {
public:
    PrivateToTheUser() = default;
    PrivateToTheUser(const PrivateToTheUser&) = delete;
    PrivateToTheUser& operator=(const PrivateToTheUser&) = delete;
    ~PrivateToTheUser() { ::umask(before_); }

private:
    mode_t before_ = ::umask(S_IRWXG | S_IRWXO);
};

/// The user's own file; empty if there is no place for it or reading it could wait.
QString ownFile(std::string_view domain) {
    const auto directory = freedesktop::configHome();
    return directory && !mayWait({*directory}, domain)
               ? QFile::decodeName((*directory / (std::string{domain} + ".conf")).c_str())
               : QString();
}

// NativeFormat is INI here. With an organization and no application, the file is "<domain>.conf".
// The constructor reads that file and the common ones.
std::unique_ptr<QSettings> settingsOf(std::string_view domain) {
    const QString file = ownFile(domain);
    if (!file.isEmpty() && !mayWait(freedesktop::sharedConfigDirectories(), domain)) {
        return std::make_unique<QSettings>(QSettings::NativeFormat, QSettings::UserScope,
                                           QString::fromUtf8(domain));
    }
    return std::make_unique<QSettings>(file.isEmpty() ? QStringLiteral("/dev/null") : file,
                                       QSettings::NativeFormat);
}

} // namespace

UserDefaults::UserDefaults(std::string_view domain) : settings_(settingsOf(domain)) {}

std::optional<std::string> UserDefaults::stringForKey(std::string_view key) {
    const QVariant value = settings_->value(QString::fromUtf8(key));
    return value.typeId() == QMetaType::QString ? std::optional(value.toString().toStdString())
                                                : std::nullopt;
}

platform::PropertyValue UserDefaults::objectForKey(std::string_view key) {
    QVariant value = settings_->value(QString::fromUtf8(key));
    return value.isValid() ? platform::PropertyValue(std::move(value)) : platform::PropertyValue();
}

void UserDefaults::setObject(const platform::PropertyValue& value, std::string_view key) {
    const PrivateToTheUser settingsAndTheirFolder;
    settings_->setValue(QString::fromUtf8(key), std::any_cast<const QVariant&>(value));
    settings_->sync(); // nothing is saved at exit
}

void UserDefaults::setString(std::string_view value, std::string_view key) {
    setObject(QVariant(QString::fromUtf8(value)), key);
}

std::optional<std::map<std::string, platform::PropertyValue>>
UserDefaults::persistentDomainForName(std::string_view name) {
    const QString file = ownFile(name);
    if (file.isEmpty()) {
        return std::nullopt;
    }
    const QSettings domain(file, QSettings::NativeFormat);
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
