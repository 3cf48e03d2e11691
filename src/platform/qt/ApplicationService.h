#pragma once

#include "platform/freedesktop/bus/SessionBus.h"

#include <QDBusPendingCall>
#include <QDBusVirtualObject>
#include <QString>

#include <functional>
#include <string>

namespace hollowfernpike::qt {

/// What somebody asks of the running program from outside.
struct ApplicationRequest {
    std::string action;            ///< empty to just show itself
    std::string startupIdentifier; ///< that the desktop waits to see ended; empty for none
};

/// The program on the session bus: the interface org.freedesktop.Application (Desktop Entry
/// Specification 1.5, D-Bus Activation), under its own name. Main thread only; needs the
/// application object.
class ApplicationService final : public QDBusVirtualObject {
public:
    using Handler = std::function<void(const ApplicationRequest&)>;

    /// `name` is also the path of the object, with "/" for ".". The bus outlives this. `handler` is
    /// never called from within a call of ours.
    ApplicationService(std::string_view name, const freedesktop::SessionBus& bus, Handler handler);

    enum class Outcome {
        owned,      ///< requests arrive from now on
        taken,      ///< another process is the program
        unavailable ///< there is no session bus
    };

    /// Takes the name, and tries to again whenever the bus has come back. A request that
    /// comes at the same moment is not lost.
    Outcome publish();

    /// Asks the process that has the name. False if it does not answer within some seconds.
    bool handOver(const ApplicationRequest& request) const;

private:
    QString introspect(const QString& path) const override;
    bool handleMessage(const QDBusMessage& message, const QDBusConnection& connection) override;
    QString path() const;
    QDBusPendingCall requestName();
    bool isAnswered(const QDBusPendingCall& call) const;

    QString name_;
    Handler handler_;
    const freedesktop::SessionBus& bus_;
};

} // namespace hollowfernpike::qt
