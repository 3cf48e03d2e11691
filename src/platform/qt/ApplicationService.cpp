#include "platform/qt/ApplicationService.h"

#include <QDBusArgument>
#include <QDBusMessage>
#include <QDBusPendingReply>
#include <QDeadlineTimer>
#include <QVariantMap>

#include <chrono>
#include <thread>
#include <utility>

namespace hollowfernpike::qt {

namespace {

using namespace std::chrono_literals;

constexpr auto interfaceName = "org.freedesktop.Application";
constexpr auto patience = 5s;
constexpr auto recheckInterval = 100us;

// D-Bus Specification, "Message Bus Messages".
constexpr auto busName = "org.freedesktop.DBus";
constexpr auto busPath = "/org/freedesktop/DBus";
constexpr uint doNotQueue = 4;
constexpr uint primaryOwner = 1;

std::string startupIdentifierIn(const QVariant& platformData) {
    const auto data = qdbus_cast<QVariantMap>(platformData);
    return data.value("desktop-startup-id", data.value("activation-token"))
        .toString()
        .toStdString();
}

} // namespace

ApplicationService::ApplicationService(std::string_view name, const freedesktop::SessionBus& bus,
                                       Handler handler)
    : name_(QString::fromUtf8(name)), handler_(std::move(handler)), bus_(bus) {}

ApplicationService::Outcome ApplicationService::publish() {
    QObject::connect(&bus_, &freedesktop::SessionBus::returned, this, &ApplicationService::requestName,
                     Qt::UniqueConnection);
    const QDBusPendingReply<uint> reply = requestName();
    if (!isAnswered(reply)) {
        return Outcome::unavailable;
    }
    return reply.value() == primaryOwner ? Outcome::owned : Outcome::taken;
}

QDBusPendingCall ApplicationService::requestName() {
    auto connection = bus_.connection();
    connection.registerVirtualObject(path(), this);
    auto call = QDBusMessage::createMethodCall(busName, busPath, busName, "RequestName");
    call << name_ << doNotQueue;
    return connection.asyncCall(call);
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
    return isAnswered(bus_.connection().asyncCall(call));
}

// The toolkit's own waiting never returns when the bus ends meanwhile.
bool ApplicationService::isAnswered(const QDBusPendingCall& call) const {
    const QDeadlineTimer deadline(patience);
    while (!call.isFinished() && bus_.connection().isConnected() && !deadline.hasExpired()) {
        std::this_thread::sleep_for(recheckInterval);
    }
    return call.isFinished() && !call.isError();
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
    const auto handle = [this, request] { handler_(request); };
    QMetaObject::invokeMethod(this, handle, Qt::QueuedConnection);
    return true;
}

QString ApplicationService::path() const {
    return '/' + QString(name_).replace('.', '/');
}

} // namespace hollowfernpike::qt
