#pragma once

#include "support/WaitUntil.h"

#include <QCoreApplication>

namespace hollowfernpike::test {

/// An application object whose event loop a test turns by hand.
class EventLoop {
public:
    /// Handles events until `condition` holds; false if it does not within `longest`.
    template <class Condition>
    [[nodiscard]] bool runUntil(Condition condition, std::chrono::milliseconds longest = patience) {
        return waitUntil(
            [&] {
                QCoreApplication::processEvents();
                return condition();
            },
            longest);
    }

private:
    int argumentCount_ = 1;
    char name_[5] = "test"; // NOLINT(modernize-avoid-c-arrays): argv is made of these
    char* arguments_[2] = {name_, nullptr}; // NOLINT(modernize-avoid-c-arrays): likewise
    QCoreApplication application_{argumentCount_, arguments_};
};

} // namespace hollowfernpike::test
