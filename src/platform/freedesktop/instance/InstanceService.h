#pragma once

#include "platform/freedesktop/bus/SessionBus.h"
#include "platform/freedesktop/instance/InstanceRequest.h"

#include <QDBusPendingCall>
#include <QDBusVirtualObject>
#include <QString>

#include <string>
#include <vector>

namespace hollowfernpike::freedesktop {

/// The program on the session bus: the interface org.freedesktop.Application (Desktop Entry
/// Specification 1.5, D-Bus Activation), under its own name. Main thread only; needs the
/// application object.
class InstanceService final : public QDBusVirtualObject {
public:
    /// `name` is also the path of the object, with "/" for ".". `plainAction` is the action of
    /// requests that name none (Activate, Open). The bus outlives this.
    InstanceService(const std::string& name, std::string plainAction, const SessionBus& bus);

    enum class Outcome {
        owned,      ///< requests arrive from now on
        taken,      ///< another process has the name
        unavailable ///< the bus does not answer
    };

    /// Takes the name, and tries to again whenever the bus has come back. Runs the main loop until
    /// the bus has answered, 1 s at most. Requests wait until listen().
    Outcome publish();

    /// Whether the process that has the name runs the same program as this one. Runs the main loop
    /// as publish() does.
    bool isOwnerOneOfUs() const;

    /// Sends the request to the process that has the name, and runs the main loop until it has
    /// answered. False if it refuses or does not answer within 1 s.
    bool handOver(const InstanceRequest& request) const;

    /// From now on passes requests on, those that waited included, always from the main loop.
    void listen(InstanceRequestHandler onRequest);

private:
    QString introspect(const QString& path) const override;
    bool handleMessage(const QDBusMessage& message, const QDBusConnection& connection) override;
    QString path() const;
    QDBusPendingCall requestName();
    void passOn();

    QString name_;
    std::string plainAction_;
    const SessionBus& bus_;
    InstanceRequestHandler onRequest_;
    std::vector<InstanceRequest> waiting_;
};

} // namespace hollowfernpike::freedesktop
