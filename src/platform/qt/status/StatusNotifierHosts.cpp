#include "platform/qt/status/StatusNotifierHosts.h"

#include <QDBusMessage>
#include <QDBusPendingReply>
#include <QDBusServiceWatcher>
#include <QDBusVariant>

#include <utility>

namespace hollowfernpike::qt {

namespace {

// Interface and bus name are the same.
const QString watcherName = QStringLiteral("org.kde.StatusNotifierWatcher");
const QString watcherPath = QStringLiteral("/StatusNotifierWatcher");

QDBusMessage question() {
    auto message = QDBusMessage::createMethodCall(watcherName, watcherPath,
                                                  QStringLiteral("org.freedesktop.DBus.Properties"),
                                                  QStringLiteral("Get"));
    message << watcherName << QStringLiteral("IsStatusNotifierHostRegistered");
    message.setAutoStartService(false);
    return message;
}

} // namespace

StatusNotifierHosts::StatusNotifierHosts(QDBusConnection bus, std::function<void()> onNews)
    : bus_(std::move(bus)), onNews_(std::move(onNews)) {
    auto* watchers =
        new QDBusServiceWatcher(watcherName, bus_, QDBusServiceWatcher::WatchForOwnerChange, this);
    QObject::connect(watchers, &QDBusServiceWatcher::serviceRegistered, this,
                     &StatusNotifierHosts::ask);
    QObject::connect(watchers, &QDBusServiceWatcher::serviceUnregistered, this,
                     &StatusNotifierHosts::forget);
    for (const char* signal : {"StatusNotifierHostRegistered", "StatusNotifierHostUnregistered"}) {
        bus_.connect(watcherName, watcherPath, watcherName, signal, this, SLOT(ask()));
    }
    bus_.connect({}, QStringLiteral("/org/freedesktop/DBus/Local"),
                 QStringLiteral("org.freedesktop.DBus.Local"), QStringLiteral("Disconnected"), this,
                 SLOT(forget()));
    ask();
}

void StatusNotifierHosts::ask() {
    question_ = std::make_unique<QDBusPendingCallWatcher>(bus_.asyncCall(question()));
    QObject::connect(question_.get(), &QDBusPendingCallWatcher::finished, this, [this] {
        const QDBusPendingReply<QDBusVariant> answer = *question_;
        note(answer.isValid() && answer.value().variant().toBool());
    });
}

void StatusNotifierHosts::forget() {
    question_.reset();
    note(false);
}

void StatusNotifierHosts::note(bool isHostRegistered) {
    isHostRegistered_ = isHostRegistered;
    onNews_();
}

} // namespace hollowfernpike::qt
