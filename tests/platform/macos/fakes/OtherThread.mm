#include "platform/macos/fakes/OtherThread.h"

#include <Foundation/Foundation.h>

#include <thread>

namespace hollowfernpike::test {

void onAnotherThread(const std::function<void()>& work) {
    std::thread([&work] {
        GSRegisterCurrentThread();
        work();
        GSUnregisterCurrentThread();
    }).join();
}

} // namespace hollowfernpike::test
