#include "platform/portal/FakePortal.h"

#include "platform/portal/ShortcutsPortal.h"

#include <algorithm>
#include <iterator>
#include <stdexcept>
#include <utility>

#include <QDBusArgument>
#include <QDBusError>
#include <QDBusObjectPath>
#include <QMetaType>

namespace hollowfernpike::test {

namespace {

constexpr const char* portalName = "org.freedesktop.portal.Desktop";
constexpr const char* portalRoot = "/org/freedesktop/portal/desktop";

QString pathOf(const char* kind, const QDBusMessage& message, const QString& token) {
    const auto sender = message.service().mid(1).replace('.', '_');
    return QStringLiteral("%1/%2/%3/%4")
        .arg(QLatin1String(portalRoot), QLatin1String(kind), sender, token);
}

QVariantMap optionsOf(const QDBusMessage& message) {
    return qdbus_cast<QVariantMap>(message.arguments().constLast());
}

} // namespace

FakePortal::FakePortal(const QString& busAddress)
    : connection_(QDBusConnection::connectToBus(busAddress, "fake portal")) {
    connection_.registerVirtualObject(portalRoot, this, QDBusConnection::SubPath);
    appear();
}

// The connection ends in a thread of the toolkit's, which must not find this object any more.
FakePortal::~FakePortal() {
    connection_.unregisterObject(portalRoot);
    QDBusConnection::disconnectFromBus(connection_.name());
}

void FakePortal::appear() {
    if (!connection_.registerService(portalName)) {
        throw std::runtime_error("no portal on the bus");
    }
}

void FakePortal::letGo() {
    held_.clear();
    for (const auto& message : std::exchange(waiting_, {})) {
        answer(message);
    }
}

void FakePortal::refuse(const QString& method, unsigned count) {
    refused_ = method;
    refusals_ = count;
}

bool FakePortal::press(const QString& trigger) {
    const auto found = std::ranges::find(bound_, trigger, &Shortcut::trigger);
    if (found == bound_.end()) {
        return false;
    }
    for (const char* event : {"Activated", "Deactivated"}) {
        auto signal =
            QDBusMessage::createSignal(portalRoot, "org.freedesktop.portal.GlobalShortcuts", event);
        signal << QVariant::fromValue(QDBusObjectPath(found->session)) << found->name
               << qulonglong{} << QVariantMap{};
        connection_.send(signal);
    }
    return true;
}

void FakePortal::restart() {
    held_.clear();
    bound_.clear();
    waiting_.clear();
    for (const auto& session : std::as_const(sessions_)) {
        connection_.send(
            QDBusMessage::createSignal(session, "org.freedesktop.portal.Session", "Closed"));
    }
    connection_.unregisterService(portalName);
    appear();
}

QStringList FakePortal::methods() const {
    QStringList methods;
    std::ranges::transform(calls_, std::back_inserter(methods), &Call::method);
    return methods;
}

bool FakePortal::handleMessage(const QDBusMessage& message, const QDBusConnection&) {
    const auto method = message.interface().section('.', -1) + '.' + message.member();
    calls_.push_back({.method = method, .time = std::chrono::steady_clock::now()});
    if (method == held_) {
        waiting_.push_back(message);
    } else if (method == refused_ && refusals_ > 0) {
        --refusals_;
        connection_.send(message.createErrorReply(QDBusError::AccessDenied, "not now"));
    } else {
        answer(message);
    }
    return true;
}

void FakePortal::answer(const QDBusMessage& message) {
    if (message.member() == "CreateSession") {
        const auto session =
            pathOf("session", message, optionsOf(message).value("session_handle_token").toString());
        if (sessions_.removeOne(session)) {
            takeRequest(message, {});
        } else {
            sessions_.push_back(session);
            takeRequest(message, {{"session_handle", session}});
        }
    } else if (message.member() == "BindShortcuts") {
        bind(message);
    } else {
        if (message.member() == "Close") {
            std::erase_if(bound_,
                          [&](const auto& shortcut) { return shortcut.session == message.path(); });
        }
        connection_.send(message.createReply());
    }
}

std::vector<FakePortal::Shortcut> FakePortal::grantedOf(const QDBusMessage& message) const {
    const auto arguments = message.arguments();
    const auto session = qdbus_cast<QDBusObjectPath>(arguments.value(0)).path();
    const auto asked = arguments.value(1).value<QDBusArgument>();
    std::vector<Shortcut> granted;
    asked.beginArray();
    while (!asked.atEnd()) {
        QVariantMap details;
        auto& shortcut =
            granted.emplace_back(Shortcut{.session = session, .name = {}, .trigger = {}});
        asked.beginStructure();
        asked >> shortcut.name >> details;
        asked.endStructure();
        if (shortcut.name != keyless_) {
            shortcut.trigger = details.value("preferred_trigger").toString();
        }
    }
    asked.endArray();
    return granted;
}

void FakePortal::bind(const QDBusMessage& message) {
    const auto granted = grantedOf(message);
    QDBusArgument answer;
    answer.beginArray(QMetaType::fromType<portal::PortalShortcut>());
    for (const auto& shortcut : granted) {
        answer.beginStructure();
        answer << shortcut.name << QVariantMap{{"trigger_description", shortcut.trigger}};
        answer.endStructure();
    }
    answer.endArray();
    takeRequest(message, {{"shortcuts", QVariant::fromValue(answer)}});
    if (!opensDialogs_) {
        std::ranges::copy(granted, std::back_inserter(bound_));
    }
}

void FakePortal::takeRequest(const QDBusMessage& message, const QVariantMap& results) {
    const auto request =
        pathOf("request", message, optionsOf(message).value("handle_token").toString());
    connection_.send(message.createReply(QVariant::fromValue(QDBusObjectPath(request))));
    if (message.member() != "BindShortcuts" || !opensDialogs_) {
        respond(request, results);
    }
}

void FakePortal::respond(const QString& request, const QVariantMap& results) {
    auto signal = QDBusMessage::createSignal(request, "org.freedesktop.portal.Request", "Response");
    signal << 0U << results;
    connection_.send(signal);
}

} // namespace hollowfernpike::test
