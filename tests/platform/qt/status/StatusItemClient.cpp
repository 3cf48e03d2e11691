#include "platform/qt/status/StatusItemClient.h"

#include <QDBusArgument>
#include <QDBusObjectPath>
#include <QDBusPendingCall>
#include <QDBusVariant>

#include <stdexcept>
#include <utility>

namespace hollowfernpike::test {

namespace {

const QString connectionName = QStringLiteral("host");
const QString itemPath = QStringLiteral("/StatusNotifierItem");
const QString itemInterface = QStringLiteral("org.kde.StatusNotifierItem");
const QString menuInterface = QStringLiteral("com.canonical.dbusmenu");

BusMenuItem itemFrom(const QDBusArgument& argument) {
    BusMenuItem item;
    argument.beginStructure();
    argument >> item.id >> item.properties;
    argument.beginArray();
    while (!argument.atEnd()) {
        QDBusVariant child;
        argument >> child;
        item.children.push_back(itemFrom(child.variant().value<QDBusArgument>()));
    }
    argument.endArray();
    argument.endStructure();
    return item;
}

const BusMenuItem* find(const BusMenuItem& menu, const std::string& label) {
    if (menu.label() == label) {
        return &menu;
    }
    for (const auto& child : menu.children) {
        if (const auto* found = find(child, label)) {
            return found;
        }
    }
    return nullptr;
}

} // namespace

StatusItemClient::StatusItemClient(GuiSession& session, const std::string& service)
    : session_(session), service_(QString::fromStdString(service)),
      bus_(QDBusConnection::connectToBus(QDBusConnection::SessionBus, connectionName)) {}

StatusItemClient::~StatusItemClient() {
    QDBusConnection::disconnectFromBus(connectionName);
}

QVariant StatusItemClient::property(const QString& name) {
    auto question = QDBusMessage::createMethodCall(service_, itemPath,
                                                   "org.freedesktop.DBus.Properties", "Get");
    question << itemInterface << name;
    return ask(question).arguments().at(0).value<QDBusVariant>().variant();
}

void StatusItemClient::activate() {
    auto question = QDBusMessage::createMethodCall(service_, itemPath, itemInterface, "Activate");
    question << 0 << 0;
    ask(question);
}

BusMenuItem StatusItemClient::menu() {
    const auto answer = askMenu("GetLayout", {0, -1, QStringList{}});
    return itemFrom(answer.arguments().at(1).value<QDBusArgument>());
}

BusMenuItem StatusItemClient::entry(const std::string& label) {
    const auto whole = menu();
    const auto* found = find(whole, label);
    if (found == nullptr) {
        throw std::runtime_error("no entry " + label);
    }
    return *found;
}

void StatusItemClient::click(int id) {
    askMenu("Event", {id, "clicked", QVariant::fromValue(QDBusVariant(0)), 0U});
}

QDBusMessage StatusItemClient::askMenu(const QString& method, const QVariantList& arguments) {
    const auto path = property("Menu").value<QDBusObjectPath>().path();
    auto question = QDBusMessage::createMethodCall(service_, path, menuInterface, method);
    question.setArguments(arguments);
    return ask(question);
}

QDBusMessage StatusItemClient::ask(const QDBusMessage& question) {
    const auto call = bus_.asyncCall(question);
    if (!session_.runUntil([&] { return call.isFinished(); })) {
        throw std::runtime_error("no answer to " + question.member().toStdString());
    }
    if (call.isError()) {
        throw std::runtime_error(question.member().toStdString() + ": " +
                                 call.error().message().toStdString());
    }
    return call.reply();
}

} // namespace hollowfernpike::test
