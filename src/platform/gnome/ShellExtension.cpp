#include "platform/gnome/ShellExtension.h"

#include "platform/freedesktop/Logging.h"

#include <QDBusArgument>
#include <QDBusMetaType>
#include <QPointer>

#include <utility>

namespace hollowfernpike::gnome {

namespace {

constexpr const char* shellName = "org.gnome.Shell";
constexpr const char* name = "app.hollowfernpike.Shell";
constexpr const char* path = "/app/hollowfernpike/Shell";

QDBusMessage callOf(const char* method, const QVariantList& arguments) {
    auto message = QDBusMessage::createMethodCall(name, path, name, method);
    message.setArguments(arguments);
    message.setAutoStartService(false);
    return message;
}

wayland::ListedWindow windowFrom(const QDBusArgument& argument) {
    wayland::ListedWindow window;
    uint number = 0;
    int process = 0;
    QString className;
    QString instanceName;
    QString gtkApplicationId;
    QString sandboxApplicationId;
    argument.beginStructure();
    argument >> number >> process >> className >> instanceName >> gtkApplicationId >>
        sandboxApplicationId >> window.isMinimised >> window.isOnShownWorkspace;
    argument.endStructure();
    const auto text = [](const QString& value) {
        return wayland::boundedText(value.toStdString());
    };
    window.number = number;
    window.facts = {.process = process > 0 ? std::optional(process) : std::nullopt,
                    .instanceName = text(instanceName),
                    .className = text(className),
                    .gtkApplicationId = text(gtkApplicationId),
                    .desktopFile = {},
                    .sandboxApplicationId = text(sandboxApplicationId)};
    return window;
}

std::vector<wayland::ListedWindow> windowsFrom(const QVariant& value) {
    std::vector<wayland::ListedWindow> windows;
    const auto argument = value.value<QDBusArgument>();
    argument.beginArray();
    while (!argument.atEnd()) {
        windows.push_back(windowFrom(argument));
    }
    argument.endArray();
    return windows;
}

} // namespace

ShellExtension::ShellExtension(freedesktop::SessionBus& bus, platform::MainQueue& mainQueue)
    : bus_(bus), mainQueue_(mainQueue) {
    qDBusRegisterMetaType<QList<bool>>();
    qDBusRegisterMetaType<QList<uint>>();
    service_.addWatchedService(name);
    connect(&service_, &QDBusServiceWatcher::serviceOwnerChanged, this, &ShellExtension::look);
    connect(&bus_, &freedesktop::SessionBus::lost, this, &ShellExtension::look);
    connect(&bus_, &freedesktop::SessionBus::returned, this, &ShellExtension::listen);
    listen();
}

void ShellExtension::setAccelerators(
    const QStringList& accelerators,
    const std::function<void(const QList<bool>& granted)>& answer) {
    tell("SetAccelerators", {accelerators}, [answer](const QDBusMessage& reply) {
        answer(qdbus_cast<QList<bool>>(reply.arguments().value(0)));
    });
}

std::optional<std::vector<wayland::ListedWindow>> ShellExtension::windows() {
    if (!windows_) {
        const auto answer = ask("ListWindows", {});
        if (answer.isValid()) {
            keep(windowsFrom(answer));
        }
    }
    return windows_;
}

void ShellExtension::watch(bool wanted) {
    refresh();
    isWatching_ = wanted;
    tell("WatchWindows", {wanted});
}

void ShellExtension::activate(std::span<const std::int64_t> numbers) {
    QList<uint> list;
    for (const auto number : numbers) {
        list.push_back(static_cast<uint>(number));
    }
    tell("ActivateWindows", {QVariant::fromValue(list), lastPress_});
}

std::string ShellExtension::beginLaunch(const std::string& identifier) const {
    return ask("BeginLaunch", {QString::fromStdString(identifier + ".desktop"), lastPress_})
        .toString()
        .toStdString();
}

void ShellExtension::endLaunch(const std::string& token) {
    tell("EndLaunch", {QString::fromStdString(token)});
}

std::string ShellExtension::allowOwnWindow(const QString& title) const {
    return ask("AllowOwnWindow", {title}).toString().toStdString();
}

void ShellExtension::onPressed(const QDBusMessage& signal) {
    const auto arguments = signal.arguments();
    if (isThere_ && arguments.size() == 3) {
        lastPress_ = arguments[1].toUInt();
        keep(windowsFrom(arguments[2]));
        Q_EMIT pressed(arguments[0].toString());
    }
}

void ShellExtension::onWindowsChanged() {
    refresh();
    if (isThere_) {
        tellChange();
    }
}

void ShellExtension::listen() {
    auto connection = bus_.connection();
    service_.setConnection(connection);
    connection.connect(name, path, name, "Pressed", this, SLOT(onPressed(QDBusMessage)));
    connection.connect(name, path, name, "WindowsChanged", this, SLOT(onWindowsChanged()));
    connection.connect(name, path, name, "KeysFreed", this, SIGNAL(keysFreed()));
    look();
}

// Any program can take a name on the bus that is free.
void ShellExtension::look() {
    const auto owner = ownerOf(name);
    isThere_ = !owner.isEmpty() && owner == ownerOf(shellName);
    if (isThere_ && isWatching_) { // a new one knows nothing of that
        tell("WatchWindows", {true});
    }
    qCDebug(freedesktop::keysLog, "the extension of the shell is %s",
            isThere_ ? "there" : "absent");
    refresh();
    if (isThere_) {
        Q_EMIT appeared();
    } else {
        Q_EMIT vanished();
    }
}

void ShellExtension::keep(std::vector<wayland::ListedWindow> windows) {
    windows_ = std::move(windows);
    mainQueue_.async([self = QPointer(this)] {
        if (self != nullptr) {
            self->refresh();
        }
    });
}

QString ShellExtension::ownerOf(const char* owned) const {
    auto question = QDBusMessage::createMethodCall("org.freedesktop.DBus", "/org/freedesktop/DBus",
                                                   "org.freedesktop.DBus", "GetNameOwner");
    question << owned;
    return bus_.ask(question).toString();
}

QVariant ShellExtension::ask(const char* method, const QVariantList& arguments) const {
    return isThere_ ? bus_.ask(callOf(method, arguments)) : QVariant{};
}

void ShellExtension::tell(const char* method, const QVariantList& arguments,
                          const freedesktop::SessionBus::Answer& answer) {
    if (!isThere_) {
        return;
    }
    bus_.call(callOf(method, arguments), [self = QPointer(this), answer](const auto& reply) {
        if (self != nullptr && answer) {
            answer(reply);
        }
    });
}

} // namespace hollowfernpike::gnome
