#include "platform/kde/keys/Layouts.h"

#include <QDBusPendingReply>
#include <QPointer>

#include <utility>

namespace hollowfernpike::kde {

namespace {

constexpr const char* layoutsService = "org.kde.keyboard";
constexpr const char* layoutsPath = "/Layouts";
constexpr const char* layoutsInterface = "org.kde.KeyboardLayouts";

} // namespace

Layouts::Layouts(freedesktop::SessionBus& bus) : bus_(bus) {
    service_.addWatchedService(layoutsService);
    connect(&service_, &QDBusServiceWatcher::serviceOwnerChanged, this, &Layouts::ask);
    connect(&bus_, &freedesktop::SessionBus::returned, this, &Layouts::listen);
    listen();
}

void Layouts::listen() {
    auto connection = bus_.connection();
    service_.setConnection(connection);
    for (const char* const signal : {"layoutChanged", "layoutListChanged"}) {
        connection.connect(layoutsService, layoutsPath, layoutsInterface, signal, this,
                           SLOT(ask()));
    }
    ask();
}

// The service is absent as long as there is one layout (KWin 5.27).
void Layouts::ask() {
    auto question =
        QDBusMessage::createMethodCall(layoutsService, layoutsPath, layoutsInterface, "getLayout");
    question.setAutoStartService(false);
    bus_.call(question, [self = QPointer(this)](const QDBusMessage& reply) {
        if (self != nullptr) {
            self->take(QDBusPendingReply<uint>(reply).value());
        }
    });
}

void Layouts::take(std::uint32_t layout) {
    if (std::exchange(current_, layout) != layout && onChange) {
        onChange();
    }
}

} // namespace hollowfernpike::kde
