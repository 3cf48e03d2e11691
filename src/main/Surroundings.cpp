#include "main/Surroundings.h"

#include "platform/freedesktop/bus/BusProbe.h"
#include "platform/freedesktop/files/ImpatientOutput.h"
#include "platform/freedesktop/launching/OwnEnvironment.h"

#include <QByteArray>
#include <QString>

#include <cstdlib>
#include <iostream>
#include <optional>

#include <fcntl.h>
#include <unistd.h>

namespace hollowfernpike {

namespace {

constexpr auto nobodysAddress = "unix:path=/dev/null";

void writeForToolkit(QtMsgType type, const QMessageLogContext& context, const QString& message) {
    const QByteArray line = qFormatLogMessage(type, context, message).toLocal8Bit() + '\n';
    freedesktop::writeWithoutWaiting(STDERR_FILENO,
                                     {line.data(), static_cast<std::size_t>(line.size())});
    if (type == QtFatalMsg) {
        std::abort();
    }
}

} // namespace

// The session manager's protocol gives us nothing: what we know is saved at every change.
void stayOnThisMachine() {
    freedesktop::setOwnVariable("SESSION_MANAGER", std::nullopt);
    freedesktop::setOwnVariable("QT_QPA_GENERIC_PLUGINS", std::nullopt); // of touch screens
    for (const auto* bus : {"AT_SPI_BUS_ADDRESS", "IBUS_ADDRESS", "DBUS_SYSTEM_BUS_ADDRESS",
                            "DBUS_STARTER_ADDRESS"}) {
        const char* const address = std::getenv(bus);
        if (address != nullptr && !freedesktop::isLocalBus(address)) {
            freedesktop::setOwnVariable(bus, nobodysAddress);
        }
    }
}

void hideSessionBus() {
    freedesktop::setOwnVariable("DBUS_SESSION_BUS_ADDRESS", nobodysAddress);
    // Where there is no bus, the toolkit keeps waiting for what it asks the portal.
    freedesktop::setOwnVariable("QT_NO_XDG_DESKTOP_PORTAL", "1");
}

void openStandardDescriptors() {
    for (int number = ::open("/dev/null", O_RDWR | O_NOCTTY); number >= 0;
         number = ::open("/dev/null", O_RDWR | O_NOCTTY)) {
        if (number > STDERR_FILENO) {
            ::close(number);
            break;
        }
    }
}

// Never destroyed: the standard library flushes its streams at the very end.
void neverWaitForReaders() {
    static auto* const output = new freedesktop::ImpatientOutput(STDOUT_FILENO);
    static auto* const errors = new freedesktop::ImpatientOutput(STDERR_FILENO);
    std::cout.rdbuf(output);
    std::cerr.rdbuf(errors);
    qInstallMessageHandler(writeForToolkit);
}

} // namespace hollowfernpike
