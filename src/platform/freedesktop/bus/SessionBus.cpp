#include "platform/freedesktop/bus/SessionBus.h"

#include "platform/freedesktop/Logging.h"
#include "platform/freedesktop/bus/BusProbe.h"
#include "platform/freedesktop/files/BaseDirectories.h"

#include <QCoreApplication>
#include <QDBusError>
#include <QDBusPendingCallWatcher>
#include <QEventLoop>
#include <QMetaObject>
#include <QPointer>
#include <QThreadPool>

#include <algorithm>
#include <cstdlib>
#include <limits>
#include <string_view>
#include <system_error>
#include <thread>
#include <utility>

namespace hollowfernpike::freedesktop {

namespace {

using namespace std::chrono_literals;

constexpr auto firstPause = 250ms;
constexpr auto longestPause = 32s;
constexpr auto longestAnswer = 1s;

constexpr int noTimeLimit = std::numeric_limits<int>::max(); // DBUS_TIMEOUT_INFINITE of libdbus

const QString laterName = QStringLiteral("session bus "); // of connections after the first
constexpr auto patienceAtStart = 1s;
constexpr auto patienceLater = 5s;

void tell(const SessionBus::Answer& answer, const QDBusMessage& reply) {
    if (reply.type() == QDBusMessage::ErrorMessage) {
        qCDebug(busLog) << reply.errorName() << reply.errorMessage();
    }
    if (answer) {
        answer(reply);
    }
}

} // namespace

std::string SessionBus::addressOfSession() {
    const char* const variable = std::getenv("DBUS_SESSION_BUS_ADDRESS");
    const std::string_view addresses = variable == nullptr ? "" : variable;
    if (!addresses.empty()) {
        return isLocalBus(addresses) ? std::string{addresses} : std::string{};
    }
    const auto directory = runtimeDirectory();
    std::error_code unknown;
    // Not status(): libdbus does not follow a link at this path, and would start a bus.
    return directory && is_socket(std::filesystem::symlink_status(*directory / "bus", unknown))
               ? "unix:path=" + (*directory / "bus").string()
               : std::string{};
}

bool SessionBus::answers(const std::string& address) {
    return !address.empty() && busAnswers(address, patienceAtStart);
}

SessionBus::SessionBus(std::string address, bool answers)
    : address_(std::move(address)),
      connection_(answers ? QDBusConnection::sessionBus() : QDBusConnection(QString())) {
    timer_.setSingleShot(true);
    QObject::connect(&timer_, &QTimer::timeout, this, &SessionBus::look);
    watch();
}

SessionBus::~SessionBus() {
    giveUp();
}

void SessionBus::call(const QDBusMessage& message, const Answer& answer) {
    answerOnce(connection_.asyncCall(message, noTimeLimit), this, answer);
}

void SessionBus::answerOnce(const QDBusPendingCall& call, QObject* receiver, const Answer& answer) {
    if (call.isError()) { // on a dead connection there is nothing to watch
        QMetaObject::invokeMethod(
            receiver,
            [answer, error = call.error()] { tell(answer, QDBusMessage::createError(error)); },
            Qt::QueuedConnection);
        return;
    }
    // If the call ends at this moment, both the watcher and the toolkit's thread say so.
    constexpr auto once =
        static_cast<Qt::ConnectionType>(Qt::AutoConnection | Qt::SingleShotConnection);
    auto* const watcher = new QDBusPendingCallWatcher(call, receiver);
    const auto end = [watcher, answer] {
        watcher->deleteLater();
        tell(answer, watcher->reply());
    };
    QObject::connect(watcher, &QDBusPendingCallWatcher::finished, receiver, end, once);
}

// The toolkit's own waits never end if the bus ends meanwhile.
QVariant SessionBus::ask(const QDBusMessage& message) const {
    constexpr auto pause = 100us;
    const auto deadline = std::chrono::steady_clock::now() + longestAnswer;
    const auto call = connection_.asyncCall(message, noTimeLimit);
    while (!call.isFinished() && connection_.isConnected() &&
           std::chrono::steady_clock::now() < deadline) {
        std::this_thread::sleep_for(pause);
    }
    const auto reply = call.reply();
    if (reply.type() != QDBusMessage::ReplyMessage) {
        qCDebug(busLog) << message.member() << reply.errorName() << reply.errorMessage();
        return {};
    }
    return reply.arguments().value(0);
}

bool SessionBus::waitFor(const QDBusPendingCall& call, std::chrono::milliseconds longest) const {
    QEventLoop loop;
    const QDBusPendingCallWatcher watcher(call);
    QObject::connect(&watcher, &QDBusPendingCallWatcher::finished, &loop, &QEventLoop::quit);
    QObject::connect(this, &SessionBus::lost, &loop, &QEventLoop::quit);
    QTimer::singleShot(longest, &loop, &QEventLoop::quit);
    if (!call.isFinished() && connection_.isConnected()) {
        loop.exec(QEventLoop::ExcludeUserInputEvents);
    }
    return call.isFinished() && !call.isError();
}

// Leaves the toolkit's first connection open: the toolkit keeps using it, dead or alive.
void SessionBus::giveUp() {
    if (connection_.name().startsWith(laterName)) {
        QDBusConnection::disconnectFromBus(connection_.name());
    }
}

// A connection that dies before it is watched never sends the signal, so it is checked afterwards.
void SessionBus::watch() {
    connection_.connect({}, QStringLiteral("/org/freedesktop/DBus/Local"),
                        QStringLiteral("org.freedesktop.DBus.Local"),
                        QStringLiteral("Disconnected"), this, SLOT(lookAgain()));
    if (!connection_.isConnected()) {
        lookAgain();
    }
}

void SessionBus::lookAgain() {
    qCDebug(busLog, "the session bus has gone");
    Q_EMIT lost();
    pause_ = firstPause;
    timer_.start(pause_);
}

// On another thread, because a bus may accept but stay silent. The toolkit, which has one thread
// for all its connections, is only sent to a bus that answers. Under a new name each time, because
// for a known name the toolkit returns the old connection, even a dead one.
void SessionBus::look() {
    const auto name = laterName + QString::number(++count_);
    QThreadPool::globalInstance()->start([self = QPointer(this), name, address = address_] {
        if (busAnswers(address, patienceLater)) {
            QDBusConnection::connectToBus(QString::fromStdString(address), name);
        }
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

void SessionBus::take(const QString& name) {
    const QDBusConnection found(name);
    if (!found.isConnected()) {
        QDBusConnection::disconnectFromBus(name);
        pause_ = std::min<std::chrono::milliseconds>(2 * pause_, longestPause);
        timer_.start(pause_);
        return;
    }
    qCDebug(busLog, "the session bus is there again");
    giveUp();
    connection_ = found;
    watch();
    Q_EMIT returned();
}

} // namespace hollowfernpike::freedesktop
