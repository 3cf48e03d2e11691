#include "platform/qt/BusConnection.h"

#include <QCoreApplication>
#include <QMetaObject>
#include <QPointer>
#include <QThreadPool>

#include <algorithm>

namespace hollowfernpike::qt {

namespace {

using namespace std::chrono_literals;

constexpr auto firstPause = 250ms;
constexpr auto longestPause = 32s;

} // namespace

BusConnection::BusConnection() : connection_(QDBusConnection::sessionBus()) {
    timer_.setSingleShot(true);
    QObject::connect(&timer_, &QTimer::timeout, this, &BusConnection::look);
    watch();
}

BusConnection::~BusConnection() {
    giveUp();
}

// The toolkit uses its first connection as long as the program runs, dead or alive.
void BusConnection::giveUp() {
    if (connection_.name() != QDBusConnection::sessionBus().name()) {
        QDBusConnection::disconnectFromBus(connection_.name());
    }
}

// A connection that is dead already, or dies before it is watched, tells nothing.
void BusConnection::watch() {
    connection_.connect({}, QStringLiteral("/org/freedesktop/DBus/Local"),
                        QStringLiteral("org.freedesktop.DBus.Local"),
                        QStringLiteral("Disconnected"), this, SLOT(lookAgain()));
    if (!connection_.isConnected()) {
        lookAgain();
    }
}

void BusConnection::lookAgain() {
    pause_ = firstPause;
    timer_.start(pause_);
}

// Connecting waits for the bus, which may accept and then be silent. The toolkit keeps what it has
// connected under a name, dead or alive.
void BusConnection::look() {
    const auto name = QStringLiteral("session bus %1").arg(++count_);
    QThreadPool::globalInstance()->start([self = QPointer(this), name] {
        QDBusConnection::connectToBus(QDBusConnection::SessionBus, name);
        QMetaObject::invokeMethod(
            qApp,
            [self, name] {
                if (self != nullptr) {
                    self->take(name);
                }
            },
            Qt::QueuedConnection);
    });
}

void BusConnection::take(const QString& name) {
    const QDBusConnection found(name);
    if (!found.isConnected()) {
        QDBusConnection::disconnectFromBus(name);
        pause_ = std::min<std::chrono::milliseconds>(2 * pause_, longestPause);
        timer_.start(pause_);
        return;
    }
    giveUp();
    connection_ = found;
    watch();
    Q_EMIT returned();
}

} // namespace hollowfernpike::qt
