#pragma once

#include "platform/LocalizedError.h"

#include <memory>

namespace hollowfernpike {

class MessageBox;

/// The window that tells the user why key presses cannot be seen and what to do about it. There is
/// at most one; asked for while it is open, it only changes its text. Main thread only.
class PermissionPrompt {
public:
    PermissionPrompt();
    PermissionPrompt(const PermissionPrompt&) = delete;
    PermissionPrompt& operator=(const PermissionPrompt&) = delete;
    ~PermissionPrompt();

    /// Returns at once. The first time the window comes with the keys; when it comes back after the
    /// user has closed it, it leaves them where they are.
    void show(const platform::LocalizedError& message);

    void close();

private:
    std::unique_ptr<MessageBox> window_;
};

} // namespace hollowfernpike
