#include "platform/qt/ApplicationService.h"

#include <QDBusArgument>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QVariantMap>

#include <utility>

namespace hollowfernpike::qt {

namespace {

constexpr auto interfaceName = "org.freedesktop.Application";
constexpr int patience = 5000; // milliseconds

std::string startupIdentifierIn(const QVariant& platformData) {
    const auto data = qdbus_cast<QVariantMap>(platformData);
    return data.value("desktop-startup-id", data.value("activation-token"))
        .toString()
        .toStdString();
}

} // namespace

ApplicationService::ApplicationService(std::string_view name, Handler handler)
    : name_(QString::fromUtf8(name)), handler_(std::move(handler)),
      bus_(QDBusConnection::sessionBus()) {}

ApplicationService::Outcome ApplicationService::publish() {
    if (!bus_.isConnected()) {
        return Outcome::unavailable;
    }
    bus_.registerVirtualObject(path(), this);
    const auto reply =
        bus_.interface()->registerService(name_, QDBusConnectionInterface::DontQueueService,
                                          QDBusConnectionInterface::DontAllowReplacement);
    return reply.value() == QDBusConnectionInterface::ServiceRegistered ? Outcome::owned
                                                                        : Outcome::taken;
}

bool ApplicationService::handOver(const ApplicationRequest& request) const {
    QVariantMap platformData;
    if (!request.startupIdentifier.empty()) {
        const auto identifier = QString::fromStdString(request.startupIdentifier);
        platformData = {{"desktop-startup-id", identifier}, {"activation-token", identifier}};
    }
    const bool hasAction = !request.action.empty();
    auto call = QDBusMessage::createMethodCall(name_, path(), interfaceName,
                                               hasAction ? "ActivateAction" : "Activate");
    if (hasAction) {
        call << QString::fromStdString(request.action) << QVariantList();
    }
    call << platformData;
    return bus_.call(call, QDBus::Block, patience).type() == QDBusMessage::ReplyMessage;
}

QString ApplicationService::introspect(const QString& /*path*/) const {
    return R"(<interface name="org.freedesktop.Application">
  <method name="Activate">
    <arg name="platform_data" type="a{sv}" direction="in"/>
  </method>
  <method name="Open">
    <arg name="uris" type="as" direction="in"/>
    <arg name="platform_data" type="a{sv}" direction="in"/>
  </method>
  <method name="ActivateAction">
    <arg name="action_name" type="s" direction="in"/>
    <arg name="parameter" type="av" direction="in"/>
    <arg name="platform_data" type="a{sv}" direction="in"/>
  </method>
</interface>
)";
}

// The answer comes before the work: whatever was asked for may last, or end the process.
bool ApplicationService::handleMessage(const QDBusMessage& message,
                                       const QDBusConnection& connection) {
    const auto arguments = message.arguments();
    const auto signature = message.signature();
    ApplicationRequest request;
    if (message.member() == "ActivateAction" && signature == "sava{sv}") {
        request.action = arguments.front().toString().toStdString();
    } else if (!(message.member() == "Activate" && signature == "a{sv}") &&
               !(message.member() == "Open" && signature == "asa{sv}")) {
        return false;
    }
    request.startupIdentifier = startupIdentifierIn(arguments.back());
    connection.send(message.createReply());
    QMetaObject::invokeMethod(
        this, [this, request] { handler_(request); }, Qt::QueuedConnection);
    return true;
}

QString ApplicationService::path() const {
    return '/' + QString(name_).replace('.', '/');
}

} // namespace hollowfernpike::qt
