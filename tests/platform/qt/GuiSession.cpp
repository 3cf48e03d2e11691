#include "platform/qt/GuiSession.h"

#include <QCoreApplication>
#include <QEvent>

// The leak sanitizer calls this. The toolkit leaks some bytes of its own, once, when it first sends
// a tooltip over the bus.
//
// NOLINTNEXTLINE(bugprone-reserved-identifier,readability-identifier-naming): the sanitizer's name
extern "C" const char* __lsan_default_suppressions() {
    return "leak:libQt6DBus";
}

namespace hollowfernpike::test {

GuiSession::GuiSession(const std::string& windowManager) : desktop_(windowManager) {
    for (const auto& [name, value] : desktop_.environment()) {
        if (value) {
            qputenv(name.c_str(), QByteArray::fromStdString(*value));
        } else {
            qunsetenv(name.c_str());
        }
    }
    qputenv("QT_QPA_PLATFORM", "xcb");
    QCoreApplication::setApplicationName("Hollowfernpike");
    QGuiApplication::setDesktopFileName("app.hollowfernpike.Hollowfernpike");
    QGuiApplication::setQuitOnLastWindowClosed(false);
    application_.emplace(argumentCount_, arguments_);
}

void GuiSession::turn() {
    QCoreApplication::processEvents();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

} // namespace hollowfernpike::test
