#include "platform/freedesktop/bus/ScreenLock.h"

#include "platform/freedesktop/bus/SessionBus.h"

namespace hollowfernpike::freedesktop {

namespace {

constexpr const char* interfaces[] = {"org.freedesktop.ScreenSaver", "org.gnome.ScreenSaver",
                                      "org.cinnamon.ScreenSaver", "org.mate.ScreenSaver",
                                      "org.xfce.ScreenSaver"};

} // namespace

ScreenLock::ScreenLock(SessionBus* bus) : bus_(bus) {
    if (bus_ == nullptr) {
        return;
    }
    locker_.setWatchMode(QDBusServiceWatcher::WatchForUnregistration);
    connect(&locker_, &QDBusServiceWatcher::serviceUnregistered, this, &ScreenLock::forget);
    connect(bus_, &SessionBus::lost, this, &ScreenLock::forget);
    connect(bus_, &SessionBus::returned, this, &ScreenLock::listen);
    listen();
}

void ScreenLock::listen() {
    auto connection = bus_->connection();
    locker_.setConnection(connection);
    for (const auto* const interface : interfaces) {
        connection.connect({}, {}, interface, QStringLiteral("ActiveChanged"), this,
                           SLOT(change(bool, QDBusMessage)));
    }
}

void ScreenLock::change(bool active, const QDBusMessage& signal) {
    forget();
    if (active) {
        locker_.addWatchedService(signal.service());
    }
}

void ScreenLock::forget() {
    locker_.setWatchedServices({});
}

} // namespace hollowfernpike::freedesktop
