#pragma once

#include "platform/MainQueue.h"
#include "platform/freedesktop/bus/SessionBus.h"
#include "platform/wayland/windows/WindowSource.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include <QDBusMessage>
#include <QDBusServiceWatcher>
#include <QList>
#include <QObject>
#include <QString>
#include <QStringList>
#include <QVariant>
#include <QVariantList>

namespace hollowfernpike::gnome {

/// Our extension of GNOME Shell (data/gnome-shell), over the session bus. It serves whoever owns
/// the program's name on the bus, and gives back all that it holds for a program that leaves the
/// bus. While it is absent, as it is behind a locked screen, questions have no answers and requests
/// do nothing. Main thread only.
class ShellExtension final : public QObject, public wayland::WindowSource {
    Q_OBJECT

public:
    /// Asks the bus and waits for the answer. Both outlive this object.
    ShellExtension(freedesktop::SessionBus& bus, platform::MainQueue& mainQueue);

    /// Whether the shell runs the extension. Another program with the extension's name on the bus
    /// does not count.
    bool isThere() const { return isThere_; }

    /// Binds these combinations and no others. `answer` runs later on the main thread, unless this
    /// object is destroyed first, and tells which of them the shell has granted: as many as there
    /// are, none if it could not be asked.
    void setAccelerators(const QStringList& accelerators,
                         const std::function<void(const QList<bool>& granted)>& answer);

    /// A press brings the list along. Otherwise waits for the answer of the shell, for a second at
    /// most. A list is good for a turn of the main loop.
    std::optional<std::vector<wayland::ListedWindow>> windows() override;
    void refresh() override { windows_.reset(); }
    void watch(bool wanted) override;

    /// With the time of the last press: a window that the user clicked after it keeps the keys.
    void activate(std::span<const std::int64_t> numbers) override;

    /// The activation token of a launch by the last press; empty if there is none. Waits as
    /// windows() does. The shell tells the user that the application starts if it knows the
    /// identifier.
    std::string beginLaunch(const std::string& identifier) const;
    void endLaunch(const std::string& token);

    /// What follows happens in the name of a press whose time is not known.
    void forgetPressTime() { lastPress_ = 0; }

    /// The activation token by which a window of ours comes to the front now; switches to its
    /// workspace. Empty if there is none; waits as windows() does.
    std::string allowOwnWindow(const QString& title) const;

Q_SIGNALS:
    /// It is there, or there anew: it binds nothing yet.
    void appeared();
    void vanished();

    void pressed(const QString& accelerator);

    /// Combinations that were refused may be free by now.
    void keysFreed();

private:
    Q_SLOT void onPressed(const QDBusMessage& signal);
    Q_SLOT void onWindowsChanged();
    void listen();
    void look();
    void keep(std::vector<wayland::ListedWindow> windows);
    QString ownerOf(const char* owned) const;
    QVariant ask(const char* method, const QVariantList& arguments) const;
    void tell(const char* method, const QVariantList& arguments,
              const freedesktop::SessionBus::Answer& answer = {});

    freedesktop::SessionBus& bus_;
    platform::MainQueue& mainQueue_;
    QDBusServiceWatcher service_;
    bool isThere_ = false;
    bool isWatching_ = false;
    std::optional<std::vector<wayland::ListedWindow>> windows_; ///< of this turn of the main loop
    uint lastPress_ = 0; ///< in the compositor's milliseconds; 0: there was none
};

} // namespace hollowfernpike::gnome
