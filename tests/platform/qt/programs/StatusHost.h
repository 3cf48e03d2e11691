#pragma once

#include <QDBusConnection>
#include <QDBusContext>
#include <QDBusMessage>
#include <QDBusServiceWatcher>
#include <QObject>
#include <QStringList>

#include <iostream>

namespace hollowfernpike::test {

/// The watcher of status notifier items, as applications see it on the session bus. Writes
/// "item SERVICE" to standard output for every item that registers.
class StatusHost final : public QObject, protected QDBusContext {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.kde.StatusNotifierWatcher")
    Q_PROPERTY(QStringList RegisteredStatusNotifierItems MEMBER items_)
    Q_PROPERTY(bool IsStatusNotifierHostRegistered READ isHostRegistered)
    Q_PROPERTY(int ProtocolVersion MEMBER protocolVersion_)

public:
    explicit StatusHost(bool isHost) : isHost_(isHost) {
        watched_.setConnection(bus_);
        watched_.setWatchMode(QDBusServiceWatcher::WatchForUnregistration);
        QObject::connect(&watched_, &QDBusServiceWatcher::serviceUnregistered, this,
                         &StatusHost::forget);
    }

    bool open() {
        return bus_.registerObject("/StatusNotifierWatcher", this,
                                   QDBusConnection::ExportAllContents) &&
               bus_.registerService("org.kde.StatusNotifierWatcher");
    }

    bool isHostRegistered() const { return isHost_ || !hosts_.isEmpty(); }

    // NOLINTBEGIN(readability-identifier-naming): the protocol's names

    Q_INVOKABLE void RegisterStatusNotifierItem(const QString& service) {
        items_.append(service);
        watched_.addWatchedService(service);
        std::cout << "item " << service.toStdString() << std::endl;
        Q_EMIT StatusNotifierItemRegistered(service);
    }

    Q_INVOKABLE void RegisterStatusNotifierHost(const QString& /*service*/) {
        hosts_.append(message().service());
        watched_.addWatchedService(message().service());
        Q_EMIT StatusNotifierHostRegistered();
    }

Q_SIGNALS:
    void StatusNotifierItemRegistered(const QString& /*service*/);
    void StatusNotifierItemUnregistered(const QString& /*service*/);
    void StatusNotifierHostRegistered();
    void StatusNotifierHostUnregistered();

    // NOLINTEND(readability-identifier-naming)

private:
    void forget(const QString& service) {
        if (items_.removeAll(service) > 0) {
            Q_EMIT StatusNotifierItemUnregistered(service);
        }
        if (hosts_.removeAll(service) > 0) {
            Q_EMIT StatusNotifierHostUnregistered();
        }
    }

    QDBusConnection bus_ = QDBusConnection::sessionBus();
    QDBusServiceWatcher watched_;
    bool isHost_;
    int protocolVersion_ = 0;
    QStringList items_;
    QStringList hosts_;
};

} // namespace hollowfernpike::test
