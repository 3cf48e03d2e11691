#pragma once

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCall>
#include <QObject>
#include <QTimer>
#include <QVariant>

#include <chrono>
#include <functional>
#include <string>

namespace hollowfernpike::freedesktop {

/// The user's session bus, over one connection of the toolkit. Reconnects after the bus has ended,
/// which the toolkit does not do: first after 250 ms, then at doubling intervals up to 32 s, and
/// never blocks for it. Main thread only.
class SessionBus final : public QObject {
    Q_OBJECT

public:
    /// Runs exactly once, on the main thread, after the call has returned: with the reply, which is
    /// of the type QDBusMessage::ErrorMessage if the call failed.
    using Answer = std::function<void(const QDBusMessage& reply)>;

    /// Where this session has a bus on a local socket, as far as its environment tells; empty if it
    /// has none. Other transports do not count.
    static std::string addressOfSession();

    /// Whether that bus can be connected to without waiting for it. Blocks for a second at most.
    static bool answers(const std::string& address);

    /// Connects if the bus answers, else begins to look for it. The address must not be empty, and
    /// if the bus does not answer, the environment must not tell the toolkit of it.
    SessionBus(std::string address, bool answers);

    /// The bus of the session, whether or not it answers by now.
    SessionBus() : SessionBus(addressOfSession(), true) {}
    SessionBus(const SessionBus&) = delete;
    SessionBus& operator=(const SessionBus&) = delete;

    /// Answers to calls under way are dropped.
    ~SessionBus() override;

    /// Where the bus is; the environment may tell the toolkit of none.
    const std::string& address() const { return address_; }

    /// The connection in use until the next `returned`. It may be dead.
    const QDBusConnection& connection() const { return connection_; }

    /// Sends a method call. Never waits for the bus; the answer has no time limit. `answer` may be
    /// empty.
    void call(const QDBusMessage& message, const Answer& answer);

    /// Passes on what becomes of a call on any connection; not if the receiver is destroyed before.
    static void answerOnce(const QDBusPendingCall& call, QObject* receiver, const Answer& answer);

    /// Sends a method call, waits for the reply and returns its first value; an invalid one if the
    /// call fails, the bus ends or nobody answers within a second. Nothing else happens meanwhile.
    QVariant ask(const QDBusMessage& message) const;

    /// Runs the main loop until the call is answered, the bus ends or `longest` passes. True if the
    /// call was answered without an error.
    bool waitFor(const QDBusPendingCall& call, std::chrono::milliseconds longest) const;

Q_SIGNALS:
    /// The connection in use has ended.
    void lost();

    /// There is a new connection, on which nothing is registered yet.
    void returned();

private:
    Q_SLOT void lookAgain();
    void watch();
    void look();
    void take(const QString& name);
    void giveUp();

    std::string address_;
    QDBusConnection connection_;
    QTimer timer_;
    std::chrono::milliseconds pause_{};
    int count_ = 0; ///< of connections made after the first
};

} // namespace hollowfernpike::freedesktop
