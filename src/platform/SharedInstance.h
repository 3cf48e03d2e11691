#pragma once

#include "platform/Services.h"

#include <memory>

namespace hollowfernpike::platform {

/// The one instance of `T` in the process: made from the services on first use, kept until the
/// process ends. `T` keeps its constructor private and befriends this class. Main thread only.
template <class T>
class SharedInstance {
public:
    static const std::shared_ptr<T>& get() {
        if (!slot()) {
            slot() = std::shared_ptr<T>(new T(services()));
        }
        return slot();
    }

    /// Forgets the instance, so that the next test starts with a new one.
    static void resetForTesting() { slot().reset(); }

    /// Whether the instance exists. Unlike get(), never makes one.
    static bool existsForTesting() { return slot() != nullptr; }

private:
    static std::shared_ptr<T>& slot() {
        static auto* const instance = new std::shared_ptr<T>;
        return *instance;
    }
};

} // namespace hollowfernpike::platform
