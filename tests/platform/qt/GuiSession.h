#pragma once

#include "support/PrivateDesktop.h"
#include "support/WaitUntil.h"

#include <QApplication>

#include <optional>
#include <string>

namespace hollowfernpike::test {

/// A private desktop on which this process is an application with windows. One per process: what
/// the toolkit has learnt of a desktop it never forgets.
class GuiSession {
public:
    /// `windowManager` is as for `PrivateDesktop`.
    explicit GuiSession(const std::string& windowManager = {});

    PrivateDesktop& desktop() { return desktop_; }

    /// Handles events until `condition` holds; false if it does not within `longest`.
    template <class Condition>
    [[nodiscard]] bool runUntil(Condition condition, std::chrono::milliseconds longest = patience) {
        return waitUntil(
            [&] {
                turn();
                return condition();
            },
            longest);
    }

private:
    void turn();

    PrivateDesktop desktop_;
    int argumentCount_ = 1;
    char name_[5] = "test"; // NOLINT(modernize-avoid-c-arrays): argv is made of these
    char* arguments_[2] = {name_, nullptr}; // NOLINT(modernize-avoid-c-arrays): likewise
    std::optional<QApplication> application_;
};

} // namespace hollowfernpike::test
