#include "platform/portal/ShortcutsPortal.h"

#include "platform/freedesktop/Logging.h"

#include <utility>

#include <QDBusArgument>
#include <QDBusMetaType>
#include <QDBusPendingCall>
#include <QDBusPendingCallWatcher>
#include <QGuiApplication>

namespace hollowfernpike::portal {

namespace {

constexpr const char* service = "org.freedesktop.portal.Desktop";
constexpr const char* path = "/org/freedesktop/portal/desktop";
constexpr const char* interface = "org.freedesktop.portal.GlobalShortcuts";
constexpr const char* sessionInterface = "org.freedesktop.portal.Session";

QDBusMessage callOf(const char* interfaceName, const char* method, const QVariantList& arguments) {
    auto message = QDBusMessage::createMethodCall(service, path, interfaceName, method);
    message.setArguments(arguments);
    return message;
}

} // namespace

// The toolkit finds these two by the type, and asks for both.
QDBusArgument& operator<<(QDBusArgument& argument, const PortalShortcut& shortcut) {
    argument.beginStructure();
    argument << shortcut.name
             << QVariantMap{{"description", shortcut.label},
                            {"preferred_trigger", shortcut.trigger}};
    argument.endStructure();
    return argument;
}

const QDBusArgument& operator>>(const QDBusArgument& argument, PortalShortcut& shortcut) {
    QVariantMap details;
    argument.beginStructure();
    argument >> shortcut.name >> details;
    argument.endStructure();
    return argument;
}

namespace {

QStringList namesIn(const QVariant& shortcuts) {
    QStringList names;
    for (const auto& shortcut : qdbus_cast<QList<PortalShortcut>>(shortcuts)) {
        names.push_back(shortcut.name);
    }
    return names;
}

} // namespace

ShortcutsPortal::ShortcutsPortal(const freedesktop::SessionBus& bus) {
    qDBusRegisterMetaType<PortalShortcut>();
    qDBusRegisterMetaType<QList<PortalShortcut>>();
    service_.setWatchMode(QDBusServiceWatcher::WatchForUnregistration);
    service_.addWatchedService(service);
    connect(&service_, &QDBusServiceWatcher::serviceUnregistered, this, [this] {
        isIntroduced_ = false;
        lose();
    });
    connect(&bus, &freedesktop::SessionBus::returned, this, [this] {
        connection_.reset();
        lose();
    });
}

ShortcutsPortal::~ShortcutsPortal() {
    if (connection_) {
        QDBusConnection::disconnectFromBus(connection_->name());
    }
}

void ShortcutsPortal::bind(const QList<PortalShortcut>& shortcuts) {
    release();
    shortcuts_ = shortcuts;
    if (!connection_) {
        connectAnew();
    }
    if (shortcuts.isEmpty()) {
        Q_EMIT bound({});
    } else if (isIntroduced_) {
        createSession();
    } else {
        introduce();
    }
}

void ShortcutsPortal::release() {
    request_.clear();
    if (const auto session = std::exchange(session_, {}).path(); !session.isEmpty()) {
        close(session);
    }
}

void ShortcutsPortal::close(const QString& session) {
    ++sessions_;
    if (!session.isEmpty()) {
        connection_->asyncCall(
            QDBusMessage::createMethodCall(service, session, sessionInterface, "Close"));
    }
}

// The toolkit's own connection may have talked to the portal already, which then knows it by
// another application or none.
void ShortcutsPortal::connectAnew() {
    connection_ = QDBusConnection::connectToBus(QDBusConnection::SessionBus,
                                                QStringLiteral("portal %1").arg(++count_));
    isIntroduced_ = false;
    service_.setConnection(*connection_);
    connection_->connect(service, {}, "org.freedesktop.portal.Request", "Response", this,
                         SLOT(onResponse(QDBusMessage)));
    connection_->connect(service, {}, sessionInterface, "Closed", this,
                         SLOT(onClosed(QDBusMessage)));
    connection_->connect(service, path, interface, "Activated", this,
                         SLOT(onActivated(QDBusMessage)));
    connection_->connect(service, path, interface, "Deactivated", this,
                         SLOT(onDeactivated(QDBusMessage)));
    connection_->connect(service, path, interface, "ShortcutsChanged", this,
                         SLOT(onChanged(QDBusMessage)));
}

// Older portals lack this call; they find the application by the unit of its process.
void ShortcutsPortal::introduce() {
    call(callOf("org.freedesktop.host.portal.Registry", "Register",
                {QGuiApplication::desktopFileName(), QVariantMap{}}),
         [this](const QDBusMessage& reply) {
             if (reply.type() == QDBusMessage::ErrorMessage) {
                 qCDebug(freedesktop::keysLog) << reply.errorName() << reply.errorMessage();
             }
             isIntroduced_ = true;
             createSession();
         });
}

// When the front end of the portal has ended, its other side still holds the keys for the session
// that was lost. It gives them up when it refuses another session of that name, or when that one is
// closed.
void ShortcutsPortal::createSession() {
    const bool isToFree = std::exchange(hasLostSession_, false);
    const auto token = QStringLiteral("session%1").arg(sessions_);
    request("CreateSession", {}, {{"session_handle_token", token}},
            [this, isToFree](const QVariantMap& results) {
                const auto handle = results.value("session_handle").toString();
                if (isToFree) {
                    close(handle);
                    createSession();
                } else if (!handle.isEmpty()) {
                    session_ = QDBusObjectPath(handle);
                    bindInSession();
                } else {
                    Q_EMIT bound({});
                }
            });
}

// Portals of GNOME 48 answer that the request has failed although they have bound the shortcuts.
void ShortcutsPortal::bindInSession() {
    request(
        "BindShortcuts",
        {QVariant::fromValue(session_), QVariant::fromValue(shortcuts_), QString()}, {},
        [this](const QVariantMap& results) { Q_EMIT bound(namesIn(results.value("shortcuts"))); });
}

void ShortcutsPortal::onResponse(const QDBusMessage& signal) {
    if (!request_.isEmpty() && signal.path().endsWith('/' + request_)) {
        finish(qdbus_cast<QVariantMap>(signal.arguments().value(1)));
    }
}

void ShortcutsPortal::onActivated(const QDBusMessage& signal) {
    if (isOurs(signal)) {
        const auto arguments = signal.arguments();
        const auto options = qdbus_cast<QVariantMap>(arguments.value(3));
        Q_EMIT pressed(arguments.value(1).toString(), options.value("activation_token").toString());
    }
}

void ShortcutsPortal::onDeactivated(const QDBusMessage& signal) {
    if (isOurs(signal)) {
        Q_EMIT released(signal.arguments().value(1).toString());
    }
}

void ShortcutsPortal::onChanged(const QDBusMessage& signal) {
    if (isOurs(signal)) {
        Q_EMIT bound(namesIn(signal.arguments().value(1)));
    }
}

void ShortcutsPortal::onClosed(const QDBusMessage& signal) {
    if (!session_.path().isEmpty() && signal.path() == session_.path()) {
        lose();
    }
}

void ShortcutsPortal::lose() {
    qCDebug(freedesktop::keysLog, "the portal binds nothing any more");
    hasLostSession_ = !std::exchange(session_, {}).path().isEmpty();
    request_.clear();
    Q_EMIT lost();
}

bool ShortcutsPortal::isOurs(const QDBusMessage& signal) const {
    const auto session = signal.arguments().value(0).value<QDBusObjectPath>();
    return !session_.path().isEmpty() && session == session_;
}

void ShortcutsPortal::call(const QDBusMessage& message, const Answer& answer) {
    auto* const watcher = new QDBusPendingCallWatcher(connection_->asyncCall(message), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [watcher, answer] {
        watcher->deleteLater();
        answer(watcher->reply());
    });
}

// The portal answers twice: it has taken the request, and later what became of it.
void ShortcutsPortal::request(const char* method, QVariantList arguments, QVariantMap options,
                              const Results& onResults) {
    request_ = QStringLiteral("hollowfernpike%1").arg(++count_);
    onResults_ = onResults;
    options["handle_token"] = request_;
    arguments.push_back(options);
    call(callOf(interface, method, arguments), [this, asked = request_](const auto& reply) {
        if (reply.type() == QDBusMessage::ErrorMessage && request_ == asked) {
            qCWarning(freedesktop::keysLog, "the portal for global shortcuts: %s",
                      qPrintable(reply.errorMessage()));
            finish({});
        }
    });
}

void ShortcutsPortal::finish(const QVariantMap& results) {
    request_.clear();
    std::exchange(onResults_, {})(results);
}

} // namespace hollowfernpike::portal
