#include "platform/wayland/ToolkitLoss.h"

#include <QString>
#include <QtGlobal>

#include <utility>

namespace hollowfernpike::wayland {

namespace {

std::function<void()>& lossHandler() {
    static std::function<void()> handler;
    return handler;
}

QtMessageHandler& earlierHandler() {
    static QtMessageHandler handler = nullptr;
    return handler;
}

// The toolkit (6.4 to 6.8) offers no other sign: it writes this warning and calls _exit. A protocol
// error reads otherwise; it must not lead to a restart, because it would come again.
void onMessage(QtMsgType type, const QMessageLogContext& context, const QString& message) {
    if (earlierHandler() != nullptr) {
        earlierHandler()(type, context, message);
    }
    if (message.startsWith(QLatin1String("The Wayland connection broke"))) {
        lossHandler()();
    }
}

} // namespace

ToolkitLoss::ToolkitLoss(std::function<void()> handler) {
    lossHandler() = std::move(handler);
    earlierHandler() = qInstallMessageHandler(&onMessage);
}

ToolkitLoss::~ToolkitLoss() {
    qInstallMessageHandler(earlierHandler());
}

} // namespace hollowfernpike::wayland
