#pragma once

#include "platform/freedesktop/bus/SessionBus.h"

#include <chrono>
#include <functional>
#include <optional>

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QDBusServiceWatcher>
#include <QList>
#include <QObject>
#include <QString>
#include <QStringList>
#include <QTimer>
#include <QVariantList>
#include <QVariantMap>

class QDBusArgument;

namespace hollowfernpike::portal {

/// A combination that the portal is asked to bind.
struct PortalShortcut {
    QString name;    ///< stays the same: the desktop remembers what the user has decided for it
    QString label;   ///< for people
    QString trigger; ///< that we would like, as the "shortcuts" specification of freedesktop.org
                     ///< writes it: "CTRL+ALT+k"
    bool hasKeys = true; ///< in answers; false if the portal says that nothing triggers it
};

/// As calls carry it and answers do: these tell of the name and of keys alone.
QDBusArgument& operator<<(QDBusArgument& argument, const PortalShortcut& shortcut);
const QDBusArgument& operator>>(const QDBusArgument& argument, PortalShortcut& shortcut);

/// The desktop's portal for global shortcuts (org.freedesktop.portal.GlobalShortcuts), over a
/// connection of its own to the session bus, on which it knows us by our desktop entry. The desktop
/// may ask the user in a dialog for each shortcut that it does not know yet. Calls never wait for
/// an answer. What fails is tried again as long as shortcuts are wanted: first after a second, then
/// at doubling intervals up to 32 s. Main thread only.
class ShortcutsPortal final : public QObject {
    Q_OBJECT

public:
    /// Starts nothing yet. The bus outlives this object.
    explicit ShortcutsPortal(const freedesktop::SessionBus& bus);
    ShortcutsPortal(const ShortcutsPortal&) = delete;
    ShortcutsPortal& operator=(const ShortcutsPortal&) = delete;
    ~ShortcutsPortal() override;

    /// Binds these in the place of those before, in a session of their own. bound() tells which of
    /// them the user and the desktop have granted, however long the user takes. May be called at
    /// any time; only the latest list counts.
    void bind(const QList<PortalShortcut>& shortcuts);

    /// Gives all combinations back.
    void release();

Q_SIGNALS:
    /// The shortcuts that have combinations now; again when the user has changed that. None if the
    /// portal has failed, until it succeeds.
    void bound(const QStringList& names);

    /// The portal repeats this while the keys are held. `token` is for what is activated or
    /// launched; may be empty.
    void pressed(const QString& name, const QString& token);
    void released();

    /// The portal has ended, or has taken the session back: nothing is bound any more, until
    /// bound() tells otherwise.
    void lost();

private:
    enum class State {
        idle,
        registering, ///< on a new connection or with a new portal
        creating,    ///< a session
        asking,      ///< to bind; the portal has not taken the request yet
        deciding,    ///< the portal has taken it, and the user may be looking at a dialog
        bound
    };
    using Answer = freedesktop::SessionBus::Answer;
    using Results = std::function<void(const QVariantMap& results)>;

    Q_SLOT void onResponse(const QDBusMessage& signal);
    Q_SLOT void onActivated(const QDBusMessage& signal);
    Q_SLOT void onDeactivated(const QDBusMessage& signal);
    Q_SLOT void onChanged(const QDBusMessage& signal);
    Q_SLOT void onClosed(const QDBusMessage& signal);
    void want(const QList<PortalShortcut>& shortcuts);
    void begin();
    void connectAnew();
    void disconnect();
    void introduce();
    void createSession();
    void onCreated(const QString& handle);
    void bindInSession();
    void onDecided(const QStringList& names);
    void giveBack();
    void fail();
    void lose();
    void tryAgainLater();
    bool isOurs(const QDBusMessage& signal) const;
    void close(const char* interfaceName, const QString& object);
    void call(const QDBusMessage& message, const Answer& answer);
    void request(const char* method, QVariantList arguments, QVariantMap options,
                 const Results& onResults, const std::function<void()>& onTaken);
    QString pathOfRequest() const;

    const freedesktop::SessionBus& bus_;
    std::optional<QDBusConnection> connection_;
    QDBusServiceWatcher service_;
    QTimer retry_;
    std::chrono::milliseconds pause_; ///< before the next retry
    State state_ = State::idle;
    bool isIntroduced_ = false;
    bool isOutdated_ = false; ///< the list has changed since the portal was asked
    QList<PortalShortcut> shortcuts_;
    QDBusObjectPath session_; ///< empty while there is none
    QString token_;           ///< which the session was created with
    QString lostToken_;       ///< of a session that the other side of the portal may still hold
    QString request_;         ///< the last part of the path of the request under way
    Results onResults_;       ///< of that request
    unsigned count_ = 0;      ///< of requests, sessions and connections so far
    unsigned turn_ = 0;       ///< raised to drop the answers to all calls before
};

} // namespace hollowfernpike::portal
