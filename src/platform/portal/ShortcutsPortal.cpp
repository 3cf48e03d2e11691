#include "platform/portal/ShortcutsPortal.h"

#include "platform/freedesktop/Logging.h"

#include <algorithm>
#include <utility>

#include <QDBusArgument>
#include <QDBusMetaType>
#include <QDBusPendingCall>
#include <QGuiApplication>

namespace hollowfernpike::portal {

namespace {

constexpr const char* service = "org.freedesktop.portal.Desktop";
constexpr const char* path = "/org/freedesktop/portal/desktop";
constexpr const char* interface = "org.freedesktop.portal.GlobalShortcuts";
constexpr const char* sessionInterface = "org.freedesktop.portal.Session";
constexpr const char* requestInterface = "org.freedesktop.portal.Request";

constexpr std::chrono::milliseconds firstPause{1000};
constexpr std::chrono::milliseconds longestPause{32000};

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

// NOLINTNEXTLINE(bugprone-return-const-ref-from-parameter): the toolkit's form of such an operator
const QDBusArgument& operator>>(const QDBusArgument& argument, PortalShortcut& shortcut) {
    QVariantMap details;
    argument.beginStructure();
    argument >> shortcut.name >> details;
    argument.endStructure();
    const auto trigger = details.value("trigger_description", "unknown").toString();
    shortcut.hasKeys = !trigger.isEmpty();
    return argument;
}

namespace {

QStringList namesIn(const QVariant& shortcuts) {
    QStringList names;
    for (const auto& shortcut : qdbus_cast<QList<PortalShortcut>>(shortcuts)) {
        if (shortcut.hasKeys) {
            names.push_back(shortcut.name);
        }
    }
    return names;
}

} // namespace

ShortcutsPortal::ShortcutsPortal(const freedesktop::SessionBus& bus)
    : bus_(bus), pause_(firstPause) {
    qDBusRegisterMetaType<PortalShortcut>();
    qDBusRegisterMetaType<QList<PortalShortcut>>();
    retry_.setSingleShot(true);
    connect(&retry_, &QTimer::timeout, this, &ShortcutsPortal::begin);
    service_.setWatchMode(QDBusServiceWatcher::WatchForUnregistration);
    service_.addWatchedService(service);
    connect(&service_, &QDBusServiceWatcher::serviceUnregistered, this, [this] {
        isIntroduced_ = false;
        lose();
    });
    connect(&bus, &freedesktop::SessionBus::returned, this, [this] {
        disconnect();
        lose();
    });
}

ShortcutsPortal::~ShortcutsPortal() {
    disconnect();
}

void ShortcutsPortal::bind(const QList<PortalShortcut>& shortcuts) {
    want(shortcuts);
    if (shortcuts.isEmpty()) {
        Q_EMIT bound({});
    }
}

void ShortcutsPortal::release() {
    want({});
}

// While the portal has something to answer at once, the list is only noted.
void ShortcutsPortal::want(const QList<PortalShortcut>& shortcuts) {
    shortcuts_ = shortcuts;
    isOutdated_ = true;
    if (state_ == State::idle || state_ == State::deciding || state_ == State::bound) {
        begin();
    }
}

void ShortcutsPortal::begin() {
    giveBack();
    retry_.stop();
    if (shortcuts_.isEmpty() || !bus_.connection().isConnected()) {
        return; // the bus tells when it is there again
    }
    if (!connection_ || !connection_->isConnected()) {
        connectAnew();
    }
    if (isIntroduced_) {
        createSession();
    } else {
        introduce();
    }
}

// Leaves nothing under way, no dialog and no session.
void ShortcutsPortal::giveBack() {
    ++turn_;
    state_ = State::idle;
    if (!request_.isEmpty()) {
        close(requestInterface, pathOfRequest());
        request_.clear();
    }
    if (const auto session = std::exchange(session_, {}).path(); !session.isEmpty()) {
        close(sessionInterface, session);
    }
}

void ShortcutsPortal::disconnect() {
    if (connection_) {
        QDBusConnection::disconnectFromBus(connection_->name());
        connection_.reset();
    }
}

// The toolkit's own connection may have talked to the portal already, which then knows it by
// another application or none.
void ShortcutsPortal::connectAnew() {
    disconnect();
    connection_ = QDBusConnection::connectToBus(QString::fromStdString(bus_.address()),
                                                QStringLiteral("portal %1").arg(++count_));
    isIntroduced_ = false;
    lostToken_.clear(); // sessions belong to connections
    service_.setConnection(*connection_);
    connection_->connect(service, {}, requestInterface, "Response", this,
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
    state_ = State::registering;
    call(callOf("org.freedesktop.host.portal.Registry", "Register",
                {QGuiApplication::desktopFileName(), QVariantMap{}}),
         [this](const QDBusMessage& reply) {
             if (reply.type() == QDBusMessage::ErrorMessage) {
                 qCDebug(freedesktop::keysLog) << reply.errorName() << reply.errorMessage();
             }
             isIntroduced_ = reply.type() != QDBusMessage::ErrorMessage;
             if (shortcuts_.isEmpty()) {
                 giveBack();
             } else {
                 createSession();
             }
         });
}

// When the front end of the portal has ended, its other side still holds the keys for the session
// that was lost. It gives them up when it refuses another session of that name, or when that one is
// closed.
void ShortcutsPortal::createSession() {
    state_ = State::creating;
    token_ = lostToken_.isEmpty() ? QStringLiteral("session%1").arg(++count_) : lostToken_;
    request(
        "CreateSession", {}, {{"session_handle_token", token_}},
        [this](const QVariantMap& results) {
            onCreated(results.value("session_handle").toString());
        },
        [] {});
}

void ShortcutsPortal::onCreated(const QString& handle) {
    session_ = QDBusObjectPath(handle);
    if (!std::exchange(lostToken_, {}).isEmpty() || shortcuts_.isEmpty()) {
        begin();
    } else if (handle.isEmpty()) {
        fail();
    } else {
        bindInSession();
    }
}

// What the user has decided is never a failure. Portals of GNOME 48 answer that the request has
// failed although they have bound the shortcuts.
void ShortcutsPortal::bindInSession() {
    state_ = State::asking;
    isOutdated_ = false;
    request(
        "BindShortcuts",
        {QVariant::fromValue(session_), QVariant::fromValue(shortcuts_), QString()}, {},
        [this](const QVariantMap& results) { onDecided(namesIn(results.value("shortcuts"))); },
        [this] {
            state_ = State::deciding;
            if (isOutdated_) {
                begin();
            }
        });
}

void ShortcutsPortal::onDecided(const QStringList& names) {
    pause_ = firstPause;
    state_ = State::bound;
    if (isOutdated_) {
        begin();
    } else {
        Q_EMIT bound(names);
    }
}

void ShortcutsPortal::onResponse(const QDBusMessage& signal) {
    if (!request_.isEmpty() && signal.path() == pathOfRequest()) {
        request_.clear();
        std::exchange(onResults_, {})(qdbus_cast<QVariantMap>(signal.arguments().value(1)));
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
        Q_EMIT released();
    }
}

// Some portals tell this of what they are about to answer, too.
void ShortcutsPortal::onChanged(const QDBusMessage& signal) {
    if (isOurs(signal) && !isOutdated_) {
        Q_EMIT bound(namesIn(signal.arguments().value(1)));
    }
}

void ShortcutsPortal::onClosed(const QDBusMessage& signal) {
    if (!session_.path().isEmpty() && signal.path() == session_.path()) {
        lose();
    }
}

void ShortcutsPortal::fail() {
    lostToken_.clear(); // or it would be refused for ever
    giveBack();
    if (!shortcuts_.isEmpty()) {
        tryAgainLater();
        Q_EMIT bound({});
    }
}

// A portal that ends takes the session back, too: it is lost once.
void ShortcutsPortal::lose() {
    const bool hadBegun = state_ != State::idle;
    if (!std::exchange(session_, {}).path().isEmpty()) {
        lostToken_ = token_;
    }
    request_.clear();
    giveBack();
    tryAgainLater();
    if (hadBegun) {
        qCDebug(freedesktop::keysLog, "the portal binds nothing any more");
        Q_EMIT lost();
    }
}

// A portal that ends as soon as it is asked must not be asked without a pause.
void ShortcutsPortal::tryAgainLater() {
    if (!shortcuts_.isEmpty() && !retry_.isActive()) {
        retry_.start(pause_);
        pause_ = std::min(2 * pause_, longestPause);
    }
}

bool ShortcutsPortal::isOurs(const QDBusMessage& signal) const {
    const auto session = signal.arguments().value(0).value<QDBusObjectPath>();
    return !session_.path().isEmpty() && session == session_;
}

// A portal that has ended has nothing to close, and is not started for it.
void ShortcutsPortal::close(const char* interfaceName, const QString& object) {
    auto message = QDBusMessage::createMethodCall(service, object, interfaceName, "Close");
    message.setAutoStartService(false);
    connection_->asyncCall(message);
}

void ShortcutsPortal::call(const QDBusMessage& message, const Answer& answer) {
    const auto inTurn = [this, answer, turn = turn_](const QDBusMessage& reply) {
        if (turn == turn_) {
            answer(reply);
        }
    };
    freedesktop::SessionBus::answerOnce(connection_->asyncCall(message), this, inTurn);
}

// The portal answers twice: it has taken the request, and later what became of it. The second
// answer may be the first to arrive.
void ShortcutsPortal::request(const char* method, QVariantList arguments, QVariantMap options,
                              const Results& onResults, const std::function<void()>& onTaken) {
    request_ = QStringLiteral("hollowfernpike%1").arg(++count_);
    onResults_ = onResults;
    options["handle_token"] = request_;
    arguments.push_back(options);
    call(callOf(interface, method, arguments),
         [this, onTaken, asked = request_](const QDBusMessage& reply) {
             if (request_ != asked) {
                 return;
             }
             if (reply.type() == QDBusMessage::ErrorMessage) {
                 qCWarning(freedesktop::keysLog, "the portal for global shortcuts: %s",
                           qPrintable(reply.errorMessage()));
                 fail();
             } else {
                 onTaken();
             }
         });
}

QString ShortcutsPortal::pathOfRequest() const {
    const auto sender = connection_->baseService().mid(1).replace('.', '_'); // ":1.2" is "1_2"
    return QStringLiteral("%1/request/%2/%3").arg(QLatin1String(path), sender, request_);
}

} // namespace hollowfernpike::portal
