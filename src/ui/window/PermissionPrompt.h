#pragma once

#include "platform/Desktop.h"

#include <memory>

namespace hollowfernpike {

class MessageBox;

/// The window that tells the user why key presses cannot be seen and what to do about it, with a
/// button if the program can do it. There is at most one; show() only changes its text while it is
/// open. It stays in front of the management window, but not of what the user opens from there, nor
/// of dialogs that have to be answered first. Main thread only.
class PermissionPrompt {
public:
    PermissionPrompt();
    PermissionPrompt(const PermissionPrompt&) = delete;
    PermissionPrompt& operator=(const PermissionPrompt&) = delete;
    ~PermissionPrompt();

    /// Returns at once. A new window takes the keyboard focus; one that comes back after the user
    /// has closed it does not.
    void show(const platform::Distrust& problem);

    void close();

private:
    void showRemedy(const std::optional<platform::TrustRemedy>& remedy);
    void apply(const platform::TrustRemedy& remedy);

    std::unique_ptr<MessageBox> window_;
};

} // namespace hollowfernpike
