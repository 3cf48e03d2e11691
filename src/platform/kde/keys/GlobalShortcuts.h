#pragma once

#include "platform/freedesktop/bus/SessionBus.h"

#include <functional>
#include <optional>

#include <QDBusMessage>
#include <QDBusServiceWatcher>
#include <QList>
#include <QObject>
#include <QString>
#include <QStringList>

namespace hollowfernpike::kde {

/// Our component of the desktop's global shortcuts: the actions that KWin binds to keys for us,
/// over the session bus (org.kde.KGlobalAccel). The user sees them in the settings of the desktop
/// and may change them there. Calls never wait for an answer and start no service. Main thread
/// only.
///
/// An action has a name, which stays the same, and a label for people. KWin keeps actions in a file
/// until they are forgotten.
class GlobalShortcuts final : public QObject {
    Q_OBJECT

public:
    /// Runs later on the main thread, unless this object is destroyed first. Without keys if KWin
    /// could not be asked.
    using Answer = std::function<void(const std::optional<QList<int>>& keys)>;

    /// The bus outlives this object.
    explicit GlobalShortcuts(freedesktop::SessionBus& bus);

    /// Gives the action these keys, any of which triggers it, and makes it anew if need be. The
    /// answer has those that KWin granted: others have the rest.
    void assign(const QString& action, const QString& label, const QList<int>& keys,
                const Answer& answer);

    /// Takes the keys from the action.
    void release(const QString& action, const QString& label);

    /// Frees the keys of the action; KWin goes on knowing them.
    void deactivate(const QString& action, const QString& label);

    /// `done` runs as an Answer does, whether or not KWin could be asked.
    void forget(const QString& action, const std::function<void()>& done);

    /// Asks for the names of the actions that KWin knows, active or not. `answer` runs as an Answer
    /// does; without names if KWin could not be asked.
    void list(const std::function<void(const QStringList& actions)>& answer);

    /// Returns when KWin has done all that was asked of it, or after half a second.
    void finish();

Q_SIGNALS:
    /// The user has pressed the keys of an action. KWin repeats this while they are held.
    void pressed(const QString& action);
    void released(const QString& action);

    /// The user has changed an action in the settings of the desktop. `keys` has 0 for a sequence
    /// of several keys.
    void changedByUser(const QString& action, const QList<int>& keys);

    /// The user has changed actions of other programs there: a key may be free now.
    void othersChangedByUser();

    /// KWin is there, or there anew: it triggers none of our actions until their keys are assigned.
    void appeared();

private:
    Q_SLOT void onPressed(const QString& component, const QString& action, qlonglong time);
    Q_SLOT void onReleased(const QString& component, const QString& action, qlonglong time);
    Q_SLOT void onChanged(const QDBusMessage& signal);
    void listen();
    void call(const char* method, const QVariantList& arguments,
              const freedesktop::SessionBus::Answer& answer = {});

    freedesktop::SessionBus& bus_;
    QDBusServiceWatcher service_;
};

} // namespace hollowfernpike::kde
