#pragma once

#include <QDBusConnection>
#include <QDBusPendingCallWatcher>
#include <QObject>

#include <functional>
#include <memory>

namespace hollowfernpike::qt {

/// Whether some panel on the session bus shows status notifier items, as their watcher
/// (org.kde.StatusNotifierWatcher) tells. Starts nothing and never waits for the watcher.
class StatusNotifierHosts final : public QObject {
    Q_OBJECT

public:
    /// `onNews` is called whenever a host may have come or gone, never inside the constructor.
    StatusNotifierHosts(QDBusConnection bus, std::function<void()> onNews);

    /// As last reported. A watcher without a host does not count: it shows no items.
    bool isHostRegistered() const { return isHostRegistered_; }

private:
    Q_SLOT void ask();
    Q_SLOT void forget();
    void note(bool isHostRegistered);

    QDBusConnection bus_;
    std::function<void()> onNews_;
    std::unique_ptr<QDBusPendingCallWatcher> question_;
    bool isHostRegistered_ = false;
};

} // namespace hollowfernpike::qt
