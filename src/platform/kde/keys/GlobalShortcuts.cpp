#include "platform/kde/keys/GlobalShortcuts.h"

#include <chrono>

#include <QDBusArgument>
#include <QDBusMetaType>
#include <QDBusPendingReply>
#include <QPointer>

namespace hollowfernpike::kde {

namespace {

using namespace std::chrono_literals;

constexpr const char* service = "org.kde.kglobalaccel";
constexpr const char* path = "/kglobalaccel";
constexpr const char* interface = "org.kde.KGlobalAccel";
constexpr const char* componentInterface = "org.kde.kglobalaccel.Component";

/// That of our desktop entry, by which the settings of the desktop find our icon.
constexpr const char* component = "app.hollowfernpike.Hollowfernpike";
constexpr const char* componentPath = "/component/app_hollowfernpike_Hollowfernpike";
constexpr const char* componentLabel = "Hollowfernpike";

// Flags of setShortcut.
constexpr uint setPresent = 2;    // active from now on
constexpr uint noAutoloading = 4; // these keys, not those that KWin remembers

QStringList identifierOf(const QString& action, const QString& label) {
    return {component, action, componentLabel, label};
}

QDBusMessage callOf(const char* method, const QVariantList& arguments) {
    auto message = QDBusMessage::createMethodCall(service, path, interface, method);
    message.setArguments(arguments);
    message.setAutoStartService(false); // without KWin it would start and crash
    return message;
}

/// Of a list of key sequences: a(ai), each filled up with zeros.
QList<int> keysFrom(const QVariant& sequences) {
    QList<int> keys;
    const auto argument = sequences.value<QDBusArgument>();
    argument.beginArray();
    while (!argument.atEnd()) {
        QList<int> sequence;
        argument.beginStructure();
        argument >> sequence;
        argument.endStructure();
        if (sequence.value(0) != 0) {
            keys.push_back(sequence.value(1) == 0 ? sequence[0] : 0);
        }
    }
    argument.endArray();
    return keys;
}

} // namespace

GlobalShortcuts::GlobalShortcuts(freedesktop::SessionBus& bus) : bus_(bus) {
    qDBusRegisterMetaType<QList<int>>();
    qDBusRegisterMetaType<QList<QStringList>>();
    service_.setWatchMode(QDBusServiceWatcher::WatchForRegistration);
    service_.addWatchedService(service);
    connect(&service_, &QDBusServiceWatcher::serviceRegistered, this, &GlobalShortcuts::appeared);
    connect(&bus_, &freedesktop::SessionBus::returned, this, [this] {
        listen();
        Q_EMIT appeared();
    });
    listen();
}

void GlobalShortcuts::assign(const QString& action, const QString& label, const QList<int>& keys,
                             const Answer& answer) {
    const auto identifier = identifierOf(action, label);
    call("doRegister", {identifier});
    call("setShortcut", {identifier, QVariant::fromValue(keys), setPresent | noAutoloading},
         [answer](const QDBusMessage& reply) {
             const QDBusPendingReply<QList<int>> granted(reply);
             answer(granted.isError() ? std::nullopt : std::optional(granted.value()));
         });
}

void GlobalShortcuts::release(const QString& action, const QString& label) {
    call("setShortcut", {identifierOf(action, label), QVariant::fromValue(QList<int>{}),
                         setPresent | noAutoloading});
}

void GlobalShortcuts::deactivate(const QString& action, const QString& label) {
    call("setInactive", {identifierOf(action, label)});
}

void GlobalShortcuts::forget(const QString& action, const std::function<void()>& done) {
    call("unregister", {component, action}, [done](const QDBusMessage& /*reply*/) { done(); });
}

void GlobalShortcuts::list(const std::function<void(const QStringList& actions)>& answer) {
    call("allActionsForComponent", {identifierOf({}, {})}, [answer](const QDBusMessage& reply) {
        const auto identifiers = QDBusPendingReply<QList<QStringList>>(reply).value();
        QStringList actions;
        for (const auto& identifier : identifiers) {
            actions.push_back(identifier.value(1));
        }
        answer(actions);
    });
}

void GlobalShortcuts::finish() {
    bus_.waitFor(bus_.connection().asyncCall(callOf("allMainComponents", {})), 500ms);
}

void GlobalShortcuts::onPressed(const QString& /*component*/, const QString& action,
                                qlonglong /*time*/) {
    Q_EMIT pressed(action);
}

void GlobalShortcuts::onReleased(const QString& /*component*/, const QString& action,
                                 qlonglong /*time*/) {
    Q_EMIT released(action);
}

void GlobalShortcuts::onChanged(const QDBusMessage& signal) {
    const auto arguments = signal.arguments();
    const auto identifier = arguments.value(0).toStringList();
    if (identifier.value(0) == component) {
        Q_EMIT changedByUser(identifier.value(1), keysFrom(arguments.value(1)));
    } else {
        Q_EMIT othersChangedByUser();
    }
}

void GlobalShortcuts::listen() {
    auto connection = bus_.connection();
    service_.setConnection(connection);
    connection.connect(service, componentPath, componentInterface, "globalShortcutPressed", this,
                       SLOT(onPressed(QString, QString, qlonglong)));
    connection.connect(service, componentPath, componentInterface, "globalShortcutReleased", this,
                       SLOT(onReleased(QString, QString, qlonglong)));
    connection.connect(service, path, interface, "yourShortcutsChanged", this,
                       SLOT(onChanged(QDBusMessage)));
}

void GlobalShortcuts::call(const char* method, const QVariantList& arguments,
                           const freedesktop::SessionBus::Answer& answer) {
    bus_.call(callOf(method, arguments), [self = QPointer(this), answer](const auto& reply) {
        if (self != nullptr && answer) {
            answer(reply);
        }
    });
}

} // namespace hollowfernpike::kde
