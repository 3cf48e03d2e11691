#pragma once

#include "platform/freedesktop/bus/SessionBus.h"

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
#include <QVariantList>
#include <QVariantMap>

namespace hollowfernpike::portal {

/// A combination that the portal is asked to bind.
struct PortalShortcut {
    QString name;    ///< stays the same: the desktop remembers what the user has decided for it
    QString label;   ///< for people
    QString trigger; ///< that we would like, as the "shortcuts" specification of freedesktop.org
                     ///< writes it: "CTRL+ALT+k"
};

/// The desktop's portal for global shortcuts (org.freedesktop.portal.GlobalShortcuts), over a
/// connection of its own to the session bus, on which it knows us by our desktop entry. The desktop
/// may ask the user in a dialog for each shortcut that it does not know yet. Calls never wait for
/// an answer. Main thread only.
class ShortcutsPortal final : public QObject {
    Q_OBJECT

public:
    /// Starts nothing yet. The bus outlives this object.
    explicit ShortcutsPortal(const freedesktop::SessionBus& bus);
    ShortcutsPortal(const ShortcutsPortal&) = delete;
    ShortcutsPortal& operator=(const ShortcutsPortal&) = delete;
    ~ShortcutsPortal() override;

    /// Binds these in the place of those before, in a session of their own. bound() tells which of
    /// them the user and the desktop have granted, however long the user takes.
    void bind(const QList<PortalShortcut>& shortcuts);

    /// Gives all combinations back.
    void release();

Q_SIGNALS:
    /// The shortcuts that have combinations now; again when the user has changed that.
    void bound(const QStringList& names);

    /// The portal repeats this while the keys are held. `token` is for what is activated or
    /// launched; may be empty.
    void pressed(const QString& name, const QString& token);
    void released(const QString& name);

    /// The portal has ended, or has taken the session back: nothing is bound any more.
    void lost();

private:
    using Answer = std::function<void(const QDBusMessage& reply)>;
    using Results = std::function<void(const QVariantMap& results)>;

    Q_SLOT void onResponse(const QDBusMessage& signal);
    Q_SLOT void onActivated(const QDBusMessage& signal);
    Q_SLOT void onDeactivated(const QDBusMessage& signal);
    Q_SLOT void onChanged(const QDBusMessage& signal);
    Q_SLOT void onClosed(const QDBusMessage& signal);
    void connectAnew();
    void introduce();
    void createSession();
    void close(const QString& session);
    void bindInSession();
    void lose();
    bool isOurs(const QDBusMessage& signal) const;
    void call(const QDBusMessage& message, const Answer& answer);
    void request(const char* method, QVariantList arguments, QVariantMap options,
                 const Results& onResults);
    void finish(const QVariantMap& results);

    std::optional<QDBusConnection> connection_;
    QDBusServiceWatcher service_;
    bool isIntroduced_ = false;
    QList<PortalShortcut> shortcuts_;
    QDBusObjectPath session_; ///< empty while there is none
    QString request_;         ///< the last part of the path of the request under way
    Results onResults_;       ///< of that request
    unsigned sessions_ = 0;   ///< so far, less those that were lost
    bool hasLostSession_ = false;
    unsigned count_ = 0; ///< of requests and connections so far
};

} // namespace hollowfernpike::portal
