// A panel of status notifier items. With "--with-host" it shows items itself; else it waits for
// hosts, which may come and go as they like. Writes "ready" when it is on the bus.

#include "platform/qt/programs/StatusHost.h"

#include <QCoreApplication>

#include <cstdlib>
#include <iostream>
#include <string_view>

int main(int argc, char** argv) {
    const QCoreApplication application(argc, argv);
    hollowfernpike::test::StatusHost host(argc > 1 && std::string_view(argv[1]) == "--with-host");
    if (!host.open()) {
        std::cerr << "the name is taken, or there is no bus" << std::endl;
        return EXIT_FAILURE;
    }
    std::cout << "ready" << std::endl;
    return QCoreApplication::exec();
}
