#pragma once

#include <QDBusMessage>
#include <QDBusServiceWatcher>
#include <QObject>

namespace hollowfernpike::freedesktop {

class SessionBus;

/// Whether the desktop's own screen locker covers the screen, as far as it announces that on the
/// session bus: by the signal ActiveChanged of org.freedesktop.ScreenSaver or of the desktops'
/// interfaces of the same shape. Lockers that announce nothing, and a lock that began before this
/// object, are not known. Main thread only.
class ScreenLock final : public QObject {
    Q_OBJECT

public:
    /// `bus` outlives this object; it is null where there is none.
    explicit ScreenLock(SessionBus* bus);

    bool isLocked() const { return !locker_.watchedServices().isEmpty(); }

private:
    Q_SLOT void change(bool active, const QDBusMessage& signal);
    void listen();
    void forget();

    SessionBus* bus_;

    /// Watches the locker for as long as the screen is locked, in case it crashes.
    QDBusServiceWatcher locker_;
};

} // namespace hollowfernpike::freedesktop
