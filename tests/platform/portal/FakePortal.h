#pragma once

#include <chrono>
#include <vector>

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVirtualObject>
#include <QString>
#include <QStringList>
#include <QVariantMap>

namespace hollowfernpike::test {

/// The desktop's portal for global shortcuts on the session bus, as far as programs see it: grants
/// what it is asked for, unless told otherwise, and writes down how it is called. Main thread only.
class FakePortal final : public QDBusVirtualObject {
public:
    struct Call {
        QString method; ///< with the last word of its interface: "Session.Close"
        std::chrono::steady_clock::time_point time;
    };

    explicit FakePortal(const QString& busAddress);
    FakePortal(const FakePortal&) = delete;
    FakePortal& operator=(const FakePortal&) = delete;
    ~FakePortal() override;

    /// Leaves calls of this method unanswered from now on.
    void hold(const QString& method) { held_ = method; }

    /// Answers the calls that were held, and all others at once.
    void letGo();

    /// Refuses the next calls of this method.
    void refuse(const QString& method, unsigned count);

    /// Takes the next requests to bind, but lets the user think for ever.
    void openDialogs(bool isOpen) { opensDialogs_ = isOpen; }

    /// Tells of no keys for the shortcuts of this name.
    void takeKeysOf(const QString& name) { keyless_ = name; }

    /// Closes all sessions, which its other side still holds, and ends; is there again on return.
    /// What was held is never answered.
    void restart();

    /// The user presses a combination, which is written as its other side asks for it, and lets it
    /// go. Whether a shortcut has it: its session is told then, and nobody else sees the keys.
    bool press(const QString& trigger);

    QStringList methods() const;
    const std::vector<Call>& calls() const { return calls_; }

private:
    struct Shortcut {
        QString session;
        QString name;
        QString trigger;
    };

    QString introspect(const QString&) const override { return {}; }
    bool handleMessage(const QDBusMessage& message, const QDBusConnection& connection) override;
    void appear();
    std::vector<Shortcut> grantedOf(const QDBusMessage& message) const;
    void bind(const QDBusMessage& message);
    void answer(const QDBusMessage& message);
    void takeRequest(const QDBusMessage& message, const QVariantMap& results);
    void respond(const QString& request, const QVariantMap& results);

    QDBusConnection connection_;
    std::vector<Call> calls_;
    std::vector<QDBusMessage> waiting_;
    QStringList sessions_; ///< that its other side holds, which gives one up when it refuses
                           ///< another of that name
    std::vector<Shortcut> bound_;
    QString held_;
    QString refused_;
    unsigned refusals_ = 0;
    bool opensDialogs_ = false;
    QString keyless_;
};

} // namespace hollowfernpike::test
