#include "platform/freedesktop/instance/InstanceService.h"

#include "platform/freedesktop/Logging.h"
#include "platform/freedesktop/bus/BusCalls.h"

#include <QDBusArgument>
#include <QDBusMessage>
#include <QDBusPendingReply>
#include <QVariantMap>

#include <chrono>
#include <filesystem>
#include <string_view>
#include <system_error>
#include <utility>

namespace hollowfernpike::freedesktop {

namespace {

using namespace std::chrono_literals;

constexpr auto interfaceName = "org.freedesktop.Application";
constexpr auto patience = 1s; // as long as it may hold up the start

// D-Bus Specification, "Message Bus Messages".
constexpr auto busName = "org.freedesktop.DBus";
constexpr auto busPath = "/org/freedesktop/DBus";
constexpr uint doNotQueue = 4;
constexpr uint primaryOwner = 1;

/// The file that a process runs; empty if it is not to be known. An update may have replaced it.
std::string programOf(const std::string& process) {
    constexpr std::string_view replaced = " (deleted)";
    std::error_code unknown;
    auto file = std::filesystem::read_symlink("/proc/" + process + "/exe", unknown).string();
    if (file.ends_with(replaced)) {
        file.resize(file.size() - replaced.size());
    }
    return file;
}

std::string startupIdentifierIn(const QVariant& platformData) {
    const auto data = qdbus_cast<QVariantMap>(platformData);
    return data.value("desktop-startup-id", data.value("activation-token"))
        .toString()
        .toStdString();
}

} // namespace

InstanceService::InstanceService(const std::string& name, std::string plainAction,
                                 const SessionBus& bus)
    : name_(QString::fromStdString(name)), plainAction_(std::move(plainAction)), bus_(bus) {}

InstanceService::Outcome InstanceService::publish() {
    QObject::connect(&bus_, &SessionBus::returned, this, &InstanceService::requestName,
                     Qt::UniqueConnection);
    const QDBusPendingReply<uint> reply = requestName();
    if (!bus_.waitFor(reply, patience)) {
        qCDebug(busLog, "the session bus does not give us a name");
        return Outcome::unavailable;
    }
    return reply.value() == primaryOwner ? Outcome::owned : Outcome::taken;
}

QDBusPendingCall InstanceService::requestName() {
    auto connection = bus_.connection();
    connection.registerVirtualObject(path(), this);
    auto call = QDBusMessage::createMethodCall(busName, busPath, busName, "RequestName");
    call << name_ << doNotQueue;
    return connection.asyncCall(call);
}

bool InstanceService::isOwnerOneOfUs() const {
    auto call =
        QDBusMessage::createMethodCall(busName, busPath, busName, "GetConnectionUnixProcessID");
    call << name_;
    const QDBusPendingReply<uint> reply = bus_.connection().asyncCall(call);
    return bus_.waitFor(reply, patience) &&
           programOf(std::to_string(reply.value())) == programOf("self");
}

bool InstanceService::handOver(const InstanceRequest& request) const {
    auto call = QDBusMessage::createMethodCall(name_, path(), interfaceName, "ActivateAction");
    QVariantList parameters;
    if (!request.parameter.empty()) {
        parameters << QString::fromStdString(request.parameter);
    }
    call << QString::fromStdString(request.action) << parameters
         << platformData(request.startupIdentifier);
    return bus_.waitFor(bus_.connection().asyncCall(call), patience);
}

void InstanceService::listen(InstanceRequestHandler onRequest) {
    onRequest_ = std::move(onRequest);
    QMetaObject::invokeMethod(this, &InstanceService::passOn, Qt::QueuedConnection);
}

QString InstanceService::introspect(const QString& /*path*/) const {
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

// Replies before the request is handled: handling it may take long, or end the process.
bool InstanceService::handleMessage(const QDBusMessage& message,
                                    const QDBusConnection& connection) {
    const auto arguments = message.arguments();
    const auto signature = message.signature();
    InstanceRequest request{.action = plainAction_, .startupIdentifier = {}};
    if (message.member() == "ActivateAction" && signature == "sava{sv}") {
        request.action = arguments.front().toString().toStdString();
        const auto parameters = qdbus_cast<QVariantList>(arguments.at(1));
        request.parameter = parameters.value(0).toString().toStdString();
    } else if (!(message.member() == "Activate" && signature == "a{sv}") &&
               !(message.member() == "Open" && signature == "asa{sv}")) {
        return false;
    }
    request.startupIdentifier = startupIdentifierIn(arguments.back());
    connection.send(message.createReply());
    waiting_.push_back(std::move(request));
    QMetaObject::invokeMethod(this, &InstanceService::passOn, Qt::QueuedConnection);
    return true;
}

void InstanceService::passOn() {
    if (!onRequest_) {
        return;
    }
    for (const auto& request : std::exchange(waiting_, {})) {
        onRequest_(request);
    }
}

QString InstanceService::path() const {
    return '/' + QString(name_).replace('.', '/');
}

} // namespace hollowfernpike::freedesktop
