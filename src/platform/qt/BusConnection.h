#pragma once

#include <QDBusConnection>
#include <QObject>
#include <QTimer>

#include <chrono>

namespace hollowfernpike::qt {

/// The toolkit's connection to the session bus. A bus that ends is looked for until it is there
/// again, which the toolkit itself does not do: more and more seldom, up to every half minute, and
/// without waiting for it.
/// Make it only where there is a bus, or the toolkit starts one. Main thread only.
class BusConnection final : public QObject {
    Q_OBJECT

public:
    /// Connects, and waits until that is done.
    BusConnection();
    BusConnection(const BusConnection&) = delete;
    BusConnection& operator=(const BusConnection&) = delete;
    ~BusConnection() override;

    /// The one that is in force until `returned`. It may be dead.
    const QDBusConnection& get() const { return connection_; }

Q_SIGNALS:
    /// There is a new connection, on which nothing is registered yet.
    void returned();

private:
    Q_SLOT void lookAgain();
    void watch();
    void look();
    void take(const QString& name);
    void giveUp();

    QDBusConnection connection_;
    QTimer timer_;
    std::chrono::milliseconds pause_{};
    int count_ = 0; ///< of connections made after the first
};

} // namespace hollowfernpike::qt
